#include "vdarchive/Z4Property.h"

#include "PropertyTypes.h"

std::unique_ptr<Z4Property> Z4Property::Create(Z4PropertyType type, const char* name)
{
    std::unique_ptr<Z4Property> property;
    AllPropertyTypes::With(type, [&]<Z4PropertyType Type>() { property = std::make_unique<Z4ValueProperty<Type>>(name); });
    return property;
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
