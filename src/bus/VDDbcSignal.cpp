#include "VDDbcSignal.h"

#include "DbcText.h"
#include "frame/DaxErrorCodes.h"

namespace {

// What closes the fields.
constexpr VDByteSet VVBar("|");
constexpr VDByteSet VVAt("@");
constexpr VDByteSet VVSigns("-+");
constexpr VDByteSet VVOpen("(");
constexpr VDByteSet VVComma(",");
constexpr VDByteSet VVClose(")");
constexpr VDByteSet VVOpenSquare("[");
constexpr VDByteSet VVCloseSquare("]");
constexpr VDByteSet VVQuote("\"");

// "title", "title M" or "title m3". What else follows the title is passed over.
int ReadTitle(std::string_view text, VDDbcSignal* signal)
{
    const std::size_t blank = text.find(' ');
    signal->title = text.substr(0, blank);
    if (blank == std::string_view::npos)
        return 0;
    const VDString mark = VFDbcSqueeze(text.substr(blank + 1));
    signal->isSwitch = mark == "M";
    signal->isMultiplexed = mark[0] == 'm';
    if (signal->isMultiplexed && !VFDbcNumber(mark.View().substr(1), &signal->multiplexId))
        return DaxError::DbcMultiplexId;
    return 0;
}

// The fields behind the colon, each closed by its own mark.
class FieldReader
{
public:
    explicit FieldReader(std::string_view text) : rest_(text) {}

    bool Failed() const { return code_ != 0; }
    int GetCode() const { return code_; }
    std::string_view GetRest() const { return rest_; }

    // The text in front of the mark; empty after a failure.
    std::string_view Text(const VDByteSet& marks)
    {
        if (Failed())
            return {};
        const std::size_t end = marks.FindIn(rest_);
        if (end == rest_.size()) {
            code_ = DaxError::DbcIncompleteSignal;
            return {};
        }
        const std::string_view text = rest_.substr(0, end);
        mark_ = rest_[end];
        rest_.remove_prefix(end + 1);
        return text;
    }

    template <class Number>
    void Value(const VDByteSet& marks, int code, Number* value)
    {
        const std::string_view text = Text(marks);
        if (!Failed() && !VFDbcNumber(text, value))
            code_ = code;
    }

    void ByteOrder(VDDbcSignal* signal)
    {
        const VDString digit = VFDbcSqueeze(Text(VVSigns));
        signal->bigEndian = digit == "1";
        signal->isSigned = mark_ == '-';
        if (!Failed() && !signal->bigEndian && digit != "0")
            code_ = DaxError::DbcByteOrder;
    }

private:
    std::string_view rest_;
    char mark_ = 0;
    int code_ = 0;
};

}  // namespace

int VFReadDbcSignal(std::string_view line, VDDbcSignal* signal)
{
    constexpr std::size_t wordLength = 3;  // of "SG_"
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
        return DaxError::DbcSignalColon;
    const std::string_view left = line.substr(0, colon);
    if (const int code = ReadTitle(VFDbcTrim(left.substr(std::min(wordLength, left.size()))), signal); code != 0)
        return code;

    FieldReader fields(line.substr(colon + 1));
    fields.Value(VVBar, DaxError::DbcStartBit, &signal->startBit);
    fields.Value(VVAt, DaxError::DbcNumBits, &signal->numBits);
    fields.ByteOrder(signal);
    fields.Text(VVOpen);
    fields.Value(VVComma, DaxError::DbcFactor, &signal->factor);
    fields.Value(VVClose, DaxError::DbcOffset, &signal->offset);
    fields.Text(VVOpenSquare);
    fields.Value(VVBar, DaxError::DbcMinimum, &signal->minval);
    fields.Value(VVCloseSquare, DaxError::DbcMaximum, &signal->maxval);
    fields.Text(VVQuote);
    signal->units = VFDbcSqueeze(fields.Text(VVQuote));
    signal->receivers = fields.GetRest();
    return fields.GetCode();
}
