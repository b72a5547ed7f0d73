#include "bus/VDFamosFrameStream.h"
#include "bus/VDFamosUtil.h"
#include "support/FamosBuilder.h"
#include "support/TestSupport.h"

#include "vdbase/VDPreferenceSystem.h"

#include <filesystem>

namespace {

const std::string VVDatabase = "BO_ 100 A: 4 X\n SG_ Zeta : 0|8@1+ (1,0) [0|0] \"V\" Vector__XXX\n"
                               " SG_ Alpha10 : 8|8@1+ (1,0) [0|0] \"\" Vector__XXX\n"
                               " SG_ alpha9 : 16|8@1+ (1,0) [0|0] \"\" Vector__XXX\n";

class FamosScanTest : public testing::Test
{
protected:
    bool Open(const std::string& samples, const std::string& database = {})
    {
        VFErrorClear();
        const std::string dbc = database.empty() ? "" : folder_.Write("a.dbc", database);
        return famos_.Open(VDString(folder_.Write("a.dat", FamosStampedStart() + FamosSamples(samples))), VDString(dbc));
    }
    std::vector<std::string> Titles() const
    {
        std::vector<std::string> titles;
        for (std::size_t index = 0; index < famos_.GetTimeStampChanCount(); ++index)
            titles.push_back(famos_.GetTimeStampChan(index).GetTitle().Str());
        return titles;
    }
    // Id and count of each frame type: "100*2 200*1".
    std::string Types() const
    {
        std::string text;
        for (int index = 0; index < famos_.GetFrameTypes().GetCount(); ++index) {
            const VDCanFrameType& type = *famos_.GetFrameTypes().GetFrameType(index);
            text += (index == 0 ? "" : " ") + std::to_string(type.frameId) + "*" + std::to_string(type.count);
        }
        return text;
    }

    TestFolder folder_;
    VDFamosUtil famos_;
};

}  // namespace

TEST_F(FamosScanTest, ListsBytesWithoutDatabase)
{
    ASSERT_TRUE(
        Open(FamosBlocks({FamosRecord(200, "ab"), FamosRecord(100, std::string(11, 'x'), 5, 3), FamosRecord(200, "abcd")})));
    EXPECT_TRUE(famos_.IsTimeStamped());
    EXPECT_EQ(Types(), "100*1 200*2");
    EXPECT_EQ(famos_.GetFrameTypes().GetFrameType(1)->numBytes, 2);
    std::vector<std::string> expected;
    for (int byte = 1; byte <= 11; ++byte)
        expected.push_back("FrameId 100 Byte " + std::to_string(byte));
    expected.insert(expected.end(), {"FrameId 200 Byte 1", "FrameId 200 Byte 2"});
    EXPECT_EQ(Titles(), expected);
    EXPECT_EQ(famos_.GetTimeStampChan(10).byteIndex, 10);
    unsigned long count = 0;
    EXPECT_TRUE(famos_.GetChannelCount(&count));
    EXPECT_EQ(count, 13u);
}

// Records of many lengths, whose ends fall on every place of a block.
TEST_F(FamosScanTest, ReadsRecordsAcrossBlocks)
{
    std::vector<std::string> records;
    for (unsigned index = 0; index < 2000; ++index)
        records.push_back(FamosRecord(index % 7, std::string(1 + index * 13 % 500, 'x'), index));
    ASSERT_TRUE(Open(FamosBlocks(records)));
    EXPECT_EQ(Types(), "0*286 1*286 2*286 3*286 4*286 5*285 6*285");

    VDIo file(folder_.Name("a.dat").c_str());
    ASSERT_TRUE(file.Open(VTOpenRead));
    VDFamosFrameStream frames(file, famos_.GetHeader().dataBlocks, famos_.GetFrameTypes());
    bool end = false;
    for (unsigned index = 0; index < 2000; ++index) {
        ASSERT_TRUE(frames.ReadFrame(true, &end));
        ASSERT_FALSE(end);
        ASSERT_EQ(frames.GetTimeStamp(), index);
        ASSERT_EQ(frames.GetNumBytes(), static_cast<int>(1 + index * 13 % 500));
        ASSERT_EQ(frames.GetData()[frames.GetNumBytes() - 1], 'x');
    }
    ASSERT_TRUE(frames.ReadFrame(true, &end));
    EXPECT_TRUE(end);
}

TEST_F(FamosScanTest, PassesOverWhatBlocksLeaveOut)
{
    const std::string one = FamosBlocks({FamosRecord(1, "abcd")});
    std::string foreign(512, '\x01');
    foreign[2] = 0;
    foreign[3] = 0;
    // Blocks without a record start, a block whose word 1 is out of range, a part of a block, and two data blocks.
    EXPECT_TRUE(Open(foreign + one + "short"));
    EXPECT_EQ(Types(), "1*1");
    const std::string samples = FamosSamples(one) + FamosSamples("too short") + FamosSamples(one);
    ASSERT_TRUE(famos_.Open(VDString(folder_.Write("b.dat", FamosStampedStart() + samples)), ""));
    EXPECT_EQ(Types(), "1*2");
    // A data block that ends with a whole block is used up to its last byte.
    std::vector<std::string> full(23, FamosRecord(1, "12345678"));
    full.push_back(FamosRecord(2, std::string(36, 'y')));
    ASSERT_EQ(FamosBlocks(full).size(), 512u);
    ASSERT_TRUE(Open(FamosBlocks(full)));
    EXPECT_EQ(Types(), "1*23 2*1");
    EXPECT_TRUE(Open(""));
    EXPECT_EQ(Types(), "");
    // A file that ends inside a block that its key announces.
    const std::string whole = FamosStampedStart() + FamosSamples(one);
    EXPECT_FALSE(famos_.Open(VDString(folder_.Write("b.dat", whole.substr(0, whole.size() - 100))), ""));
    EXPECT_TRUE(VFErrorCheck(-332782));
}

TEST_F(FamosScanTest, RefusesDamagedRecords)
{
    for (const unsigned length : {0u, 12u, 513u, 0x3FFFu}) {
        std::string record = FamosRecord(1, "abcd");
        record[0] = static_cast<char>(length);
        record[1] = static_cast<char>(length >> 8);
        EXPECT_FALSE(Open(FamosBlocks({FamosRecord(9, "abcd"), record})));
        const auto reports = VFErrorGetReports(VFGetBaseLibError());
        ASSERT_EQ(reports.GetSize(), 2);
        EXPECT_EQ(reports[0].text.Str(),
                  "Frame length is too large. Frame length: " + std::to_string(length) + ". Maximum frame length: 512");
        EXPECT_STREQ(reports[0].routine, "VDFamosUtil::InitTimeStampRead");
        EXPECT_EQ(reports[1].code, -332782);
        EXPECT_EQ(Types(), "9*1");
    }
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/FastFrameIdLookup", true);
    VDFamosUtil fast;
    const std::string name =
        folder_.Write("c.dat", FamosStampedStart() + FamosSamples(FamosBlocks({FamosRecord(10001, "a")})));
    EXPECT_FALSE(fast.Open(VDString(name), ""));
    EXPECT_TRUE(VFErrorCheck(-334410));
}

TEST_F(FamosScanTest, ListsSignalsOfTheDatabase)
{
    const std::string samples = FamosBlocks({FamosRecord(100, "abcd"), FamosRecord(7, "ab")});
    ASSERT_TRUE(Open(samples, VVDatabase));
    EXPECT_EQ(Titles(), (std::vector<std::string>{"alpha9", "Alpha10", "Zeta"}));
    EXPECT_STREQ(famos_.GetTimeStampChan(2).GetUnits(), "V");
    EXPECT_EQ(famos_.GetTimeStampChan(2).frame->GetFrameId(), 100u);
    EXPECT_EQ(famos_.GetTimeStampChan(2).frameType->frameId, 100u);

    ASSERT_TRUE(Open(FamosBlocks({FamosRecord(7, "ab")}), VVDatabase));
    EXPECT_TRUE(Titles().empty());

    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/SkipMissingFrameIds", false);
    EXPECT_FALSE(Open(samples, VVDatabase));
    EXPECT_TRUE(VFErrorCheck(-334406));
    EXPECT_TRUE(VFErrorCheck(-332782));

    const std::string shortFrame = FamosBlocks({FamosRecord(100, "abc")});
    EXPECT_FALSE(Open(shortFrame, VVDatabase));
    EXPECT_EQ(VFErrorGetReports(VFGetBaseLibError())[0].text.Str(),
              "The frame length defined in the DBC file for frame Id: 100 is 4 bytes, but the number of bytes available for "
              "this frame in the raw data is only 3 bytes. ");
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/IgnoreShortFrames", true);
    EXPECT_TRUE(Open(shortFrame, VVDatabase));
    EXPECT_TRUE(Titles().empty());
}

TEST_F(FamosScanTest, CountsSwitchValuesWhileReading)
{
    ASSERT_TRUE(Open(
        FamosBlocks({FamosRecord(100, "\x01"), FamosRecord(100, "\x02"), FamosRecord(100, "\x01"), FamosRecord(7, "x")})));
    VDIo file(folder_.Name("a.dat").c_str());
    ASSERT_TRUE(file.Open(VTOpenRead));
    VDCanChanDefinition chan;
    chan.Init("Switch", 1, 0, 0, 0, 8, 1, 0, 1, 0, 0, 0, "", VDStringArray(), 1);
    VDCanFrameType& type = *famos_.GetFrameTypes().Find(100);
    type.switchChan = &chan;
    type.switches = std::make_unique<VDCanSwitchCounts>();
    type.switches->totals.SetSize(2);
    VDFamosFrameStream frames(file, famos_.GetHeader().dataBlocks, famos_.GetFrameTypes());
    frames.ResetRead();
    bool end = false;
    while (!end)
        ASSERT_TRUE(frames.ReadFrame(false, &end));
    EXPECT_EQ(type.readCount, 3);
    EXPECT_EQ(type.switches->counts[1], 2);
    EXPECT_EQ(famos_.GetFrameTypes().Find(7)->readCount, 1);

    chan.Init("Switch", 1, 0, 0, 0, 8, 1, 0, 1, 0, 0, 0, "", VDStringArray(), 600);
    frames.ResetRead();
    ExpectFailure(frames.ReadFrame(false, &end), -332806);
}

TEST_F(FamosScanTest, DumpsTheScan)
{
    std::filesystem::current_path(folder_.Path());
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/DumpFileScan", true);
    ASSERT_TRUE(Open(FamosBlocks(
        {FamosRecord(200, "ab", 0x123456789ABC), FamosRecord(0x80000064, "abcdefgh", 7), FamosRecord(200, "ab")})));
    EXPECT_EQ(TestReadFile(folder_.Name("framedump.csv")),
              "TimeStamp,Length,FrameID\n20015998343868,14,200\n7,20,2147483748\n0,14,200\n\n\n"
              "Total frames in file : 3\nNumber of frame types: 2\n\nFrame Id,NumBytes,Count\n200,2,2\n-2147483548,8,1\n");

    // A list that can't be made is no failure.
    std::filesystem::remove("framedump.csv");
    std::filesystem::create_directory("framedump.csv");
    EXPECT_TRUE(Open(FamosBlocks({FamosRecord(200, "ab")})));
    ExpectNoError();
}
