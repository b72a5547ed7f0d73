#include "CsvEncoding.h"

#include "vdbase/VDUnicodeString.h"

#include <algorithm>

namespace {

bool IsAscii(std::string_view text)
{
    return std::none_of(text.begin(), text.end(), [](char character) { return (character & 0x80) != 0; });
}

}  // namespace

std::string CsvDecode(const std::string& text, CsvDialect::Encoding encoding)
{
    if (IsAscii(text))
        return text;
    return encoding == CsvDialect::Windows1252 ? VDUnicodeString::FromEncoding(text.c_str()).GetUtf8().Str()
                                               : VFTextAsUtf8(text.c_str()).Str();
}

bool CsvEncode(const std::string& text, CsvDialect::Encoding encoding, std::string& encoded)
{
    encoded = IsAscii(text) ? text : VFTextAsUtf8(text.c_str()).Str();
    if (encoding != CsvDialect::Windows1252 || IsAscii(encoded))
        return true;
    VDUnicodeString unicode;
    VDString narrow;
    if (!VFUtf8ToUnicode(encoded.c_str(), &unicode) || !unicode.GetVDStringViaEncoding(&narrow))
        return false;
    encoded = narrow.Str();
    return true;
}

bool CsvIsOtherThanUtf8(std::string_view text)
{
    VDUnicodeString unicode;
    return !IsAscii(text) && !VFUtf8ToUnicode(std::string(text).c_str(), &unicode);
}
