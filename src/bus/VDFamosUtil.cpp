#include "VDFamosUtil.h"

#include "FamosState.h"
#include "VDFamosKeyParser.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VFFilename.h"

#include <algorithm>
#include <new>

namespace {

constexpr const char* VVOpenRoutine = "VDFamosUtil::Open";
constexpr const char* VVNoName = "** NO NAME **";
constexpr int VVTimeStampedFormat = 10;

bool HasFamosExtension(const VDString& filename)
{
    VDString extension;
    VFSplitFilename(filename, nullptr, nullptr, &extension);
    return extension.CompareNoCase("dat") == 0 || extension.CompareNoCase("raw") == 0;
}

}  // namespace

VDFamosUtil::State::State()
    : timeInSeconds(VDPreferenceSystem().GetBooleanValue("/FileFormats/Famos/TimeInSeconds", false)),
      enumChannelHandling(VDPreferenceSystem().GetEnumValue("/FileFormats/Famos/EnumChannelHandling", 0))
{
}

void VDFamosUtil::State::ClearParsed()
{
    isTimeStamped = false;
    timeStampChans.clear();
    byteChans.clear();
    startTime = 0;
    frameTimeFactor = 0;
    frameTimeOffset = 0;
    frames.reset();
    frameTypes.ClearFrames();
    header = VDFamosHeader();
}

VDFamosUtil::VDFamosUtil() : state_(std::make_unique<State>()) {}

VDFamosUtil::~VDFamosUtil() = default;

bool VDFamosUtil::Open(const VDString& filename, const VDString& dbcFile, bool asItIs)
{
    Close();
    state_->ClearParsed();
    state_->database.ClearFrames();
    if (OpenFile(filename, dbcFile, asItIs))
        return true;
    Close();
    return false;
}

bool VDFamosUtil::OpenFile(const VDString& filename, const VDString& dbcFile, bool asItIs)
{
    state_->filename = filename;
    state_->asItIs = asItIs;
    state_->file.emplace(filename);
    if (!state_->file->Open(VTOpenRead))
        return VFDaxReportError(DaxError::FamosOpen, VVOpenRoutine) != 0;
    state_->dbcFile = dbcFile == VVNoName ? VDString() : dbcFile;
    if (!state_->dbcFile.IsEmpty() && !state_->database.ReadDatabase(state_->dbcFile))
        return false;
    if (!asItIs && !HasFamosExtension(filename))
        return VFDaxReportError(DaxError::FamosInvalid, VVOpenRoutine) != 0;
    if (!ParseFile())
        return VFDaxReport(DaxError::FamosInvalid, VVOpenRoutine, {.chain = 1}) != 0;
    return true;
}

bool VDFamosUtil::Close()
{
    const bool closed = !state_->file.has_value() || state_->file->Close();
    state_->frames.reset();
    state_->file.reset();
    state_->filename.Empty();
    return closed;
}

bool VDFamosUtil::ParseFile()
{
    try {
        return ParseKeys();
    } catch (const std::bad_alloc&) {
        return VFDaxReportError(DaxError::OutOfMemory, "VDFamosUtil::ParseFile") != 0;
    }
}

bool VDFamosUtil::ParseKeys()
{
    if (!state_->file.has_value())
        return false;
    state_->ClearParsed();
    VDFamosKeyParser parser(*state_->file, state_->file->GetFileSize(), state_->header);
    if (!parser.Run())
        return false;

    const auto& groups = state_->header.groups;
    if (groups.size() != 1 || groups[0].components.size() != 1)
        return true;
    const VDFamosComponent& component = groups[0].components[0];
    if (component.packet == nullptr || component.packet->numberFormat != VVTimeStampedFormat)
        return true;
    state_->isTimeStamped = true;
    if (state_->asItIs)
        for (VDFamosDataBlock& block : state_->header.dataBlocks)
            block.end = std::min(block.end, state_->file->GetFileSize());
    VDTimecode start;
    start.SetVDTime(groups[0].scaling != nullptr ? groups[0].scaling->triggerTime : VDTime());
    state_->startTime = start.GetUTCTimeInMicroSeconds();
    if (component.range != nullptr) {
        state_->frameTimeFactor = component.range->factor;
        state_->frameTimeOffset = component.range->offset;
    }
    return DetermineTimeStampChannels();
}

bool VDFamosUtil::GetChannelCount(unsigned long* count) const
{
    if (count == nullptr)
        return false;
    *count = 0;
    if (state_->isTimeStamped) {
        *count = GetTimeStampChanCount();
        return true;
    }
    for (const VDFamosGroup& group : state_->header.groups)
        for (const VDFamosComponent& component : group.components)
            *count += component.channelNames.size();
    return true;
}

bool VDFamosUtil::IsTimeStamped() const
{
    return state_->isTimeStamped;
}

const VDFamosHeader& VDFamosUtil::GetHeader() const
{
    return state_->header;
}

VDCanFrameTypeList& VDFamosUtil::GetFrameTypes() const
{
    return state_->frameTypes;
}

std::size_t VDFamosUtil::GetTimeStampChanCount() const
{
    return state_->byteChans.empty() ? state_->timeStampChans.size() : state_->byteChans.back().end;
}

VDFamosTimeStampChan VDFamosUtil::GetTimeStampChan(std::size_t index) const
{
    if (index >= GetTimeStampChanCount())
        return {};
    if (state_->byteChans.empty())
        return state_->timeStampChans[index];
    const auto found = std::upper_bound(state_->byteChans.begin(), state_->byteChans.end(), index,
                                        [](std::size_t position, const auto& chans) { return position < chans.end; });
    const std::size_t fromEnd = found->end - index;
    return {nullptr, nullptr, found->frameType, found->frameType->numBytes - static_cast<int>(fromEnd)};
}
