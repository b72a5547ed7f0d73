#include "support/TestSupport.h"
#include "vdstore/LQChannelMapper.h"
#include "vdstore/VDStoreErrorCodes.h"

TEST(ChannelMapper, NumbersAreUniqueAndFollowTheirChannels)
{
    LQChannelMapper mapper(nullptr);
    for (const long number : {5L, 3L, 9L})
        ASSERT_TRUE(mapper.SetChannelNumber(number, mapper.Append()));
    EXPECT_FALSE(mapper.SetChannelNumber(9, 0)) << "another channel has it";
    EXPECT_FALSE(mapper.SetChannelNumber(-1, 0));
    EXPECT_FALSE(mapper.SetChannelNumber(1, 3));
    EXPECT_TRUE(mapper.SetChannelNumber(5, 0)) << "its own";
    EXPECT_TRUE(mapper.SetChannelNumber(7, 0));
    EXPECT_EQ(mapper.IndexFromNumber(5, false), -1);
    EXPECT_EQ(mapper.IndexFromNumber(7, false), 0);

    ASSERT_TRUE(mapper.RemoveChannel(0));
    EXPECT_EQ(mapper.IndexFromNumber(3, false), 0);
    EXPECT_EQ(mapper.IndexFromNumber(9, false), 1);
    EXPECT_EQ(mapper.GetChannel(1)->GetIndex(), 1);
    EXPECT_EQ(mapper.IndexFromNumber(7, false), -1);

    LQChannelEntry* const unnumbered = mapper.Append();
    long number = 0;
    EXPECT_TRUE(mapper.GetChannelNumber(number, unnumbered));
    EXPECT_LT(number, 0);
    EXPECT_FALSE(mapper.GetChannelNumber(number, 3));

    LQChannelMapper other(nullptr);
    EXPECT_FALSE(other.SetChannelNumber(4, unnumbered)) << "an entry of another mapper";
    EXPECT_FALSE(other.SetChanTitle("x", unnumbered));
    ExpectNoError();
    EXPECT_EQ(mapper.IndexFromNumber(42, true), -1);
    ExpectError(VDStoreError::NoChannelNumber, "42");
    EXPECT_LT(mapper.NumberFromIndex(2, true), 0);
    ExpectError(VDStoreError::NoChannelIndex, "2");
}

TEST(ChannelMapper, EachSlotHasItsOwnSets)
{
    LQChannelMapper mapper(nullptr);
    mapper.Append();
    bool created = false;
    Z4PropertySet* const global = mapper.AdoptMetaDataSet("Sensor", &created, LQChannelMapper::GLOBAL);
    EXPECT_TRUE(created);
    Z4PropertySet* const channel = mapper.AdoptMetaDataSet("Sensor", &created, 0);
    EXPECT_TRUE(created);
    EXPECT_NE(global, channel);
    EXPECT_EQ(mapper.AdoptMetaDataSet("Sensor", &created, 0), channel);
    EXPECT_FALSE(created);
    EXPECT_EQ(mapper.GetMetaDataSet(0, 0), channel);
    EXPECT_EQ(mapper.GetMetaDataSet("sensor", 0), nullptr);
    for (const int index : {1, -2, static_cast<int>(0xf0000001U)}) {
        EXPECT_EQ(mapper.AdoptMetaDataSet("Sensor", nullptr, index), nullptr);
        EXPECT_EQ(mapper.GetMetaDataSetCount(index), 0);
    }
    EXPECT_TRUE(mapper.DeleteMetaDataSet("Sensor", 0));
    EXPECT_FALSE(mapper.DeleteMetaDataSet("Sensor", 0));
    EXPECT_EQ(mapper.GetMetaDataSetCount(LQChannelMapper::GLOBAL), 1);
    mapper.Clear();
    EXPECT_EQ(mapper.GetChannelCount(), 0);
    EXPECT_EQ(mapper.GetMetaDataSetCount(LQChannelMapper::GLOBAL), 0);
}

TEST(ChannelMapper, SingleItemsComeFromAttributesFirst)
{
    LQChannelMapper mapper(nullptr);
    mapper.Append();
    mapper.AdoptMetaDataSet("Sensor", nullptr, 0)->AddString("TimeStamp", "set");
    mapper.GetMetaDataSet("Sensor", 0)->AddDouble("Gain", 2.5);

    VDString text;
    EXPECT_TRUE(mapper.GetStringMetaDataItem("TimeStamp", &text, 0));
    EXPECT_EQ(text, "set");
    EXPECT_TRUE(mapper.SetStringAttribute("TimeStamp", "attribute", 0));
    EXPECT_TRUE(mapper.GetStringMetaDataItem("TimeStamp", &text, 0));
    EXPECT_EQ(text, "attribute");

    EXPECT_FALSE(mapper.GetStringMetaDataItem("Gain", &text, 0)) << "it is no text";
    double gain = 0;
    EXPECT_TRUE(mapper.GetDoubleMetaDataItem("Gain", &gain, 0));
    EXPECT_EQ(gain, 2.5);
    mapper.GetMetaDataItem("TimeStamp", 0)->SetDefined(false);
    EXPECT_FALSE(mapper.GetStringMetaDataItem("TimeStamp", &text, 0));
    EXPECT_FALSE(mapper.SetDoubleAttribute("Gain", 1, 5));
    EXPECT_EQ(mapper.GetMetaDataItem("Gain", LQChannelMapper::GLOBAL), nullptr);
}
