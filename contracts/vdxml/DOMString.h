#pragma once

#include <string>
#include <utility>

/// A text of an XML tree, in UTF-16. `VDUXmlHelper` turns it into a `VDString` and back.
class DOMString
{
public:
    DOMString() = default;
    explicit DOMString(std::u16string text) : text_(std::move(text)) {}

    bool IsEmpty() const noexcept { return text_.empty(); }
    /// In UTF-16 units.
    std::size_t GetLength() const noexcept { return text_.size(); }
    /// Closed by a zero unit; valid until the next change of this object.
    const char16_t* GetText() const noexcept { return text_.c_str(); }
    const std::u16string& Str() const noexcept { return text_; }
    /// Gives the text away with its memory; this object is empty then.
    std::u16string Release() noexcept { return std::exchange(text_, {}); }

    friend bool operator==(const DOMString& left, const DOMString& right) noexcept { return left.text_ == right.text_; }

private:
    std::u16string text_;
};
