#include "vdarchive/Z4ValueProperty.h"

#include "ValueText.h"

template <Z4PropertyType Type>
Z4ValueProperty<Type>::Z4ValueProperty(const char* name) : Z4Property(Type, name, false)
{
}

template <Z4PropertyType Type>
Z4ValueProperty<Type>::Z4ValueProperty(const char* name, Value value)
    : Z4Property(Type, name, true), value_(std::move(value))
{
}

template <Z4PropertyType Type>
std::unique_ptr<Z4Property> Z4ValueProperty<Type>::Clone() const
{
    return std::make_unique<Z4ValueProperty>(*this);
}

template <Z4PropertyType Type>
VDString Z4ValueProperty<Type>::WriteValue() const
{
    return VFValueToText(value_);
}

template <Z4PropertyType Type>
bool Z4ValueProperty<Type>::ReadValue(const char* text)
{
    return VFTextToValue(text, &value_);
}

template class Z4ValueProperty<Z4TypeBoolean>;
template class Z4ValueProperty<Z4TypeUnsChar>;
template class Z4ValueProperty<Z4TypeUnsShort>;
template class Z4ValueProperty<Z4TypeShort>;
template class Z4ValueProperty<Z4TypeUnsLong>;
template class Z4ValueProperty<Z4TypeLong>;
template class Z4ValueProperty<Z4TypeUnsHuge>;
template class Z4ValueProperty<Z4TypeHuge>;
template class Z4ValueProperty<Z4TypeFloat>;
template class Z4ValueProperty<Z4TypeDouble>;
template class Z4ValueProperty<Z4TypeString>;
template class Z4ValueProperty<Z4TypeText>;
template class Z4ValueProperty<Z4TypeDoubleList>;
