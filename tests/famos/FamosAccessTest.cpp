#include "support/FamosBuilder.h"
#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"

#include "vdbase/VDPreferenceSystem.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <random>

namespace {

constexpr int VVFileId = 2400;
constexpr int VVTimeSeries = 1;
constexpr int VVStamped = 3;

/// Bytes of a value, the lowest first.
template <class Value>
std::string Bytes(const std::vector<Value>& values)
{
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Value)};
}

/// The keys of a component whose buffer is the samples' bytes from `start` on.
struct Component
{
    std::string name = "a";
    int format = 7;
    int bytes = 4;
    std::string packet = "0,1,0";  ///< offset, values in a row, bytes between
    std::size_t start = 0;
    std::size_t size = 0;
    std::size_t begin = 0;
    std::string range = "0,1,0,1,1,V";
    int digital = 1;

    std::string Keys() const
    {
        const std::string ring = std::to_string(size) + "," + std::to_string(begin) + "," + std::to_string(size);
        return FamosKey("CC", "1," + std::to_string(digital)) +
               FamosKey("CP", "1," + std::to_string(bytes) + "," + std::to_string(format) + ",16,0," + packet) +
               FamosKey("Cb", "1,0,1,1," + std::to_string(start) + "," + ring + ",1,2.5,86400,") + FamosKey("CR", range) +
               FamosKey("CN", "7,0,0," + FamosText(name) + "," + FamosText("about " + name));
    }
};

class FamosAccessTest : public testing::Test
{
protected:
    template <class Value, auto Get>
    static std::vector<Value> Read(VDTsAcc* acc, int channel, std::int64_t first = 1, std::int64_t count = -1)
    {
        std::int64_t points = 0;
        EXPECT_TRUE(TSAccGetNumPoints(acc, channel, &points));
        std::vector<Value> values(static_cast<std::size_t>(count < 0 ? points - first + 1 : count));
        EXPECT_TRUE(Get(acc, channel, first, static_cast<std::int64_t>(values.size()), nullptr, values.data()))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return values;
    }
    static constexpr auto Floats = Read<float, TSAccGetData>;
    static constexpr auto Doubles = Read<double, TSAccGetDataDoublePrecision>;

    static std::string FormatText(VDTsAcc* acc, const char* name)
    {
        VDVariant value;
        VDString text;
        EXPECT_TRUE(TSAccGetFormatSpecificValue(acc, -1, name, &value));
        value.GetString(&text);
        return text.Str();
    }
    static std::string Meta(VDTsAcc* acc, const char* name, int index)
    {
        LQChannelMapper* mapper = nullptr;
        VDString text;
        EXPECT_TRUE(TSAccGetMetaData(acc, &mapper));
        mapper->GetStringMetaDataItem(name, &text, index);
        return text.Str();
    }

    TestFolder folder_;
};

const std::string VVGroupKeys =
    FamosKey("CG", "1,1,1") + FamosKey("CD", "0.5,1,1,s,0,0,0,10,1", 2) + FamosKey("NT", "31,12,2019,23,59,58.5");

}  // namespace

TEST_F(FamosAccessTest, DescribesChannels)
{
    const std::string samples = Bytes<float>({1.5F, -2}) + Bytes<std::uint16_t>({0x8001, 3}) +
                                Bytes<std::int16_t>({100, -100}) + Bytes<std::int32_t>({16777217, -1}) +
                                Bytes<double>({0.1, -0.0});
    const std::string name = folder_.Write(
        "any.bin",
        "\r\n" + FamosStart() + FamosKey("NO", "1," + FamosText("rec 5") + ",0,") + FamosKey("CB", "7,5,Proj\xE9,0,") +
            FamosKey("CT", "0," + FamosText("Driver") + "," + FamosText("J\xF6rg") + ",0,") +
            FamosKey("CT", "0," + FamosText("Driver") + "," + FamosText("Ann") + ",0,") + VVGroupKeys +
            Component{.name = "float", .size = 8}.Keys() +
            Component{.name = "bits", .format = 11, .bytes = 2, .start = 8, .size = 4, .digital = 2}.Keys() + VVGroupKeys +
            Component{.name = "tenths",
                      .format = 4,
                      .bytes = 2,
                      .start = 12,
                      .size = 4,
                      .range = "1,0.1,3,1,2,\xB0"
                               "C"}
                .Keys() +
            Component{.name = "long", .format = 6, .start = 16, .size = 8}.Keys() +
            Component{.name = "double", .format = 8, .bytes = 8, .start = 24, .size = 16}.Keys() + FamosSamples(samples));
    const VDFileIdHandle id = IdentifyTest(name);
    EXPECT_EQ(TestText<FIDGetFileTypeDesc>(id, char(0)), "Famos time series");
    const struct
    {
        const char* title;
        int type;
        std::vector<double> values;
    } channels[] = {{"float", DaxDataType::Float, {1.5, -2}},
                    {"bits", DaxDataType::Digital32, {0x8001, 3}},
                    {"tenths", DaxDataType::Double, {13, -7}},
                    {"long", DaxDataType::Double, {16777217, -1}},
                    {"double", DaxDataType::Double, {0.1, -0.0}}};
    const VDTsAccHandle acc = OpenTest(name);
    for (int index = 0; index < 5; ++index) {
        SCOPED_TRACE(channels[index].title);
        EXPECT_EQ(TestText<FIDGetChanTitle>(id, index), channels[index].title);
        EXPECT_EQ(TestInt<FIDGetChanType>(id, index), channels[index].type);
        EXPECT_EQ(Doubles(acc.Get(), index, 1, -1), channels[index].values);
        EXPECT_EQ(TestValue<TSAccGetSampleRate>(acc.Get(), index), 2.0);
        EXPECT_EQ(TestValue<TSAccGetBaseTime>(acc.Get(), index), 12.5);
        EXPECT_EQ(Meta(acc.Get(), "Comment", index), std::string("about ") + channels[index].title);
        EXPECT_EQ(Meta(acc.Get(), "Group", index), "Proj\xC3\xA9");
        EXPECT_EQ(Meta(acc.Get(), "TriggerTime", index), "2019-12-31T23:59:58.500");
        EXPECT_EQ(Meta(acc.Get(), "TimeStamp", index), "2020-01-01T23:59:58.500");
    }
    EXPECT_TRUE(std::signbit(Doubles(acc.Get(), 4, 2, 1)[0]));
    EXPECT_EQ(TestText<FIDGetChanUnits>(id, 2), "\xC2\xB0"
                                                "C");
    EXPECT_EQ(Meta(acc.Get(), "Driver", LQChannelMapper::GLOBAL), "J\xC3\xB6rg");
    EXPECT_EQ(FormatText(acc.Get(), "driver 2"), "Ann");
    EXPECT_EQ(FormatText(acc.Get(), "Damage"), "");
    std::uint32_t words[2] = {};
    EXPECT_TRUE(TSAccGetDataDigital32(acc.Get(), 1, 1, 2, nullptr, words));
    EXPECT_EQ(words[0], 0x8001u);
    ExpectFailure(TSAccGetDataDigital32(acc.Get(), 0, 1, 1, nullptr, words), -332684, "Status information not supported");
    EXPECT_FALSE(TSAccPutData(acc.Get(), 0, 1, 1, Floats(acc.Get(), 0, 1, 1).data()));
    const VDTsAccHandle writer = BindTest(id.Get());
    EXPECT_FALSE(TSAccOpen(writer.Get(), VTTsAccOpenUpdate));
    EXPECT_TRUE(VFErrorCheck(-332683));
}

// Two components in the packets of one ring, with bytes that nobody reads: whatever is asked for in whatever order is there.
TEST_F(FamosAccessTest, ReadsInterleavedComponentsAnywhere)
{
    std::mt19937 random(7);
    constexpr std::size_t period = 11;
    for (const std::size_t rows : {3u, 1000u, 20'000u}) {
        std::string ring(rows * period, '\0');
        for (char& byte : ring)
            byte = static_cast<char>(random());
        const std::size_t begin = rows / 3 * 7 + 5;
        const Component longs = {.format = 6, .packet = "0,2,3", .start = 4, .size = ring.size(), .begin = begin};
        const Component shorts = {.format = 4,
                                  .bytes = 2,
                                  .packet = "8,1,9",
                                  .start = 4,
                                  .size = ring.size(),
                                  .begin = begin,
                                  .range = "1,0.1,-1,1,0,"};
        const std::size_t split = ring.size() - begin;
        const VDTsAccHandle acc =
            OpenTest(folder_.Write("a.raw", FamosStart() + VVGroupKeys + longs.Keys() + shorts.Keys() +
                                                FamosSamples("...." + ring.substr(split) + ring.substr(0, split))));
        std::vector<double> expected[2];
        for (std::size_t row = 0; row < rows; ++row) {
            std::int32_t pair[2];
            std::int16_t number;
            std::memcpy(pair, &ring[row * period], sizeof pair);
            std::memcpy(&number, &ring[row * period + 8], sizeof number);
            expected[0].insert(expected[0].end(), {static_cast<double>(pair[0]), static_cast<double>(pair[1])});
            expected[1].push_back(number * 0.1 - 1);
        }
        EXPECT_EQ(Doubles(acc.Get(), 0, 1, -1), expected[0]);
        for (int round = 0; round < 200; ++round) {
            const auto channel = random() % 2;
            const std::vector<double>& all = expected[channel];
            const std::size_t first = random() % all.size();
            const std::size_t count = std::min(all.size() - first, 1 + random() % (round % 10 == 0 ? all.size() : 50));
            const auto from = all.begin() + static_cast<std::ptrdiff_t>(first);
            ASSERT_EQ(Doubles(acc.Get(), static_cast<int>(channel), static_cast<std::int64_t>(first) + 1,
                              static_cast<std::int64_t>(count)),
                      std::vector<double>(from, from + static_cast<std::ptrdiff_t>(count)));
        }
    }
}

// Two groups, cut off anywhere: what is whole is read, and it is told what isn't.
TEST_F(FamosAccessTest, ReadsWhatIsWhole)
{
    const Component part = {.format = 1, .bytes = 1, .size = 40};
    const auto group = [&part](char value) { return VVGroupKeys + part.Keys() + FamosSamples(std::string(40, value)); };
    const std::string first = FamosStart() + group('a');
    const std::string whole = first + group('b');
    int channels = 0;
    for (std::size_t size = 1; size <= whole.size(); ++size) {
        SCOPED_TRACE(size);
        const VDFileIdHandle id = TestId(folder_.Write("a.dat", whole.substr(0, size)));
        const VDFileInfoHandle info(FINFCreate());
        VDFileIdArrayHandle tests;
        VDTsAccHandle acc(TSAccCreate());
        if (!FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) || !TSAccSetId(acc.Get(), id.Get(), 0)) {
            EXPECT_LT(size, first.size() - 40);
            continue;
        }
        ASSERT_TRUE(TSAccOpen(acc.Get(), 0));
        int count = 0;
        EXPECT_TRUE(FIDGetNumChans(id.Get(), &count));
        channels = std::max(channels, count);
        std::size_t found = 0;
        for (int index = 0; index < count; ++index) {
            const std::vector<float> values = Floats(acc.Get(), index, 1, -1);
            EXPECT_EQ(values, std::vector<float>(values.size(), index == 0 ? 'a' : 'b'));
            found += values.size();
        }
        EXPECT_EQ(found, std::min<std::size_t>(40, size - std::min(size, first.size() - 41)) +
                             std::min<std::size_t>(40, size - std::min(size, whole.size() - 41)));
        // A cut between the groups looks like a whole file.
        if (size < first.size() - 1 || (size > first.size() + 1 && size < whole.size() - 1)) {
            EXPECT_NE(FormatText(acc.Get(), "Damage"), "");
        }
    }
    EXPECT_EQ(channels, 2);
    // A recorder that lost its power left its mark, and a channel that can't be read doesn't take the others along.
    const VDTsAccHandle acc = OpenTest(folder_.Write(
        "a.dat", FamosKey("CF", "1", 2) + FamosKey("CK", "1,0") + VVGroupKeys + Component{.format = 99, .size = 8}.Keys() +
                     Component{.name = "good", .size = 8}.Keys() + FamosSamples(Bytes<float>({1, 2}))));
    EXPECT_EQ(FormatText(acc.Get(), "Damage"), "The recorder has not closed the file. The values of \"a\" can't be read: "
                                               "Component packet key is not valid in famos file.");
    EXPECT_EQ(Floats(acc.Get(), 1, 1, -1), (std::vector<float>{1, 2}));
}

// A test of many files, more than are kept open, by their names and as a folder.
TEST_F(FamosAccessTest, ReadsAFileAChannel)
{
    const auto content = [](int number) {
        return FamosStart() + VVGroupKeys + Component{.name = "chan " + std::to_string(number), .size = 8}.Keys() +
               FamosSamples(Bytes<float>({static_cast<float>(number), 0.5F}));
    };
    const VDFileIdHandle id = TestStemId(folder_.Name("run_"), "raw");
    for (int number = 1; number <= 100; ++number) {
        int index = 0;
        folder_.Write("run_" + std::to_string(number) + ".raw", content(number));
        FIDAddChannel(id.Get(), number, &index);
    }
    FIDSetNumChanDigits(id.Get(), 1);
    const VDFileIdHandle folder = TestStemId(folder_.Name("all.fsf"), "fsf");
    FIDSetFolderTestManual(folder.Get(), 1);
    for (const char* title : {"left", "right"}) {
        int index = 0;
        const VDString name(title);
        folder_.Write(std::string("all.fsf/") + title + ".dat", content(name == "left" ? 1 : 2));
        FIDAddChannelByTitle(folder.Get(), &name, &index);
    }
    for (const VDFileIdHandle* test : {&id, &folder}) {
        FIDSetFileId(test->Get(), VVFileId, VVTimeSeries);
        FIDSetIdentified(test->Get(), 1);
        const VDTsAccHandle acc = BindTest(test->Get());
        ASSERT_TRUE(TSAccOpen(acc.Get(), 0)) << VFErrorGetText(VFGetBaseLibError()).Str();
        int count = 0;
        FIDGetNumChans(test->Get(), &count);
        for (int round = 0; round < 2; ++round)
            for (int index = 0; index < count; ++index)
                ASSERT_EQ(Floats(acc.Get(), index, 1, -1), (std::vector<float>{static_cast<float>(index + 1), 0.5F}));
        EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 1), VDString("chan 2"));
    }
}

// Components with x values of their own are tables; a file that has others as well is two tests.
TEST_F(FamosAccessTest, ReadsPairs)
{
    const std::string samples = Bytes<float>({1, 2, 3}) + Bytes<std::uint16_t>({10, 20, 40});
    const std::string pair =
        FamosKey("CG", "2,2,2") + Component{.name = "force", .size = 12}.Keys() +
        Component{.name = "", .format = 3, .bytes = 2, .start = 12, .size = 6, .range = "1,0.1,0,1,2,mm"}.Keys() +
        FamosSamples(samples);
    const VDXYAccHandle acc(XYAccCreate());
    const VDFileIdHandle id = IdentifyTest(folder_.Write("a.dat", FamosStart() + pair));
    ASSERT_TRUE(XYAccSetId(acc.Get(), id.Get(), 0) && XYAccOpen(acc.Get(), 0)) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_EQ(TestText<FIDGetFileTypeDesc>(id, char(0)), "Famos multi-column");
    EXPECT_EQ(TestText<FIDGetChanTitle>(id, 0), "force");
    EXPECT_EQ(TestValue<XYAccGetNumRows>(acc.Get(), 0, 0), 3);
    EXPECT_EQ(TestValue<XYAccGetColUnits>(acc.Get(), 0, 0), VDString("mm"));
    VDVariant values;
    ASSERT_TRUE(XYAccGetData(acc.Get(), 0, 0, 0, 2, 5, &values));
    ASSERT_EQ(values.GetBuffer<double>().size(), 2u);
    EXPECT_EQ(values.GetBuffer<double>()[1], 40 * 0.1);
    float y[3] = {};
    ASSERT_TRUE(XYAccGetDataF(acc.Get(), 0, 0, 1, 1, 3, nullptr, y));
    EXPECT_EQ(y[2], 3.0F);

    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    const std::string both =
        FamosStart() + pair + VVGroupKeys + Component{.name = "time", .size = 12}.Keys() + FamosSamples(samples);
    ASSERT_TRUE(FINFIdentifyFile(info.Get(), TestId(folder_.Write("b.dat", both)).Get(), 1, tests.Out()));
    ASSERT_EQ(TestValue<FIAGetSize>(tests.Get()), 2);
    for (const auto& [at, title] : {std::pair(0, "time"), std::pair(1, "force")}) {
        VDFileIdHandle test;
        FIAGetAt(tests.Get(), at, test.Out());
        EXPECT_EQ(TestInt<FIDGetNumChans>(test), 1);
        EXPECT_EQ(TestText<FIDGetChanTitle>(test, 0), title);
    }
}

TEST_F(FamosAccessTest, ReadsTimeStampedFrames)
{
    std::vector<std::string> records;
    for (int index = 0; index < 300; ++index) {
        const auto ticks = static_cast<std::uint64_t>(index);
        records.push_back(
            FamosRecord(200, Bytes<char>({static_cast<char>(index % 2), static_cast<char>(index / 2), 0, 7}), ticks * 10));
        if (index % 3 == 0)
            records.push_back(FamosRecord(100, std::string(1, static_cast<char>(index / 3)), ticks * 10 + 5));
    }
    records.push_back(FamosRecord(200, "x", 9999));
    const std::string name = folder_.Write("bus.dat", FamosStampedStart() + FamosSamples(FamosBlocks(records)));
    const std::string database = folder_.Write("bus.dbc", "BU_: A\n"
                                                          "BO_ 200 Engine: 4 A\n"
                                                          " SG_ Which M : 0|8@1+ (1,0) [0|0] \"\" A\n"
                                                          " SG_ Speed m1 : 8|16@1+ (0.5,-1) [0|0] \"km/h\" A\n"
                                                          " SG_ Gear : 24|8@1+ (1,0) [0|0] \"\" A\n"
                                                          "VAL_ 200 Gear 7 \"top\" ;\n");

    // Without a database: bytes, and the time of each id's frames.
    VDTsAccHandle acc = OpenTest(name);
    EXPECT_EQ(TestInt<FIDGetNumChans>(IdentifyTest(name)), 1 + 4 + 2);
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 2), VDString("FrameId 200 Byte 2"));
    EXPECT_EQ(Floats(acc.Get(), 0, 99, 2), (std::vector<float>{98, 99}));
    EXPECT_EQ(Floats(acc.Get(), 2, 100, 2), (std::vector<float>{49, 50}));
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 5), VDString("FrameId 100 Time"));
    EXPECT_EQ(TestValue<TSAccGetYUnits>(acc.Get(), 5), VDString("s"));
    EXPECT_EQ(Doubles(acc.Get(), 5, 2, 2), (std::vector<double>{35 * 0.0001 + 2.5, 65 * 0.0001 + 2.5}));
    const std::vector<float> last = Floats(acc.Get(), 4, 300, 2);
    EXPECT_TRUE(last[0] == 7 && std::isnan(last[1]));

    // With one, which the test's own preference takes away again.
    VDPreferenceSystem().OverrideStringValue("/FileFormats/Famos/DbcFile", database.c_str());
    acc = OpenTest(name);
    const VDFileIdHandle id = IdentifyTest(name);
    EXPECT_EQ(TestInt<FIDGetNumChans>(id), 4);
    EXPECT_EQ(Meta(acc.Get(), "States", 0), "7=top");
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 1), VDString("Speed"));
    const std::vector<double> speed = Doubles(acc.Get(), 1, 101, 2);
    EXPECT_TRUE(std::isnan(speed[0])) << speed[0];
    EXPECT_EQ(speed[1], 50 * 0.5 - 1);
    VDFileIdPreferences* own = nullptr;
    ASSERT_TRUE(FIDGetPreferences(id.Get(), 1, &own));
    own->SetString("DbcFile", "** NO NAME **");
    const VDTsAccHandle bytes = BindTest(id.Get());
    ASSERT_TRUE(TSAccOpen(bytes.Get(), 0));
    EXPECT_EQ(TestValue<TSAccGetChanTitle>(bytes.Get(), 0), VDString("FrameId 100 Byte 1"));
    own->SetString("DbcFile", folder_.Name("none.dbc").c_str());
    const VDTsAccHandle none = BindTest(id.Get());
    ExpectFailure(TSAccOpen(none.Get(), 0), -332685, "Error opening Famos file");

    // A recording that is cut off has the frames that are whole.
    const std::string cut = TestReadFile(name).substr(0, std::filesystem::file_size(name) - 3000);
    acc = OpenTest(folder_.Write("cut.dat", cut));
    EXPECT_NE(FormatText(acc.Get(), "Damage"), "");
    EXPECT_EQ(Floats(acc.Get(), 0, 1, 2)[1], 7);
}
