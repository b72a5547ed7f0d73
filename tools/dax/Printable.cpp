#include "Printable.h"

#include "vdbase/VDUnicodeString.h"

#include <algorithm>
#include <cstdio>

namespace {

constexpr const char* VVReplacement = "\xef\xbf\xbd";

bool VFIsControl(char32_t code)
{
    return code < 0x20 || (code >= 0x7f && code < 0xa0);
}

bool VFIsLineBreak(char32_t code)
{
    return (code >= '\t' && code <= '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

/// Embeddings, overrides and isolates, which turn the direction of writing of what follows.
bool VFTurnsDirection(char32_t code)
{
    return (code >= 0x202a && code <= 0x202e) || (code >= 0x2066 && code <= 0x2069);
}

bool VFSteersTerminal(char32_t code)
{
    return VFIsControl(code) || VFIsLineBreak(code) || VFTurnsDirection(code);
}

/// Takes a character off the front of well-formed UTF-8.
/// @param bytes  gets its bytes
char32_t VFTakeCharacter(std::string_view* text, std::string_view* bytes)
{
    const auto lead = static_cast<unsigned char>(text->front());
    std::size_t size = 1;
    if (lead >= 0xc0)
        size = lead >= 0xf0 ? 4 : lead >= 0xe0 ? 3 : 2;
    char32_t code = size == 1 ? lead : lead & (0xffU >> (size + 1));
    for (std::size_t at = 1; at < size; ++at)
        code = code << 6 | (static_cast<unsigned char>((*text)[at]) & 0x3fU);
    *bytes = text->substr(0, size);
    text->remove_prefix(size);
    return code;
}

/// Whether a text may hold something to look at closely: most are plain.
bool VFIsPlain(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char byte) { return byte >= 0x20 && byte < 0x7f; });
}

}  // namespace

std::string VFAsUtf8(std::string_view text)
{
    std::string whole(text);
    if (VFIsPlain(text))
        return whole;
    // The conversion ends at a zero byte.
    std::replace(whole.begin(), whole.end(), '\0', '\x01');
    return VFTextAsUtf8(whole.c_str()).Str();
}

std::string VFPrintable(std::string_view text)
{
    const std::string utf8 = VFAsUtf8(text);
    if (VFIsPlain(utf8))
        return utf8;
    std::string printable;
    std::string_view rest = utf8;
    std::string_view bytes;
    while (!rest.empty()) {
        const char32_t code = VFTakeCharacter(&rest, &bytes);
        if (VFIsLineBreak(code))
            printable += ' ';
        else
            printable += VFSteersTerminal(code) ? VVReplacement : bytes;
    }
    return printable;
}

std::string VFCsvText(std::string_view text)
{
    const std::string printable = VFPrintable(text);
    if (printable.find_first_of(",\"") == std::string::npos)
        return printable;
    std::string quoted = "\"";
    for (const char byte : printable) {
        if (byte == '"')
            quoted += '"';
        quoted += byte;
    }
    return quoted + '"';
}

namespace {

/// @param format  of the escape of a character by its code
std::string VFEscapeDocument(std::string_view document, const char* format)
{
    std::string escaped;
    escaped.reserve(document.size());
    std::string_view bytes;
    while (!document.empty()) {
        const char32_t code = VFTakeCharacter(&document, &bytes);
        // What stands below 0x20 is the document's own layout; in its texts that is escaped already.
        if (code >= 0x7f && VFSteersTerminal(code)) {
            char text[16];
            std::snprintf(text, sizeof text, format, static_cast<unsigned>(code));
            escaped += text;
        } else {
            escaped += bytes;
        }
    }
    return escaped;
}

}  // namespace

std::string VFEscapeJson(std::string_view document)
{
    return VFEscapeDocument(document, "\\u%04x");
}

std::string VFEscapeXml(std::string_view document)
{
    return VFEscapeDocument(document, "&#x%x;");
}

std::size_t VFTextWidth(std::string_view printable)
{
    // All bytes but those that continue a character.
    return static_cast<std::size_t>(
        std::count_if(printable.begin(), printable.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
}

std::string VFWithUnits(const std::string& title, const std::string& units)
{
    return units.empty() ? title : title + " [" + units + "]";
}
