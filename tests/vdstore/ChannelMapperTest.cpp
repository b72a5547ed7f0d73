#include "support/TestSupport.h"
#include "vdstore/LQChannelMapper.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <random>

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

// Channels go from any place, and come between; the list is put together anew now and then on the way.
TEST(ChannelMapper, FindsChannelsByPlaceAndNumberWhateverWent)
{
    LQChannelMapper mapper(nullptr);
    std::vector<long> numbers;
    std::mt19937 random(3);
    for (long number = 0; number < 600 || !numbers.empty(); ++number) {
        if (number < 600) {
            ASSERT_TRUE(mapper.SetChannelNumber(number, mapper.Append()));
            numbers.push_back(number);
        }
        for (auto goes = random() % 3; goes > 0 && !numbers.empty() && number > 200; --goes) {
            const std::size_t at = random() % 2 == 0 ? 0 : random() % numbers.size();
            ASSERT_TRUE(mapper.RemoveChannel(static_cast<int>(at)));
            ASSERT_EQ(mapper.IndexFromNumber(numbers[at], false), -1);
            numbers.erase(numbers.begin() + static_cast<std::ptrdiff_t>(at));
        }
        ASSERT_EQ(mapper.GetChannelCount(), static_cast<int>(numbers.size()));
        for (int i = 0; i < mapper.GetChannelCount(); ++i) {
            ASSERT_EQ(mapper.NumberFromIndex(i, false), numbers[static_cast<std::size_t>(i)]);
            ASSERT_EQ(mapper.IndexFromNumber(numbers[static_cast<std::size_t>(i)], false), i);
        }
    }
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
