#include "bus/VDFamosUtil.h"
#include "bus/VDFamosValues.h"
#include "support/FamosBuilder.h"
#include "support/TestSupport.h"
#include "vdbase/VDBaseErrorCodes.h"

#include <algorithm>

namespace {

class FamosFileTest : public testing::Test
{
protected:
    bool Open(const std::string& content, const std::string& name = "a.dat")
    {
        VFErrorClear();
        return famos_.Open(VDString(folder_.Write(name, content)), "** NO NAME **");
    }
    unsigned long Count() const
    {
        unsigned long count = 99;
        EXPECT_TRUE(famos_.GetChannelCount(&count));
        return count;
    }

    // Of the first component: all at once, and they must be the same one by one.
    std::vector<double> Values()
    {
        VFErrorClear();
        VDIo file(folder_.Name("a.dat").c_str());
        EXPECT_TRUE(file.Open(VTOpenRead));
        VDFamosValues reader;
        VDFamosLayout layout;
        const bool isSet = VDFamosPlacement(famos_.GetHeader(), file.GetFileSize()).Find(0, 0, &layout);
        std::vector<double> values(static_cast<std::size_t>(layout.count));
        EXPECT_TRUE(reader.Read(file, layout, 0, layout.count, values.data()));
        for (std::size_t index = 0; index < values.size(); ++index) {
            double value = 0;
            EXPECT_TRUE(reader.Read(file, layout, static_cast<std::int64_t>(index), 1, &value));
            EXPECT_EQ(value, values[index]);
        }
        double beyond = 0;
        EXPECT_FALSE(isSet && reader.Read(file, layout, layout.count, 1, &beyond));
        isCut_ = layout.count < layout.declared;
        return values;
    }

    TestFolder folder_;
    VDFamosUtil famos_;
    bool isCut_ = false;
};

// The keys of a group up to its component.
const std::string VVGroup = FamosKey("CG", "1,1,1");
const std::string VVComponent = FamosKey("CC", "1,1");
const std::string VVPacket = FamosKey("CP", "1,4,7,32,0,0,1,0");

}  // namespace

TEST_F(FamosFileTest, ReadsEveryKey)
{
    const std::string tricky = "a,b;|CG,1";
    ASSERT_TRUE(Open(FamosStart() + FamosKey("NO", "1," + FamosText(tricky) + "," + FamosText("c")) + "\r\n junk " +
                     FamosKey("CB", "3," + FamosText("grp") + ",0,") +
                     FamosKey("CT", "3," + FamosText("t") + "," + FamosText(tricky) + ",0,") +
                     FamosKey("XX", "|CF,1,2,3;|") + FamosKey("NU", "|CG,1,5,1,1,1") + FamosKey("CG", "2,4,1") +
                     FamosKey("CD", "0.5,1,1,s,7,1,2,-3.5,1", 2) + FamosKey("NT", "12,11,2012,17,41,12.5") + VVComponent +
                     FamosKey("CD", "1e3,1,2,Hz,0,0,0") + FamosKey("CP", "1,4,7,+5,fF,0x10, 1 ,0,more,fields") +
                     FamosKey("CR", "1,2*(1+0.5),A,1," + FamosText("bar")) +
                     FamosKey("CN", "3,9,2," + FamosText(tricky) + "," + FamosText("note")) +
                     FamosKey("Cb", "2,3,1,2,3,4,5,6,0.5,1.5,xyz,1,2,3,4,5,6,0.25,+2.5,xyz") + VVComponent + VVPacket +
                     FamosKey("CN", "3,0,0," + FamosText("second") + ",0,") + FamosSamples(std::string("|CG,;\0|", 7))));

    const VDFamosHeader& header = famos_.GetHeader();
    EXPECT_STREQ(header.idKeyName, "CF");
    EXPECT_EQ(header.program.Str(), tricky);
    EXPECT_STREQ(header.groupDefinitions.at(0).name, "grp");
    EXPECT_EQ(header.textDefinitions.at(0).text.Str(), tricky);
    ASSERT_EQ(header.groups.size(), 1u);
    const VDFamosGroup& group = header.groups[0];
    const VDFamosScaling& scaling = *group.scaling;
    EXPECT_TRUE(scaling.hasScaling);
    EXPECT_EQ(std::tuple(group.fieldType, scaling.dx, scaling.x0, scaling.reduction, scaling.sortBuffer),
              std::tuple(4, 0.5, -3.5, 7, 2));
    EXPECT_STREQ(scaling.triggerTime.ToIsoText(), "2012-11-12T17:41:12.500");

    ASSERT_EQ(group.components.size(), 2u);
    const VDFamosComponent& component = group.components[0];
    EXPECT_EQ(component.scaling->dx, 1000);
    EXPECT_STREQ(component.scaling->unit, "Hz");
    EXPECT_EQ(std::tuple(component.packet->significantBits, component.packet->mask, component.packet->offset),
              std::tuple(5, 255, 16));
    EXPECT_EQ(std::tuple(component.range->factor, component.range->offset), std::tuple(3.0, 10.0));
    EXPECT_STREQ(component.range->unit, "bar");
    EXPECT_EQ(component.channelNames.at(0).name.Str(), tricky);
    EXPECT_EQ(component.channelNames.at(0).bitIndex, 2);
    EXPECT_EQ(group.components[1].scaling, nullptr);
    const VDFamosBufferDescription& buffers = header.bufferDescriptions.at(0);
    ASSERT_EQ(buffers.buffers.size(), 2u);
    EXPECT_EQ(buffers.buffers[1].integers[5], 6);
    EXPECT_EQ(buffers.buffers[1].times[1], 2.5);
    ASSERT_EQ(header.dataBlocks.size(), 1u);
    EXPECT_EQ(header.dataBlocks[0].length, 11 + 7);
    EXPECT_EQ(header.dataBlocks[0].end - header.dataBlocks[0].start, 7);
    EXPECT_EQ(Count(), 2u);
    EXPECT_FALSE(famos_.IsTimeStamped());
    EXPECT_FALSE(famos_.GetChannelCount(nullptr));
}

TEST_F(FamosFileTest, NamesBadKeys)
{
    const std::string start = FamosStart();
    const std::string whole = start + VVGroup + VVComponent;
    const struct
    {
        std::string content;
        int code;  // 0: no message of its own in front of the last one
    } cases[] = {
        {start + FamosKey("CF", "1"), -332784},
        {FamosKey("CF", "zz"), -332784},
        {FamosKey("CK", "1,1"), -332785},
        {FamosKey("CF", "1") + FamosKey("CK", "1,?"), -332785},
        {start + "|NO,1,5,1", -332786},
        {start + FamosKey("CB", "1,-3,a,0,"), -332787},
        {start + FamosKey("CT", "1,2147483647,a,0,"), -332788},
        {start + FamosKey("CG", "1,1,?"), -332789},
        {whole + FamosKey("CG", "1,1,1"), -332803},
        {start + VVGroup + VVGroup, -332802},
        {start + VVGroup + FamosKey("CD", "1,1,0,,0,0,0", 3), -332790},
        {start + VVGroup + FamosKey("CD", std::string(10000, '1') + ".5,1,0,,0,0,0"), -332790},
        {start + FamosKey("CD", "1,1,0,,0,0,0"), -332801},
        {start + VVGroup + FamosKey("NT", "1,1,2000,1,1,noon"), -332791},
        {start + FamosKey("NT", "1,1,2000,1,1,1"), -332801},
        {start + VVGroup + FamosKey("CC", "1,?"), -332793},
        {start + VVComponent, -332801},
        {whole + FamosKey("CP", "1,2,3;"), -332794},
        {start + VVGroup + VVPacket, -332802},
        {whole + FamosKey("Cb", "2000000000,0,1,2,3,4,5,6,1,1"), -332795},
        {whole + FamosKey("Cb", "2000000000,-60,1,2,3,4,5,6,1,1,x"), -332795},
        {whole + FamosKey("CR", "1,1,(,1,0,"), -332796},
        {start + FamosKey("CR", "1,1,1,1,0,"), -332802},
        {whole + FamosKey("CN", "1,1,1,99999,a,0,"), -332798},
        {start + FamosKey("CN", "0,0,0,1,a,0,"), -332802},
        {start + FamosKey("CS", "?,"), -332799},
        {start + "|XX,1,-20,abc;", 0},
        {start + "|XX,1", 0},
        {start + "|", 0},
        {"", 0},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.content);
        EXPECT_FALSE(Open(bad.content));
        const auto reports = VFErrorGetReports(VFGetBaseLibError());
        // What the calculator said of a field lies beneath all.
        const int causes = bad.code == -332791 || bad.code == -332796 ? 1 : 0;
        EXPECT_EQ(VFErrorCheck(VDBaseError::ExpressionText), causes == 1);
        ASSERT_EQ(reports.GetSize(), (bad.code == 0 ? 1 : 2) + causes);
        EXPECT_EQ(reports[reports.GetSize() - 1].code, -332782);
        EXPECT_STREQ(reports[reports.GetSize() - 1].routine, "VDFamosUtil::Open");
        if (bad.code != 0) {
            EXPECT_EQ(reports[causes].code, bad.code);
            EXPECT_STREQ(reports[causes].routine, "VDFamosUtil::ParseFile");
        }
    }
}

TEST_F(FamosFileTest, ToleratesWhatWritersDo)
{
    // An origin key of another form or in another place, a first key that is no id, a key longer than the file.
    EXPECT_TRUE(Open(FamosStart() + FamosKey("NO", "hello")));
    EXPECT_TRUE(Open(FamosStart() + FamosKey("NU", "x") + FamosKey("NO", "1,3,abc,0,")));
    EXPECT_TRUE(Open(FamosKey("NU", "1") + FamosGroup(7, "a")));
    EXPECT_EQ(Count(), 1u);
    EXPECT_TRUE(Open(FamosStart() + FamosGroup(7, "a") + "|CS,1,3000000000,1,abc"));
    EXPECT_EQ(famos_.GetHeader().dataBlocks.at(0).length, 3000000000);
    EXPECT_TRUE(Open(FamosStart() + FamosGroup(7, "a") + "|ZZ,1,9223372036854775807,1,abc"));
    EXPECT_TRUE(Open("no key at all"));
    EXPECT_EQ(Count(), 0u);
    // The first key of a long file must come soon.
    EXPECT_TRUE(Open(std::string(60'000, 'x') + FamosStart() + FamosGroup(7, "a") + std::string(200'000, 'x')));
    EXPECT_FALSE(Open(std::string(70'000, 'x') + FamosStart() + FamosGroup(7, "a")));
    // A trigger time that doesn't exist.
    EXPECT_TRUE(Open(FamosStart() + VVGroup + FamosKey("NT", "31,2,2000,1,1,1")));
    EXPECT_FALSE(famos_.GetHeader().groups.at(0).scaling->triggerTime.IsSet());
}

TEST_F(FamosFileTest, ChecksNameAndExtension)
{
    EXPECT_TRUE(Open(FamosStart(), "a.DAT"));
    EXPECT_TRUE(Open(FamosStart(), "a.raw"));
    ExpectFailure(Open(FamosStart(), "a.txt"), -332782, "This is not a valid famos file", "VDFamosUtil::Open");
    EXPECT_FALSE(famos_.Open(VDString(folder_.Name("none.dat")), ""));
    ExpectError(-332781, "Could not open famos file", "VDFamosUtil::Open");
    EXPECT_FALSE(famos_.Open(VDString(folder_.Write("b.dat", FamosStart())), VDString(folder_.Write("b.dbc", "BU_:\n"))));
    EXPECT_TRUE(VFErrorCheck(-334381));
    EXPECT_FALSE(VFErrorCheck(-332782));
}

// All number formats, in both orders of bytes.
TEST_F(FamosFileTest, ReadsValuesOfEachFormat)
{
    const struct
    {
        int format;
        std::string bytes;  // lowest first
        double value;
    } cases[] = {
        {1, "\xFE", 254},
        {2, "\xFE", -2},
        {3, "\xFE\xFF", 65534},
        {4, "\xFE\xFF", -2},
        {5, "\xFE\xFF\xFF\xFF", 4294967294},
        {6, "\xFE\xFF\xFF\xFF", -2},
        {7, std::string("\0\0\xC0\xBF", 4), -1.5},
        {8, std::string("\0\0\0\0\0\0\xF8\xBF", 8), -1.5},
        {11, "\x01\x80", 32769},
        {13, "\xFF\xFF\xFF\xFF\xFF\xFF", 281474976710655},
    };
    for (const auto& good : cases)
        for (const bool highestFirst : {false, true}) {
            SCOPED_TRACE(good.format);
            std::string bytes = good.bytes;
            if (highestFirst)
                std::reverse(bytes.begin(), bytes.end());
            const std::string size = std::to_string(bytes.size());
            ASSERT_TRUE(Open(FamosKey("CF", highestFirst ? "2" : "1", 2) + FamosKey("CK", "1,1") + VVGroup + VVComponent +
                             FamosKey("CP", "1," + size + "," + std::to_string(good.format) + ",8,0,0,1,0") +
                             FamosKey("CR", "1,0.5,3,1,0,") + FamosKey("Cb", "1,0,1,1,0," + size + ",0," + size + ",0,0,") +
                             FamosSamples(bytes)));
            EXPECT_EQ(Values(), std::vector<double>{good.value * 0.5 + 3});
        }
}

// Buffers in pieces, rings that begin anywhere, packets with values of others between.
TEST_F(FamosFileTest, ReadsValuesInPieces)
{
    std::string samples;
    for (char byte = 0; byte < 100; ++byte)
        samples += byte;
    const struct
    {
        std::string packet;   // offset, values in a row, bytes between
        std::string buffers;  // of the key
        std::vector<double> values;
    } cases[] = {
        {"0,1,0", "1,0,1,1,10,3,0,3,0,0,", {10, 11, 12}},
        {"1,2,3", "1,0,1,1,10,12,0,12,0,0,", {11, 12, 16, 17, 21}},
        {"0,1,0", "1,0,1,1,10,4,3,4,0,0,", {13, 10, 11, 12}},
        {"1,1,1", "1,0,1,1,10,4,3,4,0,0,", {10, 12}},
        {"0,1,0", "3,1,1,1,10,2,2,1,0,0,x,9,1,0,5,0,5,0,0,x,1,1,90,9,8,2,0,0,x", {10, 98, 90}},
        {"0,1,0", "1,0,1,1,10,3,0,0,0,0,", {}},
        {"5,1,0", "1,0,1,1,10,3,0,3,0,0,", {}},
        // As recorders write them, with a field more.
        {"0,1,0", "2,0,1,1,10,2,0,2,1,4.25,7,1,1,20,2,0,2,1,8.5,7,", {10, 11, 20, 21}},
        {"0,1,0", "2,1,1,1,10,2,0,2,1,4.25,7,x,1,1,20,2,0,2,1,8.5,7,x", {10, 11, 20, 21}},
    };
    const auto content = [&samples](const std::string& packet, const std::string& buffers) {
        return FamosStart() + VVGroup + VVComponent + FamosKey("CP", "1,1,1,8,0," + packet) + FamosKey("Cb", buffers) +
               FamosSamples(samples);
    };
    for (const auto& good : cases) {
        SCOPED_TRACE(good.buffers);
        ASSERT_TRUE(Open(content(good.packet, good.buffers)));
        EXPECT_EQ(Values(), good.values);
        EXPECT_FALSE(isCut_);
    }
    for (const std::string& bad : std::vector<std::string>{
             "1,0,2,1,0,3,0,3,0,0,", "1,0,1,2,0,3,0,3,0,0,", "1,0,1,1,-1,3,0,3,0,0,", "1,0,1,1,0,101,0,3,0,0,",
             "1,0,1,1,98,3,0,3,0,0,", "1,0,1,1,0,3,4,3,0,0,", "1,0,1,1,0,3,0,4,0,0,"}) {
        ASSERT_TRUE(Open(content("0,1,0", bad)));
        EXPECT_EQ(Values(), std::vector<double>{}) << bad;
        ExpectError(-332795, {}, "VDFamosPlacement::Find");
    }
    for (const std::string& bad : std::vector<std::string>{"-1,1,0", "0,0,0", "0,1,-1"}) {
        ASSERT_TRUE(Open(content(bad, "1,0,1,1,10,3,0,3,0,0,")));
        EXPECT_EQ(Values(), std::vector<double>{}) << bad;
        ExpectError(-332794);
    }
    // A file that ends inside the ring has what comes before that.
    const std::string whole = content("0,1,0", "1,0,1,1,0,100,95,100,0,0,");
    ASSERT_TRUE(Open(whole.substr(0, whole.size() - 4)));
    EXPECT_EQ(Values(), (std::vector<double>{95, 96}));
    EXPECT_TRUE(isCut_);
}

// A file cut off anywhere is refused or read; it never does harm.
TEST_F(FamosFileTest, SurvivesEveryCut)
{
    const std::string whole = FamosStart() + FamosKey("NO", "1,3,abc,0,") + FamosGroup(7, "first") +
                              FamosKey("Cb", "1,0,1,2,3,4,5,6,1,1,") + FamosSamples(std::string(600, 'x')) +
                              FamosGroup(7, "second");
    int accepted = 0;
    for (std::size_t size = 0; size <= whole.size(); ++size)
        accepted += Open(whole.substr(0, size)) ? 1 : 0;
    EXPECT_EQ(Count(), 2u);
    EXPECT_GT(accepted, 600);
}
