#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQChannelMapper.h"

using namespace StandIn;

// Metadata between host, plug-in and sidecar, for a format that keeps none.

namespace {

class HandOverTest : public StandInTest
{
protected:
    VDTsAccHandle Open(int mode) { return OpenTest(name_, mode); }
    VDTsAccHandle Create()
    {
        const VDFileIdHandle id = NewTestId(name_, FileId, SubPlain, {DaxDataType::Float});
        return BindTest(id.Get(), true);
    }

    static LQChannelMapper* Mapper(VDTsAcc* acc) { return TestValue<TSAccGetMetaData>(acc); }
    static std::string Item(const LQChannelMapper* mapper, const char* name, int index = LQChannelMapper::GLOBAL)
    {
        VDString text;
        return mapper->GetStringMetaDataItem(name, &text, index) ? text.Str() : "none";
    }
    /// What the sidecar on disk says.
    std::string Stored(const char* name)
    {
        const VDVmdFileHandle sidecar(VMDCreate());
        LQChannelMapper* mapper = nullptr;
        return VMDAdopt(sidecar.Get(), sidecar_.c_str(), true) && VMDGetMetaData(sidecar.Get(), &mapper) ? Item(mapper, name)
                                                                                                       : "damaged";
    }
    bool IsThere() const { return VDFileSystem::FileExists(sidecar_.c_str()); }
    /// A sidecar that says "old" of the driver.
    void WriteOld()
    {
        const VDTsAccHandle acc = Open(VTTsAccOpenUpdate);
        Mapper(acc.Get())->AdoptMetaDataSet("Test", nullptr, LQChannelMapper::GLOBAL)->PutString("Driver", "old");
    }

    std::string name_ = Write("channels=1 points=3 caps=2,4,6 log=1 stats=4,2,3,2,5,6,7,8");
    std::string sidecar_ = folder_.Name("test_sta_s.vmd");
};

}  // namespace

TEST_F(HandOverTest, MetaDataGoThroughTheSidecar)
{
    float value = 0;
    {
        const VDTsAccHandle acc = Open(VTTsAccOpenUpdate);
        // Reading, with offsets too, makes no sidecar.
        EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
        EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value));
        EXPECT_TRUE(TSAccFlush(acc.Get()));
        EXPECT_FALSE(IsThere());
        TakeLog();
        LQChannelMapper* const mapper = Mapper(acc.Get());
        EXPECT_NE(TakeLog().find("AddLegacyMetaData"), std::string::npos);
        mapper->AdoptMetaDataSet("Test", nullptr, LQChannelMapper::GLOBAL)->PutString("Driver", "Jo");
        mapper->AdoptMetaDataSet("Test", nullptr, 0)->PutString("TimeStamp", "noon");
        mapper->AdoptMetaDataSet("Offset", nullptr, 0)->PutDouble("OffsetValue", 2.5);
        ASSERT_TRUE(TSAccFlush(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        const std::string log = TakeLog();
        EXPECT_NE(log.find("PutValue21 -1 type12\n"), std::string::npos) << log;
        EXPECT_NE(log.find("PutValue20 0 noon\n"), std::string::npos) << log;
        EXPECT_EQ(Stored("Driver"), "Jo");
    }
    const VDTsAccHandle acc = Open(VTTsAccOpenRead);
    EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
    EXPECT_EQ(TestValue<TSAccGetData>(acc.Get(), 0, 1, 1, nullptr), StandValue<float>(0, 1) + 2.5F);
    LQChannelMapper* const mapper = Mapper(acc.Get());
    EXPECT_EQ(Mapper(acc.Get()), mapper);
    EXPECT_EQ(Item(mapper, "Driver"), "Jo");
    EXPECT_EQ(Item(mapper, "XUnits"), "s");
    std::int64_t point = 0;
    EXPECT_TRUE(mapper->GetHugeMetaDataItem("PMax", &point, 0));
    EXPECT_EQ(point, 6);
    double applied = 0;
    EXPECT_TRUE(mapper->GetDoubleMetaDataItem("AppliedOffset", &applied, 0));
    EXPECT_NE(mapper->GetMetaDataSet("InputTestInfo", LQChannelMapper::GLOBAL), nullptr);
}

TEST_F(HandOverTest, ANewFileReplacesTheOldSidecarOnceItStands)
{
    const float value = 1;
    WriteOld();
    {
        const VDTsAccHandle acc = Create();
        ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
        LQChannelMapper* const mapper = Mapper(acc.Get());
        EXPECT_EQ(Item(mapper, "Driver"), "none");
        EXPECT_EQ(mapper->GetChannelCount(), 1);
        mapper->AdoptMetaDataSet("Test", nullptr, LQChannelMapper::GLOBAL)->PutString("Track", "new");
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 1, &value));
        EXPECT_EQ(Stored("Driver"), "old");
        ASSERT_TRUE(TSAccFlush(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_EQ(Stored("Driver"), "none");
        EXPECT_EQ(Stored("Track"), "new");
    }
    WriteOld();
    {
        const VDTsAccHandle acc = Create();
        ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
        // It isn't of this file.
        EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 1, &value));
        float read = 0;
        EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &read));
        EXPECT_EQ(Stored("Driver"), "old");
        EXPECT_TRUE(TSAccClose(acc.Get()));
        EXPECT_FALSE(IsThere());
    }
    WriteOld();
    Write("channels=1 caps=2 tsfail=Flush");
    const VDTsAccHandle acc = Create();
    ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
    EXPECT_FALSE(TSAccClose(acc.Get()));
    EXPECT_EQ(Stored("Driver"), "old");
}

TEST_F(HandOverTest, ADamagedSidecarLeavesTheDataReadable)
{
    folder_.Write("test_sta_s.vmd", "no sidecar");
    for (const int mode : {VTTsAccOpenRead, VTTsAccOpenUpdate}) {
        const VDTsAccHandle acc = Open(mode);
        LQChannelMapper* mapper = nullptr;
        EXPECT_FALSE(TSAccGetMetaData(acc.Get(), &mapper));
        EXPECT_EQ(mapper, nullptr);
        EXPECT_NE(VFErrorGetText(VFGetBaseLibError()).Find(sidecar_.c_str()), -1)
            << VFErrorGetText(VFGetBaseLibError()).Str();
        float value = 0;
        EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value));
        // What their offsets are isn't known.
        EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
        EXPECT_FALSE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value));
        EXPECT_TRUE(TSAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    }
    EXPECT_EQ(TestReadFile(sidecar_), "no sidecar");
}
