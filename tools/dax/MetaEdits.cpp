#include "MetaEdits.h"

#include "TestMetaData.h"
#include "ToolError.h"

#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>

namespace {

constexpr const char* VVRoutine = "VDMetaEdits";

struct ItemName
{
    std::string set;
    std::string item;
};

ItemName VFReadItemName(const std::string& text)
{
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == text.size())
        VFFail(DaxToolError::Usage, "'" + text + "' is no item; one is named by its set, a dot and its own name", "dax");
    return {text.substr(0, dot), text.substr(dot + 1)};
}

Z4PropertyType VFGuessType(const std::string& value)
{
    std::int64_t whole = 0;
    double number = 0;
    if (VFAscToNum(value.c_str(), &whole))
        return Z4TypeHuge;
    return VFAscToNum(value.c_str(), &number) ? Z4TypeDouble : Z4TypeString;
}

/// The index of a channel by its number; `LQChannelMapper::GLOBAL` for none.
int VFSlotOf(const LQChannelMapper& mapper, const std::optional<int>& channel)
{
    return channel ? mapper.IndexFromNumber(*channel, false) : LQChannelMapper::GLOBAL;
}

bool VFHasSlot(const LQChannelMapper& mapper, const std::optional<int>& channel)
{
    return !channel || VFSlotOf(mapper, channel) >= 0;
}

Z4Property* VFFindItem(const LQChannelMapper& mapper, int slot, const std::string& set, const std::string& item)
{
    Z4PropertySet* const found = mapper.GetMetaDataSet(set.c_str(), slot);
    return found != nullptr ? found->GetProperty(item.c_str(), false) : nullptr;
}

}  // namespace

std::string VDMetaEdits::Edit::Name() const
{
    return set + "." + item + (channel ? " of channel " + std::to_string(*channel) : std::string());
}

void VDMetaEdits::Add(const Edit& edit, const std::vector<int>& channels)
{
    if (!VFIsOwnItem(edit.set, edit.item.c_str()))
        VFFail(DaxToolError::DerivedItem,
               "The item " + edit.set + "." + edit.item + " is made by the library whenever it is read, and can't be changed",
               VVRoutine);
    if (channels.empty())
        edits_.push_back(edit);
    for (const int channel : channels) {
        edits_.push_back(edit);
        edits_.back().channel = channel;
    }
}

void VDMetaEdits::Put(const std::string& text, std::optional<Z4PropertyType> type, const std::vector<int>& channels)
{
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos)
        VFFail(DaxToolError::Usage, "'" + text + "' has no value; it is written Set.Item=value", "dax");
    const ItemName name = VFReadItemName(text.substr(0, sign));
    const std::string value = text.substr(sign + 1);
    const auto make = [item = name.item, value, type](const Z4Property* present) {
        const Z4PropertyType as = type ? *type : present != nullptr ? present->GetType() : VFGuessType(value);
        auto property = Z4Property::Create(as, item.c_str());
        if (property != nullptr && !property->FromString(value.c_str()))
            property.reset();
        return property;
    };
    Add({{}, name.set, name.item, make, false, value}, channels);
}

void VDMetaEdits::Remove(const std::string& text, const std::vector<int>& channels)
{
    const ItemName name = VFReadItemName(text);
    Add({{}, name.set, name.item, {}, false, {}}, channels);
}

void VDMetaEdits::Take(const LQChannelMapper& mapper, bool keep)
{
    for (int slot = LQChannelMapper::GLOBAL; slot < mapper.GetChannelCount(); ++slot) {
        std::optional<int> channel;
        if (slot >= 0)
            channel = static_cast<int>(mapper.NumberFromIndex(slot, false));
        VFForEachOwnItem(mapper, slot, [&](const std::string& set, const Z4Property& item) {
            const std::shared_ptr<const Z4Property> value = item.Clone();
            edits_.push_back(
                {channel, set, item.GetName().Str(), [value](const Z4Property*) { return value->Clone(); }, keep, {}});
        });
    }
}

std::vector<int> VDMetaEdits::DropOtherChannels(const LQChannelMapper& mapper)
{
    std::vector<int> dropped;
    std::erase_if(edits_, [&](const Edit& edit) {
        if (VFHasSlot(mapper, edit.channel))
            return false;
        if (dropped.empty() || dropped.back() != *edit.channel)
            dropped.push_back(*edit.channel);
        return true;
    });
    return dropped;
}

void VDMetaEdits::CheckOne(const LQChannelMapper& mapper, const Edit& edit)
{
    if (!VFHasSlot(mapper, edit.channel))
        VFFail(DaxToolError::UnknownChannel, "There is no such channel: " + edit.Name(), VVRoutine);
    const Z4Property* const present = VFFindItem(mapper, VFSlotOf(mapper, edit.channel), edit.set, edit.item);
    if (!edit.value && present == nullptr)
        VFFail(DaxToolError::NoItem, "There is no such item to remove where the metadata are kept: " + edit.Name(),
               VVRoutine);
    if (edit.value && edit.value(present) == nullptr)
        VFFail(DaxToolError::ItemValue,
               "'" + edit.valueText + "' is no value for " + edit.Name() +
                   (present != nullptr ? "; it is there with another type, which --type changes" : ""),
               VVRoutine);
}

void VDMetaEdits::Check(const LQChannelMapper& mapper) const
{
    for (const Edit& edit : edits_)
        CheckOne(mapper, edit);
}

int VDMetaEdits::Apply(LQChannelMapper& mapper) const
{
    int count = 0;
    for (const Edit& edit : edits_) {
        const int slot = VFSlotOf(mapper, edit.channel);
        const Z4Property* const present = VFFindItem(mapper, slot, edit.set, edit.item);
        if (!edit.value) {
            mapper.GetMetaDataSet(edit.set.c_str(), slot)->RemoveProperty(edit.item.c_str());
        } else {
            if (present != nullptr && edit.keep)
                continue;
            const std::unique_ptr<Z4Property> value = edit.value(present);
            mapper.AdoptMetaDataSet(edit.set.c_str(), nullptr, slot)->Copy(value.get());
        }
        ++count;
    }
    return count;
}
