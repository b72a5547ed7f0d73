#pragma once

#include "vdarchive/Z4Property.h"

#include <utility>
#include <vector>

/// The C++ type of a property type's value.
template <Z4PropertyType Type>
struct Z4ValueOf;
// clang-format off
template <> struct Z4ValueOf<Z4TypeBoolean> { using type = bool; };
template <> struct Z4ValueOf<Z4TypeUnsChar> { using type = std::uint8_t; };
template <> struct Z4ValueOf<Z4TypeUnsShort> { using type = std::uint16_t; };
template <> struct Z4ValueOf<Z4TypeShort> { using type = std::int16_t; };
template <> struct Z4ValueOf<Z4TypeUnsLong> { using type = std::uint32_t; };
template <> struct Z4ValueOf<Z4TypeLong> { using type = std::int32_t; };
template <> struct Z4ValueOf<Z4TypeUnsHuge> { using type = std::uint64_t; };
template <> struct Z4ValueOf<Z4TypeHuge> { using type = std::int64_t; };
template <> struct Z4ValueOf<Z4TypeFloat> { using type = float; };
template <> struct Z4ValueOf<Z4TypeDouble> { using type = double; };
template <> struct Z4ValueOf<Z4TypeString> { using type = VDString; };
template <> struct Z4ValueOf<Z4TypeText> { using type = VDString; };
template <> struct Z4ValueOf<Z4TypeDoubleList> { using type = std::vector<double>; };
// clang-format on

/// The property of one type. Whoever has seen `GetType` may cast to it with `static_cast`.
template <Z4PropertyType Type>
class VDARCHIVE_API Z4ValueProperty final : public Z4Property
{
public:
    using Value = typename Z4ValueOf<Type>::type;
    static constexpr Z4PropertyType PropertyType = Type;

    /// Undefined.
    explicit Z4ValueProperty(const char* name);
    Z4ValueProperty(const char* name, Value value);

    /// The value, whether it is defined or not; valid until the next change of this object.
    const Value& Get() const { return value_; }
    /// Gives the value and makes the property defined.
    void Set(Value value)
    {
        value_ = std::move(value);
        SetDefined(true);
    }

    std::unique_ptr<Z4Property> Clone() const override;

private:
    VDString WriteValue() const override;
    bool ReadValue(const char* text) override;

    Value value_{};
};

extern template class Z4ValueProperty<Z4TypeBoolean>;
extern template class Z4ValueProperty<Z4TypeUnsChar>;
extern template class Z4ValueProperty<Z4TypeUnsShort>;
extern template class Z4ValueProperty<Z4TypeShort>;
extern template class Z4ValueProperty<Z4TypeUnsLong>;
extern template class Z4ValueProperty<Z4TypeLong>;
extern template class Z4ValueProperty<Z4TypeUnsHuge>;
extern template class Z4ValueProperty<Z4TypeHuge>;
extern template class Z4ValueProperty<Z4TypeFloat>;
extern template class Z4ValueProperty<Z4TypeDouble>;
extern template class Z4ValueProperty<Z4TypeString>;
extern template class Z4ValueProperty<Z4TypeText>;
extern template class Z4ValueProperty<Z4TypeDoubleList>;

using Z4BooleanProperty = Z4ValueProperty<Z4TypeBoolean>;
using Z4UnsCharProperty = Z4ValueProperty<Z4TypeUnsChar>;
using Z4UnsShortProperty = Z4ValueProperty<Z4TypeUnsShort>;
using Z4ShortProperty = Z4ValueProperty<Z4TypeShort>;
using Z4UnsLongProperty = Z4ValueProperty<Z4TypeUnsLong>;
using Z4LongProperty = Z4ValueProperty<Z4TypeLong>;
using Z4UnsHugeProperty = Z4ValueProperty<Z4TypeUnsHuge>;
using Z4HugeProperty = Z4ValueProperty<Z4TypeHuge>;
using Z4FloatProperty = Z4ValueProperty<Z4TypeFloat>;
using Z4DoubleProperty = Z4ValueProperty<Z4TypeDouble>;
using Z4StringProperty = Z4ValueProperty<Z4TypeString>;
using Z4TextProperty = Z4ValueProperty<Z4TypeText>;
using Z4DoubleListProperty = Z4ValueProperty<Z4TypeDoubleList>;
