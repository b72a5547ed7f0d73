#include "vdstore/LQResultsTableColumn.h"

#include "TableParts.h"

namespace {

constexpr std::uint8_t WithStatus = 1;
constexpr std::size_t SmallestOptionBytes = 8;
constexpr std::size_t SmallestBitBytes = 5;

}  // namespace

bool LQResultsTableColumn::IsType(std::int32_t type)
{
    return VFColumnValueSize(type) != 0;
}

VDString LQResultsTableColumn::GetStatusBitText(int bit) const
{
    return bit >= 0 && bit < NumStatusBits ? bitTexts_[static_cast<std::size_t>(bit)] : VDString();
}

bool LQResultsTableColumn::SetStatusBitText(int bit, const char* text)
{
    if (bit < 0 || bit >= NumStatusBits)
        return false;
    bitTexts_[static_cast<std::size_t>(bit)] = text;
    return true;
}

void LQResultsTableColumn::Write(Z4ByteWriter& writer) const
{
    writer.Put(type_);
    writer.Put(static_cast<std::uint8_t>(hasStatus_ ? WithStatus : 0));
    writer.PutText(title_.View());
    writer.PutText(units_.View());
    writer.PutText(keyword_.View());
    writer.Put(static_cast<std::uint32_t>(options_.size()));
    for (const LQEnumOption& option : options_) {
        writer.Put(option.value);
        writer.PutText(option.text.View());
    }
    std::uint32_t texts = 0;
    for (const VDString& text : bitTexts_)
        texts += text.IsEmpty() ? 0 : 1;
    writer.Put(texts);
    for (std::uint8_t bit = 0; bit < NumStatusBits; ++bit)
        if (!bitTexts_[bit].IsEmpty()) {
            writer.Put(bit);
            writer.PutText(bitTexts_[bit].View());
        }
}

LQResultsTableColumn LQResultsTableColumn::Read(Z4ByteReader& reader)
{
    const auto type = reader.Get<std::int32_t>();
    LQResultsTableColumn column(type, (reader.Get<std::uint8_t>() & WithStatus) != 0);
    column.title_ = reader.GetText();
    column.units_ = reader.GetText();
    column.keyword_ = reader.GetText();
    column.options_.resize(reader.GetCount(SmallestOptionBytes));
    for (LQEnumOption& option : column.options_) {
        option.value = reader.Get<std::int32_t>();
        option.text = reader.GetText();
    }
    const std::uint32_t texts = reader.GetCount(SmallestBitBytes);
    for (std::uint32_t i = 0; i < texts && reader.IsGood(); ++i) {
        const int bit = reader.Get<std::uint8_t>();
        if (!column.SetStatusBitText(bit, reader.GetText()))
            reader.Fail();
    }
    if (!IsType(type))
        reader.Fail();
    return column;
}
