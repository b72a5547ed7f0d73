#pragma once

#include "vdbase/VDString.h"

#include <string>

/// A text of Unicode code points: the bridge between UTF-8 and the one-byte encoding of measurement files, which is
/// Windows-1252 (Latin-1 with the typographic signs in 0x80 to 0x9F; its five unused bytes stand for the control codes of
/// the same value, so that every byte has a code point).
class VDBASE_API VDUnicodeString
{
public:
    VDUnicodeString() = default;
    explicit VDUnicodeString(std::u32string codePoints) : codePoints_(std::move(codePoints)) {}
    /// The code points behind the bytes of a text in the one-byte encoding.
    static VDUnicodeString FromEncoding(const char* text);

    const std::u32string& CodePoints() const noexcept { return codePoints_; }
    /// The text in the one-byte encoding. False, and `text` untouched, if it has a code point that the encoding lacks.
    bool GetVDStringViaEncoding(VDString* text) const;
    VDString GetUtf8() const;

private:
    std::u32string codePoints_;
};

/// Reads UTF-8. False, and `out` untouched, for bytes that aren't well-formed UTF-8 (overlong forms, surrogates and code
/// points above U+10FFFF included).
VDBASE_API bool VFUtf8ToUnicode(const char* text, VDUnicodeString* out);

/// A text of either kind as UTF-8: what is well-formed UTF-8 stays as it is, anything else is taken as one-byte encoding.
VDBASE_API VDString VFTextAsUtf8(const char* text);
