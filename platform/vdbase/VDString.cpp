#include "vdbase/VDString.h"

#include "AsciiText.h"
#include "FormatText.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>

namespace {

std::string_view ViewOf(const char* text) noexcept
{
    return text == nullptr ? std::string_view() : std::string_view(text);
}

std::string Joined(std::string_view left, std::string_view right)
{
    std::string text;
    text.reserve(left.size() + right.size());
    text.append(left);
    text.append(right);
    return text;
}

}  // namespace

VDString::VDString(const char* text) : text_(ViewOf(text)) {}

VDString::VDString(const char* text, int length)
{
    if (text != nullptr && length > 0)
        text_.assign(text, strnlen(text, static_cast<std::size_t>(length)));
}

VDString::VDString(const std::string& text) : text_(text) {}

VDString::VDString(std::string&& text) noexcept : text_(std::move(text)) {}

VDString::VDString(std::string_view text) : text_(text) {}

VDString& VDString::operator=(const char* text)
{
    // assign() copes with a pointer into the own text.
    text_.assign(ViewOf(text));
    return *this;
}

void VDString::Reserve(int length)
{
    if (length > 0)
        text_.reserve(static_cast<std::size_t>(length));
}

char VDString::operator[](int position) const noexcept
{
    return position >= 0 && position < GetLength() ? text_[static_cast<std::size_t>(position)] : '\0';
}

void VDString::SetAt(int position, char value) noexcept
{
    if (position >= 0 && position < GetLength())
        text_[static_cast<std::size_t>(position)] = value;
}

VDString& VDString::operator+=(const VDString& other)
{
    text_.append(other.text_);
    return *this;
}

VDString& VDString::operator+=(const char* other)
{
    text_.append(ViewOf(other));
    return *this;
}

VDString& VDString::operator+=(char other)
{
    text_.push_back(other);
    return *this;
}

VDString VDString::Left(int count) const
{
    return Mid(0, count);
}

VDString VDString::Right(int count) const
{
    return Mid(GetLength() - std::clamp(count, 0, GetLength()));
}

VDString VDString::Mid(int first) const
{
    return Mid(first, GetLength());
}

VDString VDString::Mid(int first, int count) const
{
    const int start = std::clamp(first, 0, GetLength());
    const int length = std::clamp(count, 0, GetLength() - start);
    return VDString(View().substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length)));
}

int VDString::Find(const char* what, int start) const noexcept
{
    const std::size_t position = View().find(ViewOf(what), static_cast<std::size_t>(std::max(start, 0)));
    return position == std::string_view::npos ? -1 : static_cast<int>(position);
}

int VDString::Find(char what, int start) const noexcept
{
    const std::size_t position = View().find(what, static_cast<std::size_t>(std::max(start, 0)));
    return position == std::string_view::npos ? -1 : static_cast<int>(position);
}

int VDString::ReverseFind(char what) const noexcept
{
    const std::size_t position = View().rfind(what);
    return position == std::string_view::npos ? -1 : static_cast<int>(position);
}

int VDString::Replace(char from, char to) noexcept
{
    int count = 0;
    for (char& byte : text_)
        if (byte == from) {
            byte = to;
            ++count;
        }
    return count;
}

int VDString::Compare(const char* other) const noexcept
{
    return View().compare(ViewOf(other));
}

int VDString::CompareNoCase(const char* other) const noexcept
{
    return VFCompareNoCase(View(), ViewOf(other));
}

void VDString::Format(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    text_ = VFFormatArguments(format, arguments);
    va_end(arguments);
}

void VDString::FormatRuntime(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    text_ = VFFormatArguments(format, arguments);
    va_end(arguments);
}

void VDString::MakeUpper() noexcept
{
    for (char& byte : text_)
        byte = VFAsciiUpper(byte);
}

void VDString::MakeLower() noexcept
{
    for (char& byte : text_)
        byte = VFAsciiLower(byte);
}

void VDString::TrimLeft()
{
    text_.erase(0, text_.find_first_not_of(VVWhiteSpace));
}

void VDString::TrimRight()
{
    text_.erase(text_.find_last_not_of(VVWhiteSpace) + 1);
}

void VDString::Trim()
{
    TrimRight();
    TrimLeft();
}

VDString operator+(const VDString& left, const VDString& right)
{
    return Joined(left.View(), right.View());
}

VDString operator+(const VDString& left, const char* right)
{
    return Joined(left.View(), ViewOf(right));
}

VDString operator+(const char* left, const VDString& right)
{
    return Joined(ViewOf(left), right.View());
}

VDString operator+(const VDString& left, char right)
{
    return Joined(left.View(), std::string_view(&right, 1));
}
