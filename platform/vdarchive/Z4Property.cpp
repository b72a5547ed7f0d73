#include "vdarchive/Z4Property.h"

#include "PropertyTypes.h"
#include "ValueConversion.h"

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

bool Z4Property::TakeValue(const Z4Property& other)
{
    std::optional<Z4AnyNumber> number;
    AllPropertyTypes::Visit(other, [&](const auto& typed) { number = VFValueToNumber(typed.Get()); });
    bool isNumber = false;
    bool taken = false;
    AllPropertyTypes::Visit(*this, [&]<class Typed>(Typed& typed) {
        typename Typed::Value value{};
        isNumber = Z4IsNumber<typename Typed::Value>;
        taken = number.has_value() && VFNumberToValue(*number, &value);
        if (taken)
            typed.Set(value);
    });
    return number.has_value() && isNumber ? taken : FromString(other.ToString());
}

VDString Z4Property::GetUndefinedText() const
{
    return "Undefined";
}
