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

/// Title and units of a channel, either one empty where the object has none; false if that is a failure.
bool VFDescribe(LQTimeSeries& series, int index, FoundChannel& channel)
{
    if (!series.GetChanTitle(index, channel.title))
        channel.title.Empty();
    if (!series.GetYUnits(index, channel.units))
        channel.units.Empty();
    return true;
}

bool VFDescribe(LQHistogram& histograms, int index, FoundChannel& channel)
{
    return histograms.GetChanTitle(channel.title, index) && histograms.GetZUnits(channel.units, index);
}

/// The channels that the mapper numbers; false if one has no number.
template <class Object>
bool VFListChannels(Object& object, std::vector<FoundChannel>& channels)
{
    const LQChannelMapper& mapper = *object.GetMapper();
    for (int index = 0; index < mapper.GetChannelCount(); ++index) {
        const long number = mapper.NumberFromIndex(index, false);
        if (number < 0)
            return false;
        FoundChannel& channel = channels.emplace_back();
        channel.number = static_cast<int>(number);
        channel.type = object.GetChannelDataType(index);
        if (!VFDescribe(object, index, channel))
            return false;
    }
    return true;
}

template <auto OpenObject>
bool VFReadChannels(const VDString& filename, const char* node, std::vector<FoundChannel>& channels)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->OpenFile(filename, false);
    if (file == nullptr)
        return false;
    auto* const object = (data.*OpenObject)(file->GetRoot(), node);
    const bool listed = object != nullptr && VFListChannels(*object, channels);
    if (object != nullptr)
        data.Close(object, false);
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
    const bool isHistogram = StorageFormat::IsHistogram(subId);
    if (!isHistogram && !StorageFormat::IsTimeSeries(subId))
        return VFDaxReport(DaxError::StorageType, VVRoutine, {.appended = filename});
    io.Close();
    std::vector<FoundChannel> channels;
    if (!(isHistogram ? VFReadChannels<&LQDataManager::OpenHistogram>(filename, StorageFormat::HistogramNode, channels)
                      : VFReadChannels<&LQDataManager::OpenTimeSeries>(filename, StorageFormat::TimeSeriesNode, channels)))
        return 0;
    if (channels.empty())
        return VFDaxReport(isHistogram ? DaxError::NoHistogramChannels : DaxError::NoTimeSeriesChannels, VVRoutine,
                           {.appended = filename});
    for (const FoundChannel& channel : channels) {
        int index = 0;
        if (!FIDAddChannel(id, channel.number, &index) || !FIDSetChanTitle(id, index, channel.title) ||
            !FIDSetChanUnits(id, index, channel.units) || !FIDSetChanType(id, index, channel.type))
            return 0;
    }
    return 1;
}
