#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include <cstring>
#include <limits>

using namespace StandIn;

namespace {

using TimeSeriesTest = StandInTest;

template <class Value>
void CheckReading(VDTsAcc* acc, int (*get)(VDTsAcc*, int, std::int64_t, std::int64_t, std::int64_t*, Value*),
                  int (*getNext)(VDTsAcc*, int, std::int64_t, std::int64_t*, Value*), const char* routine)
{
    std::vector<Value> values(100);
    std::int64_t numRead = -1;
    ASSERT_TRUE(get(acc, 1, 991, 100, &numRead, values.data()));
    EXPECT_EQ(numRead, 10);
    EXPECT_EQ(values[0], StandValue<Value>(1, 991));
    EXPECT_EQ(values[9], StandValue<Value>(1, 1000));

    EXPECT_TRUE(get(acc, 1, 1001, 1, &numRead, values.data()));
    EXPECT_EQ(numRead, 0);
    EXPECT_FALSE(get(acc, 1, 1001, 1, nullptr, values.data()));
    ExpectError(-327686, "End of file reading data points\nFile :", std::string("VDTsAcc::") + routine);
    EXPECT_FALSE(get(acc, 1, 0, 1, &numRead, values.data()));
    ExpectError(-327989, "Invalid point number", std::string("VDTsAcc::") + routine);
    ExpectFailure(get(acc, 2, 1, 1, &numRead, values.data()), -327995, "Channel index out of range");
    // Sums of first and count that don't fit 64 bits are cut like any other.
    EXPECT_TRUE(get(acc, 1, 1000, std::numeric_limits<std::int64_t>::max(), &numRead, values.data()));
    EXPECT_EQ(numRead, 1);

    ASSERT_TRUE(TSAccPrepareSequential(acc, static_cast<int>(DaxChannel::All), 995, 0));
    for (const std::int64_t expected : {4, 2, 0, 0}) {
        ASSERT_TRUE(getNext(acc, 0, 4, &numRead, values.data()));
        EXPECT_EQ(numRead, expected);
    }
    EXPECT_EQ(values[0], StandValue<Value>(0, 999));
    ExpectFailure(getNext(acc, 0, 4, nullptr, values.data()), -327704, "Invalid arguments.");
}

}  // namespace

TEST_F(TimeSeriesTest, ReadsEveryDataType)
{
    const VDTsAccHandle acc = OpenTest(Write("channels=2 points=1000 rate=50 base=2"));
    CheckReading<float>(acc.Get(), TSAccGetData, TSAccGetNext, "GetData");
    CheckReading<double>(acc.Get(), TSAccGetDataDoublePrecision, TSAccGetNextDoublePrecision, "GetDataDoublePrecision");
    CheckReading<std::uint32_t>(acc.Get(), TSAccGetDataDigital32, TSAccGetNextDigital32, "GetDataDigital32");
    CheckReading<std::uint64_t>(acc.Get(), TSAccGetDataDigital64, TSAccGetNextDigital64, "GetDataDigital64");
}

TEST_F(TimeSeriesTest, GivesHeaderValuesAndChannels)
{
    const VDTsAccHandle acc = OpenTest(Write("numbers=3,1 points=10 rate=50 base=2 actual=100"));
    const auto numbers = TestValue<TSAccGetChans>(acc.Get());
    EXPECT_EQ(std::vector<long>(numbers.begin(), numbers.end()), (std::vector<long>{1, 3}));
    int index = -1;
    EXPECT_EQ(TestValue<TSAccGetChanIndex>(acc.Get(), 3), 1);
    EXPECT_FALSE(TSAccGetChanIndex(acc.Get(), 2, &index));
    ExpectErrorText(-328010, "Invalid channel number : 2");
    EXPECT_EQ(TestValue<TSAccIsValidChan>(acc.Get(), 2), 0);
    EXPECT_EQ(TestValue<TSAccGetActualChanNumber>(acc.Get(), 1), 103);

    EXPECT_EQ(TestValue<TSAccPointToTime>(acc.Get(), 0, 51), 3);
    for (const auto& [time, point] : {std::pair{2.0, 1}, {2.0099, 1}, {2.0101, 2}, {2.02, 2}, {1.0, -48}})
        EXPECT_EQ(TestValue<TSAccTimeToPoint>(acc.Get(), 0, time), point) << time;
    EXPECT_EQ(TestValue<TSAccTimeToPoint>(acc.Get(), 0, 1e300), std::numeric_limits<std::int64_t>::max());
}

TEST_F(TimeSeriesTest, WritesInAnyOrderAndInSequence)
{
    const VDFileIdHandle id = NewTestId(folder_.Name("new.sta"), FileId, SubPlain, {DaxDataType::Float, DaxDataType::Float});
    const VDTsAccHandle acc = BindTest(id.Get(), true);
    ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate)) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_EQ(TestValue<TSAccGetSampleRate>(acc.Get(), 1), 1.0);
    EXPECT_FALSE(TSAccSetSampleRate(acc.Get(), 0, 0));
    ExpectError(-328011, "Sample rate must be greater than zero", "VDTsAcc::SetSampleRate");

    const std::vector<float> block{1, 2, 3, 4};
    ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 1, 4, block.data()));
    ASSERT_TRUE(TSAccPutData(acc.Get(), 0, 3, 4, block.data()));
    EXPECT_EQ(TestValue<TSAccGetNumPoints>(acc.Get(), 0), 6);
    EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 0, block.data()));
    ExpectFailure(TSAccPutData(acc.Get(), 0, 0, 1, block.data()), -327989, "", "VDTsAcc::PutData");

    ASSERT_TRUE(TSAccPrepareSequential(acc.Get(), 1, 1, 6));
    EXPECT_TRUE(TSAccPutNext(acc.Get(), 1, 4, block.data()));
    EXPECT_FALSE(TSAccPutNext(acc.Get(), 1, 4, block.data()));
    ExpectError(-328007, "Attempt to write past the end of a sequential write chunk", "VDTsAcc::PutNext");
    EXPECT_TRUE(TSAccPutNext(acc.Get(), 1, 2, block.data()));

    std::vector<float> read(6);
    ASSERT_TRUE(TSAccGetData(acc.Get(), 0, 1, 6, nullptr, read.data()));
    EXPECT_EQ(read, (std::vector<float>{1, 2, 1, 2, 3, 4}));
    ASSERT_TRUE(TSAccGetData(acc.Get(), 1, 1, 6, nullptr, read.data()));
    EXPECT_EQ(read, (std::vector<float>{1, 2, 3, 4, 1, 2}));
}

TEST_F(TimeSeriesTest, RefusesWhatTheFormatOrTheModeDoesNotAllow)
{
    const float value = 1;
    {
        const VDTsAccHandle acc = OpenTest(Write("points=10"));
        // The write check comes before the count.
        EXPECT_FALSE(TSAccPutData(acc.Get(), 0, 1, 0, &value));
        ExpectError(-327998, "Writing is not supported for this file format\nFile :", "VDTsAcc::PutData");
        ExpectFailure(TSAccSetXTitle(acc.Get(), "x"), -327998, "", "VDTsAcc::SetXTitle");
    }
    {
        const VDTsAccHandle acc = OpenTest(Write("points=10 caps=2"), VTTsAccOpenUpdate);
        EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 10, 1, &value));
        EXPECT_FALSE(TSAccPutData(acc.Get(), 0, 11, 1, &value));
        ExpectError(-327990, "Attempt to append data to file which cannot be extended", "VDTsAcc::PutData");
        EXPECT_FALSE(TSAccSetNumPoints(acc.Get(), static_cast<int>(DaxChannel::All), 11));
        ExpectError(-327990, "", "VDTsAcc::SetNumPoints");
        EXPECT_TRUE(TSAccSetNumPoints(acc.Get(), 0, 10));
    }
    const VDTsAccHandle acc = OpenTest(Write("points=2000000000 caps=2,4 discard=1"), VTTsAccOpenUpdate);
    EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 2'000'000'000, 1, &value));
    EXPECT_FALSE(TSAccPutData(acc.Get(), 0, 2'000'000'001, 1, &value));
    ExpectError(-328006, "Attempt to write a file greater than 2000 million points", "VDTsAcc::PutData");
}

TEST_F(TimeSeriesTest, KeepsToTheOrderOfItsLife)
{
    const VDTsAccHandle acc(TSAccCreate());
    EXPECT_FALSE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    ExpectError(-328009, "SetID must be called before any other function", "VDTsAcc::Open");
    ExpectFailure(TSAccClose(acc.Get()), -328009, "", "VDTsAcc::Close");

    const VDFileIdHandle empty(FIDCreate());
    FIDSetFileId(empty.Get(), FileId, SubPlain);
    ExpectFailure(TSAccSetId(acc.Get(), empty.Get(), 0), -327982, "Empty channel list", "VDTsAcc::SetId");

    const VDFileIdHandle id = IdentifyTest(Write("channels=1 log=1"));
    ASSERT_TRUE(TSAccSetId(acc.Get(), id.Get(), 0));
    float value = 0;
    ExpectFailure(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value), -327993, "File is not yet open", "VDTsAcc::GetData");
    ExpectFailure(TSAccOpen(acc.Get(), 4), -328005, "Invalid open mode specified ", "VDTsAcc::Open");
    EXPECT_FALSE(TSAccOpen(acc.Get(), VTTsAccOpenCreate));
    ExpectError(-328017, "File creation argument mis-match between SetId & Open", "VDTsAcc::Open");
    EXPECT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    ExpectFailure(TSAccOpen(acc.Get(), VTTsAccOpenRead), -328016, "File is already open", "VDTsAcc::Open");

    // A second binding closes the file and gives the first instance back before it makes its own.
    TakeLog();
    EXPECT_TRUE(TSAccSetId(acc.Get(), id.Get(), 0));
    const std::string log = TakeLog();
    std::size_t at = 0;
    for (const char* call : {"Close", "Release", "PutValue0 -1", "GetCapability11", "SetId 0"})
        ASSERT_NE(at = log.find(call, at), std::string::npos) << call << " in\n" << log;
    EXPECT_TRUE(TSAccClose(acc.Get()));
    // A binding that fails leaves nothing of the one before, least of all an instance that knows an id that is gone.
    ExpectFailure(TSAccSetId(acc.Get(), empty.Get(), 0), -327982);
    EXPECT_EQ(TakeLog(), "Release\n");
    ExpectFailure(TSAccOpen(acc.Get(), VTTsAccOpenRead), -328009);
    EXPECT_EQ(TestValue<TSAccGetNumChans>(acc.Get()), 0);
}

TEST_F(TimeSeriesTest, AFailedCloseOrReleaseIsNotRepeated)
{
    const VDFileIdHandle id = IdentifyTest(Write("channels=1 log=1 tsfail=Close,Release"));
    VDTsAccHandle acc = BindTest(id.Get());
    ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    TakeLog();
    EXPECT_FALSE(TSAccClose(acc.Get()));
    ExpectErrorText(-328020, "Stand-in failure");
    // The plug-in is asked why it can't be given back; the object is free for a next test.
    EXPECT_FALSE(TSAccSetId(acc.Get(), id.Get(), 0));
    ExpectErrorText(-328020, "Stand-in failure");
    EXPECT_EQ(TakeLog(), "Close\nRelease\n");
    EXPECT_TRUE(TSAccSetId(acc.Get(), id.Get(), 0));
    EXPECT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenRead));
    TakeLog();
    acc.Reset();
    EXPECT_EQ(TakeLog(), "Close\nRelease\n");
}

TEST_F(TimeSeriesTest, SaysWhichPluginIsMissing)
{
    const VDTsAccHandle acc(TSAccCreate());
    EXPECT_FALSE(TSAccSetId(acc.Get(), IdentifyTest(Write("subid=5 title=Ride")).Get(), 0));
    ExpectErrorText(-328008, "File format not supported for time series access\nTest name : Ride");
    // An object without a plug-in refuses calls and survives them.
    ExpectFailure(TSAccOpen(acc.Get(), VTTsAccOpenRead), -328009);
}

TEST_F(TimeSeriesTest, AddsPluginsByHand)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", Manifest("FileFormat", "Stand", "StandFF"));
    const std::string library = TestPluginFolder() + "/libstandin.so";
    EXPECT_FALSE(TSAccAddPlugin("x", "MissTS", library.c_str(), "Half a plug-in"));
    ExpectErrorText(-328683, "Error loading FileFormat plug-in. Missing function.\nFunction name: GetDataDigital64  "
                             "Library name : " +
                                 library + "  Description : Half a plug-in");
    EXPECT_FALSE(TSAccAddPlugin("y", "StandTS", "/no/such.so", ""));
    ExpectError(-328682, "Error loading FileFormat plug-in library\nLibrary name : /no/such.so", "VDTsAcc::LoadPlugIns");
    EXPECT_TRUE(TSAccAddPlugin(ClassId, "StandTS", library.c_str(), ""));
    EXPECT_TRUE(TSAccAddPlugin("stand-ts", "none", "none", ""));
    const VDTsAccHandle acc = OpenTest(Write("channels=1"));
}

TEST_F(TimeSeriesTest, ReportsPluginFailures)
{
    struct
    {
        std::string script;
        int code;
        const char* text;
    } const cases[] = {{"tsfail=GetData lasterror=\"disk gone\"", -328020, "disk gone"},
                       {"tsthrow=GetData", -328020, "Stand-in failure"},
                       {"tsthrowint=GetData lasterror=throw", -328020, ""},
                       {"tsfail=GetData lasterror=\"\"", -328020, ""},
                       {"tsfail=GetData lasterror=VARDO", -327690, "Unknown error in access plugin"},
                       {"tsfail=GetData lasterror=VARDO record=-331885", -331885, "Recorded by the stand-in"}};
    float value = 0;
    for (const auto& [script, code, text] : cases) {
        const VDTsAccHandle acc = OpenTest(Write("channels=1 points=5 " + script));
        EXPECT_FALSE(TSAccGetData(acc.Get(), 0, 1, 1, nullptr, &value)) << script;
        ExpectErrorText(code, text);
    }
}

TEST_F(TimeSeriesTest, FailedOpenLeavesTheObjectUsable)
{
    for (const char* script : {"tsfail=Open", "wrong=1", "wrong=2", "wrong=3", "tsfail=GetValue3"}) {
        const VDTsAccHandle acc = BindTest(IdentifyTest(Write(std::string("channels=1 ") + script)).Get());
        EXPECT_FALSE(TSAccOpen(acc.Get(), VTTsAccOpenRead)) << script;
        if (std::string(script).starts_with("wrong"))
            ExpectError(-328012,
                        std::string("Error retrieving header value from time series file : key ") + script[6] +
                            " of channel 1\nFile :",
                        "VDTsAcc::GetPluginValue");
        EXPECT_TRUE(TSAccClose(acc.Get())) << script;
    }
    const VDTsAccHandle acc(TSAccCreate());
    ExpectFailure(TSAccSetId(acc.Get(), IdentifyTest(Write("subid=6")).Get(), 0), -328020, "", "VDTsAcc::SetId");
}

TEST_F(TimeSeriesTest, HandsFormatSpecificValuesOver)
{
    const VDTsAccHandle acc = OpenTest(Write("channels=1"), VTTsAccOpenUpdate);
    VDVariant value(1.5);
    EXPECT_TRUE(TSAccSetFormatSpecificValue(acc.Get(), 0, "Gain", &value));

    EXPECT_FALSE(TSAccGetFormatSpecificValue(acc.Get(), 0, "Gain", nullptr));
    ExpectError(-327704, "Invalid arguments.", "VDTsAcc::GetFormatSpecificValue");
    EXPECT_FALSE(TSAccSetFormatSpecificValue(acc.Get(), 0, "Gain", nullptr));
    ExpectError(-327704, "", "VDTsAcc::SetFormatSpecificValue");
}
