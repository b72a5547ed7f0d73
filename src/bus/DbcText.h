#pragma once

#include "vdbase/VFNumber.h"

#include <array>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

/// Texts of a database line, as views into it: reading a line makes no copies. The functions do on a view what `VFSqueeze`
/// and `VFAscToNum` do on a string.

/// `VFSqueeze` with mode 3.
std::string_view VFDbcTrim(std::string_view text);
/// `VFSqueeze` with mode 8.
VDString VFDbcSqueeze(std::string_view text);

/// A set of bytes to look for. Faster on short texts than what the string library offers, which asks anew for each byte.
class VDByteSet
{
public:
    constexpr explicit VDByteSet(std::string_view bytes)
    {
        for (const char byte : bytes)
            has_[static_cast<unsigned char>(byte)] = true;
    }
    /// Position of the first byte of the text that is in the set; the text's size if there is none.
    constexpr std::size_t FindIn(std::string_view text) const
    {
        std::size_t position = 0;
        while (position < text.size() && !has_[static_cast<unsigned char>(text[position])])
            ++position;
        return position;
    }

private:
    std::array<bool, 256> has_{};
};

/// `VFAscToNum`; a text with a zero byte in it is no number.
template <class Number>
bool VFDbcNumber(std::string_view text, Number* value)
{
    constexpr std::size_t usual = 48;
    if (text.find('\0') != std::string_view::npos)
        return false;
    if (text.size() >= usual)
        return VFAscToNum(std::string(text).c_str(), value);
    char buffer[usual];
    buffer[text.copy(buffer, usual - 1)] = 0;
    return VFAscToNum(buffer, value);
}

/// Cuts a line into tokens. Blanks, ":" and ";" separate; a double quote begins and ends a token that keeps them.
class VDDbcTokens
{
public:
    /// Begins with a line, which must outlive the tokens, and reads its first token alone; empty if it has none.
    std::string_view Start(std::string_view line);
    /// All tokens of the line. Valid until the next `Start`.
    const std::vector<std::string_view>& ReadAll();

private:
    bool ReadOne();

    std::string_view rest_;
    std::vector<std::string_view> tokens_;
    std::deque<std::string> joined_;
};
