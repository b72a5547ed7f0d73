#include "CsvEncoding.h"
#include "CsvMultiColumn.h"
#include "CsvReport.h"

#include <algorithm>
#include <cmath>
#include <limits>

// The data calls of multi-column access: what lies in the file comes from the table, what was put from the writer.

namespace {

bool IsReal(int type)
{
    return type == DaxColumnType::Double || type == DaxColumnType::Float;
}

/// The whole numbers that a type holds.
std::pair<std::int64_t, std::int64_t> RangeOf(int type)
{
    if (type == DaxColumnType::Short)
        return {INT16_MIN, INT16_MAX};
    if (type == DaxColumnType::Long)
        return {INT32_MIN, INT32_MAX};
    return {INT64_MIN, INT64_MAX};
}

/// A number as a column of this type keeps it; false if the column can't hold it.
template <class Value>
bool ToSlot(Value value, int type, std::uint64_t& slot)
{
    if (IsReal(type)) {
        const auto number = static_cast<double>(value);
        slot = std::bit_cast<std::uint64_t>(number);
        if constexpr (std::is_integral_v<Value>)
            return number < 9223372036854775808.0 && static_cast<std::int64_t>(number) == value;
        return true;
    }
    const auto [least, most] = RangeOf(type);
    if constexpr (std::is_floating_point_v<Value>)
        if (!(value >= static_cast<Value>(INT64_MIN) && value < -static_cast<Value>(INT64_MIN)) ||
            value != std::trunc(value))
            return false;
    const auto whole = static_cast<std::int64_t>(value);
    slot = static_cast<std::uint64_t>(whole);
    return whole >= least && whole <= most;
}

template <class Value>
Value FromSlot(std::uint64_t slot, bool valid, int type)
{
    if (IsReal(type))
        return valid ? static_cast<Value>(std::bit_cast<double>(slot))
                     : static_cast<Value>(std::numeric_limits<Value>::quiet_NaN());
    return valid ? static_cast<Value>(static_cast<std::int64_t>(slot)) : Value{};
}

}  // namespace

bool CsvMultiColumn::Check(long column, std::int64_t first, std::int64_t count, const char* routine) const
{
    if (!table_ && !writer_)
        return Fail(CsvError::Open, routine, "The file isn't open.");
    if (column < 0 || column >= static_cast<long>(GetColumns().size()))
        return Fail(CsvError::Columns, routine);
    return (first >= 1 && count >= 0 && first - 1 <= GetNumRows() - count) || Fail(CsvError::PointNumber, routine);
}

bool CsvMultiColumn::CheckPut(long column, std::int64_t first, std::int64_t count, const char* routine)
{
    constexpr std::int64_t mostRows = std::int64_t(1) << 40;
    if (!writer_)
        return Fail(CsvError::NotWritable, routine);
    if (column < 0 || column >= static_cast<long>(GetColumns().size()))
        return Fail(CsvError::Columns, routine);
    return (first >= 1 && count >= 0 && first <= mostRows && count <= mostRows) || Fail(CsvError::PointNumber, routine);
}

std::int64_t CsvMultiColumn::CountInFile(std::int64_t first, std::int64_t count) const
{
    return writer_ ? std::clamp<std::int64_t>(writer_->GetPresentRows() - (first - 1), 0, count) : count;
}

template <class Value>
bool CsvMultiColumn::GetNumbers(std::size_t column, std::int64_t first, std::int64_t count, Value* values,
                                const char* routine)
{
    const std::int64_t inFile = CountInFile(first, count);
    const int type = GetColumns()[column].type;
    CsvSpool::Cells cells;
    if (inFile > 0 && !table_->Read(column, first - 1, inFile, values, routine))
        return false;
    if (count == inFile)
        return true;
    if (!writer_->Get(column, first - 1 + inFile, count - inFile, cells, routine))
        return false;
    for (std::size_t index = 0; index < cells.slots.size(); ++index)
        values[inFile + static_cast<std::int64_t>(index)] = FromSlot<Value>(cells.slots[index], cells.IsValid(index), type);
    return true;
}

bool CsvMultiColumn::GetTexts(std::size_t column, std::int64_t first, std::int64_t count, VDString* values,
                              const char* routine)
{
    const std::int64_t inFile = CountInFile(first, count);
    CsvSpool::Cells cells;
    if (inFile > 0 && !table_->ReadTexts(column, first - 1, inFile, values, routine))
        return false;
    if (count == inFile)
        return true;
    if (!writer_->Get(column, first - 1 + inFile, count - inFile, cells, routine))
        return false;
    std::string text;
    for (std::size_t index = 0; index < cells.slots.size(); ++index) {
        text.clear();
        if (cells.IsValid(index) && !writer_->GetText(cells.slots[index], text, routine))
            return false;
        values[inFile + static_cast<std::int64_t>(index)] = text;
    }
    return true;
}

bool CsvMultiColumn::GetFloats(long column, std::int64_t first, std::int64_t count, float* values)
{
    constexpr const char* routine = "CsvXY::GetDataF";
    return Check(column, first, count, routine) &&
           (DaxColumnType::IsNumeric(GetColumns()[static_cast<std::size_t>(column)].type) ||
            Fail(CsvError::ColumnType, routine)) &&
           GetNumbers(static_cast<std::size_t>(column), first, count, values, routine);
}

bool CsvMultiColumn::GetData(long column, std::int64_t first, std::int64_t count, VDVariant& values)
{
    constexpr const char* routine = "CsvXY::GetData";
    if (!Check(column, first, count, routine))
        return false;
    const auto index = static_cast<std::size_t>(column);
    const int type = GetColumns()[index].type;
    if (!values.FitBuffer(DaxColumnType::BufferType(type), count))
        return Fail(CsvError::Variant, routine);
    switch (type) {
    case DaxColumnType::Short:
        return GetNumbers(index, first, count, values.GetBuffer<short>().data(), routine);
    case DaxColumnType::Long:
        return GetNumbers(index, first, count, values.GetBuffer<std::int32_t>().data(), routine);
    case DaxColumnType::Huge:
        return GetNumbers(index, first, count, values.GetBuffer<std::int64_t>().data(), routine);
    case DaxColumnType::Float:
        return GetNumbers(index, first, count, values.GetBuffer<float>().data(), routine);
    case DaxColumnType::Double:
        return GetNumbers(index, first, count, values.GetBuffer<double>().data(), routine);
    default:
        return GetTexts(index, first, count, values.GetBuffer<VDString>().data(), routine);
    }
}

bool CsvMultiColumn::GetElement(long column, std::int64_t row, VDVariant& value)
{
    VDVariant buffer;
    if (!GetData(column, row, 1, buffer))
        return false;
    switch (GetColumns()[static_cast<std::size_t>(column)].type) {
    case DaxColumnType::Short:
        value.SetShort(buffer.GetBuffer<short>()[0]);
        return true;
    case DaxColumnType::Long:
        value.SetLong(buffer.GetBuffer<std::int32_t>()[0]);
        return true;
    case DaxColumnType::Huge:
        value.SetHuge(buffer.GetBuffer<std::int64_t>()[0]);
        return true;
    case DaxColumnType::Float:
        value.SetFloat(buffer.GetBuffer<float>()[0]);
        return true;
    case DaxColumnType::Double:
        value.SetDouble(buffer.GetBuffer<double>()[0]);
        return true;
    default:
        value.SetString(buffer.GetBuffer<VDString>()[0].c_str());
        return true;
    }
}

template <class Value>
bool CsvMultiColumn::PutNumbers(std::size_t column, std::int64_t first, std::int64_t count, const Value* values,
                                const char* routine)
{
    const int type = GetColumns()[column].type;
    if (!DaxColumnType::IsNumeric(type))
        return Fail(CsvError::ColumnType, routine, "The column holds text.");
    std::vector<std::uint64_t> slots(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < slots.size(); ++index)
        if (!ToSlot(values[index], type, slots[index]))
            return Fail(CsvError::Write, routine,
                        "The column's type can't hold " + std::to_string(values[index]) + " of row " +
                            std::to_string(first + static_cast<std::int64_t>(index)) + ".");
    return writer_->Put(column, first - 1, slots, routine);
}

bool CsvMultiColumn::PutTexts(std::size_t column, std::int64_t first, std::int64_t count, const VDString* values,
                              const char* routine)
{
    if (DaxColumnType::IsNumeric(GetColumns()[column].type))
        return Fail(CsvError::ColumnType, routine, "The column holds numbers.");
    std::vector<std::uint64_t> slots(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < slots.size(); ++index)
        if (!writer_->PutText(values[index].Str(), slots[index], routine))
            return false;
    return writer_->Put(column, first - 1, slots, routine);
}

bool CsvMultiColumn::PutFloats(long column, std::int64_t first, std::int64_t count, const float* values)
{
    constexpr const char* routine = "CsvXY::PutDataF";
    return CheckPut(column, first, count, routine) &&
           PutNumbers(static_cast<std::size_t>(column), first, count, values, routine);
}

bool CsvMultiColumn::PutData(long column, std::int64_t first, const VDVariant& values)
{
    constexpr const char* routine = "CsvXY::PutData";
    const std::int64_t count = values.GetBufferSize();
    const auto index = static_cast<std::size_t>(column);
    if (!CheckPut(column, first, count, routine))
        return false;
    switch (values.GetType()) {
    case VTVariantShortBuffer:
        return PutNumbers(index, first, count, values.GetBuffer<short>().data(), routine);
    case VTVariantLongBuffer:
        return PutNumbers(index, first, count, values.GetBuffer<std::int32_t>().data(), routine);
    case VTVariantHugeBuffer:
        return PutNumbers(index, first, count, values.GetBuffer<std::int64_t>().data(), routine);
    case VTVariantFloatBuffer:
        return PutNumbers(index, first, count, values.GetBuffer<float>().data(), routine);
    case VTVariantDoubleBuffer:
        return PutNumbers(index, first, count, values.GetBuffer<double>().data(), routine);
    case VTVariantStringBuffer:
        return PutTexts(index, first, count, values.GetBuffer<VDString>().data(), routine);
    default:
        return Fail(CsvError::Variant, routine);
    }
}

bool CsvMultiColumn::PutElement(long column, std::int64_t row, const VDVariant& value)
{
    constexpr const char* routine = "CsvXY::PutDataElement";
    const auto index = static_cast<std::size_t>(column);
    VDString text;
    std::int64_t whole = 0;
    long narrow = 0;
    double number = 0.0;
    if (!CheckPut(column, row, 1, routine))
        return false;
    if (value.GetString(&text))
        return PutTexts(index, row, 1, &text, routine);
    if (value.GetHuge(&whole))
        return PutNumbers(index, row, 1, &whole, routine);
    if (value.GetLong(&narrow)) {
        whole = narrow;
        return PutNumbers(index, row, 1, &whole, routine);
    }
    if (value.ConvertToDouble(&number))
        return PutNumbers(index, row, 1, &number, routine);
    return Fail(CsvError::Variant, routine);
}

bool CsvMultiColumn::GetValid(long column, std::int64_t first, std::int64_t count, char* valid)
{
    constexpr const char* routine = "CsvXY::GetDataValidData";
    if (!Check(column, first, count, routine))
        return false;
    const auto index = static_cast<std::size_t>(column);
    const std::int64_t inFile = CountInFile(first, count);
    CsvSpool::Cells cells;
    if (inFile > 0 && !table_->ReadValid(index, first - 1, inFile, valid, routine))
        return false;
    if (count == inFile)
        return true;
    if (!writer_->Get(index, first - 1 + inFile, count - inFile, cells, routine))
        return false;
    for (std::size_t cell = 0; cell < cells.slots.size(); ++cell)
        valid[inFile + static_cast<std::int64_t>(cell)] = cells.IsValid(cell);
    return true;
}

bool CsvMultiColumn::GetWords(long column, std::int64_t first, std::int64_t count, std::uint16_t* words)
{
    std::vector<char> valid(static_cast<std::size_t>(count));
    if (!GetValid(column, first, count, valid.data()))
        return false;
    std::transform(valid.begin(), valid.end(), words,
                   [](char isValid) { return isValid != 0 ? std::uint16_t(0) : DaxStatusWord::Invalid; });
    return true;
}

bool CsvMultiColumn::PutWords(long column, std::int64_t first, std::int64_t count, const std::uint16_t* words)
{
    constexpr const char* routine = "CsvXY::PutStatusWordData";
    if (!CheckPut(column, first, count, routine))
        return false;
    std::vector<char> invalid(static_cast<std::size_t>(count));
    for (std::size_t index = 0; index < invalid.size(); ++index) {
        if ((words[index] & ~DaxStatusWord::Invalid) != 0)
            return Fail(CsvError::Write, routine,
                        "A table as text keeps of a status whether the value is valid, and none of its bits.");
        invalid[index] = words[index] != 0;
    }
    return writer_->PutInvalid(static_cast<std::size_t>(column), first - 1, invalid, routine);
}
