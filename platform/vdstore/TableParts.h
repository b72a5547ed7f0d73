#pragma once

#include "vdstore/LQResultsTable.h"

#include <array>
#include <memory>

/// Bytes of one value in a column's stream of values; of a text it is where the text lies.
inline int VFColumnValueSize(std::int32_t type)
{
    switch (type) {
    case Z4TypeShort:
        return 2;
    case Z4TypeLong:
    case LQTypeEnumeration:
    case Z4TypeFloat:
        return 4;
    case Z4TypeHuge:
    case Z4TypeDouble:
        return 8;
    case Z4TypeString:
    case LQTypeDateTime:
        return 16;
    default:
        return 0;
    }
}

/// One column of one data set: streams that were written, and the way in to them once somebody asked for it.
struct LQTableCell
{
    std::array<Z4Stream*, 3> streams = {};  ///< values, bytes of texts, status words; null where nothing was written
    std::unique_ptr<LQArrayChannel> access;
};

struct LQTableDataSet
{
    std::int64_t rows = 0;
    VDString title;
    std::vector<LQTableCell> cells;  ///< by column
};

struct LQResultsTable::Channel
{
    std::vector<std::unique_ptr<LQResultsTableColumn>> columns;
    std::vector<std::unique_ptr<LQTableDataSet>> dataSets;
};
