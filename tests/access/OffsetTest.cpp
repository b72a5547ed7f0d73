#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

using namespace StandIn;

namespace {

using OffsetTest = StandInTest;

/// The item of the set "Offset" of channel index 0; a value that no test uses if there is none.
double Item(VDTsAcc* acc, const char* name)
{
    LQChannelMapper* const mapper = TestValue<TSAccGetMetaData>(acc);
    double value = -999;
    if (Z4PropertySet* set = mapper == nullptr ? nullptr : mapper->GetMetaDataSet("Offset", 0))
        set->GetDouble(name, &value);
    return value;
}

}  // namespace

TEST_F(OffsetTest, AddsMetaDataOffsetsToFloatAndDouble)
{
    const VDTsAccHandle acc = OpenTest(Write("channels=1 points=3 caps=2,7 offset=2.5"));
    EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
    float values[3] = {};
    ASSERT_TRUE(TSAccGetData(acc.Get(), 0, 1, 3, nullptr, values)) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_EQ(values[2], StandValue<float>(0, 3) + 2.5F);
    double doubles[3] = {};
    ASSERT_TRUE(TSAccGetDataDoublePrecision(acc.Get(), 0, 1, 3, nullptr, doubles));
    EXPECT_EQ(doubles[0], StandValue<double>(0, 1) + 2.5);
    EXPECT_EQ(TestValue<TSAccGetDataDigital32>(acc.Get(), 0, 1, 1, nullptr), StandValue<std::uint32_t>(0, 1));
    EXPECT_EQ(Item(acc.Get(), "OffsetValue"), -999);
    // The private copy of the metadata stays the same.
    EXPECT_EQ(Item(acc.Get(), "AppliedOffset"), 2.5);
    EXPECT_EQ(TestValue<TSAccGetMetaData>(acc.Get()), TestValue<TSAccGetMetaData>(acc.Get()));
}

TEST_F(OffsetTest, LeavesScheduleOffsetsToThePlugin)
{
    const VDTsAccHandle acc = OpenTest(Write("fileid=700 subid=1 channels=1 points=3 caps=2,7 schedule=0.5 log=1"));
    TakeLog();
    EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
    EXPECT_NE(TakeLog().find("PutValue22 -1 True"), std::string::npos);
    EXPECT_EQ(TestValue<TSAccGetData>(acc.Get(), 0, 1, 1, nullptr), StandValue<float>(0, 1));
    EXPECT_EQ(Item(acc.Get(), "AppliedOffset"), 0.5);
    EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 0));
    EXPECT_EQ(Item(acc.Get(), "OffsetValue"), 0.5);
    EXPECT_EQ(Item(acc.Get(), "AppliedOffset"), -999);
}

TEST_F(OffsetTest, GoWithTheTest)
{
    const std::string name = Write("channels=1 points=3 caps=2,7 offset=2.5");
    float value = 0;
    {
        // What the format keeps goes on to speak of the values as they are in the file.
        const VDTsAccHandle acc = OpenTest(name, VTTsAccOpenUpdate);
        EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
        EXPECT_EQ(TestValue<TSAccGetData>(acc.Get(), 0, 1, 1, nullptr), StandValue<float>(0, 1) + 2.5F);
        EXPECT_EQ(Item(acc.Get(), "OffsetValue"), 2.5);
        EXPECT_EQ(Item(acc.Get(), "AppliedOffset"), -999);
    }
    const VDTsAccHandle acc = OpenTest(name);
    EXPECT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
    ASSERT_TRUE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value));
    const VDFileIdHandle next = IdentifyTest(Write("channels=1 points=3 caps=2 log=1", "next.sta"));
    TakeLog();
    ASSERT_TRUE(TSAccSetId(acc.Get(), next.Get(), 0));
    EXPECT_NE(TakeLog().find("PutValue22 -1 True"), std::string::npos);
    ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    EXPECT_EQ(TestValue<TSAccGetData>(acc.Get(), 0, 1, 1, nullptr), StandValue<float>(0, 1));
}
