#include "VDDomAccess.h"
#include "vdxml/VDUXmlHelper.h"

#include <array>
#include <string>
#include <string_view>

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool VFIsXmlCharacter(char32_t character)
{
    if (character < 0x20)
        return character == '\t' || character == '\n' || character == '\r';
    return character < 0xD800 || (character > 0xDFFF && character < 0xFFFE) || (character > 0xFFFF && character <= 0x10FFFF);
}

// Takes one character off the front of a text that isn't empty.
char32_t VFTakeUtf8(std::string_view* text)
{
    static constexpr std::array<char32_t, 5> Smallest = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text->front());
    if (lead < 0x80) {
        text->remove_prefix(1);
        return lead;
    }
    const std::size_t length = lead < 0xC0 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF8 ? 4 : 0;
    char32_t character = lead & (0x7Fu >> length);
    bool valid = length != 0 && length <= text->size();
    for (std::size_t at = 1; valid && at < length; ++at) {
        const auto byte = static_cast<unsigned char>((*text)[at]);
        valid = (byte & 0xC0) == 0x80;
        character = character << 6 | (byte & 0x3Fu);
    }
    valid = valid && character >= Smallest[length] && character <= 0x10FFFF && !(character >= 0xD800 && character <= 0xDFFF);
    text->remove_prefix(valid ? length : 1);
    return valid ? character : lead;
}

/// @return behind what was put
char16_t* VFPutUtf16(char16_t* to, char32_t character)
{
    if (character < 0x10000) {
        *to++ = static_cast<char16_t>(character);
        return to;
    }
    *to++ = static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
    *to++ = static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    return to;
}

char32_t VFTakeUtf16(std::u16string_view* text)
{
    const char32_t first = text->front();
    text->remove_prefix(1);
    if (first < 0xD800 || first > 0xDFFF)
        return first;
    if (first > 0xDBFF || text->empty() || text->front() < 0xDC00 || text->front() > 0xDFFF)
        return Replacement;
    const char32_t second = text->front();
    text->remove_prefix(1);
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
}

void VFAppendUtf8(std::string* text, char32_t character)
{
    const auto put = [text](char32_t byte) { *text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80) {
        put(character);
        return;
    }
    if (character < 0x800) {
        put(0xC0 | character >> 6);
    } else {
        if (character < 0x10000) {
            put(0xE0 | character >> 12);
        } else {
            put(0xF0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3F));
        }
        put(0x80 | (character >> 6 & 0x3F));
    }
    put(0x80 | (character & 0x3F));
}

VDString VFToUtf8(std::u16string_view text)
{
    std::string result;
    result.reserve(text.size());
    while (!text.empty())
        VFAppendUtf8(&result, VFTakeUtf16(&text));
    return VDString(std::move(result));
}

}  // namespace

DOMString VDUXmlHelper::VDToDOMString(const char* text)
{
    DOMString result;
    VDToDOMString(text, &result);
    return result;
}

bool VDUXmlHelper::VDToDOMString(const char* text, DOMString* result)
{
    std::string_view rest = text == nullptr ? "" : text;
    // The memory of the result serves again. No character takes more units than bytes.
    std::u16string units = result->Release();
    units.resize(rest.size());
    char16_t* to = units.data();
    bool isExact = true;
    while (!rest.empty()) {
        const char32_t character = VFTakeUtf8(&rest);
        const bool isAllowed = VFIsXmlCharacter(character);
        isExact = isExact && isAllowed;
        to = VFPutUtf16(to, isAllowed ? character : Replacement);
    }
    units.resize(static_cast<std::size_t>(to - units.data()));
    *result = DOMString(std::move(units));
    return isExact;
}

VDString VDUXmlHelper::DOMToVDString(const DOMString& text)
{
    return VFToUtf8(text.Str());
}

VDString VFXercesText(const XMLCh* text)
{
    return text == nullptr ? VDString() : VFToUtf8(text);
}
