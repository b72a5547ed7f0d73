#include "CanLog.h"

#include "CanDatabase.h"

#include <charconv>

namespace {

constexpr std::size_t VVStandardDigits = 3;
constexpr std::size_t VVExtendedDigits = 8;
constexpr unsigned long VVLastExtendedId = 0x1FFFFFFF;

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

bool IsTime(std::string_view text)
{
    const std::size_t point = text.find('.');
    const std::string_view fraction = point == std::string_view::npos ? "0" : text.substr(point + 1);
    const auto isDigits = [](std::string_view part) {
        return !part.empty() && part.find_first_not_of("0123456789") == std::string_view::npos;
    };
    return isDigits(text.substr(0, point)) && isDigits(fraction);
}

bool ReadId(std::string_view digits, VDCanLogFrame* frame)
{
    if (digits.size() != VVStandardDigits && digits.size() != VVExtendedDigits)
        return false;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), frame->id, 16);
    if (error != std::errc() || end != digits.data() + digits.size() || frame->id > VVLastExtendedId)
        return false;
    if (digits.size() == VVExtendedDigits)
        frame->id |= VDCanDatabase::ExtendedBit;
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
    const std::string_view time = TakeWord(&line);
    if (time.size() < 3 || time.front() != '(' || time.back() != ')' || TakeWord(&line).empty())
        return false;
    frame->time = time.substr(1, time.size() - 2);
    std::string_view text = TakeWord(&line);
    const std::size_t hash = text.find('#');
    if (!IsTime(frame->time) || hash == std::string_view::npos || !ReadId(text.substr(0, hash), frame))
        return false;
    text.remove_prefix(hash + 1);
    frame->isRemote = !text.empty() && (text.front() == 'R' || text.front() == 'r');
    frame->numBytes = 0;
    if (frame->isRemote)
        return true;
    if (!text.empty() && text.front() == '#') {
        if (text.size() < 2 || HexDigit(text[1]) < 0)
            return false;
        text.remove_prefix(2);
    }
    return VFReadHexBytes(text, frame);
}
