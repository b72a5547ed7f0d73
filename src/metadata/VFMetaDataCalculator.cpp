#include "VFMetaDataCalculator.h"

#include "vdarchive/Z4ValueProperty.h"
#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <string_view>

namespace {

template <Z4PropertyType Type>
double NumberIn(const Z4Property& item)
{
    return static_cast<double>(static_cast<const Z4ValueProperty<Type>&>(item).Get());
}

/// The number of a type that is one; other types hand over their text.
std::optional<double> NumberOf(const Z4Property& item)
{
    switch (item.GetType()) {
    case Z4TypeDouble:
        return NumberIn<Z4TypeDouble>(item);
    case Z4TypeFloat:
        return NumberIn<Z4TypeFloat>(item);
    case Z4TypeShort:
        return NumberIn<Z4TypeShort>(item);
    case Z4TypeUnsShort:
        return NumberIn<Z4TypeUnsShort>(item);
    case Z4TypeLong:
        return NumberIn<Z4TypeLong>(item);
    case Z4TypeUnsLong:
        return NumberIn<Z4TypeUnsLong>(item);
    case Z4TypeHuge:
        return NumberIn<Z4TypeHuge>(item);
    case Z4TypeUnsHuge:
        return NumberIn<Z4TypeUnsHuge>(item);
    default:
        return std::nullopt;
    }
}

VDVariant ValueOf(const Z4Property& item, bool numeric)
{
    if (const std::optional<double> number = NumberOf(item))
        return VDVariant(*number);
    VDString text;
    if (item.GetType() == Z4TypeBoolean) {
        const bool truth = static_cast<const Z4BooleanProperty&>(item).Get();
        if (!numeric)
            return VDVariant(truth);
        text = truth ? "TRUE" : "FALSE";
    } else {
        text = item.ToString();
    }
    double number = 0;
    return numeric && VFAscToNum(text, &number) ? VDVariant(number) : VDVariant(text);
}

}  // namespace

VFMetaDataCalculator::VFMetaDataCalculator(LQChannelMapper* mapper, long channel, char numeric)
    : mapper_(mapper), channel_(channel), numeric_(numeric)
{
}

void VFMetaDataCalculator::ForgetFailures()
{
    std::erase_if(variables_, [](const auto& each) { return !each.second.isRead; });
}

void VFMetaDataCalculator::GetVariableByName(const char* name, VDVariant& value)
{
    const std::string_view marked = name == nullptr ? std::string_view() : std::string_view(name);
    if (mapper_ == nullptr || marked.size() < 3 || marked.front() != '#' || marked.back() != '#')
        return;
    const auto [found, isNew] = variables_.try_emplace(std::string(marked));
    Variable& variable = found->second;
    if (isNew)
        variable.isRead = variable.keyword.Read(*mapper_, marked.substr(1, marked.size() - 2), {});
    const Z4Property* const item = variable.isRead ? Find(variable) : nullptr;
    if (item != nullptr && item->IsDefined())
        value = ValueOf(*item, numeric_ != 0);
}

Z4Property* VFMetaDataCalculator::Find(Variable& variable) const
{
    const int channel = static_cast<int>(channel_);
    Z4Property* item = nullptr;
    if (variable.keyword.IsNowhere(channel) || !variable.keyword.FindInChannels(channel, &item) || item != nullptr)
        return item;
    if (!variable.inTest.has_value()) {
        variable.keyword.FindInTest(true, &item);
        variable.inTest = item;
    }
    return *variable.inTest;
}
