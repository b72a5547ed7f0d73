#include "daxlib/HistogramPlugin.h"
#include "storage/StorageFileTypes.h"
#include "support/TestFileId.h"
#include "support/TestHistogram.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdstore/LQChannelMapper.h"

#include <set>

// What the histogram family does around the calls of its plug-in, which is made up here.

namespace {

/// What the plug-in was told, and what it answers.
struct Plugin
{
    std::string log;
    std::set<int> capabilities = {DaxHistogram::Writable};
    TestHist histogram = MakeHist(VTHistFormatDouble);
    bool puts = true;
};
Plugin* VVPlugin = nullptr;

int Note(const std::string& text)
{
    VVPlugin->log += text + "; ";
    return 1;
}

}  // namespace

#define TEST_API extern "C" __attribute__((visibility("default")))
TEST_API void* TestHFCreate(const char*)
{
    return VVPlugin;
}
TEST_API int TestHFRelease(void*)
{
    return 1;
}
TEST_API int TestHFSetId(void*, VDFileId*, char)
{
    return 1;
}
TEST_API int TestHFOpen(void*, int mode)
{
    return Note("Open " + std::to_string(mode));
}
TEST_API int TestHFClose(void*)
{
    return 1;
}
TEST_API int TestHFFlush(void*)
{
    return Note("Flush");
}
TEST_API void TestHFGetLastError(VDString& text)
{
    text = "VARDO";
}
TEST_API int TestHFGetCapability(void*, int capability, char* answer)
{
    *answer = VVPlugin->capabilities.contains(capability);
    return 1;
}
TEST_API int TestHFGetValue(void*, long, int, VDVariant*)
{
    return 1;
}
TEST_API int TestHFPutValue(void*, long, int key, VDVariant* value)
{
    VDString text;
    value->ConvertToString(&text);
    return Note("put " + std::to_string(key) + " " + text.Str());
}
TEST_API int TestHFGetHistogram(void*, long channel, VDHist** histogram)
{
    *histogram = channel == 0 && VVPlugin->histogram != nullptr ? VFHistCreate() : nullptr;
    return *histogram == nullptr || VFHistCopy(*histogram, VVPlugin->histogram.get());
}
TEST_API int TestHFPutHistogram(void*, long channel, VDHist*)
{
    return Note("histogram " + std::to_string(channel)) && VVPlugin->puts;
}
TEST_API int TestHFLoadMetaData(void*, LQChannelMapper**)
{
    return 0;
}
TEST_API int TestHFAddLegacyMetaData(void*, LQChannelMapper*)
{
    return Note("legacy");
}
#undef TEST_API

namespace {

constexpr int Read = 1;
constexpr int Update = 2;

class HistogramTest : public testing::Test
{
protected:
    HistogramTest()
    {
        VVPlugin = &plugin_;
        EXPECT_TRUE(HFAccAddPlugin(StorageFormat::TimeSeriesClass, "TestHF", "daxlib", ""))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        TestAddChannels(id_, {4, 2});
        FIDSetFileId(id_.Get(), DaxStorageFileId, StorageFormat::TimeSeries);
        FIDSetChanTitle(id_.Get(), 0, "Fourth");
        FIDSetIdentified(id_.Get(), 1);
        FIDSetInfoLoaded(id_.Get(), 1);
    }
    VDHistAccHandle Open(int mode)
    {
        VDHistAccHandle acc(HFAccCreate());
        EXPECT_TRUE(HFAccSetId(acc.Get(), id_.Get(), 0) && HFAccOpen(acc.Get(), mode))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }
    std::string TakeLog() { return std::exchange(plugin_.log, {}); }
    /// An attribute of the first channel; "none" if there is none.
    static std::string Item(const VDHistAccHandle& acc, const char* name)
    {
        Z4PropertySet& set = *TestValue<HFAccGetMetaData>(acc.Get())->GetMetaDataSet(LQChannelMapper::ATTRIBUTES, 0);
        return set.Exists(name, false) ? set.GetProperty(name, true)->ToString().Str() : "none";
    }

    TestFolder folder_;
    VDFileIdHandle id_ = TestId(folder_.Write("test.z4t", ""));
    Plugin plugin_;
};

}  // namespace

TEST_F(HistogramTest, CallsAreCheckedAndFailUnderTheFamilysCodes)
{
    VDHistAccHandle acc(HFAccCreate());
    const TestHist hist = MakeHist(1);
    VDHist* got = hist.get();
    VDFileIdHandle copy;
    ExpectFailure(HFAccGetId(acc.Get(), copy.Out()), -327795, "File ID object not set", "VDHistAcc::GetId");
    ExpectFailure(HFAccOpen(acc.Get(), Read), -328009, "", "VDHistAcc::Open");
    ExpectFailure(HFAccSetId(acc.Get(), TestId(folder_.Name("empty")).Get(), 0), -327809, "Empty channel list",
                  "VDHistAcc::SetId");
    acc = Open(Read);
    EXPECT_NE(TakeLog().find("put 5 False; Open 1"), std::string::npos) << "the use of offsets is always told";
    EXPECT_TRUE(HFAccGetId(acc.Get(), copy.Out()));
    copy.Reset();
    EXPECT_EQ(TestValue<HFAccGetChanTitle>(acc.Get(), 1), "Fourth") << "in the order of the numbers";
    ExpectFailure(HFAccGetHistogram(acc.Get(), 2, &got), -327995, "", "VDHistAcc::GetHistogram");
    EXPECT_EQ(got, nullptr);
    EXPECT_EQ(TestValue<HFAccGetHistogram>(acc.Get(), 1), nullptr) << "a plug-in may have none";
    ExpectFailure(HFAccPutHistogram(acc.Get(), 0, hist.get()), -327998, "Writing is not supported for this file format");

    acc = Open(Update);
    plugin_.puts = false;
    ExpectFailure(HFAccPutHistogram(acc.Get(), 1, hist.get()), -327807, "Unknown error in histogram plugin",
                  "VDHistAcc::PutData");
    ExpectFailure(HFAccPutHistogram(acc.Get(), 1, nullptr), VDBaseError::HistHandle);
    EXPECT_EQ(TakeLog().find("histogram 1; histogram 1"), std::string::npos) << "nobody sees a handle that is none";
}

TEST_F(HistogramTest, EachHistogramIsDescribedInItsAttributes)
{
    const auto expect = [](const VDHistAccHandle& acc, const std::vector<std::pair<const char*, const char*>>& items) {
        for (const auto& [name, value] : items)
            EXPECT_EQ(Item(acc, name), value) << name;
    };
    {
        const VDHistAccHandle acc = Open(Update);
        const double bins[] = {3, -1e31};
        VFHistSetXLimits(plugin_.histogram.get(), 0, 10, 1);
        VFHistSetFormat(plugin_.histogram.get(), 5);
        VFHistSetXYBins_D(plugin_.histogram.get(), 0, bins, 2);
        expect(acc, {{"Type", "7"},
                     {"3D", "True"},
                     {"Format", "5"},
                     {"DataType", "0"},
                     {"XMax", "10"},
                     {"XBinSize", "10"},
                     {"XBinBoundaries", "none"},
                     {"YBinSize", "none"},
                     {"YBinBoundaries", "-3.5,0.1,1e+09"},
                     {"YBinCount", "2"},
                     {"YBoundaryRule", "2"},
                     {"YActualsSet", "False"},
                     {"YActualMin", "0"},
                     {"OverflowXMinYMaxSeg", "1152921504606849024"},
                     {"OverflowsExceeded", "True"},
                     {"OverflowCount", "2"},
                     {"ResidualCount", "3"},
                     {"ZMin", "-1e+31"},
                     {"ZMax", "3"},
                     {"Flags", "0"}});
        const std::string log = TakeLog();
        EXPECT_NE(log.find("legacy"), std::string::npos);
        ASSERT_TRUE(HFAccFlush(acc.Get()));
        EXPECT_EQ(TakeLog(), "put 4 ; Flush; ");
    }
    // Another histogram came into the file: nothing of the earlier one stays in the sidecar.
    plugin_.histogram.reset(VFHistCreate());
    const VDHistAccHandle acc = Open(Update);
    expect(acc, {{"Format", "none"},
                 {"YBinBoundaries", "none"},
                 {"YBinSize", "0"},
                 {"XBinCount", "0"},
                 {"YBoundaryRule", "1"},
                 {"ZMin", "1e+30"}});
}

TEST_F(HistogramTest, OffsetsAreOfTheValuesThatAreGivenOut)
{
    {
        const VDHistAccHandle acc = Open(Update);
        VFHistSetOffsetAxes(plugin_.histogram.get(), 1, 0);
        EXPECT_TRUE(HFAccSetUseOffset(acc.Get(), 1));
        TestValue<HFAccGetMetaData>(acc.Get())->AdoptMetaDataSet("Offset", nullptr, 0)->PutDouble("OffsetValue", 100);
    }
    for (const int mode : {Update, Read}) {
        const VDHistAccHandle acc = Open(mode);
        EXPECT_TRUE(HFAccSetUseOffset(acc.Get(), 1));
        const TestHist hist(TestValue<HFAccGetHistogram>(acc.Get(), 0));
        EXPECT_EQ(VFHistGetDescription(hist.get())->x.min, 99.9);
        EXPECT_EQ(Item(acc, "XMin"), mode == Read ? "99.9" : "-0.1") << "the sidecar speaks of the values in the file";
    }
}
