#include "storage/RecordSizeTuning.h"
#include "storage/StorageFileTypes.h"
#include "storage/VDTsAccPluginBase.h"
#include "support/TestTimeSeries.h"

#include "daxlib/TSAccGen.h"
#include "vdarchive/Z4Size.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VFTrace.h"
#include "vdstore/LQDataManager.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <thread>

namespace {

constexpr int All = static_cast<int>(DaxChannel::All);

struct NewChannel
{
    int number;
    int type;
};

class StorageAccessTest : public testing::Test
{
protected:
    VDFileIdHandle NewId(int subId, const std::vector<NewChannel>& channels)
    {
        VDFileIdHandle id = NewTestId(name_, DaxStorageFileId, subId, {});
        for (const NewChannel& channel : channels) {
            int index = 0;
            FIDAddChannel(id.Get(), channel.number, &index);
            FIDSetChanType(id.Get(), index, channel.type);
            FIDSetChanTitle(id.Get(), index, ("Channel " + std::to_string(channel.number)).c_str());
        }
        return id;
    }
    VDTsAccHandle Create(int subId, const std::vector<NewChannel>& channels)
    {
        VDTsAccHandle acc = BindTest(NewId(subId, channels).Get(), true);
        EXPECT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate)) << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }

    TestFolder folder_;
    std::string name_ = folder_.Name("test.z4t");
};

template <class T>
std::vector<T> Ramp(std::size_t count, T first)
{
    std::vector<T> values(count);
    std::iota(values.begin(), values.end(), first);
    return values;
}

template <class T>
void ExpectPoints(VDTsAcc* acc, int channel, const std::vector<T>& expected,
                  int (*get)(VDTsAcc*, int, std::int64_t, std::int64_t, std::int64_t*, T*))
{
    std::vector<T> values(expected.size() + 10);
    std::int64_t count = 0;
    EXPECT_TRUE(get(acc, channel, 1, static_cast<std::int64_t>(values.size()), &count, values.data()));
    values.resize(static_cast<std::size_t>(count));
    EXPECT_EQ(values, expected) << "channel " << channel;
}

}  // namespace

TEST_F(StorageAccessTest, EveryDataTypeComesBack)
{
    // Doubles stand in front of floats here, while the object in the file has the floats first.
    const std::vector<NewChannel> channels = {{3, DaxDataType::Double},
                                              {5, DaxDataType::Float},
                                              {6, DaxDataType::Digital64},
                                              {8, DaxDataType::Float},
                                              {9, DaxDataType::Digital32}};
    auto doubles = Ramp<double>(70'000, 0.1);
    const auto floats = Ramp<float>(100, 5);
    const auto otherFloats = Ramp<float>(50, 8);
    const auto digital64 = Ramp<std::uint64_t>(3, 1ULL << 60);
    const auto digital32 = Ramp<std::uint32_t>(4, 0xf0000000U);
    {
        const VDTsAccHandle acc = Create(11, channels);
        EXPECT_TRUE(TSAccPutDataDoublePrecision(acc.Get(), 0, 1, 70'000, doubles.data()));
        EXPECT_TRUE(TSAccPutData(acc.Get(), 1, 1, 100, floats.data()));
        EXPECT_TRUE(TSAccPutDataDigital64(acc.Get(), 2, 1, 3, digital64.data()));
        EXPECT_TRUE(TSAccPutNext(acc.Get(), 3, 50, otherFloats.data()));
        EXPECT_TRUE(TSAccPutDataDigital32(acc.Get(), 4, 1, 4, digital32.data()));
        EXPECT_TRUE(TSAccSetSampleRate(acc.Get(), 0, 1000));
        EXPECT_TRUE(TSAccSetBaseTime(acc.Get(), 0, -2.5));
        EXPECT_TRUE(TSAccSetYUnits(acc.Get(), 3, "kN"));
        EXPECT_TRUE(TSAccSetXTitle(acc.Get(), "Time"));
        // A double channel takes floats. What a channel can't hold as it is, it refuses.
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 70'001, 100, floats.data()));
        ExpectFailure(TSAccPutDataDigital32(acc.Get(), 1, 1, 4, digital32.data()), -66564);
        ExpectFailure(TSAccPutDataDoublePrecision(acc.Get(), 1, 1, 4, doubles.data()), -66564);
        EXPECT_TRUE(TSAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    }
    doubles.insert(doubles.end(), floats.begin(), floats.end());
    const VDTsAccHandle acc = OpenTest(name_);
    ExpectPoints(acc.Get(), 0, doubles, TSAccGetDataDoublePrecision);
    ExpectPoints(acc.Get(), 0, std::vector<float>(doubles.begin(), doubles.end()), TSAccGetData);
    ExpectPoints(acc.Get(), 1, std::vector<double>(floats.begin(), floats.end()), TSAccGetDataDoublePrecision);
    ExpectPoints(acc.Get(), 1, floats, TSAccGetData);
    ExpectPoints(acc.Get(), 2, digital64, TSAccGetDataDigital64);
    ExpectPoints(acc.Get(), 3, otherFloats, TSAccGetData);
    ExpectPoints(acc.Get(), 4, digital32, TSAccGetDataDigital32);
    EXPECT_EQ(TestValue<TSAccGetSampleRate>(acc.Get(), 0), 1000);
    EXPECT_EQ(TestValue<TSAccGetBaseTime>(acc.Get(), 0), -2.5);
    EXPECT_EQ(TestValue<TSAccGetYUnits>(acc.Get(), 3), "kN");
    EXPECT_EQ(TestValue<TSAccGetXTitle>(acc.Get()), "Time");
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 0), "Channel 3");

    const LQChannelMapper* const mapper = TestValue<TSAccGetMetaData>(acc.Get());
    std::vector<long> order;
    for (int index = 0; index < mapper->GetChannelCount(); ++index)
        order.push_back(mapper->NumberFromIndex(index, false));
    EXPECT_EQ(order, (std::vector<long>{5, 8, 3, 9, 6}));
}

TEST_F(StorageAccessTest, TheOlderKindHoldsFloatsOnly)
{
    const auto floats = Ramp<float>(10, 1);
    {
        // What an id says of doubles doesn't hold for its channels, nor for their statistics.
        const VDTsAccHandle acc = Create(4, {{1, DaxDataType::Double}, {2, DaxDataType::Float}});
        for (const int channel : {0, 1})
            EXPECT_TRUE(TSAccPutData(acc.Get(), channel, 1, 10, floats.data()));
        ASSERT_TRUE(TSAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    }
    // What the file says about itself counts, not the id.
    const VDFileIdHandle id = IdentifyTest(name_);
    FIDSetFileId(id.Get(), DaxStorageFileId, 11);
    const VDTsAccHandle acc = BindTest(id.Get());
    ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    ExpectPoints(acc.Get(), 1, floats, TSAccGetData);
    EXPECT_EQ(TestValue<TSAccGetStat>(acc.Get(), 0, VTTsAccStatMax), 10);
    double value = 0;
    EXPECT_FALSE(TSAccGetDataDoublePrecision(acc.Get(), 1, 1, 1, nullptr, &value));
    ExpectError(-327690, "Unknown error in access plugin");
}

TEST_F(StorageAccessTest, AFileGrowsWhereItLeftOff)
{
    const auto floats = Ramp<float>(100, 1);
    {
        const VDTsAccHandle acc = Create(11, {{1, DaxDataType::Float}});
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 40, floats.data()));
        EXPECT_TRUE(TSAccFlush(acc.Get()));
        // A reader sees the last commit, a second writer is turned away with the reason.
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 41, 1, floats.data()));
        const VDTsAccHandle reader = OpenTest(name_);
        EXPECT_EQ(TestValue<TSAccGetNumPoints>(reader.Get(), 0), 40);
        const VDTsAccHandle second = BindTest(IdentifyTest(name_).Get());
        EXPECT_FALSE(TSAccOpen(second.Get(), VTTsAccOpenUpdate));
        ExpectError(-329885, "Error opening / Creating Z4 file", "VDTsAccZ4::Open");
        EXPECT_NE(VFErrorGetReports(VFGetBaseLibError())[0].text.Find("another writer has it open"), -1);
    }
    {
        const VDTsAccHandle acc = OpenTest(name_, VTTsAccOpenUpdate);
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 42, 59, floats.data() + 41));
        // A channel that has points keeps them.
        EXPECT_TRUE(TSAccSetNumPoints(acc.Get(), All, 7));
        EXPECT_EQ(TestValue<TSAccGetNumPoints>(acc.Get(), 0), 100);
        EXPECT_TRUE(TestValue<TSAccGetMetaData>(acc.Get())->SetStringAttribute("Sensor", "S 17", 0));
    }
    const VDTsAccHandle acc = OpenTest(name_);
    EXPECT_EQ(TestValue<TSAccGetNumPoints>(acc.Get(), 0), 100);
    EXPECT_EQ(TestValue<TSAccGetMetaData>(acc.Get())->GetMetaDataItem("Sensor", 0)->ToString(), "S 17");
}

TEST_F(StorageAccessTest, AFlushIsOneVersionWithItsStatistics)
{
    // The versions that the file had, from its two slots.
    const auto versions = [this] {
        const std::string bytes = TestReadFile(name_);
        return std::max(bytes[4096 + 8], bytes[8192 + 8]);
    };
    const auto floats = Ramp<float>(100, 1);
    {
        const VDTsAccHandle acc = Create(11, {{1, DaxDataType::Float}, {2, DaxDataType::Double}});
        for (const char version : {'\1', '\2'}) {
            EXPECT_TRUE(TSAccPutNext(acc.Get(), 0, 50, floats.data() + 50 * (version - 1)));
            EXPECT_TRUE(TSAccFlush(acc.Get()));
            EXPECT_EQ(versions(), version);
            const VDTsAccHandle reader = OpenTest(name_);
            EXPECT_EQ(TestValue<TSAccGetStat>(reader.Get(), 0, VTTsAccStatMean), version == 1 ? 25.5F : 50.5F);
        }
        EXPECT_TRUE(TSAccClose(acc.Get()));
    }
    EXPECT_EQ(versions(), 2) << "there was nothing left to write";
    EXPECT_TRUE(TSAccClose(Create(11, {{1, DaxDataType::Float}}).Get()));
    EXPECT_EQ(versions(), 1);
}

// What is in the file has been spoilt, so that statistics of it show whether it was read.
TEST_F(StorageAccessTest, AppendingGoesOnFromStoredStatisticsAndOverGaps)
{
    constexpr std::int64_t Far = 2'000'000'000;
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    for (const float last : {30.0F, NaN}) {
        const float start[] = {10, 20, last};
        {
            const VDTsAccHandle acc = Create(11, {{1, DaxDataType::Float}});
            EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 3, start) && TSAccClose(acc.Get()));
        }
        std::string bytes = TestReadFile(name_);
        const std::string first(reinterpret_cast<const char*>(start), 4);
        const std::string spoilt(reinterpret_cast<const char*>(&start[1]), 4);
        bytes.replace(bytes.find(first + spoilt, 12288), 4, spoilt);
        TestWriteFile(folder_.Path(), "test.z4t", bytes);
        const float more[] = {40, 50};
        {
            const VDTsAccHandle acc = OpenTest(name_, VTTsAccOpenUpdate);
            EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 4, 1, &more[0]) && TSAccFlush(acc.Get()) &&
                        TSAccPutData(acc.Get(), 0, 5, 1, &more[1]) && TSAccClose(acc.Get()));
        }
        const VDTsAccHandle acc = OpenTest(name_, VTTsAccOpenUpdate);
        float mean = 0;
        float sdev = 0;
        std::int64_t point = 0;
        EXPECT_TRUE(TSAccGetStat(acc.Get(), 0, VTTsAccStatMean, &mean) &&
                    TSAccGetStat(acc.Get(), 0, VTTsAccStatSDev, &sdev) &&
                    TSAccGetPointStat(acc.Get(), 0, VTTsAccStatPointOfMax, &point));
        EXPECT_EQ(point, 5);
        if (std::isnan(last)) {
            EXPECT_EQ(mean, 32.5F) << "20, 20, 40, 50: how many are numbers isn't stored, so that they are read";
            continue;
        }
        EXPECT_FLOAT_EQ(mean, 30);
        EXPECT_FLOAT_EQ(sdev, 15.8113883F);
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, Far, 1, &more[1]) && TSAccFlush(acc.Get()));
        EXPECT_TRUE(TSAccGetStat(acc.Get(), 0, VTTsAccStatMean, &mean) &&
                    TSAccGetPointStat(acc.Get(), 0, VTTsAccStatPointOfMin, &point));
        EXPECT_FLOAT_EQ(mean, 200.0F / Far);
        EXPECT_EQ(point, 6);
    }
}

TEST_F(StorageAccessTest, BadIdsAndFilesAreRefused)
{
    const VDFileIdHandle id = NewId(11, {{1, DaxDataType::Float}});
    FIDSetFilename(id.Get(), VTNameFormTestPlusChannels, name_.c_str(), "z4t");
    const VDTsAccHandle acc(TSAccCreate());
    ExpectFailure(TSAccSetId(acc.Get(), id.Get(), 0), -329881, "Invalid time series ID specified", "VDTsAccZ4::SetId");

    const VDTsAccHandle missing = BindTest(NewId(11, {{1, DaxDataType::Float}}).Get());
    ExpectFailure(TSAccOpen(missing.Get(), VTTsAccOpenRead), -329885);
    Create(11, {{1, DaxDataType::Float}});
    const VDTsAccHandle other = BindTest(NewId(11, {{2, DaxDataType::Float}}).Get());
    EXPECT_FALSE(TSAccOpen(other.Get(), VTTsAccOpenRead));
    ExpectError(-329886, "Error in the channel index / number\nFile :" + name_, "VDTsAccZ4::Open");
}

TEST_F(StorageAccessTest, ATemporaryTestGoesWithItsLastId)
{
    name_ = folder_.Name("scratch.y4t");
    const auto floats = Ramp<float>(10, 1);
    {
        const VDFileIdHandle id = NewId(13, {{1, DaxDataType::Float}});
        {
            const VDTsAccHandle acc = BindTest(id.Get(), true);
            ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
            EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 10, floats.data()));
        }
        const VDTsAccHandle acc = BindTest(id.Get());
        ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
        ExpectPoints(acc.Get(), 0, floats, TSAccGetData);
        EXPECT_TRUE(VDFileSystem::FileExists(name_.c_str()));
    }
    EXPECT_FALSE(VDFileSystem::FileExists(name_.c_str()));
}

TEST_F(StorageAccessTest, ThreadsWithAFileEachGoSideBySide)
{
    const auto use = [this](int which) {
        const std::string name = folder_.Name(std::to_string(which) + ".z4t");
        const auto floats = Ramp<float>(200'000, static_cast<float>(which));
        {
            const VDFileIdHandle id = NewId(11, {{1, DaxDataType::Float}});
            FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
            const VDTsAccHandle acc = BindTest(id.Get(), true);
            EXPECT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
            for (int block = 0; block < 20; ++block) {
                EXPECT_TRUE(TSAccPutNext(acc.Get(), 0, 10'000, floats.data() + block * 10'000));
                EXPECT_TRUE(block % 5 != 0 || TSAccFlush(acc.Get()));
            }
        }
        const VDTsAccHandle acc = OpenTest(name);
        ExpectPoints(acc.Get(), 0, floats, TSAccGetData);
        EXPECT_EQ(TestValue<TSAccGetStat>(acc.Get(), 0, VTTsAccStatMax), floats.back());
    };
    std::vector<std::thread> threads;
    for (int which = 0; which < 4; ++which)
        threads.emplace_back(use, which);
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(StorageAccessTest, AManifestTakesABuiltInPluginOut)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  "[[plugin]]\nfamily=\"FileFormat\"\nname=\"z4\"\ndescription=\"none\"\nlibrary=\"daxlib\"\n"
                  "prefix=\"Z4FF\"\nskip=true\n");
    const VDTsAccHandle acc(TSAccCreate());
    EXPECT_FALSE(TSAccSetId(acc.Get(), NewId(11, {{1, DaxDataType::Float}}).Get(), 1));
    ExpectError(-328692, "Unknown file ID specified\nFile ID : 154     Sub ID : 11");
}

TEST_F(StorageAccessTest, HintsChooseTheRecordSize)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->CreateFile(name_.c_str(), nullptr);
    EXPECT_EQ(VFGetOptimumRecordSize(file, 1000, 4, 1), Z4Size::Record32K);
    // Large records save index blocks as soon as there are many.
    EXPECT_EQ(VFGetOptimumRecordSize(file, 1 << 28, 4, 1), Z4Size::Record256K);
    EXPECT_EQ(VFGetOptimumRecordSize(file, INT64_MAX, 8, 1), Z4Size::Record32K);
    EXPECT_EQ(VFGetOptimumRecordSize(file, 100, -4, 1), Z4Size::Record32K);
    data.GetFileManager()->CloseFile(file, false);

    static std::string traced;
    VFTraceSetSink([](const char* text) { traced = text; });
    EXPECT_EQ(VFGetOptimumRecordSize(nullptr, 1 << 28, 4, 1), Z4Size::Record32K);
    VFTraceSetSink(nullptr);
    EXPECT_NE(traced.find("GetOptimumRecordSize - null file ptr"), std::string::npos);
}

TEST(StoragePluginTest, ObjectsAreKnownByTheFamilyOfTheirBase)
{
    class OtherPlugin final : public VDTsAccPluginBase
    {
        bool SetId(VDFileId*, char) override { return true; }
        bool Open(int) override { return true; }
        bool Close() override { return true; }
        bool Flush() override { return true; }
        bool GetValue(long, int, VDVariant*) override { return false; }
        bool PutValue(long, int, VDVariant*) override { return false; }
        bool GetCapability(int, char*) override { return false; }
        bool GetData(long, std::int64_t, std::int64_t, float*) override { return false; }
        bool PutData(long, std::int64_t, std::int64_t, const float*) override { return false; }
    };
    OtherPlugin plugin;
    VDCompBase stranger(plugin.GetID());
    VDCompBase likeness(VDTsAccPluginBase::FamilyId);
    const VDFileIdHandle id(FIDCreate());
    void* const own = TSAccGenCreate(StorageFormat::TimeSeriesClass);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(TSAccGenFlush(static_cast<VDCompBase*>(&plugin)));
        for (void* const other : std::initializer_list<void*>{&stranger, &likeness, id.Get(), nullptr}) {
            VFErrorClear();
            ExpectFailure(TSAccGenFlush(other), -327682, "Invalid handle", "TSAccGenFlush");
        }
        char answer = 0;
        EXPECT_TRUE(TSAccGenGetCapability(own, 0, &answer));
    }
    TSAccGenRelease(own);
}

TEST(StoragePluginTest, IsKnownByItsClassId)
{
    void* const instance = TSAccGenCreate("8f517aaa-6db0-45BB-990d-821265dfb159");
    ASSERT_NE(instance, nullptr);
    EXPECT_NE(static_cast<VDCompBase*>(instance)->GetID(), static_cast<std::int32_t>(0xa04f0104));
    EXPECT_TRUE(TSAccGenRelease(instance));
    EXPECT_EQ(TSAccGenCreate("8F517AAA"), nullptr);
    ExpectError(-328013, "Plugin class ID not recognised", "TSAccGenCreate");
}
