#include "FamosState.h"
#include "VDDbcReader.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VDTextIo.h"
#include "vdbase/VFNumber.h"
#include "vdbase/VFSort.h"

#include <algorithm>
#include <unordered_map>

namespace {

VDString Decimal(std::int64_t value)
{
    return VFFormat64(value, 10, 0);
}

/// The diagnostic list of all frames, `framedump.csv` in the current folder. It is written if the preference asks for it and
/// the file can be made.
class FrameDump
{
public:
    FrameDump() : file_("framedump.csv")
    {
        if (!VDPreferenceSystem().GetBooleanValue("/FileFormats/Famos/DumpFileScan", false))
            return;
        const VDErrorMute mute;
        isOpen_ = file_.Open(VTOpenCreate);
        Write("TimeStamp,Length,FrameID");
    }

    void AddFrame(const VDFamosFrameStream& frames)
    {
        if (!isOpen_)
            return;
        line_.Format("%s,%d,%s", Decimal(frames.GetTimeStamp()).c_str(), frames.GetRecordLength(),
                     Decimal(static_cast<std::int64_t>(frames.GetFrameId())).c_str());
        Write(line_);
    }

    void Finish(std::int64_t numFrames, VDCanFrameTypeList& types)
    {
        if (!isOpen_)
            return;
        Write("");
        Write("");
        Write("Total frames in file : " + Decimal(numFrames));
        Write("Number of frame types: " + Decimal(types.GetCount()));
        Write("");
        Write("Frame Id,NumBytes,Count");
        for (int index = 0; index < types.GetCount(); ++index) {
            const VDCanFrameType& type = *types.GetFrameType(index);
            line_.Format("%d,%d,%s", static_cast<int>(type.frameId), type.numBytes, Decimal(type.count).c_str());
            Write(line_);
        }
    }

private:
    // A list that can't be written on is given up, and the scan goes on.
    void Write(const char* line)
    {
        const VDErrorMute mute;
        isOpen_ = isOpen_ && file_.WriteString(line);
    }

    VDTextIo file_;
    bool isOpen_ = false;
    VDString line_;
};

}  // namespace

bool VDFamosUtil::InitTimeStampRead()
{
    if (!state_->frames.has_value())
        state_->frames.emplace(*state_->file, state_->header.dataBlocks, state_->frameTypes);
    const bool scanned = state_->frameTypes.GetCount() > 0 || ScanFrames();
    state_->frames->ResetRead();
    return scanned;
}

bool VDFamosUtil::ScanFrames()
{
    FrameDump dump;
    VDFamosFrameStream& frames = *state_->frames;
    VDCanFrameTypeList& types = state_->frameTypes;
    types.ClearFrames();
    frames.ResetRead();
    for (std::int64_t numFrames = 0;; ++numFrames) {
        bool endOfData = false;
        if (!frames.ReadFrame(true, &endOfData))
            return false;
        if (endOfData) {
            dump.Finish(numFrames, types);
            return true;
        }
        if (!types.AddFrame(frames.GetFrameId(), frames.GetNumBytes()))
            return false;
        dump.AddFrame(frames);
    }
}

VDString VDFamosTimeStampChan::GetTitle() const
{
    if (chan != nullptr)
        return chan->GetTitle();
    VDString title;
    title.Format("FrameId %s Byte %d", Decimal(static_cast<std::int64_t>(frameType->frameId)).c_str(), byteIndex + 1);
    return title;
}

VDString VDFamosTimeStampChan::GetUnits() const
{
    return chan != nullptr ? chan->GetUnits() : VDString();
}

bool VDFamosUtil::DetermineTimeStampChannels()
{
    state_->timeStampChans.clear();
    state_->byteChans.clear();
    if (!InitTimeStampRead())
        return false;
    if (state_->dbcFile.IsEmpty()) {
        AddByteChannels();
        return true;
    }
    if (!AddDatabaseChannels())
        return false;
    SortByTitle();
    return true;
}

// In the order of the titles, as numbers in them count with their value. That is the order of ids and bytes, so that nothing
// need be sorted but the ids.
void VDFamosUtil::AddByteChannels()
{
    VDCanFrameTypeList& types = state_->frameTypes;
    auto& chans = state_->byteChans;
    chans.reserve(static_cast<std::size_t>(types.GetCount()));
    for (int index = 0; index < types.GetCount(); ++index)
        chans.push_back({types.GetFrameType(index), 0});
    const auto byId = [](const auto& left, const auto& right) { return left.frameType->frameId < right.frameType->frameId; };
    // They mostly are in order.
    if (!std::is_sorted(chans.begin(), chans.end(), byId))
        std::sort(chans.begin(), chans.end(), byId);
    std::size_t end = 0;
    for (auto& bytes : chans)
        bytes.end = end += static_cast<std::size_t>(bytes.frameType->numBytes);
}

bool VDFamosUtil::AddDatabaseChannels()
{
    const VDPreferenceSystem preferences;
    const bool ignoreShortFrames = preferences.GetBooleanValue("/FileFormats/Famos/IgnoreShortFrames", false);
    const bool skipMissingIds = preferences.GetBooleanValue("/FileFormats/Famos/SkipMissingFrameIds", true);

    // The database's own search is linear, and a recording may hold as many ids as the database.
    std::unordered_map<unsigned long, VDCanFrameDefinition*> frameById;
    for (int index = 0; index < state_->database.GetFrameDefinitionCount(); ++index) {
        VDCanFrameDefinition* const frame = state_->database.GetFrameDefinition(index);
        frameById.try_emplace(frame->GetFrameId(), frame);
    }

    for (int index = 0; index < state_->frameTypes.GetCount(); ++index) {
        VDCanFrameType* const type = state_->frameTypes.GetFrameType(index);
        const auto found = frameById.find(type->frameId);
        if (found == frameById.end()) {
            VFReportFrameNotDefined(type->frameId);
            if (!skipMissingIds)
                return false;
            continue;
        }
        VDCanFrameDefinition* const frame = found->second;
        if (frame->GetNumBytes() > type->numBytes) {
            if (ignoreShortFrames)
                continue;
            return VFReportShortFrame(type->frameId, frame->GetNumBytes(), type->numBytes,
                                      "VDFamosUtil::DetermineTimeStampChannels");
        }
        for (int position = 0; position < frame->GetChanDefinitionCount(); ++position)
            state_->timeStampChans.push_back({frame, frame->GetChanDefinition(position), type, 0});
    }
    return true;
}

void VDFamosUtil::SortByTitle()
{
    std::vector<std::pair<VDString, VDFamosTimeStampChan>> keyed;
    keyed.reserve(state_->timeStampChans.size());
    for (const VDFamosTimeStampChan& chan : state_->timeStampChans) {
        VDString key = VFMakeNumericallySortableString(chan.GetTitle());
        key.MakeUpper();
        keyed.emplace_back(std::move(key), chan);
    }
    VFQuickSort(keyed.data(), keyed.size(),
                [](const auto& left, const auto& right) { return left.first.Compare(right.first); });
    for (std::size_t index = 0; index < keyed.size(); ++index)
        state_->timeStampChans[index] = keyed[index].second;
}
