#include "storage/VDHistAccPluginBase.h"
#include "support/TestHistogram.h"
#include "support/TestTimeSeries.h"

#include "daxlib/HFAcc.h"
#include "daxlib/HFAccGen.h"
#include "daxlib/VDMetaDataReader.h"
#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQDataManager.h"

namespace {

constexpr int Read = 1;
constexpr int Update = 2;
constexpr int Create = 3;

class StorageHistogramTest : public testing::Test
{
protected:
    VDFileIdHandle NewId(int subId, const std::vector<int>& numbers)
    {
        VDFileIdHandle id = NewTestId(name_, DaxStorageFileId, subId, {});
        for (const int number : numbers) {
            int index = 0;
            FIDAddChannel(id.Get(), number, &index);
            FIDSetChanTitle(id.Get(), index, ("Channel " + std::to_string(number)).c_str());
        }
        return id;
    }
    static VDHistAccHandle Open(VDFileId* id, int mode)
    {
        VDHistAccHandle acc(HFAccCreate());
        EXPECT_TRUE(HFAccSetId(acc.Get(), id, mode >= Create) && HFAccOpen(acc.Get(), mode))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }
    VDHistAccHandle Open(int mode) { return Open(IdentifyTest(name_).Get(), mode); }
    static TestHist Get(const VDHistAccHandle& acc, int index)
    {
        return TestHist(TestValue<HFAccGetHistogram>(acc.Get(), index));
    }

    TestFolder folder_;
    std::string name_ = folder_.Name("test.z4h");
};

}  // namespace

TEST_F(StorageHistogramTest, EveryFormatComesBackWithAllThatBelongsToIt)
{
    for (const int format : {1, 2, 3, 4, 5}) {
        const TestHist hist = MakeHist(format);
        {
            const VDHistAccHandle acc = Open(NewId(6, {7, 3}).Get(), Create);
            EXPECT_TRUE(HFAccSetChanTitle(acc.Get(), 1, "Damage"));
            EXPECT_TRUE(TestValue<HFAccGetMetaData>(acc.Get())->SetStringAttribute("Sensor", "S 17", 1));
            EXPECT_TRUE(HFAccPutHistogram(acc.Get(), 1, hist.get())) << VFErrorGetText(VFGetBaseLibError()).Str();
            EXPECT_TRUE(IsSame(Get(acc, 1).get(), hist.get())) << "before the flush";
            EXPECT_TRUE(HFAccClose(acc.Get()));
        }
        const VDFileIdHandle id = IdentifyTest(name_);
        EXPECT_EQ(TestValue<FIDGetChanNumber>(id.Get(), 0), 3);
        EXPECT_EQ(TestValue<FIDGetChanTitle>(id.Get(), 1), "Damage");
        EXPECT_EQ(TestValue<FIDGetChanUnits>(id.Get(), 1), "1");
        const VDHistAccHandle acc = Open(id.Get(), Read);
        EXPECT_TRUE(IsSame(Get(acc, 1).get(), hist.get())) << format;
        // A channel that was never put has no bins, and no value of another.
        EXPECT_EQ(VFHistGetDescription(Get(acc, 0).get())->x.binCount, 0);
        EXPECT_EQ(TestValue<HFAccGetActualChanNumber>(acc.Get(), 1), 7);

        const LQChannelMapper& mapper = *TestValue<HFAccGetMetaData>(acc.Get());
        const int types[] = {Z4TypeDouble, Z4TypeHuge, Z4TypeLong, Z4TypeFloat, 0};
        const auto item = [&mapper](const char* name) { return mapper.GetMetaDataItem(name, 1)->ToString(); };
        EXPECT_EQ(item("DataType"), std::to_string(types[format - 1]).c_str());
        EXPECT_EQ(item("YBinBoundaries"), "-3.5,0.1,1e+09");
        EXPECT_EQ(item("XBinLabels"), "low,,high, or so");
        EXPECT_EQ(item("Sensor"), "S 17");
        ExpectFailure(HFAccPutHistogram(acc.Get(), 1, hist.get()), -327998, "Writing is not supported",
                      "VDHistAcc::PutHistogram");
    }
}

TEST_F(StorageHistogramTest, TheFirstFormatHoldsForAllThatItCanHold)
{
    const TestHist longs = MakeHist(VTHistFormatLong);
    const TestHist huge = MakeHist(VTHistFormatHuge);
    {
        const VDHistAccHandle acc = Open(NewId(6, {1, 2, 3}).Get(), Create);
        const TestHist unset(VFHistCreate());
        EXPECT_TRUE(HFAccPutHistogram(acc.Get(), 0, unset.get()));
        for (const int index : {1, 2})
            EXPECT_TRUE(HFAccPutHistogram(acc.Get(), index, (index == 1 ? longs : huge).get()));
    }
    const VDHistAccHandle acc = Open(Update);
    int format = 0;
    EXPECT_TRUE(VFHistGetFormat(Get(acc, 0).get(), &format));
    EXPECT_EQ(format, 1);
    EXPECT_TRUE(VFHistGetFormat(Get(acc, 1).get(), &format));
    EXPECT_EQ(format, 1);
    EXPECT_TRUE(VFHistSetFormat(longs.get(), 1));
    EXPECT_TRUE(IsSame(Get(acc, 1).get(), longs.get()));
    EXPECT_TRUE(IsSame(Get(acc, 2).get(), huge.get())) << "no double holds its bins";

    // What is put in a file that is opened again takes the place of its channel's alone.
    EXPECT_TRUE(HFAccPutHistogram(acc.Get(), 0, huge.get()) && HFAccClose(acc.Get()) && HFAccOpen(acc.Get(), Read));
    EXPECT_TRUE(IsSame(Get(acc, 0).get(), huge.get()));
    EXPECT_TRUE(IsSame(Get(acc, 1).get(), longs.get()));
    EXPECT_EQ(TestValue<HFAccGetChanTitle>(acc.Get(), 2), "Channel 3");
}

TEST_F(StorageHistogramTest, OffsetsMoveTheAxes)
{
    const TestHist hist = MakeHist(VTHistFormatDouble);
    VFHistSetOffsetAxes(hist.get(), 1, 0);
    {
        const VDHistAccHandle acc = Open(NewId(6, {1}).Get(), Create);
        EXPECT_TRUE(HFAccPutHistogram(acc.Get(), 0, hist.get()));
        TestValue<HFAccGetMetaData>(acc.Get())->AdoptMetaDataSet("Offset", nullptr, 0)->PutDouble("OffsetValue", 2.5);
    }
    const VDHistAccHandle acc = Open(Read);
    EXPECT_TRUE(HFAccSetUseOffset(acc.Get(), 1));
    const VDHistDescription& before = *VFHistGetDescription(hist.get());
    const TestHist moved = Get(acc, 0);
    const VDHistDescription& after = *VFHistGetDescription(moved.get());
    EXPECT_EQ(after.x.min, before.x.min + 2.5);
    EXPECT_EQ(after.x.actualMax, before.x.actualMax + 2.5);
    EXPECT_EQ(after.y.min, before.y.min);
    EXPECT_EQ(after.overflows[1].x, before.overflows[1].x + 2.5);
    EXPECT_EQ(after.residuals[1], before.residuals[1] + 2.5);
    EXPECT_EQ(TestValue<HFAccGetMetaData>(acc.Get())->GetMetaDataItem("AppliedOffset", 0)->ToString(), "2.5");
}

TEST_F(StorageHistogramTest, TemporaryAndWrongFilesAreToldApart)
{
    Open(NewId(6, {1}).Get(), Create);
    VDMetaDataReader reader;
    LQChannelMapper* mapper = nullptr;
    EXPECT_TRUE(reader.SetFileId(IdentifyTest(name_).Get()) && reader.GetMetaData(&mapper));
    EXPECT_EQ(mapper->GetMetaDataItem("ChanTitle", 0)->ToString(), "Channel 1");
    const VDHistAccHandle other(HFAccCreate());
    EXPECT_TRUE(HFAccSetId(other.Get(), NewId(6, {2}).Get(), 0));
    ExpectFailure(HFAccOpen(other.Get(), Read), -329886, name_, "VDHistAccZ4::Open");
    void* const instance = HFAccGenCreate("fb3dae1e-0e86-4f2d-9b58-3766eae9a6eb");
    ExpectFailure(HFAccGenSetId(instance, NewId(11, {1}).Get(), 0), -327794, "Invalid file ID for histogram file",
                  "VDHistAccZ4::SetId");
    EXPECT_TRUE(HFAccGenRelease(instance));
    ExpectFailure(HFAccGenCreate("none"), -328013, "", "HFAccGenCreate");

    BindTest(NewTestId(name_, DaxStorageFileId, 11, {1}).Get(), true);
    {
        const VDTsAccHandle series = BindTest(NewTestId(name_, DaxStorageFileId, 11, {1}).Get(), true);
        EXPECT_TRUE(TSAccOpen(series.Get(), VTTsAccOpenCreate));
    }
    EXPECT_TRUE(HFAccSetId(other.Get(), NewId(6, {1}).Get(), 0));
    ExpectFailure(HFAccOpen(other.Get(), Read), -329884, "Wrong sub type on Z4 histogram file", "VDHistAccZ4::Open");

    name_ = folder_.Name("scratch.y4h");
    {
        const VDFileIdHandle id = NewId(14, {1});
        const TestHist hist = MakeHist(1);
        {
            const VDHistAccHandle acc = Open(id.Get(), Create);
            EXPECT_TRUE(HFAccPutHistogram(acc.Get(), 0, hist.get()));
        }
        const VDFileInfoHandle info(FINFCreate());
        FIDRemoveAllChans(id.Get());
        EXPECT_TRUE(FINFLoadInfo(info.Get(), id.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_TRUE(IsSame(Get(Open(id.Get(), Read), 0).get(), hist.get()));
    }
    EXPECT_FALSE(VDFileSystem::FileExists(name_.c_str()));
}
