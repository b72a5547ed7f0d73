#include "daxlib/VFDaxResultsTable.h"

#include "frame/ExportedWrapper.h"

#include "vdbase/VDComStr.h"
#include "vdbase/VFCycArr.h"
#include "vdstore/LQResultsTable.h"

#include <algorithm>
#include <array>

namespace {

/// A type of columns that both sides have.
struct SharedType
{
    int ofArray;
    std::int32_t ofTable;
    bool (LQResultsTable::*add)(const char* title, const char* units, const char* keyword, char withStatus);
    bool (*put)(LQResultsTable& table, int column, int channel, std::int64_t first, std::int64_t count, void* values);
};

template <class T, auto GetChannel>
bool PutColumn(LQResultsTable& table, int column, int channel, std::int64_t first, std::int64_t count, void* values)
{
    LQArrayChannelEx<T>* const to = (table.*GetChannel)(column, channel, 0);
    return to != nullptr && to->PutArray(first, count, static_cast<const T*>(values));
}

using Table = LQResultsTable;
constexpr std::array VVTypes = {
    SharedType{VTCycArrLong, Z4TypeLong, &Table::AddLongColumn, PutColumn<std::int32_t, &Table::GetLongArrayChannel>},
    SharedType{VTCycArrFloat, Z4TypeFloat, &Table::AddFloatColumn, PutColumn<float, &Table::GetFloatArrayChannel>},
    SharedType{VTCycArrShort, Z4TypeShort, &Table::AddShortColumn, PutColumn<std::int16_t, &Table::GetShortArrayChannel>},
    SharedType{VTCycArrHuge, Z4TypeHuge, &Table::AddHugeColumn, PutColumn<std::int64_t, &Table::GetHugeArrayChannel>},
    SharedType{VTCycArrDouble, Z4TypeDouble, &Table::AddDoubleColumn, PutColumn<double, &Table::GetDoubleArrayChannel>},
};

/// Types of a table's columns mean what their low halves do.
bool IsSameType(std::int32_t left, std::int32_t right)
{
    return (left & 0xffff) == (right & 0xffff);
}

bool SetUp(const VDCycArr* array, Table& table)
{
    int columns = 0;
    if (!VFCycArrGetNumCols(array, &columns))
        return false;
    for (int column = 0; column < columns; ++column) {
        VDComStr title;
        VDComStr units;
        VDComStr keyword;
        int type = 0;
        if (!VFCycArrGetColTitle(array, column, title.GetPtr(), title.GetLenPtr()) ||
            !VFCycArrGetColUnits(array, column, units.GetPtr(), units.GetLenPtr()) ||
            !VFCycArrGetColKeyword(array, column, keyword.GetPtr(), keyword.GetLenPtr()) ||
            !VFCycArrGetColType(array, column, &type))
            return false;
        const auto shared =
            std::find_if(VVTypes.begin(), VVTypes.end(), [type](const SharedType& each) { return each.ofArray == type; });
        const auto add = shared == VVTypes.end() ? &Table::AddDoubleColumn : shared->add;
        // A table that refuses one column refuses the values of it later, with a report.
        (table.*add)(title.Get(), units.Get(), keyword.Get(), 0);
    }
    return true;
}

bool CopyColumn(VDCycArr* array, int count, Table& table, int column, int channel, std::int64_t first, const char* routine)
{
    const LQResultsTableColumn* const to = table.GetColumn(column, -1);
    int from = 0;
    int type = 0;
    void* values = nullptr;
    int size = 0;
    if (to == nullptr)
        return false;
    if (!VFCycArrGetColFromKey(array, to->GetKeyword(), &from))
        return VFDaxReport(DaxError::NoMatchingColumn, routine, {.chain = 1}) != 0;
    if (!VFCycArrGetColType(array, from, &type))
        return false;
    const auto shared = std::find_if(VVTypes.begin(), VVTypes.end(), [to](const SharedType& each) {
        return IsSameType(each.ofTable, to->GetDataType(0));
    });
    if (shared == VVTypes.end())
        return VFDaxReportError(DaxError::InvalidColumnType, routine) != 0;
    if (shared->ofArray != type)
        return VFDaxReport(DaxError::ColumnTypeMismatch, routine, {.chain = 1}) != 0;
    return VFCycArrGetArrayPtr(array, from, &values, &size) && shared->put(table, column, channel, first, count, values);
}

bool Copy(VDCycArr* array, int count, Table& table, int channel, const char* routine)
{
    if (count < 0 && !VFCycArrGetSize(array, &count))
        return false;
    if (count < 1)
        return true;
    // All columns begin here, also when the first one has made the table longer.
    const std::int64_t first = table.GetRowCount(0, channel);
    const int columns = table.GetColumnCount();
    for (int column = 0; column < columns; ++column)
        if (!CopyColumn(array, count, table, column, channel, first, routine))
            return false;
    return true;
}

}  // namespace

char VFDaxSetupMultiColumnFromCycleArray(void* cycleArray, LQResultsTable* table)
{
    return VFExport(__func__, [=]() -> char {
        return table != nullptr && SetUp(static_cast<const VDCycArr*>(cycleArray), *table) ? 1 : 0;
    });
}

char VFDaxCopyCycArrDataToMultiColumn(void* cycleArray, int count, LQResultsTable* table, int channel)
{
    constexpr const char* routine = "VFDaxCopyCycArrDataToMultiColumn";
    return VFExport(routine, [=]() -> char {
        return table != nullptr && Copy(static_cast<VDCycArr*>(cycleArray), count, *table, channel, routine) ? 1 : 0;
    });
}
