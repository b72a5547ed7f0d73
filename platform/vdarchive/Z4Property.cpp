#include "vdarchive/Z4Property.h"

#include "vdarchive/Z4ValueProperty.h"

namespace {

/// Makes the property whose type is the given one out of a list of types.
template <Z4PropertyType... Types>
std::unique_ptr<Z4Property> CreateOneOf(Z4PropertyType type, const char* name)
{
    std::unique_ptr<Z4Property> property;
    const auto make = [&]<Z4PropertyType Type>() {
        if (type == Type)
            property = std::make_unique<Z4ValueProperty<Type>>(name);
    };
    (make.template operator()<Types>(), ...);
    return property;
}

}  // namespace

std::unique_ptr<Z4Property> Z4Property::Create(Z4PropertyType type, const char* name)
{
    return CreateOneOf<Z4TypeBoolean, Z4TypeUnsChar, Z4TypeUnsShort, Z4TypeShort, Z4TypeUnsLong, Z4TypeLong, Z4TypeUnsHuge,
                       Z4TypeHuge, Z4TypeFloat, Z4TypeDouble, Z4TypeString, Z4TypeText, Z4TypeDoubleList>(type, name);
}

Z4Property::Z4Property(Z4PropertyType type, const char* name, bool defined) : name_(name), type_(type), defined_(defined) {}

Z4Property::~Z4Property() = default;

VDString Z4Property::ToString() const
{
    return defined_ ? WriteValue() : GetUndefinedText();
}

bool Z4Property::FromString(const char* text)
{
    if (!ReadValue(text))
        return false;
    defined_ = true;
    return true;
}

VDString Z4Property::GetUndefinedText() const
{
    return "Undefined";
}
