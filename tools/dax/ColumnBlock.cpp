#include "NumberText.h"
#include "Printable.h"
#include "TableTest.h"

#include <algorithm>
#include <cmath>

void VDColumnBlock::Read(int dataSet, std::int64_t first, std::int64_t count)
{
    VFCheck(XYAccGetData(acc_, channel_, dataSet, column_.index, first, count, &values_));
    if (count > 0 && values_.GetBufferSize() < count)
        VFFail(DaxToolError::Incomplete, "The file ends before the rows that it states", "VDColumnBlock::Read");
    if (!column_.status)
        return;
    std::int64_t read = 0;
    valid_.resize(static_cast<std::size_t>(count));
    words_.resize(static_cast<std::size_t>(count));
    VFCheck(XYAccGetDataValidData(acc_, channel_, dataSet, column_.index, first, count, &read, valid_.data()));
    VFCheck(XYAccGetStatusWordData(acc_, channel_, dataSet, column_.index, first, count, &read, words_.data()));
    for (std::size_t index = 0; index < words_.size(); ++index) {
        const auto bits = static_cast<std::uint16_t>(words_[index] & ~DaxStatusWord::Invalid);
        words_[index] = valid_[index] != 0 ? bits : static_cast<std::uint16_t>(bits | DaxStatusWord::Invalid);
    }
}

char* VDColumnBlock::PutNumber(char* at, std::int64_t index, bool json) const
{
    const auto i = static_cast<std::size_t>(index);
    const auto put = [&](auto value) { return json ? VFPutJsonNumber(at, value) : VFPutNumber(at, value); };
    switch (values_.GetType()) {
    case VTVariantDoubleBuffer:
        return put(values_.GetBuffer<double>()[i]);
    case VTVariantFloatBuffer:
        return put(values_.GetBuffer<float>()[i]);
    case VTVariantHugeBuffer:
        return put(values_.GetBuffer<std::int64_t>()[i]);
    case VTVariantLongBuffer:
        return put(std::int64_t{values_.GetBuffer<std::int32_t>()[i]});
    case VTVariantShortBuffer:
        return put(std::int64_t{values_.GetBuffer<short>()[i]});
    default:
        return at;
    }
}

const std::string* VDColumnBlock::FindOption(std::int64_t index) const
{
    long value = 0;
    if (column_.type != DaxColumnType::Enumeration || !values_.GetLongAt(index, &value))
        return nullptr;
    const auto found = std::find(column_.optionValues.begin(), column_.optionValues.end(), value);
    return found == column_.optionValues.end()
               ? nullptr
               : &column_.optionTexts[static_cast<std::size_t>(std::distance(column_.optionValues.begin(), found))];
}

void VDColumnBlock::PutCsv(VDTextSink& out, std::int64_t index) const
{
    if (!IsValid(index))
        return;
    if (IsText() || column_.type == DaxColumnType::Enumeration)
        out.Write(VFCsvText(Text(index)));
    else
        out.Commit(PutNumber(out.Reserve(NumberTextSize), index, false));
}

void VDColumnBlock::PutJson(VDTextSink& out, std::int64_t index) const
{
    if (!IsValid(index) || IsText())
        out.Write(VFJsonText(ToJson(index), -1));
    else
        out.Commit(PutNumber(out.Reserve(NumberTextSize), index, true));
}

VDJson VDColumnBlock::ToJson(std::int64_t index) const
{
    if (!IsValid(index))
        return nullptr;
    return Text(index);
}

std::string VDColumnBlock::Text(std::int64_t index) const
{
    VDString text;
    if (IsText())
        return values_.GetStringAt(index, &text) ? text.Str() : std::string();
    if (const std::string* const option = FindOption(index))
        return *option;
    char number[NumberTextSize];
    return std::string(number, PutNumber(number, index, false));
}
