#include "VDCanFrameTypeList.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VFNumber.h"

#include <algorithm>
#include <limits>

namespace {

constexpr bool VVDefaultFastLookup = false;
constexpr std::int64_t VVDefaultFrameIdLimit = 10000;
constexpr std::size_t VVIndexStep = 1000;
// Up to this length, moving the rest of the list for a new record costs next to nothing.
constexpr std::size_t VVMostInserted = 4096;
// The fast lookup takes an id as a signed number and its table has an `int` as size.
constexpr std::int64_t VVLargestFastId = std::numeric_limits<std::int32_t>::max() - 1;

VDString PreferenceKey(const char* format, const char* name)
{
    return "/FileFormats/" + VDString(format) + "/" + name;
}

}  // namespace

VDCanFrameTypeList::VDCanFrameTypeList(const char* format)
{
    const VDPreferenceSystem preferences;
    fastLookup_ = preferences.GetBooleanValue(PreferenceKey(format, "FastFrameIdLookup"), VVDefaultFastLookup);
    frameIdLimit_ = preferences.GetHugeValue(PreferenceKey(format, "FrameIdLimitForFastLookup"), VVDefaultFrameIdLimit);
}

VDCanFrameTypeList::~VDCanFrameTypeList() = default;

VDCanFrameType* VDCanFrameTypeList::FindSorted(std::uint32_t id) const
{
    const std::size_t position = LowerBound(id);
    if (position < ids_.size() && ids_[position] == id)
        return frames_[position];
    const auto found = late_.find(id);
    return found == late_.end() ? nullptr : found->second;
}

bool VDCanFrameTypeList::AddNewFrame(std::uint32_t id, int numBytes)
{
    const std::int64_t limit = std::min(frameIdLimit_, VVLargestFastId);
    if (fastLookup_ != 0 && id > limit) {
        VDString text;
        text.FormatRuntime(VFDaxText(DaxError::FrameIdLimit), VFFormat64(id, 10, 0).c_str(),
                           VFFormat64(limit, 10, 0).c_str());
        return VFDaxReport(DaxError::FrameIdLimit, "VDCanFrameTypeList::AddFrame", {.text = text}) != 0;
    }
    VDCanFrameType* const frame = &records_.emplace_back();
    frame->frameId = id;
    frame->numBytes = numBytes;
    if (fastLookup_ == 0)
        AddSorted(id, frame);
    else
        AddIndexed(id, frame);
    return true;
}

void VDCanFrameTypeList::AddSorted(std::uint32_t id, VDCanFrameType* frame)
{
    if (frames_.size() < VVMostInserted) {
        const auto position = static_cast<std::ptrdiff_t>(LowerBound(id));
        ids_.insert(ids_.begin() + position, id);
        frames_.insert(frames_.begin() + position, frame);
        return;
    }
    late_.emplace(id, frame);
    if (late_.size() > frames_.size() / 4)
        MergeLate();
}

void VDCanFrameTypeList::AddIndexed(std::uint32_t id, VDCanFrameType* frame)
{
    if (id >= index_.size()) {
        const std::size_t size = std::size_t{id} + 1;
        if (size > index_.capacity())
            index_.reserve(std::max((size + VVIndexStep - 1) / VVIndexStep * VVIndexStep, index_.capacity() * 3 / 2));
        index_.resize(size, -1);
    }
    index_[id] = GetCount();
    frames_.push_back(frame);
}

void VDCanFrameTypeList::MergeLate()
{
    const auto middle = static_cast<std::ptrdiff_t>(frames_.size());
    for (auto& [id, frame] : late_)
        frames_.push_back(frame);
    late_.clear();
    std::inplace_merge(frames_.begin(), frames_.begin() + middle, frames_.end(),
                       [](const auto& left, const auto& right) { return left->frameId < right->frameId; });
    ids_.resize(frames_.size());
    std::transform(frames_.begin(), frames_.end(), ids_.begin(),
                   [](const auto& frame) { return static_cast<std::uint32_t>(frame->frameId); });
}

void VDCanFrameTypeList::ClearFrames()
{
    frames_.clear();
    records_.clear();
    ids_.clear();
    late_.clear();
    index_.clear();
    recent_.fill({});
}

void VDCanFrameTypeList::ResetCounts()
{
    for (VDCanFrameType& frame : records_) {
        frame.readCount = 0;
        if (frame.switches == nullptr)
            continue;
        frame.switches->counts.SetSize(frame.switches->totals.GetSize());
        std::fill(frame.switches->counts.begin(), frame.switches->counts.end(), 0);
    }
}

VDCanFrameType* VDCanFrameTypeList::GetFrameType(int position)
{
    if (!late_.empty())
        MergeLate();
    return position >= 0 && position < GetCount() ? frames_[static_cast<std::size_t>(position)] : nullptr;
}
