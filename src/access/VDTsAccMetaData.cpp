#include "VDTsAcc.h"

#include "frame/VFDaxReport.h"

#include "daxlib/VFDaxMetaData.h"
#include "vdarchive/Z4PropertySet.h"

using namespace DaxTimeSeries;

namespace {

constexpr const char* OffsetSet = "Offset";
constexpr const char* OffsetValue = "OffsetValue";
constexpr const char* AppliedOffset = "AppliedOffset";
constexpr const char* AppliedSchedOffset = "AppliedSchedOffset";

/// The set "Offset" of a channel if it holds an offset that isn't applied yet.
Z4PropertySet* VFFindOffset(LQChannelMapper& mapper, int index, double* value)
{
    Z4PropertySet* set = index < 0 ? nullptr : mapper.GetMetaDataSet(OffsetSet, index);
    return set != nullptr && set->GetDouble(OffsetValue, value) ? set : nullptr;
}

}  // namespace

bool VDTsAcc::AppliesOwnOffsets() const
{
    int fileId = 0;
    int subId = 0;
    return FIDGetFileId(core_.GetFileId(), &fileId, &subId) && fileId == 700 && subId == 1;
}

bool VDTsAcc::SetUseOffset(char useOffset)
{
    useOffset_ = useOffset != 0;
    return !core_.IsBound() || core_.PutValue(DaxChannel::WholeFile, UseOffset, VDVariant(useOffset_));
}

bool VDTsAcc::NeedOffsets()
{
    LQChannelMapper* mapper = nullptr;
    if (offsetsRead_)
        return true;
    // Where there is no metadata, there are no offsets.
    return core_.HasCapability(KeepsMetaData) ? GetMetaData(&mapper) : ReadOffsets(nullptr);
}

bool VDTsAcc::GetMetaData(LQChannelMapper** mapper)
{
    *mapper = nullptr;
    if (!core_.CheckFileOpen("GetMetaData"))
        return false;
    LQChannelMapper* answer = core_.IsReadOnly() ? cachedMapper_.get() : nullptr;
    if (answer == nullptr && !FetchMapper(&answer))
        return false;
    if (!offsetsRead_ && !ReadOffsets(answer))
        return false;
    // Only a private copy speaks of the values as they are given out. What the format keeps speaks of those in the file.
    if (core_.IsReadOnly() &&
        (AppliesOwnOffsets() ? !ApplyScheduleOffsets(*answer) : useOffset_ && !ApplyMetaDataOffsets(*answer)))
        return false;
    *mapper = answer;
    return true;
}

/// The mapper from where the format keeps it. For reading, what is given out is a private copy that may be added to.
bool VDTsAcc::FetchMapper(LQChannelMapper** mapper)
{
    char keepsMetaData = 0;
    if (!core_.GetCapability(KeepsMetaData, &keepsMetaData))
        return false;
    // Formats without metadata of their own keep it in a sidecar file, which can't be read yet.
    if (!keepsMetaData)
        return core_.Report(DaxChannel::WholeFile, DaxError::NotImplemented, "GetMetaData");
    LQChannelMapper* kept = nullptr;
    if (!core_.Call("GetMetaData",
                    [&] { return Plugin().LoadMetaData(core_.GetInstance(), &kept) != 0 && kept != nullptr; }))
        return false;
    if (AppliesOwnOffsets() && !AddHeaderMetaData(*kept))
        return false;
    if (core_.IsReadOnly()) {
        cachedMapper_.reset(VFDaxCloneMapper(kept));
        kept = cachedMapper_.get();
        if (kept == nullptr)
            return false;
    }
    if (!VFDaxAddInputTestInfo(kept, core_.GetFileId())) {
        cachedMapper_.reset();
        return false;
    }
    *mapper = kept;
    return true;
}

/// Once for each test: the offset of each channel, from the metadata or from beside the data.
/// @param mapper  null if there is no metadata
bool VDTsAcc::ReadOffsets(LQChannelMapper* mapper)
{
    if (!core_.PutValue(DaxChannel::WholeFile, UseOffset, VDVariant(useOffset_)))
        return false;
    VDArrayWithSort<long> numbers;
    if (!GetChans(&numbers))
        return false;
    const int count = numbers.GetSize();
    VDArray<float> offsets;
    offsets.SetSize(count);
    VDArray<char> present;
    present.SetSize(count);
    const bool own = AppliesOwnOffsets();
    for (int index = 0; index < count; ++index) {
        present[index] = 1;
        double value = 0;
        if (own) {
            if (!GetScheduleOffset(index, &present[index], &offsets[index]))
                return false;
        } else if (mapper != nullptr &&
                   VFFindOffset(*mapper, mapper->IndexFromNumber(numbers[index], false), &value) != nullptr) {
            offsets[index] = static_cast<float>(value);
        }
    }
    offsets_ = std::move(offsets);
    offsetPresent_ = std::move(present);
    offsetsRead_ = true;
    return true;
}

/// Values are given out with the offset added, so the metadata says that it is applied.
bool VDTsAcc::ApplyMetaDataOffsets(LQChannelMapper& mapper) const
{
    for (int index = 0; index < mapper.GetChannelCount(); ++index) {
        double value = 0;
        if (Z4PropertySet* set = VFFindOffset(mapper, index, &value)) {
            set->PutDouble(AppliedOffset, value);
            set->RemoveProperty(OffsetValue);
        }
    }
    return true;
}

bool VDTsAcc::ApplyScheduleOffsets(LQChannelMapper& mapper) const
{
    for (int index = 0; index < mapper.GetChannelCount(); ++index) {
        Z4PropertySet* set = mapper.AdoptMetaDataSet(OffsetSet, nullptr, index);
        if (set == nullptr)
            return false;
        set->PutBoolean(AppliedSchedOffset, useOffset_);
        const char* holder = useOffset_ ? AppliedOffset : OffsetValue;
        set->RemoveProperty(useOffset_ ? OffsetValue : AppliedOffset);
        if (offsetPresent_[index])
            set->PutDouble(holder, static_cast<double>(offsets_[index]));
        else
            set->RemoveProperty(holder);
    }
    return true;
}

bool VDTsAcc::GetScheduleOffset(int index, char* present, float* offset)
{
    VDVariant value;
    if (!core_.GetValue(index, ScheduleOffset, &value))
        return false;
    bool has = false;
    if (value.GetNumItems() != 2 || !value[0].GetBoolean(&has) || !value[1].GetFloat(offset))
        return core_.Report(index, DaxError::HeaderValue, "GetScheduleOffset");
    *present = has ? 1 : 0;
    if (!has)
        *offset = 0.0F;
    return true;
}
