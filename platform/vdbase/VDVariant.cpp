#include "vdbase/VDVariant.h"

#include "vdbase/VFNumber.h"

#include <charconv>
#include <compare>
#include <new>
#include <stdexcept>
#include <utility>

VDVariant::VDVariant(bool value) : type_(VTVariantBoolean), value_(value) {}

VDVariant::VDVariant(long value) : type_(VTVariantLong), value_(value) {}

VDVariant::VDVariant(float value) : type_(VTVariantFloat), value_(value) {}

VDVariant::VDVariant(double value) : type_(VTVariantDouble), value_(value) {}

VDVariant::VDVariant(const char* value) : type_(VTVariantString), value_(VDString(value)) {}

VDVariant::VDVariant(const VDString& value) : type_(VTVariantString), value_(value) {}

VDVariant::VDVariant(void* value) : type_(VTVariantPointer), value_(value) {}

VDVariant VDVariant::FromHuge(std::int64_t value)
{
    VDVariant variant;
    variant.SetHuge(value);
    return variant;
}

VDVariant VDVariant::FromList(std::initializer_list<VDVariant> items)
{
    VDVariant list;
    for (const VDVariant& item : items)
        list.AppendItem(item);
    return list;
}

void VDVariant::Clear()
{
    Assign(VTVariantNull, std::monostate());
}

template <class T>
void VDVariant::Assign(int type, T value)
{
    value_.emplace<T>(std::move(value));
    type_ = type;
}

void VDVariant::SetBoolean(bool value)
{
    Assign(VTVariantBoolean, value);
}

void VDVariant::SetByte(signed char value)
{
    Assign(VTVariantByte, value);
}

void VDVariant::SetShort(short value)
{
    Assign(VTVariantShort, value);
}

void VDVariant::SetLong(long value)
{
    Assign(VTVariantLong, value);
}

void VDVariant::SetUnsignedLong(unsigned long value)
{
    Assign(VTVariantUnsignedLong, value);
}

void VDVariant::SetHuge(std::int64_t value)
{
    Assign<long>(VTVariantHuge, value);
}

void VDVariant::SetFloat(float value)
{
    Assign(VTVariantFloat, value);
}

void VDVariant::SetDouble(double value)
{
    Assign(VTVariantDouble, value);
}

void VDVariant::SetString(const char* value)
{
    Assign(VTVariantString, VDString(value));
}

void VDVariant::SetPointer(void* value)
{
    Assign(VTVariantPointer, value);
}

void VDVariant::SetNamedPointer(const char* name, void* value)
{
    Assign(VTVariantNamedPointer, NamedPointer{name, value});
}

template <class T>
bool VDVariant::Fetch(int type, T* out) const
{
    if (type_ != type)
        return false;
    *out = *std::get_if<T>(&value_);
    return true;
}

bool VDVariant::GetBoolean(bool* out) const
{
    return Fetch(VTVariantBoolean, out);
}

bool VDVariant::GetByte(signed char* out) const
{
    return Fetch(VTVariantByte, out);
}

bool VDVariant::GetShort(short* out) const
{
    return Fetch(VTVariantShort, out);
}

bool VDVariant::GetLong(long* out) const
{
    return Fetch(VTVariantLong, out);
}

bool VDVariant::GetUnsignedLong(unsigned long* out) const
{
    return Fetch(VTVariantUnsignedLong, out);
}

bool VDVariant::GetHuge(std::int64_t* out) const
{
    return Fetch<long>(VTVariantHuge, out);
}

bool VDVariant::GetFloat(float* out) const
{
    return Fetch(VTVariantFloat, out);
}

bool VDVariant::GetDouble(double* out) const
{
    return Fetch(VTVariantDouble, out);
}

bool VDVariant::GetString(VDString* out) const
{
    return Fetch(VTVariantString, out);
}

bool VDVariant::GetPointer(void** out) const
{
    return Fetch(VTVariantPointer, out);
}

bool VDVariant::GetNamedPointer(VDString* name, void** out) const
{
    const NamedPointer* named = std::get_if<NamedPointer>(&value_);
    if (named == nullptr)
        return false;
    *name = named->name;
    *out = named->pointer;
    return true;
}

bool VDVariant::ConvertToDouble(double* out) const
{
    return std::visit(
        [&]<class T>(const T& value) {
            if constexpr (std::is_arithmetic_v<T>)
                *out = static_cast<double>(value);
            return std::is_arithmetic_v<T>;
        },
        value_);
}

bool VDVariant::ConvertToString(VDString* out) const
{
    return std::visit(
        [&]<class T>(const T& value) {
            if constexpr (std::is_same_v<T, VDString>) {
                *out = value;
            } else if constexpr (std::is_same_v<T, bool>) {
                *out = value ? "True" : "False";
            } else if constexpr (std::is_arithmetic_v<T>) {
                // The shortest text that reads back as the same value.
                char buffer[32];
                const auto end = std::to_chars(std::begin(buffer), std::end(buffer), value).ptr;
                *out = VDString(std::string_view(buffer, static_cast<std::size_t>(end - buffer)));
            }
            return std::is_same_v<T, VDString> || std::is_arithmetic_v<T>;
        },
        value_);
}

void VDVariant::AppendItem(VDVariant item)
{
    if (type_ != VTVariantList)
        Assign(VTVariantList, List());
    std::get<List>(value_).push_back(std::move(item));
}

int VDVariant::GetNumItems() const noexcept
{
    const List* list = std::get_if<List>(&value_);
    return list == nullptr ? 0 : static_cast<int>(list->size());
}

const VDVariant& VDVariant::operator[](int index) const
{
    static const VDVariant null;
    const List* list = std::get_if<List>(&value_);
    return list == nullptr || index < 0 || index >= GetNumItems() ? null : (*list)[static_cast<std::size_t>(index)];
}

namespace {

/// A number (not a boolean) in a type that holds every 64-bit integer and every double exactly.
template <class Value>
bool NumberOf(const Value& variant, long double* number)
{
    return std::visit(
        [&]<class T>(const T& value) {
            constexpr bool isNumber = std::is_arithmetic_v<T> && !std::is_same_v<T, bool>;
            if constexpr (isNumber)
                *number = static_cast<long double>(value);
            return isNumber;
        },
        variant);
}

}  // namespace

bool VDVariant::operator==(const VDVariant& other) const
{
    long double left = 0;
    long double right = 0;
    if (NumberOf(value_, &left) && NumberOf(other.value_, &right))
        return left == right;
    return type_ == other.type_ && value_ == other.value_;
}

bool VDVariant::operator>(const VDVariant& other) const
{
    long double left = 0;
    long double right = 0;
    if (NumberOf(value_, &left) && NumberOf(other.value_, &right))
        return left > right;
    return type_ == VTVariantString && other.type_ == VTVariantString &&
           std::get<VDString>(other.value_) < std::get<VDString>(value_);
}
