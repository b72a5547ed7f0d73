#include "StorageFileInfo.h"

#include "StorageFileTypes.h"
#include "frame/VFDaxReport.h"

#include "daxlib/FID.h"
#include "vdstore/LQDataManager.h"

#include <vector>

namespace {

constexpr const char* VVRoutine = "Z4FFLoadFileInfo";

struct FoundChannel
{
    int number;
    std::int32_t type;
    VDString title;
    VDString units;
};

/// The channels that the mapper numbers; false if one has no number.
bool VFListChannels(LQTimeSeries& series, std::vector<FoundChannel>& channels)
{
    const LQChannelMapper& mapper = *series.GetMapper();
    for (int index = 0; index < mapper.GetChannelCount(); ++index) {
        const long number = mapper.NumberFromIndex(index, false);
        if (number < 0)
            return false;
        FoundChannel& channel = channels.emplace_back();
        channel.number = static_cast<int>(number);
        channel.type = series.GetChannelDataType(index);
        if (!series.GetChanTitle(index, channel.title))
            channel.title.Empty();
        if (!series.GetYUnits(index, channel.units))
            channel.units.Empty();
    }
    return true;
}

bool VFReadChannels(const VDString& filename, std::vector<FoundChannel>& channels)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->OpenFile(filename, false);
    if (file == nullptr)
        return false;
    LQTimeSeries* const series = data.OpenTimeSeries(file->GetRoot(), StorageFormat::TimeSeriesNode);
    const bool listed = series != nullptr && VFListChannels(*series, channels);
    if (series != nullptr)
        data.Close(series, false);
    data.GetFileManager()->CloseFile(file, false);
    return listed;
}

}  // namespace

int VFLoadStorageFileInfo(VDFileId* id, VDIo& io)
{
    int fileId = 0;
    int subId = 0;
    if (!FIDGetFileId(id, &fileId, &subId))
        return 0;
    const VDString filename = io.GetFilename();
    if (!StorageFormat::IsTimeSeries(subId))
        return VFDaxReport(DaxError::StorageType, VVRoutine, {.appended = filename});
    io.Close();
    std::vector<FoundChannel> channels;
    if (!VFReadChannels(filename, channels))
        return 0;
    if (channels.empty())
        return VFDaxReport(DaxError::NoTimeSeriesChannels, VVRoutine, {.appended = filename});
    for (const FoundChannel& channel : channels) {
        int index = 0;
        if (!FIDAddChannel(id, channel.number, &index) || !FIDSetChanTitle(id, index, channel.title) ||
            !FIDSetChanUnits(id, index, channel.units) || !FIDSetChanType(id, index, channel.type))
            return 0;
    }
    return 1;
}
