#include "vdbase/VDUnicodeString.h"

#include <array>
#include <cstdint>

namespace {

constexpr unsigned char FirstSpecial = 0x80;
constexpr unsigned char EndSpecial = 0xA0;

// The code points of 0x80 to 0x9F; every other byte is its own code point.
constexpr std::array<char32_t, EndSpecial - FirstSpecial> VVSpecial = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

bool EncodeByte(char32_t codePoint, char* byte)
{
    if (codePoint < FirstSpecial || (codePoint >= EndSpecial && codePoint <= 0xFF)) {
        *byte = static_cast<char>(codePoint);
        return true;
    }
    for (std::size_t index = 0; index < VVSpecial.size(); ++index) {
        if (VVSpecial[index] == codePoint) {
            *byte = static_cast<char>(FirstSpecial + index);
            return true;
        }
    }
    return false;
}

// What the first byte of a sequence says: how many bytes follow, and the smallest code point that needs so many.
struct Lead
{
    int following;
    char32_t bits;
    char32_t smallest;
};

bool ReadLead(unsigned char byte, Lead* lead)
{
    if (byte < 0x80)
        *lead = {0, byte, 0};
    else if ((byte & 0xE0) == 0xC0)
        *lead = {1, byte & 0x1Fu, 0x80};
    else if ((byte & 0xF0) == 0xE0)
        *lead = {2, byte & 0x0Fu, 0x800};
    else if ((byte & 0xF8) == 0xF0)
        *lead = {3, byte & 0x07u, 0x10000};
    else
        return false;
    return true;
}

}  // namespace

VDUnicodeString VDUnicodeString::FromEncoding(const char* text)
{
    std::u32string codePoints;
    for (; text != nullptr && *text != 0; ++text) {
        const auto byte = static_cast<unsigned char>(*text);
        codePoints += byte >= FirstSpecial && byte < EndSpecial ? VVSpecial[byte - FirstSpecial] : char32_t{byte};
    }
    return VDUnicodeString(std::move(codePoints));
}

bool VDUnicodeString::GetVDStringViaEncoding(VDString* text) const
{
    std::string bytes(codePoints_.size(), 0);
    for (std::size_t index = 0; index < codePoints_.size(); ++index)
        if (!EncodeByte(codePoints_[index], &bytes[index]))
            return false;
    *text = VDString(std::move(bytes));
    return true;
}

VDString VDUnicodeString::GetUtf8() const
{
    std::string bytes;
    const auto follow = [&bytes](char32_t codePoint, int shift) {
        bytes += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    for (const char32_t codePoint : codePoints_) {
        if (codePoint < 0x80) {
            bytes += static_cast<char>(codePoint);
        } else if (codePoint < 0x800) {
            bytes += static_cast<char>(0xC0 | (codePoint >> 6));
            follow(codePoint, 0);
        } else if (codePoint < 0x10000) {
            bytes += static_cast<char>(0xE0 | (codePoint >> 12));
            follow(codePoint, 6);
            follow(codePoint, 0);
        } else {
            bytes += static_cast<char>(0xF0 | (codePoint >> 18));
            follow(codePoint, 12);
            follow(codePoint, 6);
            follow(codePoint, 0);
        }
    }
    return VDString(std::move(bytes));
}

bool VFUtf8ToUnicode(const char* text, VDUnicodeString* out)
{
    std::u32string codePoints;
    while (text != nullptr && *text != 0) {
        Lead lead;
        if (!ReadLead(static_cast<unsigned char>(*text++), &lead))
            return false;
        char32_t codePoint = lead.bits;
        for (int count = 0; count < lead.following; ++count, ++text) {
            const auto byte = static_cast<unsigned char>(*text);
            if ((byte & 0xC0) != 0x80)
                return false;
            codePoint = (codePoint << 6) | (byte & 0x3Fu);
        }
        const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
        if (codePoint < lead.smallest || surrogate || codePoint > 0x10FFFF)
            return false;
        codePoints += codePoint;
    }
    *out = VDUnicodeString(std::move(codePoints));
    return true;
}

VDString VFTextAsUtf8(const char* text)
{
    VDUnicodeString unicode;
    return VFUtf8ToUnicode(text, &unicode) ? VDString(text) : VDUnicodeString::FromEncoding(text).GetUtf8();
}
