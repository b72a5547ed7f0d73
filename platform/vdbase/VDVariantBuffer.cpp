// The buffer form of a variant.

#include "vdbase/VDVariant.h"

#include <cmath>
#include <new>
#include <stdexcept>
#include <utility>

namespace {

template <class T>
struct IsNumberBuffer : std::bool_constant<false>
{
};

template <class T>
struct IsNumberBuffer<std::vector<T>> : std::bool_constant<std::is_arithmetic_v<T>>
{
};

template <class T>
bool IsInside(const std::vector<T>& buffer, std::int64_t index)
{
    return index >= 0 && index < static_cast<std::int64_t>(buffer.size());
}

/// Rounds to the nearest whole number for a whole-number type.
/// @return false, and `out` untouched, if the type can't hold the result
template <class T>
bool ConvertNumber(double value, T* out)
{
    if constexpr (std::is_integral_v<T>) {
        // Both limits are powers of two and so exact, unlike the largest long.
        const double limit = std::ldexp(1.0, std::numeric_limits<T>::digits);
        const double rounded = std::round(value);
        if (!(rounded >= -limit && rounded < limit))
            return false;
        *out = static_cast<T>(rounded);
    } else {
        *out = static_cast<T>(value);
    }
    return true;
}

/// Calls `use` with the element if the variant's value is a number buffer and the index lies inside.
template <class Value, class Use>
bool AtNumber(Value& value, std::int64_t index, Use use)
{
    return std::visit(
        [&]<class Buffer>(Buffer& buffer) {
            if constexpr (IsNumberBuffer<std::remove_const_t<Buffer>>::value)
                return IsInside(buffer, index) && use(buffer[static_cast<std::size_t>(index)]);
            else
                return false;
        },
        value);
}

}  // namespace

bool VDVariant::SetBufferSizeAndAllocate(int bufferType, std::int64_t count)
{
    Clear();
    return FitBuffer(bufferType, count);
}

template <class Element>
void VDVariant::Resize(std::size_t count)
{
    if (auto* const buffer = std::get_if<std::vector<Element>>(&value_)) {
        // A larger one is made anew: what the elements held isn't worth a copy.
        if (count > buffer->capacity())
            std::vector<Element>().swap(*buffer);
        buffer->resize(count);
    } else {
        value_.emplace<std::vector<Element>>(count);
    }
}

bool VDVariant::FitBuffer(int bufferType, std::int64_t count)
{
    if (count < 0) {
        Clear();
        return false;
    }
    const auto size = static_cast<std::size_t>(count);
    try {
        switch (bufferType) {
        case VTVariantShortBuffer:
            Resize<short>(size);
            break;
        case VTVariantLongBuffer:
            Resize<std::int32_t>(size);
            break;
        case VTVariantHugeBuffer:
            Resize<std::int64_t>(size);
            break;
        case VTVariantFloatBuffer:
            Resize<float>(size);
            break;
        case VTVariantDoubleBuffer:
            Resize<double>(size);
            break;
        case VTVariantStringBuffer:
            Resize<VDString>(size);
            break;
        default:
            Clear();
            return false;
        }
    } catch (const std::bad_alloc&) {
        Clear();
        return false;
    } catch (const std::length_error&) {
        Clear();
        return false;
    }
    type_ = bufferType;
    return true;
}

std::int64_t VDVariant::GetBufferSize() const noexcept
{
    if (type_ < VTVariantShortBuffer)
        return 0;
    return std::visit(
        []<class Buffer>(const Buffer& buffer) -> std::int64_t {
            if constexpr (IsNumberBuffer<Buffer>::value || std::is_same_v<Buffer, std::vector<VDString>>)
                return static_cast<std::int64_t>(buffer.size());
            else
                return 0;
        },
        value_);
}

bool VDVariant::GetLongAt(std::int64_t index, long* out) const
{
    return AtNumber(value_, index, [&]<class T>(const T& element) {
        if constexpr (std::is_integral_v<T>)
            *out = element;
        return std::is_integral_v<T>;
    });
}

bool VDVariant::SetLongAt(std::int64_t index, long value)
{
    return AtNumber(value_, index, [&]<class T>(T& element) {
        if constexpr (std::is_integral_v<T>) {
            if (!std::in_range<T>(value))
                return false;
            element = static_cast<T>(value);
        }
        return std::is_integral_v<T>;
    });
}

bool VDVariant::GetFloatAt(std::int64_t index, float* out) const
{
    return AtNumber(value_, index, [&](const auto& element) {
        *out = static_cast<float>(element);
        return true;
    });
}

bool VDVariant::GetDoubleAt(std::int64_t index, double* out) const
{
    return AtNumber(value_, index, [&](const auto& element) {
        *out = static_cast<double>(element);
        return true;
    });
}

bool VDVariant::SetDoubleAt(std::int64_t index, double value)
{
    return AtNumber(value_, index, [&](auto& element) { return ConvertNumber(value, &element); });
}

bool VDVariant::GetStringAt(std::int64_t index, VDString* out) const
{
    const auto* texts = std::get_if<std::vector<VDString>>(&value_);
    if (texts == nullptr || !IsInside(*texts, index))
        return false;
    *out = (*texts)[static_cast<std::size_t>(index)];
    return true;
}

bool VDVariant::SetStringAt(std::int64_t index, const char* value)
{
    auto* texts = std::get_if<std::vector<VDString>>(&value_);
    if (texts == nullptr || !IsInside(*texts, index))
        return false;
    (*texts)[static_cast<std::size_t>(index)] = value;
    return true;
}
