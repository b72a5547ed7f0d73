#include "DataTest.h"

#include "HistogramTest.h"
#include "SpectraTest.h"
#include "TableTest.h"
#include "TimeSeriesTest.h"
#include "ToolError.h"

#include <algorithm>

namespace {

/// A test of a kind without data calls: metadata alone, or a kind that nobody serves.
class VDPlainTest : public VDDataTest
{
public:
    VDPlainTest(VDFileId* id, int accessType) : VDDataTest(id), access_(VFMakeTestAccess(accessType))
    {
        if (access_ != nullptr)
            Open(*access_);
        channels_ = ListChannels(id);
    }

    VDTestAccess* Access() const override { return access_.get(); }

private:
    std::unique_ptr<VDTestAccess> access_;
};

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

void VDDataTest::Open(VDTestAccess& access) const
{
    VFCheck(access.SetId(id_, false));
    VFCheck(access.Open(VTTestOpen::Read));
}

std::vector<VDChannel> VDDataTest::ListChannels(VDFileId* id)
{
    int count = 0;
    VFCheck(FIDGetNumChans(id, &count));
    std::vector<VDChannel> channels(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        VDChannel& channel = channels[static_cast<std::size_t>(index)];
        VDString text;
        channel.index = index;
        VFCheck(FIDGetChanNumber(id, index, &channel.number));
        VFCheck(FIDGetChanTitle(id, index, &text));
        channel.title = text.Str();
        VFCheck(FIDGetChanUnits(id, index, &text));
        channel.units = text.Str();
        VFCheck(FIDGetChanType(id, index, &channel.type));
    }
    return channels;
}

VDJson VDDataTest::DescribeChannel(const VDChannel& channel) const
{
    return {{"index", channel.index},
            {"number", channel.number},
            {"title", channel.title},
            {"units", channel.units},
            {"type", VFTypeWord(channel.type)}};
}

void VDDataTest::PrintChannels(const VDJson&, VDTextSink& out) const
{
    VDTextTable table("rrlll");
    table.Add({"INDEX", "NUMBER", "TITLE", "UNITS", "TYPE"});
    for (const VDChannel& channel : channels_)
        table.Add({std::to_string(channel.index), std::to_string(channel.number), channel.title, channel.units,
                   VFTypeWord(channel.type)});
    table.Print(out);
}

std::int64_t VDDataTest::CountValues(const VDChannel& channel, std::int64_t limit) const
{
    return std::min(channel.points, limit);
}

std::unique_ptr<VDDataTest> VFOpenDataTest(const VDFileIdHandle& id)
{
    int accessType = 0;
    VDString accessClass;
    VDString description;
    VFCheck(FIDGetAccessInfo(id.Get(), &accessType, &accessClass, &description));
    switch (accessType) {
    case VTFileAccessTimeSeries:
        return std::make_unique<VDTimeSeriesTest>(id);
    case VTFileAccessMultiColumn:
        return std::make_unique<VDTableTest>(id.Get());
    case VTFileAccessHistogram:
        return std::make_unique<VDHistogramTest>(id.Get());
    case VTFileAccessComplexFrequency:
        return std::make_unique<VDSpectraTest>(id.Get());
    default:
        return std::make_unique<VDPlainTest>(id.Get(), accessType);
    }
}
