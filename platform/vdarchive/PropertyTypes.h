#pragma once

#include "vdarchive/Z4ValueProperty.h"

#include <type_traits>

/// Goes through a list of property types.
template <Z4PropertyType... Types>
struct PropertyTypeList
{
    /// Calls `call.operator()<Type>()` for the one of the list that equals the type; not at all for a number that is none.
    template <class Call>
    static void With(Z4PropertyType type, Call call)
    {
        const auto visit = [&]<Z4PropertyType Type>() {
            if (type == Type)
                call.template operator()<Type>();
        };
        (visit.template operator()<Types>(), ...);
    }

    /// Calls with the property as what its type makes it.
    template <class Property, class Call>
    static void Visit(Property& property, Call call)
    {
        With(property.GetType(), [&]<Z4PropertyType Type>() {
            using Typed = std::conditional_t<std::is_const_v<Property>, const Z4ValueProperty<Type>, Z4ValueProperty<Type>>;
            call(static_cast<Typed&>(property));
        });
    }
};

using AllPropertyTypes =
    PropertyTypeList<Z4TypeBoolean, Z4TypeUnsChar, Z4TypeUnsShort, Z4TypeShort, Z4TypeUnsLong, Z4TypeLong, Z4TypeUnsHuge,
                     Z4TypeHuge, Z4TypeFloat, Z4TypeDouble, Z4TypeString, Z4TypeText, Z4TypeDoubleList>;
