#include "vdbase/VFCycArr.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VDString.h"
#include "vdbase/VFError.h"
#include "vdbase/VFMemory.h"

#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

struct CycArrCol
{
    int type = 0;
    VDString title;
    VDString units;
    VDString keyword;
    std::vector<unsigned char> values;
};

/// Bytes of a value; 0 for what is no type.
std::size_t SizeOf(int type)
{
    switch (type) {
    case VTCycArrByte:
        return 1;
    case VTCycArrShort:
        return 2;
    case VTCycArrLong:
    case VTCycArrFloat:
        return 4;
    case VTCycArrHuge:
    case VTCycArrDouble:
        return 8;
    default:
        return 0;
    }
}

}  // namespace

class VDCycArr : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = static_cast<std::int32_t>(0xa04f0252);

    VDCycArr() : VDCompBase(HandleId) {}

    int rows = 0;
    std::vector<CycArrCol> columns;
    std::unordered_map<std::string, int> byKeyword;
};

namespace {

int Refuse(int code, const char* text, const char* routine)
{
    return VFErrorSet(code, text, routine, 0);
}

/// Does the work of a function on a handle that is checked.
template <class Array, class Work>
int With(Array* array, const char* routine, Work&& work) noexcept
{
    if (array == nullptr || static_cast<const VDCompBase*>(array)->GetID() != VDCycArr::HandleId)
        return Refuse(VDBaseError::CycArrHandle, "The handle is no cycle array's", routine);
    try {
        return work(*array);
    } catch (...) {
        return Refuse(VDBaseError::CycArrMemory, "Memory is too short for the cycle array", routine);
    }
}

template <class Array, class Work>
int WithColumn(Array* array, int column, const char* routine, Work&& work)
{
    return With(array, routine, [&](auto& it) {
        if (column < 0 || static_cast<std::size_t>(column) >= it.columns.size())
            return Refuse(VDBaseError::CycArrValue, "A cycle array has no column at this index", routine);
        return work(it.columns[static_cast<std::size_t>(column)]);
    });
}

int GetText(const VDCycArr* array, int column, VDString CycArrCol::*which, char** text, int* length, const char* routine)
{
    return WithColumn(array, column, routine, [&](const CycArrCol& it) {
        const VDString& value = it.*which;
        const auto size = static_cast<std::size_t>(value.GetLength());
        auto* const memory = static_cast<char*>(VFRealloc(nullptr, size + 1));
        if (memory == nullptr)
            return Refuse(VDBaseError::CycArrMemory, "Memory is too short for the cycle array", routine);
        std::memcpy(memory, value.c_str(), size + 1);
        *text = memory;
        *length = value.GetLength();
        return 1;
    });
}

}  // namespace

VDCycArr* VFCycArrCreate()
{
    return new (std::nothrow) VDCycArr;
}

int VFCycArrAddRef(VDCycArr* array)
{
    return With(array, __func__, [](VDCycArr& it) { return it.AddRef(); });
}

int VFCycArrRelease(VDCycArr* array)
{
    return With(array, __func__, [](VDCycArr& it) {
        if (it.Release() == 0)
            delete &it;
        return 1;
    });
}

int VFCycArrGetNumCols(const VDCycArr* array, int* count)
{
    return With(array, __func__, [&](const VDCycArr& it) { return *count = static_cast<int>(it.columns.size()), 1; });
}

int VFCycArrAppendCol(VDCycArr* array, int type, const char* title, const char* units, const char* keyword)
{
    return With(array, "VFCycArrAppendCol", [&](VDCycArr& it) {
        const std::size_t size = SizeOf(type);
        if (size == 0)
            return Refuse(VDBaseError::CycArrValue, "A column of a cycle array can't have this type", "VFCycArrAppendCol");
        CycArrCol column = {type, title, units, keyword, std::vector<unsigned char>(size * static_cast<std::size_t>(it.rows))};
        it.columns.reserve(it.columns.size() + 1 > it.columns.capacity() ? it.columns.size() * 2 + 1 : 0);
        it.byKeyword.try_emplace(column.keyword.Str(), static_cast<int>(it.columns.size()));
        it.columns.push_back(std::move(column));
        return 1;
    });
}

int VFCycArrGetColType(const VDCycArr* array, int column, int* type)
{
    return WithColumn(array, column, __func__, [&](const CycArrCol& it) { return *type = it.type, 1; });
}

int VFCycArrGetColFromKey(const VDCycArr* array, const char* keyword, int* column)
{
    return With(array, "VFCycArrGetColFromKey", [&](const VDCycArr& it) {
        const auto found = it.byKeyword.find(VDString(keyword).Str());
        if (found == it.byKeyword.end())
            return Refuse(VDBaseError::CycArrValue, "A cycle array has no column of this keyword", "VFCycArrGetColFromKey");
        *column = found->second;
        return 1;
    });
}

int VFCycArrGetColTitle(const VDCycArr* array, int column, char** text, int* length)
{
    return GetText(array, column, &CycArrCol::title, text, length, __func__);
}

int VFCycArrGetColUnits(const VDCycArr* array, int column, char** text, int* length)
{
    return GetText(array, column, &CycArrCol::units, text, length, __func__);
}

int VFCycArrGetColKeyword(const VDCycArr* array, int column, char** text, int* length)
{
    return GetText(array, column, &CycArrCol::keyword, text, length, __func__);
}

int VFCycArrGetSize(const VDCycArr* array, int* rows)
{
    return With(array, __func__, [&](const VDCycArr& it) { return *rows = it.rows, 1; });
}

int VFCycArrSetSize(VDCycArr* array, int rows)
{
    return With(array, "VFCycArrSetSize", [&](VDCycArr& it) {
        if (rows < 0)
            return Refuse(VDBaseError::CycArrValue, "A cycle array can't have fewer than no rows", "VFCycArrSetSize");
        const auto bytesOf = [rows](const CycArrCol& column) { return SizeOf(column.type) * static_cast<std::size_t>(rows); };
        // First all memory, so that no column is longer than another if it is short.
        for (CycArrCol& column : it.columns)
            column.values.reserve(bytesOf(column));
        for (CycArrCol& column : it.columns)
            column.values.resize(bytesOf(column));
        it.rows = rows;
        return 1;
    });
}

int VFCycArrGetArrayPtr(VDCycArr* array, int column, void** values, int* size)
{
    return WithColumn(array, column, __func__, [&](CycArrCol& it) {
        *values = it.values.data();
        *size = static_cast<int>(SizeOf(it.type));
        return 1;
    });
}
