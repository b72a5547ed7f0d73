#include "MetadataValue.h"

#include "vdbase/VDStringArray.h"
#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>
#include <limits>

namespace {

constexpr const char* ExtraDetails = "ExtraDetails";
constexpr const char* LegacyExtraDetails = "LegacyExtraDetails";

template <class Property>
auto ValueOf(const Z4Property& item)
{
    return static_cast<const Property&>(item).Get();
}

/// Towards zero, and to the nearest there is of a value that has no place in 64 bits; nothing of what is no number.
std::int64_t CutToHuge(double value)
{
    constexpr double beyond = 0x1p63;
    if (std::isnan(value))
        return 0;
    if (value >= beyond)
        return std::numeric_limits<std::int64_t>::max();
    return value < -beyond ? std::numeric_limits<std::int64_t>::min() : static_cast<std::int64_t>(value);
}

template <class Number>
Number ReadText(const Z4Property& item)
{
    Number number = 0;
    return VFAscToNum(item.ToString(), &number) ? number : 0;
}

std::int64_t HugeOf(const Z4Property& item)
{
    if (!item.IsDefined())
        return 0;
    switch (item.GetType()) {
    case Z4TypeBoolean:
        return ValueOf<Z4BooleanProperty>(item) ? 1 : 0;
    case Z4TypeShort:
        return ValueOf<Z4ShortProperty>(item);
    case Z4TypeUnsShort:
        return ValueOf<Z4UnsShortProperty>(item);
    case Z4TypeLong:
        return ValueOf<Z4LongProperty>(item);
    case Z4TypeUnsLong:
        return ValueOf<Z4UnsLongProperty>(item);
    case Z4TypeHuge:
        return ValueOf<Z4HugeProperty>(item);
    case Z4TypeUnsHuge:
        return static_cast<std::int64_t>(ValueOf<Z4UnsHugeProperty>(item));
    case Z4TypeFloat:
        return CutToHuge(ValueOf<Z4FloatProperty>(item));
    case Z4TypeDouble:
        return CutToHuge(ValueOf<Z4DoubleProperty>(item));
    default:
        return ReadText<std::int64_t>(item);
    }
}

double RealOf(const Z4Property& item)
{
    if (!item.IsDefined())
        return 0;
    if (item.GetType() == Z4TypeFloat)
        return ValueOf<Z4FloatProperty>(item);
    return item.GetType() == Z4TypeDouble ? ValueOf<Z4DoubleProperty>(item) : ReadText<double>(item);
}

VDVariant ToText(const Z4Property& item)
{
    return VDVariant(item.ToString());
}

VDVariant ToHuge(const Z4Property& item)
{
    return VDVariant::FromHuge(HugeOf(item));
}

VDVariant ToReal(const Z4Property& item)
{
    return VDVariant(RealOf(item));
}

VDVariant (*ConversionTo(const VDString& type))(const Z4Property& item)
{
    if (type.CompareNoCase("string") == 0)
        return ToText;
    if (type.CompareNoCase("integer") == 0)
        return ToHuge;
    return type.CompareNoCase("real") == 0 ? ToReal : nullptr;
}

const Z4Property* FindItem(LQChannelMapper& mapper, int slot, const char* set, const char* item)
{
    const Z4PropertySet* const found = mapper.GetMetaDataSet(set, slot);
    return found != nullptr ? found->GetProperty(item, false) : nullptr;
}

}  // namespace

VDMetadataQuestion::VDMetadataQuestion(const VDString& keyword, const VDString& type) : convert_(ConversionTo(type))
{
    VDStringArray parts;
    hasSet_ = parts.SplitString(keyword, ".") > 1;
    set_ = hasSet_ ? parts[0] : VDString();
    item_ = hasSet_ ? parts[1] : keyword;
    triesLegacy_ = hasSet_ && set_ == ExtraDetails && keyword.GetLength() > set_.GetLength() + 1;
}

VDVariant VDMetadataQuestion::Ask(LQChannelMapper& mapper, int slot) const
{
    const Z4Property* const item = Find(mapper, slot);
    return item != nullptr && convert_ != nullptr ? convert_(*item) : VDVariant();
}

const Z4Property* VDMetadataQuestion::Find(LQChannelMapper& mapper, int slot) const
{
    if (!hasSet_)
        return mapper.GetMetaDataItem(item_, slot);
    if (triesLegacy_)
        if (const Z4Property* const item = FindItem(mapper, slot, LegacyExtraDetails, item_); item != nullptr)
            return item;
    return FindItem(mapper, slot, set_, item_);
}
