#include "daxlib/VDCanDefinition.h"
#include "support/TestSupport.h"

#include "vdbase/VDPreferenceSystem.h"

#include <sstream>

namespace {

constexpr const char* VVRead = "VDCanDefinition::ReadDatabase";

class CanDatabaseTest : public testing::Test
{
protected:
    bool Read(const std::string& text)
    {
        VFErrorClear();
        return database_.ReadDatabase(folder_.Write("a.dbc", text).c_str());
    }
    VDCanChanDefinition* Chan(int frame, int chan) { return database_.GetFrameDefinition(frame)->GetChanDefinition(chan); }

    std::string Describe(int frame, int index)
    {
        const VDCanChanDefinition& chan = *Chan(frame, index);
        std::ostringstream text;
        text << chan.GetTitle().Str() << (chan.IsMultiplexSwitch() ? " M" : "")
             << (chan.IsMultiplexed() ? " m" + std::to_string(chan.GetMultiplexId()) : "") << ' ' << chan.GetStartBit()
             << '|' << chan.GetNumBits() << (chan.GetBigEndian() ? " up" : " down")
             << (chan.GetIsSigned() ? " signed " : " unsigned ") << chan.GetFactor() << ',' << chan.GetOffset() << ' '
             << chan.GetMinval() << '|' << chan.GetMaxval() << " " << chan.GetUnits().Str() << ':';
        for (const VDString& receiver : chan.GetReceivers())
            text << ' ' << receiver.Str();
        return text.str();
    }

    TestFolder folder_;
    VDCanDefinition database_;
};

const std::string VVNodes = "BU_: Engine Dash\n";
const std::string VVFrame = "BO_ 100 Motor: 8 Engine\n";
const std::string VVSignal = " SG_ Speed : 0|16@1+ (0.25,-10) [-10|16000] \" rev  /min \" Dash\n";

std::string Signal(const std::string& title, const std::string& bits = "0|8@1+")
{
    return " SG_ " + title + " : " + bits + " (1,0) [0|0] \"\" Vector__XXX\n";
}

}  // namespace

TEST_F(CanDatabaseTest, ReadsFramesAndSignals)
{
    ASSERT_TRUE(
        Read("VERSION \"x\"\n\nBS_:\n" + VVNodes + "BO_ 2566834709 Motor: 8 Engine\n" + VVSignal +
             " SG_ Mode M : 16|4@0- (1,0) [0|0] \"\" Vector__XXX\n SG_ Extra m3 : 20|4@1- (1,0) [0|0] \"V\"  Dash, Engine\n"
             "BO_ 5 Empty: 8 Engine\nBO_ 6 Last: 3 Vector__XXX\n" +
             Signal("A x")));
    ASSERT_EQ(database_.GetFrameDefinitionCount(), 2);
    const VDCanFrameDefinition& motor = *database_.GetFrameDefinition(0);
    ASSERT_EQ(motor.GetChanDefinitionCount(), 3);
    EXPECT_EQ(motor.GetChanDefinition(3), nullptr);
    EXPECT_EQ(motor.GetChanDefinition(-1), nullptr);

    EXPECT_EQ(Describe(0, 0), "Speed 0|16 up unsigned 0.25,-10 -10|16000 rev /min: Dash");
    EXPECT_EQ(Describe(0, 1), "Mode M 16|4 down signed 1,0 0|0 :");
    EXPECT_EQ(Describe(0, 2), "Extra m3 20|4 up signed 1,0 0|0 V: Dash Engine");
    EXPECT_STREQ(database_.GetFrameDefinition(1)->GetTransmitterName(), "");
    EXPECT_STREQ(Chan(1, 0)->GetTitle(), "A");
    EXPECT_EQ(database_.GetFrameDefinitionForId(6), database_.GetFrameDefinition(1));
    EXPECT_EQ(database_.GetFrameDefinitionForId(5), nullptr);
    ExpectErrorText(-334406, "Frame is present in the raw data but not defined in the definition file. Frame ID: 5");
}

// The code, the text and the line of each kind of bad line.
TEST_F(CanDatabaseTest, NamesBadLines)
{
    const struct
    {
        std::string text;
        int code;
        int line;  // 0 for a check behind the last line
        std::string textPart = {};
    } cases[] = {
        {"BU_:\n", -334381, 1, "Invalid BU_ line. No : found."},
        {VVNodes + "BO_ 1 A: 8\n", -334383, 2},
        {"BO_ x A: 8 B\n", -334384, 1},
        {"BO_ 1 A: b B\n", -334386, 1},
        {"\n\n" + Signal("A"), -334388, 3},
        {VVFrame + "SG_ A 0|8@1+ (1,0) [0|0] \"\" X\n", -334389, 2},
        {VVFrame + Signal("A", "x|8@1+"), -334391, 2},
        {VVFrame + Signal("A", "0|8.5@1+"), -334392, 2},
        {VVFrame + Signal("A", "0|8@2+"), -334393, 2},
        {VVFrame + "SG_ A : 0|8@1+ (f,0) [0|0] \"\" X\n", -334394, 2},
        {VVFrame + "SG_ A : 0|8@1+ (1,f) [0|0] \"\" X\n", -334396, 2},
        {VVFrame + "SG_ A : 0|8@1+ (1,0) [f|0] \"\" X\n", -334397, 2},
        {VVFrame + "SG_ A : 0|8@1+ (1,0) [0|f] \"\" X\n", -334398, 2},
        {VVFrame + "SG_ A : 0|8@1+ (1,0) [0|0] \"V\n", -334399, 2},
        {VVFrame + Signal("A mx"), -334401, 2},
        {VVFrame + Signal("A m0M"), -334401, 2},
        {VVNodes + VVFrame + "SG_ A : 0|8@1+ (1,0) [0|0] \"\" Dash,Other\n", -334403, 3, "in the BU_ line: Other"},
        {VVFrame + Signal("A") + "CM_ SG_ x A \"text\";\n", -334384, 3},
        {VVFrame + Signal("A") + "BA_ \"ModeTransmission\" BO_ x 0;\n", -334384, 3},
        {VVFrame + Signal("A") + "VAL_ env 0 \"a\" 1 \"b\" ;\n", -334384, 3},
        {"VERSION \"\"\n", -334402, 0},
        {"BO_ 1 A: 8 B\nBO_ 2 A: 8 B\n", -334382, 0},
        {VVFrame + Signal("A M") + Signal("B M"), -334404, 0, "Frame: Motor"},
    };
    for (const auto& bad : cases) {
        SCOPED_TRACE(bad.text);
        database_.ClearFrames();
        EXPECT_FALSE(Read(bad.text));
        const auto reports = VFErrorGetReports(VFGetBaseLibError());
        ASSERT_EQ(reports.GetSize(), bad.line == 0 ? 1 : 2);
        EXPECT_EQ(reports[0].code, bad.code);
        EXPECT_STREQ(reports[0].routine, VVRead);
        EXPECT_NE(reports[0].text.Str().find(bad.textPart), std::string::npos) << reports[0].text.Str();
        if (bad.line != 0) {
            EXPECT_EQ(reports[1].code, -334400);
            EXPECT_EQ(reports[1].text.Str(), "Error at line " + std::to_string(bad.line) + " of " + folder_.Name("a.dbc"));
            EXPECT_STREQ(reports[1].routine, VVRead);
        }
    }
    EXPECT_FALSE(database_.ReadDatabase(folder_.Name("missing.dbc").c_str()));
    EXPECT_FALSE(VFErrorCheck(-334400));
}

TEST_F(CanDatabaseTest, ReadsDescriptionsAndAttributes)
{
    const std::string frames = VVFrame + Signal("A") + "BO_ 200 Brake: 8 X\n" + Signal("B");
    ASSERT_TRUE(Read(frames +
                     "CM_ BO_ 100 \"The motor; its: state\";\nCM_ SG_ 100 A \"first\n line two\";\nCM_ \"global\" ;\n"
                     "CM_ SG_ 100 None \"x\";\nCM_ EV_ x \"y\";\n"
                     "BA_ \"ModeTransmission\" BO_ 100 0;\nBA_ \"ModeTransmission\" SG_ 100 A 0;\n"
                     "BA_DEF_DEF_ \"ModeTransmission\" \"Default\";\nBA_DEF_DEF_ \"P\xE9riode\" 20;\n"
                     "BA_ \"ModeTransmission\" BO_ 200 1;\nBA_ \"P\xE9riode\" BO_ 200 0.5;\n"
                     "BA_ \"P\xE9riode\" BO_ 200 soon;\nBA_ \"P\xE9riode\" BO_ 777 5;\n"));
    EXPECT_TRUE(VFErrorCheck(-334406));
    const VDCanFrameDefinition& motor = *database_.GetFrameDefinition(0);
    EXPECT_STREQ(motor.GetDescription(), "The motor; its: state");
    EXPECT_STREQ(Chan(0, 0)->GetDescription(), "first");
    EXPECT_STREQ(motor.GetTransmissionMode(), "Default");
    EXPECT_EQ(motor.GetSamplePeriod(), 20);
    EXPECT_STREQ(database_.GetFrameDefinition(1)->GetTransmissionMode(), "P+E");
    EXPECT_EQ(database_.GetFrameDefinition(1)->GetSamplePeriod(), 0.5);

    // Defaults reach the frames in front of them, also when the read fails later.
    database_.ClearFrames();
    EXPECT_FALSE(Read(VVFrame + Signal("A") + "BA_DEF_DEF_ \"ModeTransmission\" \"D\";\nBO_ 200 Brake: 8 X\n" + Signal("B") +
                      "BU_:\n"));
    EXPECT_STREQ(database_.GetFrameDefinition(0)->GetTransmissionMode(), "D");
    EXPECT_STREQ(database_.GetFrameDefinition(1)->GetTransmissionMode(), "");
}

TEST_F(CanDatabaseTest, ReadsEnumerations)
{
    std::string text = VVFrame;
    for (int index = 0; index < 40; ++index)
        text += Signal("S" + std::to_string(index));
    ASSERT_TRUE(Read(
        text + "VAL_ 100 S0 1 \"old\" 2 \"two\" ;\nVAL_ 100 S0 0 \"off\" -1 \"\" 4294967295 \"big\";\n"
               "VAL_ 100 S39 7 \"seven\" ;\nVAL_ 100 S39 8 \"eight\" \"nine\" 9;\nVAL_ 100 S99 1 \"a\";\nVAL_ 1 S0 ;\n"));
    VDArrayWithSort<long> values;
    VDStringArray texts;
    Chan(0, 0)->GetEnumOptions(&values, &texts);
    ASSERT_EQ(values.GetSize(), 3);
    EXPECT_EQ(values[2], 4294967295L);
    EXPECT_STREQ(texts[0], "off");
    EXPECT_STREQ(texts[1], "");
    EXPECT_FALSE(Chan(0, 1)->IsEnum());

    // A line with a bad value leaves what there was.
    Chan(0, 39)->GetEnumOptions(&values, &texts);
    ASSERT_EQ(values.GetSize(), 1);
    EXPECT_STREQ(texts[0], "seven");
}

TEST_F(CanDatabaseTest, ReadsTypesOfValues)
{
    ASSERT_TRUE(Read(
        VVFrame + Signal("A", "0|32@1-") + Signal("B", "0|64@1-") + Signal("C", "0|16@1-") +
        "SIG_VALTYPE_ 100 A : 1;\nSIG_VALTYPE_ 100 B :2;\nSIG_VALTYPE_ 100 C : 1;\n"
        "SIG_VALTYPE_ 7 A : 1;\nSIG_VALTYPE_ x A : 1;\nSIG_VALTYPE_ 100 D : 1;\nSIG_VALTYPE_ 100 A : x;\n\tSIG_VALTYPE_\n"));
    ExpectNoError();
    EXPECT_EQ(Chan(0, 0)->GetValueType(), VTCanValueFloat);
    EXPECT_EQ(VDCanDefinition(database_).GetFrameDefinition(0)->GetChanDefinition(1)->GetValueType(), VTCanValueDouble);
    EXPECT_EQ(Chan(0, 2)->GetValueType(), VTCanValueInteger);
}

TEST_F(CanDatabaseTest, ReadsUtf8OnRequest)
{
    const std::string text = VVFrame + " SG_ T : 0|8@1+ (1,0) [0|9] \"\xC2\xB0R\" Vector__XXX\n" +
                             "BA_DEF_DEF_ \"P\xC3\xA9riode\" 20;\nCM_ BO_ 100 \"\xFF\";\n";
    ASSERT_TRUE(Read(text));
    EXPECT_STREQ(Chan(0, 0)->GetUnits(), "\xC2\xB0R");
    EXPECT_EQ(database_.GetFrameDefinition(0)->GetSamplePeriod(), 0);

    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/DBC/DBCIsUtf8", true);
    database_ = VDCanDefinition();
    ASSERT_TRUE(Read(text));
    EXPECT_STREQ(Chan(0, 0)->GetUnits(), "\xB0R");
    EXPECT_EQ(database_.GetFrameDefinition(0)->GetSamplePeriod(), 20);
    EXPECT_STREQ(database_.GetFrameDefinition(0)->GetDescription(), "\xFF");
}

TEST_F(CanDatabaseTest, CopiesAreDeepAndReadsAdd)
{
    ASSERT_TRUE(Read(VVFrame + Signal("A")));
    VDCanDefinition copy(database_);
    copy.GetFrameDefinition(0)->GetChanDefinition(0)->SetDescription("changed");
    copy.GetFrameDefinition(0)->AppendChan(new VDCanChanDefinition(*Chan(0, 0)));
    copy.GetFrameDefinition(0)->AppendChan(nullptr);
    EXPECT_EQ(database_.GetFrameDefinition(0)->GetChanDefinitionCount(), 1);
    EXPECT_STREQ(Chan(0, 0)->GetDescription(), "");

    ASSERT_TRUE(Read("BO_ 7 Motor: 8 X\n" + Signal("A")));
    EXPECT_EQ(database_.GetFrameDefinitionCount(), 2);
    database_ = copy;
    EXPECT_EQ(database_.GetFrameDefinitionCount(), 1);
    EXPECT_STREQ(Chan(0, 0)->GetDescription(), "changed");
}

TEST_F(CanDatabaseTest, SplitsLinesIntoTokens)
{
    // Quotes join what stands in front of them, blanks inside quotes stay, a tab separates nothing, and a quote that isn't
    // closed takes the rest of the line.
    ASSERT_TRUE(
        Read("BO_ 1 Na\"me :;\":\"8\" \"\"\n" + Signal("A") + "\tBO_\t2 B: 8 C\nBO_ 3 C\t: 8 \"rest ;: \n" + Signal("B")));
    ASSERT_EQ(database_.GetFrameDefinitionCount(), 2);
    EXPECT_STREQ(database_.GetFrameDefinition(0)->GetFrameName(), "Name :;");
    EXPECT_STREQ(database_.GetFrameDefinition(1)->GetFrameName(), "C");
    EXPECT_STREQ(database_.GetFrameDefinition(1)->GetTransmitterName(), "rest ;:");
}
