#include "VDAccessOffsets.h"

#include "VDAccessCore.h"
#include "frame/VFDaxReport.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

namespace {

constexpr int VVOwnFileId = 700;

constexpr const char* OffsetSet = "Offset";
constexpr const char* OffsetValue = "OffsetValue";
constexpr const char* AppliedOffset = "AppliedOffset";
constexpr const char* AppliedSchedOffset = "AppliedSchedOffset";

/// The set "Offset" of a channel if it holds an offset that isn't applied yet.
Z4PropertySet* VFFindOffset(const LQChannelMapper& mapper, int index, double* value)
{
    Z4PropertySet* set = index < 0 ? nullptr : mapper.GetMetaDataSet(OffsetSet, index);
    return set != nullptr && set->GetDouble(OffsetValue, value) ? set : nullptr;
}

}  // namespace

bool VDAccessOffsets::SetUse(bool use)
{
    used_ = use;
    return !core_.IsBound() || core_.PutValue(DaxChannel::WholeFile, core_.GetFamily().offsets.useKey, VDVariant(use));
}

bool VDAccessOffsets::AreOwn() const
{
    int fileId = 0;
    int subId = 0;
    return FIDGetFileId(core_.GetFileId(), &fileId, &subId) && fileId == VVOwnFileId &&
           subId == core_.GetFamily().offsets.ownSubId;
}

void VDAccessOffsets::Forget()
{
    read_ = false;
    offsets_.clear();
}

bool VDAccessOffsets::Need()
{
    if (read_)
        return true;
    return core_.MetaData().Exist() ? core_.MetaData().ReadOffsets() : Read(nullptr);
}

bool VDAccessOffsets::Read(const LQChannelMapper* mapper)
{
    if (read_)
        return true;
    VDArrayWithSort<long> numbers;
    if (!core_.PutValue(DaxChannel::WholeFile, core_.GetFamily().offsets.useKey, VDVariant(used_)) ||
        !core_.GetChans(&numbers))
        return false;
    std::vector<Offset> offsets(static_cast<std::size_t>(numbers.GetSize()));
    const bool own = AreOwn();
    for (int index = 0; index < numbers.GetSize(); ++index) {
        Offset& offset = offsets[static_cast<std::size_t>(index)];
        if (own && !ReadOwn(index, offset))
            return false;
        if (!own && mapper != nullptr)
            VFFindOffset(*mapper, mapper->IndexFromNumber(numbers[index], false), &offset.value);
    }
    offsets_ = std::move(offsets);
    read_ = true;
    return true;
}

bool VDAccessOffsets::ReadOwn(int index, Offset& offset)
{
    const VDAccessOffsetRules& rules = core_.GetFamily().offsets;
    VDVariant value;
    if (!core_.GetValue(index, rules.ownKey, &value))
        return false;
    float asFloat = 0;
    const bool hasValue = rules.ownAreFloats ? value[1].GetFloat(&asFloat) : value[1].GetDouble(&offset.value);
    if (value.GetNumItems() != 2 || !value[0].GetBoolean(&offset.present) || !hasValue)
        return core_.Report(index, DaxError::HeaderValue, "GetScheduleOffset");
    if (rules.ownAreFloats)
        offset.value = static_cast<double>(asFloat);
    if (!offset.present)
        offset.value = 0;
    return true;
}

bool VDAccessOffsets::Apply(LQChannelMapper& mapper) const
{
    if (AreOwn())
        return ApplyOwn(mapper);
    for (int index = 0; used_ && index < mapper.GetChannelCount(); ++index) {
        double value = 0;
        if (Z4PropertySet* set = VFFindOffset(mapper, index, &value)) {
            set->PutDouble(AppliedOffset, value);
            set->RemoveProperty(OffsetValue);
        }
    }
    return true;
}

bool VDAccessOffsets::ApplyOwn(LQChannelMapper& mapper) const
{
    const int count = std::min(mapper.GetChannelCount(), static_cast<int>(offsets_.size()));
    for (int index = 0; index < count; ++index) {
        const Offset& offset = offsets_[static_cast<std::size_t>(index)];
        Z4PropertySet* set = mapper.AdoptMetaDataSet(OffsetSet, nullptr, index);
        if (set == nullptr)
            return false;
        set->PutBoolean(AppliedSchedOffset, used_);
        const char* holder = used_ ? AppliedOffset : OffsetValue;
        set->RemoveProperty(used_ ? OffsetValue : AppliedOffset);
        if (offset.present)
            set->PutDouble(holder, offset.value);
        else
            set->RemoveProperty(holder);
    }
    return true;
}
