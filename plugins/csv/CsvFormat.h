#pragma once

#include "daxlib/DaxTypes.h"

/// The file types that this plug-in serves: one file id, a sub id for each way to see a table.
namespace CsvFormat {

constexpr int FileId = 31001;

enum SubId : int {
    Table = 1,       ///< one channel with one data set: the table as it stands
    TimeSeries = 2,  ///< the columns of numbers over the first one, which is a time that grows evenly
};

struct Type
{
    SubId subId;
    VTFileAccessType accessType;
    const char* accessClass;  ///< class id text of the access, as the manifest names it
    const char* keyword;
    int description;  ///< catalogue text
    bool writable;
};

constexpr Type Types[] = {
    {Table, VTFileAccessMultiColumn, "5E0B7C1D-39F2-4B7A-9A53-0C6E4D1F8B27", "CSV", 10018, true},
    {TimeSeries, VTFileAccessTimeSeries, "A3D8F4E6-7B15-4C90-8E2A-61B9D05C73F4", "CSVTimeSeries", 10078, false},
};

/// The type of a pair of ids; null if it isn't one of this plug-in's.
constexpr const Type* Find(int fileId, int subId)
{
    for (const Type& type : Types)
        if (fileId == FileId && type.subId == subId)
            return &type;
    return nullptr;
}

}  // namespace CsvFormat
