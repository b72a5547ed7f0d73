#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VFTrace.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>
#include <functional>

using namespace StandIn;

namespace {

constexpr int AllChannels = static_cast<int>(DaxChannel::All);

template <class Value>
struct AllStats
{
    Value max = -1, min = -1, mean = -1, sdev = -1, rms = -1;
    std::int64_t pointOfMax = -1, pointOfMin = -1, pointOfAbs = -1;
};

/// Gives a test failure if there are none.
template <class Value>
AllStats<Value> Stats(VDTsAcc* acc, int index)
{
    AllStats<Value> s;
    const auto get = [&](auto* function) {
        return function(acc, index, &s.max, &s.min, &s.mean, &s.sdev, &s.rms, &s.pointOfMax, &s.pointOfMin, &s.pointOfAbs);
    };
    if constexpr (std::is_same_v<Value, float>)
        EXPECT_TRUE(get(TSAccGetAllStats)) << VFErrorGetText(VFGetBaseLibError()).Str();
    else
        EXPECT_TRUE(get(TSAccGetAllStatsDoublePrecision)) << VFErrorGetText(VFGetBaseLibError()).Str();
    return s;
}

bool Reads(const std::string& log)
{
    return log.find("GetData") != std::string::npos;
}

/// Notes what it is told ("S Calculating statistics", "50", "C", "E").
struct Progress : VDProgressObject
{
    void Start(const char* text, int cancellable) override { Note("S " + std::string(text) + std::to_string(cancellable)); }
    void Update(int percent, char* cancel) override
    {
        *cancel = percent == cancelAt;
        Note(std::to_string(percent));
    }
    void Check(char*) override { Note("C"); }
    void End() override { Note("E"); }
    void Note(const std::string& text)
    {
        told += text + " ";
        if (throws)
            throw 1;
    }

    std::string told;
    int cancelAt = -1;
    bool throws = false;
};

class StatisticsTest : public StandInTest
{
protected:
    VDTsAccHandle Open(const std::string& script, int mode = VTTsAccOpenRead, int type = DaxDataType::Float)
    {
        // A file of its own: the stand-in remembers what a file held when it was closed.
        const VDFileIdHandle id = IdentifyTest(Write("channels=1 " + script, std::to_string(++opened_) + ".sta"));
        FIDSetChanType(id.Get(), 0, type);
        VDTsAccHandle acc = BindTest(id.Get());
        EXPECT_TRUE(TSAccOpen(acc.Get(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }

    /// A new test of a format that stores statistics.
    VDTsAccHandle Create(const std::vector<int>& types)
    {
        const VDFileIdHandle id = NewTestId(Write("caps=0,2,4,5,6 log=1"), FileId, SubPlain, types);
        VDTsAccHandle acc = BindTest(id.Get(), true);
        EXPECT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate)) << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }

    int opened_ = 0;
};

const std::vector<float> VVFloats{3, -7, 5, 1};
const std::vector<double> VVDoubles{3, -7, 5, 1};

}  // namespace

TEST_F(StatisticsTest, WritingInOrderNeedsNoReading)
{
    const VDTsAccHandle acc = Create({DaxDataType::Float, DaxDataType::Double, DaxDataType::Digital32});
    const std::uint32_t digital = 7;
    for (const std::int64_t first : {1, 3}) {
        ASSERT_TRUE(TSAccPutData(acc.Get(), 0, first, 2, VVFloats.data() + first - 1));
        ASSERT_TRUE(TSAccPutDataDoublePrecision(acc.Get(), 1, first, 2, VVDoubles.data() + first - 1));
        ASSERT_TRUE(TSAccPutDataDigital32(acc.Get(), 2, first, 1, &digital));
    }
    float value = 0;
    EXPECT_FALSE(TSAccGetStat(acc.Get(), 0, VTTsAccStatMax, &value));
    ExpectError(-327987, "Requested statistic is not currently defined", "VDTsAcc::GetStat");
    TakeLog();
    ASSERT_TRUE(TSAccFlush(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    const std::string log = TakeLog();
    EXPECT_FALSE(Reads(log)) << log;
    EXPECT_NE(log.find("PutValue12 0 5,-7,0.5,"), std::string::npos) << log;
    EXPECT_NE(log.find("PutValue13 1 5,-7,0.5,"), std::string::npos) << log;
    EXPECT_EQ(log.find("PutValue12 2"), std::string::npos) << log;

    const AllStats<float> s = Stats<float>(acc.Get(), 0);
    EXPECT_FLOAT_EQ(s.sdev, std::sqrt(83.0F / 3));
    EXPECT_FLOAT_EQ(s.rms, std::sqrt(21.0F));
    EXPECT_EQ(s.pointOfMax, 3);
    EXPECT_EQ(s.pointOfAbs, 2);
    EXPECT_EQ(Stats<float>(acc.Get(), 1).max, 0);
    EXPECT_EQ(Stats<double>(acc.Get(), 1).rms, std::sqrt(21.0));

    // What is set by hand goes to the file as long as no data comes behind it.
    ASSERT_TRUE(TSAccSetStats(acc.Get(), 0, 9, 8, 7, 6, 5, 4, 3, 2));
    ASSERT_TRUE(TSAccFlush(acc.Get()));
    EXPECT_NE(TakeLog().find("PutValue12 0 9,8,7,6,5,4,3,2"), std::string::npos);
    ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 5, 1, VVFloats.data()));
    ASSERT_TRUE(TSAccFlush(acc.Get()));
    EXPECT_EQ(Stats<float>(acc.Get(), 0).max, 5);
    EXPECT_FALSE(Reads(TakeLog()));
}

TEST_F(StatisticsTest, WhatWasNotGatheredIsReadAtFlush)
{
    const auto expectReading = [&](const char* what, const std::function<void(VDTsAcc*)>& write) {
        const VDTsAccHandle acc = Create({DaxDataType::Float});
        const std::vector<float> values(100, 1.0F);
        ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 1, 100, values.data()));
        write(acc.Get());
        TSAccPrepareSequential(acc.Get(), 0, 20, 40);
        TakeLog();
        ASSERT_TRUE(TSAccFlush(acc.Get())) << what << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_TRUE(Reads(TakeLog())) << what;
        float max = -1;
        EXPECT_TRUE(TSAccGetStat(acc.Get(), 0, VTTsAccStatMax, &max));
        std::int64_t points = 0;
        TSAccGetNumPoints(acc.Get(), 0, &points);
        std::vector<float> read(static_cast<std::size_t>(points));
        ASSERT_TRUE(TSAccGetData(acc.Get(), 0, 1, points, nullptr, read.data()));
        EXPECT_EQ(max, *std::max_element(read.begin(), read.end())) << what;
        // The host's sequence goes on where it was, and nothing is read twice, whatever is written behind it.
        std::int64_t numRead = 0;
        ASSERT_TRUE(TSAccGetNext(acc.Get(), 0, 100, &numRead, read.data()));
        EXPECT_EQ(numRead, 21) << what;
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, points + 1, 4, VVFloats.data()));
        TakeLog();
        EXPECT_TRUE(TSAccFlush(acc.Get()));
        EXPECT_FALSE(Reads(TakeLog())) << what;
    };
    expectReading("earlier points", [](VDTsAcc* acc) { EXPECT_TRUE(TSAccPutData(acc, 0, 50, 4, VVFloats.data())); });
    expectReading("a gap", [](VDTsAcc* acc) { EXPECT_TRUE(TSAccPutData(acc, 0, 200, 4, VVFloats.data())); });
    expectReading("doubles",
                  [](VDTsAcc* acc) { EXPECT_TRUE(TSAccPutDataDoublePrecision(acc, 0, 101, 4, VVDoubles.data())); });
    expectReading("digital values", [](VDTsAcc* acc) {
        const std::uint32_t value = 5;
        EXPECT_TRUE(TSAccPutDataDigital32(acc, 0, 50, 1, &value));
    });
    expectReading("more points without data", [](VDTsAcc* acc) { EXPECT_TRUE(TSAccSetNumPoints(acc, 0, 150)); });
    expectReading("by wish", [](VDTsAcc* acc) { EXPECT_TRUE(TSAccSetStatsMonitor(acc, 1, 1)); });
}

TEST_F(StatisticsTest, DataThatIsNotWatchedHasNoStatistics)
{
    const VDTsAccHandle acc = Create({DaxDataType::Float});
    ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 1, 4, VVFloats.data()));
    ASSERT_TRUE(TSAccFlush(acc.Get()));
    ASSERT_TRUE(TSAccSetStatsMonitor(acc.Get(), 0, 0));
    ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 1, 1, VVFloats.data()));
    TakeLog();
    ASSERT_TRUE(TSAccFlush(acc.Get()));
    const std::string log = TakeLog();
    EXPECT_FALSE(Reads(log));
    EXPECT_EQ(log.find("PutValue12"), std::string::npos);
    std::int64_t point = 0;
    ExpectFailure(TSAccGetPointStat(acc.Get(), 0, VTTsAccStatPointOfMax, &point), -327987, "", "VDTsAcc::GetPointStat");
}

TEST_F(StatisticsTest, StoredOnesAreTakenWithoutReading)
{
    const std::string floats = "caps=2,6 log=1 stats=8,-9,1,2,3,5,6,7";
    TakeLog();
    const VDTsAccHandle acc = Open(floats);
    EXPECT_EQ(TakeLog().find("GetValue12"), std::string::npos);
    const AllStats<float> s = Stats<float>(acc.Get(), 0);
    EXPECT_EQ(std::tuple(s.min, s.rms, s.pointOfMax, s.pointOfAbs), std::tuple(-9, 3, 5, 7));
    EXPECT_EQ(Stats<double>(acc.Get(), 0).max, 0);
    EXPECT_FALSE(Reads(TakeLog()));
    float value = 0;
    for (const int id : {0, 6, 101}) {
        ExpectFailure(TSAccGetStat(acc.Get(), 0, id, &value), -327987);
    }
    ExpectFailure(TSAccSetStats(acc.Get(), 0, 1, 1, 1, 1, 1, 1, 1, 1), -327998, "", "VDTsAcc::SetStats");
    ExpectFailure(TSAccSetStatsMonitor(acc.Get(), 1, 0), -327998, "", "VDTsAcc::SetStatsMonitor");

    EXPECT_EQ(Stats<double>(Open(floats + " statsdouble=1", VTTsAccOpenUpdate, DaxDataType::Double).Get(), 0).max, 8);
    // The low half of a type's id means the same.
    for (const int type : {DaxDataType::Double, DaxDataType::Double & 0xffff}) {
        const VDTsAccHandle update = Open(floats + " points=2", VTTsAccOpenUpdate, type);
        EXPECT_EQ(Stats<double>(update.Get(), 0).max, 8);
        // What was stored doesn't outlive the data, in neither precision.
        ASSERT_TRUE(TSAccPutDataDoublePrecision(update.Get(), 0, 1, 2, VVDoubles.data()));
        ASSERT_TRUE(TSAccFlush(update.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_EQ(Stats<double>(update.Get(), 0).max, 3);
        EXPECT_EQ(Stats<float>(update.Get(), 0).max, 0);
    }
}

TEST_F(StatisticsTest, OtherAnswersLeaveThemUndefined)
{
    for (const char* script : {"caps=2,6 stats=1,2,3,4,5,6,7", "caps=2,6 wrong=12", "caps=2 stats=1,2,3,4,5,6,7,8"}) {
        const VDTsAccHandle acc = Open(script);
        double value = 0;
        EXPECT_FALSE(TSAccGetStatDoublePrecision(acc.Get(), 0, 1, &value)) << script;
        ExpectError(-327987, "", "VDTsAcc::GetStat");
        ExpectFailure(TSAccGetStatDoublePrecision(acc.Get(), 1, 1, &value), -327995, "", "VDTsAcc::GetStatDouble");
    }
    // A format that fails to give them doesn't keep a host from the data.
    const VDTsAccHandle acc = Open("caps=2,6 tsfail=GetValue12", VTTsAccOpenUpdate);
}

TEST_F(StatisticsTest, OffsetsAreAddedWhenStatisticsAreRead)
{
    const std::string script = "caps=2,6,7 offset=10 stats=4,2,3,2,5,6,7,8 points=";
    const auto check = [&](const std::string& points, int type, double rms) {
        const VDTsAccHandle acc = Open(script + points, VTTsAccOpenUpdate, type);
        float low = 0;
        float high = 0;
        ExpectFailure(TSAccGetFullScaleLimits(acc.Get(), 0, &low, &high), -328021, "Full scale limits unknown",
                      "VDTsAcc::GetFullScaleLimits");
        EXPECT_EQ(TestValue<TSAccGetFullScaleValid>(acc.Get(), 0), 0);
        ASSERT_TRUE(TSAccSetFullScaleLimits(acc.Get(), 0, 30, -20));
        ASSERT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
        const AllStats<double> s = Stats<double>(acc.Get(), 0);
        EXPECT_NEAR(s.rms, rms, 1e-7 * rms) << points;
        const AllStats<float> f = Stats<float>(acc.Get(), 0);
        EXPECT_EQ(std::tuple(f.max, f.min, f.mean, f.sdev, f.pointOfMax), std::tuple(14, 12, 13, 2, 6));
        EXPECT_FLOAT_EQ(f.rms, static_cast<float>(rms));
        EXPECT_EQ(TestValue<TSAccGetFullScaleValid>(acc.Get(), 0), 1);
        EXPECT_TRUE(TSAccGetFullScaleLimits(acc.Get(), 0, &low, &high));
        EXPECT_EQ(low, -10);
        EXPECT_EQ(high, 40);
    };
    check("4", DaxDataType::Float, std::sqrt(2 * 2 * 3.0 / 4 + 13 * 13));
    check("4", DaxDataType::Double, std::sqrt(2 * 2 * 3.0 / 4 + 13 * 13));
    check("1", DaxDataType::Float, 15);
    check("0", DaxDataType::Float, 0);
    // The squares of these no double holds.
    const VDTsAccHandle large =
        Open("caps=2,6,7 offset=10 points=4 statsdouble=1 stats=2e200,0,1e200,2e200,2e200,5,6,7", 0, DaxDataType::Double);
    ASSERT_TRUE(TSAccSetUseOffset(large.Get(), 1));
    EXPECT_NEAR(Stats<double>(large.Get(), 0).rms / 2e200, 1, 1e-15);

    // Worked out anew, they get it once as well.
    const VDTsAccHandle acc = Open("caps=2,7 offset=10 points=1");
    ASSERT_TRUE(TSAccSetUseOffset(acc.Get(), 1));
    ASSERT_TRUE(TSAccCalcStats(acc.Get(), 0));
    EXPECT_EQ(Stats<float>(acc.Get(), 0).mean, StandValue<float>(0, 1) + 10);

    // A type that applies its own offsets has them in its statistics as well.
    const VDTsAccHandle own = Open("fileid=700 subid=1 schedule=10 caps=2,6,7 stats=4,2,3,2,5,6,7,8");
    ASSERT_TRUE(TSAccSetUseOffset(own.Get(), 1));
    EXPECT_EQ(Stats<float>(own.Get(), 0).rms, 5);
}

TEST_F(StatisticsTest, CalculatesWithProgress)
{
    Progress progress;
    const auto calc = [&](const std::string& script, int index) {
        progress.told.clear();
        const VDTsAccHandle acc = Open("log=1 buffer=4 " + script);
        TSAccSetProgressObject(acc.Get(), &progress);
        TakeLog();
        if (!TSAccCalcStats(acc.Get(), index))
            return VFErrorGetText(VFGetBaseLibError()).Str() + " " + VFErrorGetRoutine(VFGetBaseLibError()).Str();
        return std::to_string(Stats<float>(acc.Get(), index == AllChannels ? 0 : index).pointOfMax);
    };
    const auto order = [] {
        std::string reads;
        const std::string log = TakeLog();
        for (std::size_t at = 0; (at = log.find("GetData ", at)) != std::string::npos; at += 8)
            reads += log[at + 8];
        return reads;
    };
    EXPECT_EQ(calc("points=8", 0), "8");
    EXPECT_EQ(progress.told, "S Calculating statistics1 0 50 C 100 C C E ");
    EXPECT_EQ(calc("points=8 caps=2 channels=2", AllChannels), "8");
    EXPECT_EQ(order(), "0101");
    EXPECT_EQ(calc("points=8 caps=0 channels=2", AllChannels), "8");
    EXPECT_EQ(order(), "0011");
    EXPECT_EQ(calc("points=0", AllChannels), "0");
    EXPECT_EQ(progress.told, "S Calculating statistics1 0 C E ");

    progress.cancelAt = 100;
    EXPECT_EQ(calc("points=8", 0), "Operation aborted VDTsAcc::CalcStats");
    EXPECT_EQ(progress.told, "S Calculating statistics1 0 50 C 100 C E ");
    progress.cancelAt = 0;
    EXPECT_EQ(calc("points=8", 0), "Operation aborted VDTsAcc::CalcStats");
    EXPECT_EQ(order(), "");

    static std::string traced;
    VFTraceSetSink([](const char* text) { traced = text; });
    progress.throws = true;
    progress.cancelAt = -1;
    EXPECT_EQ(calc("points=8", 0), "8");
    EXPECT_EQ(traced, "Exception caused by failure in progress object\n");
    VFTraceSetSink(nullptr);
}

TEST_F(StatisticsTest, MetaDataGetsTheHeader)
{
    const VDTsAccHandle acc =
        Open("fileid=700 subid=1 caps=2,6,7,9 rate=50 base=2 points=9 chantitle=T stats=4,2,3,2,5,6,7,8");
    LQChannelMapper* const mapper = TestValue<TSAccGetMetaData>(acc.Get());
    ASSERT_NE(mapper, nullptr);
    EXPECT_EQ(mapper->GetMetaDataItem("XUnits", LQChannelMapper::GLOBAL)->ToString(), "s");
    EXPECT_EQ(mapper->GetMetaDataItem("ChanTitle", 0)->ToString(), "T");
    std::string items;
    const Z4PropertySet* set = mapper->GetMetaDataSet(LQChannelMapper::ATTRIBUTES, 0);
    for (int item = 0; set != nullptr && item < 14; ++item)
        items += set->GetProperty(item)->GetName().Str() + "=" + set->GetProperty(item)->ToString().Str() + " ";
    EXPECT_EQ(items, "SampleRate=50 BaseTime=2 NumPoints=9 Max=4 Min=2 Mean=3 SDev=2 RMS=5 PMax=6 PMin=7 PAbs=8 TimeMax=2.1 "
                     "TimeMin=2.12 TimeAbs=2.14 ");
}
