#include "TimeSeriesTest.h"

#include "NumberText.h"
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

VDTimeSeriesTest::VDTimeSeriesTest(const VDFileIdHandle& id) : VDDataTest(id.Get())
{
    Open(access_);
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
    const int idIndex = VFIdIndex(GetId(), index, number);
    if (text.IsEmpty() && idIndex >= 0)
        FIDGetChanUnits(GetId(), idIndex, &text);
    channel.units = text.Str();
    channel.type = DaxDataType::Float;
    if (idIndex >= 0)
        VFCheck(FIDGetChanType(GetId(), idIndex, &channel.type));
    VFCheck(TSAccGetSampleRate(Get(), index, &channel.sampleRate));
    VFCheck(TSAccGetBaseTime(Get(), index, &channel.baseTime));
    VFCheck(TSAccGetNumPoints(Get(), index, &channel.points));
    channel.points = std::max<std::int64_t>(channel.points, 0);
    return channel;
}

void VDTimeSeriesTest::DescribeTest(VDJson& document) const
{
    document["xTitle"] = xTitle_;
    document["xUnits"] = xUnits_;
}

void VDTimeSeriesTest::DescribeTest(VDTextTable& table) const
{
    if (!xTitle_.empty() || !xUnits_.empty())
        table.Add({"X axis", xTitle_ + (xUnits_.empty() ? "" : " [" + xUnits_ + "]")});
}

VDJson VDTimeSeriesTest::DescribeChannel(const VDChannel& channel) const
{
    VDJson json = VDDataTest::DescribeChannel(channel);
    json["sampleRate"] = channel.sampleRate;
    json["baseTime"] = channel.baseTime;
    json["points"] = channel.points;
    return json;
}

void VDTimeSeriesTest::PrintChannels(const VDJson&, VDTextSink& out) const
{
    VDTextTable table("rrlllrrr");
    table.Add({"INDEX", "NUMBER", "TITLE", "UNITS", "TYPE", "SAMPLE RATE", "BASE TIME", "POINTS"});
    for (const VDChannel& channel : GetChannels())
        table.Add({std::to_string(channel.index), std::to_string(channel.number), channel.title, channel.units,
                   VFTypeWord(channel.type), VFNumberText(channel.sampleRate), VFNumberText(channel.baseTime),
                   VFNumberText(channel.points)});
    table.Print(out);
}
