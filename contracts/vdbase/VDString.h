#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstddef>
#include <string>
#include <string_view>

/// A byte string with value semantics. Positions and lengths count bytes; a position or length outside the text is cut to
/// what there is, so that no operation faults. A null `const char*` counts as the empty text.
class VDBASE_API VDString
{
public:
    VDString() = default;
    VDString(const char* text);
    VDString(const char* text, int length);
    VDString(const std::string& text);
    VDString(std::string&& text) noexcept;
    explicit VDString(std::string_view text);

    VDString& operator=(const char* text);

    /// The text as a C string; valid until the next change of this object.
    operator const char*() const noexcept { return text_.c_str(); }
    const char* c_str() const noexcept { return text_.c_str(); }
    const std::string& Str() const noexcept { return text_; }
    std::string_view View() const noexcept { return text_; }

    int GetLength() const noexcept { return static_cast<int>(text_.size()); }
    bool IsEmpty() const noexcept { return text_.empty(); }
    void Empty() noexcept { text_.clear(); }
    void Reserve(int length);

    /// The byte at a position; 0 outside the text.
    char operator[](int position) const noexcept;
    /// Replaces the byte at a position; nothing happens outside the text.
    void SetAt(int position, char value) noexcept;

    VDString& operator+=(const VDString& other);
    VDString& operator+=(const char* other);
    VDString& operator+=(char other);

    VDString Left(int count) const;
    VDString Right(int count) const;
    VDString Mid(int first) const;
    VDString Mid(int first, int count) const;

    /// First position of the text or byte from `start` on; -1 if absent.
    int Find(const char* what, int start = 0) const noexcept;
    int Find(char what, int start = 0) const noexcept;
    /// Last position of the byte; -1 if absent.
    int ReverseFind(char what) const noexcept;
    /// Replaces each byte `from` by `to`; gives the number of replacements.
    int Replace(char from, char to) noexcept;

    /// Below 0, 0 or above 0, as `strcmp`.
    int Compare(const char* other) const noexcept;
    /// The same without regard to the case of ASCII letters.
    int CompareNoCase(const char* other) const noexcept;

    /// Replaces the text with printf output. The arguments may point into this object's own text.
    void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
    /// `Format` for a format that is only known at run time, such as a catalogue text.
    void FormatRuntime(const char* format, ...);

    void MakeUpper() noexcept;
    void MakeLower() noexcept;
    /// White space is blank, tab, carriage return, line feed, vertical tab and form feed.
    void TrimLeft();
    void TrimRight();
    void Trim();

private:
    std::string text_;
};

VDBASE_API VDString operator+(const VDString& left, const VDString& right);
VDBASE_API VDString operator+(const VDString& left, const char* right);
VDBASE_API VDString operator+(const char* left, const VDString& right);
VDBASE_API VDString operator+(const VDString& left, char right);

inline bool operator==(const VDString& left, const VDString& right) noexcept { return left.View() == right.View(); }
inline bool operator==(const VDString& left, const char* right) noexcept { return left.Compare(right) == 0; }
inline bool operator!=(const VDString& left, const VDString& right) noexcept { return !(left == right); }
inline bool operator!=(const VDString& left, const char* right) noexcept { return !(left == right); }
inline bool operator<(const VDString& left, const VDString& right) noexcept { return left.View() < right.View(); }
