#include "CanLog.h"

#include "CanDatabase.h"

#include <charconv>

namespace {

constexpr std::size_t VVStandardDigits = 3;
constexpr std::size_t VVExtendedDigits = 8;
constexpr unsigned long VVErrorBit = 0x20000000;
constexpr unsigned long VVLastId = 0x3FFFFFFF;
constexpr std::size_t VVClassicBytes = 8;

int HexDigit(char byte)
{
    if (byte >= '0' && byte <= '9')
        return byte - '0';
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The next word of a line, which is taken off it.
std::string_view TakeWord(std::string_view* line)
{
    constexpr std::string_view blanks = " \t";
    line->remove_prefix(std::min(line->find_first_not_of(blanks), line->size()));
    const std::string_view word = line->substr(0, line->find_first_of(blanks));
    line->remove_prefix(word.size());
    return word;
}

bool IsDigits(std::string_view text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Reads a time such as "0012.5" without the zeros that no number begins with.
bool ReadSeconds(std::string_view text, VDCanLogFrame* frame)
{
    const std::size_t point = text.find('.');
    if (!IsDigits(text.substr(0, point)) || (point != std::string_view::npos && !IsDigits(text.substr(point + 1))))
        return false;
    const std::size_t last = std::min(point, text.size()) - 1;  // a single zero stays
    text.remove_prefix(std::min(text.find_first_not_of('0'), last));
    frame->time = text;
    return true;
}

/// Takes the time off a line if one stands in front: "(seconds)" or "(date time)". False if it can't be read.
bool TakeTime(std::string_view* line, VDCanLogFrame* frame)
{
    frame->time = {};
    frame->timeIsDate = false;
    std::string_view rest = *line;
    if (!TakeWord(&rest).starts_with('('))
        return true;
    const std::size_t open = line->find('(') + 1;
    const std::size_t close = line->find(')', open);
    if (close == std::string_view::npos)
        return false;
    const std::string_view text = line->substr(open, close - open);
    line->remove_prefix(close + 1);
    if (ReadSeconds(text, frame))
        return true;
    frame->timeIsDate = text.find_first_not_of("0123456789-:. ") == std::string_view::npos && text.size() >= 10;
    frame->time = text;
    return frame->timeIsDate;
}

bool ReadId(std::string_view digits, VDCanLogFrame* frame)
{
    if (digits.size() != VVStandardDigits && digits.size() != VVExtendedDigits)
        return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), frame->id, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || frame->id > VVLastId)
        return false;
    frame->isError = (frame->id & VVErrorBit) != 0;
    if (digits.size() == VVExtendedDigits)
        frame->id |= VDCanDatabase::ExtendedBit;
    return true;
}

/// What stands behind "R": nothing, or a length, or that and a raw length.
bool IsRemoteTail(std::string_view text)
{
    const auto isLength = [](std::string_view digit) { return digit.size() == 1 && HexDigit(digit.front()) >= 0; };
    const std::size_t raw = text.find('_');
    return (text.empty() || isLength(text.substr(0, raw))) &&
           (raw == std::string_view::npos || isLength(text.substr(raw + 1)));
}

/// Reads what stands behind the "#" of a log file's frame.
bool ReadLogData(std::string_view text, VDCanLogFrame* frame)
{
    if (text.starts_with('R') || text.starts_with('r')) {
        frame->isRemote = true;
        return IsRemoteTail(text.substr(1));
    }
    if (text.starts_with('#')) {
        if (text.size() < 2 || HexDigit(text[1]) < 0)
            return false;
        return VFReadHexBytes(text.substr(2), frame);
    }
    // A raw length says more than eight, which is what the bytes are then.
    const std::size_t raw = text.find('_');
    if (!VFReadHexBytes(text.substr(0, raw), frame))
        return false;
    return raw == std::string_view::npos ||
           (text.size() == raw + 2 && HexDigit(text.back()) > static_cast<int>(VVClassicBytes) &&
            frame->numBytes == VVClassicBytes);
}

/// Reads the length of a frame on the screen: "[8]", "[08]" of a CAN FD frame, or "{9}" for a raw length.
bool ReadScreenLength(std::string_view word, std::size_t* length)
{
    const bool raw = word.starts_with('{') && word.ends_with('}');
    if (word.size() < 3 || !(raw || (word.starts_with('[') && word.ends_with(']'))))
        return false;
    const char* const last = word.data() + word.size() - 1;
    const auto [end, error] = std::from_chars(word.data() + 1, last, *length, raw ? 16 : 10);
    if (error != std::errc() || end != last)
        return false;
    if (raw)
        *length = std::min(*length, VVClassicBytes);
    return *length <= VDCanLogFrame::MaxBytes;
}

/// Reads what stands behind the id of a frame on the screen.
bool ReadScreenData(std::string_view text, VDCanLogFrame* frame)
{
    std::size_t length = 0;
    if (!ReadScreenLength(TakeWord(&text), &length))
        return false;
    for (std::size_t index = 0; index <= length; ++index) {
        const std::string_view word = TakeWord(&text);
        if (index == 0 && word == "remote") {
            frame->isRemote = true;
            return true;
        }
        if (index == length)
            break;
        if (word.size() != 2 || HexDigit(word[0]) < 0 || HexDigit(word[1]) < 0)
            return false;
        frame->data[frame->numBytes++] = static_cast<unsigned char>(HexDigit(word[0]) * 16 + HexDigit(word[1]));
    }
    return true;
}

}  // namespace

bool VFReadHexBytes(std::string_view text, VDCanLogFrame* frame)
{
    frame->numBytes = 0;
    while (!text.empty()) {
        if (text.front() == '.' || text.front() == ' ') {
            text.remove_prefix(1);
            continue;
        }
        const int high = HexDigit(text.front());
        const int low = text.size() > 1 ? HexDigit(text[1]) : -1;
        if (high < 0 || low < 0 || frame->numBytes == VDCanLogFrame::MaxBytes)
            return false;
        frame->data[frame->numBytes++] = static_cast<unsigned char>(high * 16 + low);
        text.remove_prefix(2);
    }
    return true;
}

bool VFReadCanLogLine(std::string_view line, VDCanLogFrame* frame)
{
    frame->isRemote = false;
    frame->numBytes = 0;
    if (!TakeTime(&line, frame) || TakeWord(&line).empty())
        return false;
    std::string_view word = TakeWord(&line);
    // The screen may show the direction and two flags in front of the id.
    if (word == "RX" || word == "TX") {
        TakeWord(&line);
        TakeWord(&line);
        word = TakeWord(&line);
    }
    const std::size_t hash = word.find('#');
    if (!ReadId(word.substr(0, hash), frame))
        return false;
    return hash == std::string_view::npos ? ReadScreenData(line, frame) : ReadLogData(word.substr(hash + 1), frame);
}
