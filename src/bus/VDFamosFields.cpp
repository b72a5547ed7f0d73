#include "VDFamosFields.h"

#include "vdbase/VFNumber.h"

#include <algorithm>
#include <cstring>

namespace {

// A longer field is no expression that anybody wrote.
constexpr std::size_t VVLongestExpression = 256;
// So many decimal digits fit every type.
constexpr std::size_t VVSafeDigits = 9;

bool IsBlank(char byte)
{
    return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

// Most fields of a header are a few digits, which need none of the rules that `VFAscToNum` has.
template <class Number>
bool TakeDigits(std::string_view field, Number* value)
{
    if (field.empty() || field.size() > VVSafeDigits)
        return false;
    int number = 0;
    for (const char byte : field) {
        if (byte < '0' || byte > '9')
            return false;
        number = number * 10 + (byte - '0');
    }
    *value = number;
    return true;
}

}  // namespace

VDFamosFields::VDFamosFields(VDIo& file, std::int64_t fileSize)
    : file_(file), fileSize_(fileSize), window_(std::make_unique_for_overwrite<char[]>(WindowSize))
{
}

void VDFamosFields::SetPosition(std::int64_t position)
{
    if (position >= windowStart_ && position - windowStart_ <= windowCount_) {
        next_ = position - windowStart_;
        return;
    }
    windowStart_ = position;
    windowCount_ = 0;
    next_ = 0;
}

bool VDFamosFields::Fill()
{
    windowStart_ += next_;
    next_ = 0;
    windowCount_ = 0;
    std::int64_t got = 0;
    if (windowStart_ >= fileSize_ || !file_.Read(windowStart_, WindowSize, window_.get(), &got))
        return false;
    windowCount_ = static_cast<int>(got);
    return windowCount_ > 0;
}

bool VDFamosFields::ReadByte(char* byte)
{
    if (next_ >= windowCount_ && !Fill())
        return false;
    *byte = window_[static_cast<std::size_t>(next_++)];
    return true;
}

bool VDFamosFields::SkipPast(char byte, std::int64_t limit)
{
    while (GetPosition() < limit && (next_ < windowCount_ || Fill())) {
        const char* const from = window_.get() + next_;
        if (const void* found = std::memchr(from, byte, static_cast<std::size_t>(windowCount_ - next_)); found != nullptr) {
            next_ += static_cast<const char*>(found) - from + 1;
            return true;
        }
        next_ = windowCount_;
    }
    return false;
}

bool VDFamosFields::SkipField()
{
    char byte = 0;
    while (ReadByte(&byte))
        if (byte == '\n' || byte == ';')
            return true;
    return false;
}

bool VDFamosFields::ReadToMark(std::string_view* text)
{
    field_.clear();
    while (next_ < windowCount_ || Fill()) {
        const char* const from = window_.get() + next_;
        const char* const end = window_.get() + windowCount_;
        const char* const mark = std::find_if(from, end, [](char byte) { return byte == ',' || byte == ';'; });
        next_ += mark - from;
        if (mark != end) {
            ++next_;
            *text = std::string_view(from, mark);
            if (!field_.empty())
                *text = field_.append(from, mark);
            return true;
        }
        field_.append(from, mark);
    }
    return false;
}

bool VDFamosFields::ReadField(VDString* text)
{
    std::string_view field;
    if (!ReadToMark(&field))
        return false;
    while (!field.empty() && IsBlank(field.front()))
        field.remove_prefix(1);
    *text = VDString(field);
    return true;
}

// False with an empty `field_` at the end of the file.
template <class Number>
bool VDFamosFields::ReadDecimal(Number* value)
{
    std::string_view field;
    if (!ReadToMark(&field)) {
        field_.clear();
        return false;
    }
    while (!field.empty() && IsBlank(field.front()))
        field.remove_prefix(1);
    while (!field.empty() && IsBlank(field.back()))
        field.remove_suffix(1);
    if (TakeDigits(field, value))
        return true;
    // No number holds a zero byte.
    field_ = field.find('\0') == std::string_view::npos ? std::string(field) : std::string();
    return VFAscToNum(field_.c_str(), value) || (field_.starts_with('+') && VFAscToNum(field_.c_str() + 1, value));
}

bool VDFamosFields::ReadInteger(int* value)
{
    return ReadDecimal(value) || VFHexToNum(field_.c_str(), value);
}

bool VDFamosFields::ReadInteger(std::int64_t* value)
{
    if (ReadDecimal(value))
        return true;
    int bits = 0;
    if (!VFHexToNum(field_.c_str(), &bits))
        return false;
    *value = bits;
    return true;
}

bool VDFamosFields::ReadDouble(double* value)
{
    hasReported_ = false;
    if (ReadDecimal(value))
        return true;
    int bits = 0;
    if (VFHexToNum(field_.c_str(), &bits)) {
        *value = bits;
        return true;
    }
    if (field_.empty() || field_.size() > VVLongestExpression)
        return false;
    if (!calculator_.has_value())
        calculator_.emplace();
    hasReported_ = !calculator_->EvaluateToDouble(field_.c_str(), value);
    return !hasReported_;
}

bool VDFamosFields::ReadString(VDString* text)
{
    std::int64_t length = 0;
    if (!ReadInteger(&length) || length < 0 || length > fileSize_ - GetPosition())
        return false;
    std::string bytes;
    bytes.reserve(static_cast<std::size_t>(length));
    while (length > 0) {
        if (next_ >= windowCount_ && !Fill())
            return false;
        const std::int64_t part = std::min<std::int64_t>(length, windowCount_ - next_);
        bytes.append(window_.get() + next_, static_cast<std::size_t>(part));
        next_ += part;
        length -= part;
    }
    *text = VDString(std::move(bytes));
    std::string_view rest;
    return ReadToMark(&rest);
}
