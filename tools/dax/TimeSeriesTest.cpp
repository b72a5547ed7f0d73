#include "TimeSeriesTest.h"

#include "ToolError.h"

#include <algorithm>

namespace {

/// Blocks beyond this gain nothing and would cost memory.
constexpr std::int64_t VVMaxBlockSize = 262144;

/// Position of the channel in the id's list: the same as in the access object's, unless the test is served through another.
int VFIdIndex(VDFileId* id, int index, int number)
{
    int found = 0;
    if (FIDGetChanNumber(id, index, &found) != 0 && found == number)
        return index;
    return FIDGetChanIndex(id, number, &found) != 0 ? found : -1;
}

}  // namespace

std::string VFTypeWord(int type)
{
    switch (type & 0xffff) {  // older formats give the low half alone
    case 4200:
        return "short";
    case DaxDataType::Long & 0xffff:
        return "long";
    case DaxDataType::Huge & 0xffff:
        return "int64";
    case DaxDataType::Float & 0xffff:
        return "float";
    case DaxDataType::Double & 0xffff:
        return "double";
    case DaxDataType::Digital32 & 0xffff:
        return "digital32";
    case DaxDataType::Digital64 & 0xffff:
        return "digital64";
    default:
        return "type" + std::to_string(type & 0xffff);
    }
}

VDTimeSeriesTest::VDTimeSeriesTest(const VDFileIdHandle& id) : id_(id.Get()), acc_(TSAccCreate())
{
    VFCheck(static_cast<bool>(acc_));
    int accessType = 0;
    VDString accessClass;
    VDString description;
    VFCheck(FIDGetAccessInfo(id_, &accessType, &accessClass, &description));
    if (accessType != VTFileAccessTimeSeries) {
        VDString filename;
        VDString extension;
        FIDGetFilename(id_, &filename, &extension);
        VFFail(DaxToolError::NotTimeSeries, "The test holds no time series but " + description.Str() + ": " + filename.Str(),
               "VDTimeSeriesTest");
    }
    VFCheck(TSAccSetId(Get(), id_, 0));
    VFCheck(TSAccOpen(Get(), VTTsAccOpenRead));
    long block = 0;
    VFCheck(TSAccGetBufferSize(Get(), &block));
    blockSize_ = std::clamp<std::int64_t>(block, 1, VVMaxBlockSize);

    VDArrayWithSort<long> numbers;
    VFCheck(TSAccGetChans(Get(), &numbers));
    for (int index = 0; index < numbers.GetSize(); ++index)
        channels_.push_back(ReadChannel(index, static_cast<int>(numbers[index])));
    VDString text;
    VFCheck(TSAccGetXTitle(Get(), &text));
    xTitle_ = text.Str();
    VFCheck(TSAccGetXUnits(Get(), &text));
    xUnits_ = text.Str();
    VFErrorClear();
}

VDChannel VDTimeSeriesTest::ReadChannel(int index, int number) const
{
    VDChannel channel;
    channel.index = index;
    channel.number = number;
    VDString text;
    VFCheck(TSAccGetYTitle(Get(), index, &text));
    channel.yTitle = text.Str();
    VFCheck(TSAccGetChanTitle(Get(), index, &text));
    channel.title = text.IsEmpty() ? channel.yTitle : text.Str();
    VFCheck(TSAccGetYUnits(Get(), index, &text));
    const int idIndex = VFIdIndex(id_, index, number);
    if (text.IsEmpty() && idIndex >= 0)
        FIDGetChanUnits(id_, idIndex, &text);
    channel.units = text.Str();
    channel.type = DaxDataType::Float;
    if (idIndex >= 0)
        VFCheck(FIDGetChanType(id_, idIndex, &channel.type));
    VFCheck(TSAccGetSampleRate(Get(), index, &channel.sampleRate));
    VFCheck(TSAccGetBaseTime(Get(), index, &channel.baseTime));
    VFCheck(TSAccGetNumPoints(Get(), index, &channel.points));
    channel.points = std::max<std::int64_t>(channel.points, 0);
    return channel;
}
