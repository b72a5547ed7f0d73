#include "support/FamosBuilder.h"
#include "support/TestSupport.h"

#include <nlohmann/json.hpp>

#include <cstdlib>

namespace {

using Json = nlohmann::json;

const std::string VVDatabase =
    "BU_: A B\n"
    "BO_ 2566844949 Ext: 4 A\n SG_ Mode M : 0|8@1+ (1,0) [0|0] \"\" B\n"
    " SG_ One m1 : 8|16@1- (0.1,0) [-1|0.3] \"V,x\" B\n SG_ Two m2 : 8|16@1- (0.1,0) [0|0] \"V\" B\n"
    "BO_ 68 Std: 5 A\n SG_ Be : 7|16@0+ (0.5,1) [0|0] \"\xB0"
    "C\" B,A\n SG_ St : 16|2@1+ (1,0) [0|0] \"\" B\n"
    "BO_ 100 Fd: 64 Vector__XXX\n SG_ Far : 500|12@1- (1,0) [0|0] \"\" B\n"
    "BO_ 200 Wide: 8 A\n SG_ All : 0|64@1- (1,0) [0|0] \"\" B\n SG_ Low : 0|8@1- (1,0) [0|0] \"\" B\n"
    "CM_ SG_ 68 Be \"big\";\nVAL_ 68 St 0 \"o,ff\" 2 \"on\" ;\n";

class BusToolsTest : public testing::Test
{
protected:
    int Run(const std::string& program, const std::string& arguments, const std::string& input = "/dev/null")
    {
        const std::string command =
            program + " " + arguments + " >" + folder_.Name("out") + " 2>" + folder_.Name("err") + " <" + input;
        const int status = std::system(command.c_str());
        out_ = TestReadFile(folder_.Name("out"));
        err_ = TestReadFile(folder_.Name("err"));
        return WEXITSTATUS(status);
    }
    int Dbc(const std::string& arguments, const std::string& input = "/dev/null")
    {
        return Run(DAX_PROGRAM, "dbc " + folder_.Write("a.dbc", VVDatabase) + " " + arguments, input);
    }

    TestFolder folder_;
    std::string out_;
    std::string err_;
};

}  // namespace

TEST_F(BusToolsTest, ShowsDatabase)
{
    ASSERT_EQ(Dbc("--json"), 0) << err_;
    const Json frames = Json::parse(out_)["frames"];
    ASSERT_EQ(frames.size(), 4u);
    EXPECT_EQ(frames[0]["id"], 2566844949);
    EXPECT_EQ(
        frames[0]["signals"][1],
        Json::parse(
            R"({"title":"One","startBit":8,"numBits":16,"bigEndian":true,"signed":true,"factor":0.1,"offset":0.0,"min":-1.0,
                  "max":0.3,"units":"V,x","multiplexSwitch":false,"multiplexed":true,"multiplexId":1,"receivers":["B"],
                  "description":"","enums":[]})"));
    EXPECT_EQ(frames[1]["signals"][0]["units"], "\xC2\xB0"
                                                "C");
    EXPECT_EQ(frames[1]["signals"][0]["description"], "big");
    EXPECT_EQ(frames[1]["signals"][1]["enums"], Json::parse(R"([{"value":0,"text":"o,ff"},{"value":2,"text":"on"}])"));
    ASSERT_EQ(Dbc(""), 0);
    EXPECT_NE(out_.find("68 Std: 5 bytes, from A"), std::string::npos);

    EXPECT_EQ(Run(DAX_PROGRAM, "dbc --json " + folder_.Write("b.dbc", "\nBU_:\n")), 1);
    const Json errors = Json::parse(out_)["errors"];
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0]["code"], -334381);
    EXPECT_EQ(errors[1]["text"], "Error at line 2 of " + folder_.Name("b.dbc"));
}

TEST_F(BusToolsTest, DecodesOneFrame)
{
    ASSERT_EQ(Dbc("--decode 0x44 2A366C2BBA --json"), 0) << err_;
    EXPECT_EQ(
        Json::parse(out_)["signals"],
        Json::parse("[{\"signal\":\"Be\",\"raw\":10806,\"physical\":5404.0,\"units\":\"\xC2\xB0"
                    "C\",\"text\":\"\"},{\"signal\":\"St\",\"raw\":0,\"physical\":0.0,\"units\":\"\",\"text\":\"o,ff\"}]"));
    ASSERT_EQ(Dbc("--decode 2566844949 02.FE.FF.00 --json"), 0);
    const Json signals = Json::parse(out_)["signals"];
    ASSERT_EQ(signals.size(), 2u);
    EXPECT_EQ(signals[1]["signal"], "Two");
    EXPECT_EQ(signals[1]["raw"], -2);
    // A signal that can't be decoded is named, and the others come out.
    EXPECT_EQ(Dbc("--decode 200 0100000000000000"), 1);
    EXPECT_NE(err_.find("-334409"), std::string::npos);
    EXPECT_NE(out_.find("Low"), std::string::npos);
    for (const std::string& bad :
         std::vector<std::string>{"68 2A36", "69 00", "68 2A3", "x 00", "68 " + std::string(130, '0')}) {
        EXPECT_EQ(Dbc("--decode " + bad), 1) << bad;
        EXPECT_TRUE(out_.empty());
    }
}

TEST_F(BusToolsTest, DecodesLog)
{
    const std::string fd = std::string(120, '0') + "00000F70";
    const std::string log =
        folder_.Write("a.log", "(1436509052.249713) can0 044#2A366C2BBA\n(1.5) can0 044#2A36\n"
                               "(2.5) can0 18FEF215#01FFFF00\n(3) vcan0 18FEF215#09.FF.FF.00 R\n(4.25) can0 064##1" +
                                   fd +
                                   "\n(5.0) can0 7FF#11\n(5.0) can0 7FF#12\n(6.0) can0 044#R\ngarbage\n"
                                   "(7.0) can0 04#11\n(8.0) can0 20000004#00\n");
    ASSERT_EQ(Dbc("--frames " + log), 0) << err_;
    EXPECT_EQ(out_, "time,id,frame,signal,raw,physical,units,text\n"
                    "1436509052.249713,68,Std,Be,10806,5404,\xC2\xB0"
                    "C,\n1436509052.249713,68,Std,St,0,0,,\"o,ff\"\n"
                    "2.5,2566844949,Ext,Mode,1,1,,\n2.5,2566844949,Ext,One,-1,-0.1,\"V,x\",\n3,2566844949,Ext,Mode,9,9,,\n"
                    "4.25,100,Fd,Far,1792,1792,,\n");
    EXPECT_EQ(err_, "Frames matched: 4\nFrames with unknown ids: 2\n  7FF: 2\nFrames too short: 1\n  044 Std: 1\n"
                    "Multiplexer values never seen:\n  18FEF215 Ext: 2\nLines that are no frame: 2\nRemote frames: 1\n"
                    "Error frames: 1\nSignals of 64 bits or more, left out: 1\n");
    ASSERT_EQ(Dbc("--frames " + log + " --json"), 0);
    EXPECT_EQ(
        Json::parse(out_.substr(0, out_.find('\n'))),
        Json::parse(
            "{\"time\":1436509052.249713,\"id\":68,\"frame\":\"Std\",\"signal\":\"Be\",\"raw\":10806,\"physical\":5404,"
            "\"units\":\"\xC2\xB0"
            "C\",\"text\":\"\"}"));
    EXPECT_EQ(Dbc("--frames " + folder_.Name("none") + " --json"), 1);
    EXPECT_EQ(Json::parse(out_)["errors"].size(), 1u);
    EXPECT_EQ(Dbc("--frames " + folder_.Write("no.log", "garbage\n")), 1);
    EXPECT_NE(err_.find("dax: error -900021: "), std::string::npos) << err_;
}

TEST_F(BusToolsTest, ReadsEachFormOfALog)
{
    // What stands behind the time in the output, "" for a line that gives no values, and what the line counts as.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"(0012.50) can0 044#2A366C2BBA", "12.50", "Frames matched: 1"},
        {"(000.5)  can0  044   [5]  2A 36 6C 2B BA   '*6l+.'\r", "0.5", "Frames matched: 1"},
        {"  can0       044   [5]  2A 36 6C 2B BA", "null", "Frames matched: 1"},
        {" (2024-01-02 10:11:12.5)  can0  TX B -  044  [05]  2A 36 6C 2B BA", "\"2024-01-02 10:11:12.5\"",
         "Frames matched: 1"},
        {"(1.5) can0 044#2A366C2BBA000000_9", "1.5", "Frames matched: 1"},
        {"(1.5)  can0  044  {9}  2A 36 6C 2B BA 00 00 00", "1.5", "Frames matched: 1"},
        {"(1.5) can0 044##12A366C2BBA", "1.5", "Frames matched: 1"},
        {"(1.5) can0 044#R8", "", "Remote frames: 1"},
        {"(1.5)  can0  044   [8]  remote request", "", "Remote frames: 1"},
        {"(1.5) can0 20000004#0004000000000000", "", "Error frames: 1"},
        {"(1.5)  can0  20000004   [8]  00 04 00 00 00 00 00 00   ERRORFRAME", "", "Error frames: 1"},
    };
    for (const auto& [line, time, counted] : cases) {
        const std::string log = folder_.Write("a.log", std::string(line) + "\n");
        EXPECT_EQ(Dbc("--json --frames -", log), 0) << line;
        EXPECT_NE(err_.find(counted), std::string::npos) << line << err_;
        EXPECT_EQ(out_.substr(0, out_.find(",\"id\"")), *time == 0 ? "" : "{\"time\":" + std::string(time)) << line;
        EXPECT_FALSE(Json::parse(out_.empty() ? "0" : out_.substr(0, out_.find('\n')), nullptr, false).is_discarded());
    }
    for (const char* line : {"(1.5) can0 044#2A366C2BBA_9", "(1.5) can0 044#2A366C2BBA000000_8", "(1.5) can0 044#Rx",
                             "(1.5)  can0  044   [6]  2A 36 6C 2B BA", "(1.5) can0 044##", "(x) can0 044#2A366C2BBA",
                             "(1.5) can0 40000004#00", "(1.5)  can0  044   [65]  00"})
        EXPECT_EQ(Dbc("--frames " + folder_.Write("a.log", line)), 1) << line;
}

TEST_F(BusToolsTest, InspectsFamosFiles)
{
    const std::string plain = folder_.Write("a.dat", FamosStart() + FamosGroup(7, "B\xE4r") + FamosGroup(7, "b"));
    ASSERT_EQ(Run(DAX_INSPECT, "famos --json " + plain), 0) << err_;
    Json result = Json::parse(out_);
    EXPECT_EQ(result["groups"], 2);
    EXPECT_EQ(result["components"], 2);
    EXPECT_EQ(result["channels"], Json::parse("[\"B\xC3\xA4r\",\"b\"]"));
    EXPECT_EQ(result["channelCount"], 2);
    EXPECT_EQ(result["timeStamped"], false);

    const std::string stamped = folder_.Write(
        "b.dat", FamosStampedStart() + FamosSamples(FamosBlocks({FamosRecord(68, "12345"), FamosRecord(68, "12345")})));
    ASSERT_EQ(Run(DAX_INSPECT, "famos --json " + stamped + " --dbc " + folder_.Write("a.dbc", VVDatabase)), 0) << err_;
    result = Json::parse(out_);
    EXPECT_EQ(result["frameTypes"], Json::parse(R"([{"id":68,"bytes":5,"count":2}])"));
    EXPECT_EQ(result["timeStampChannels"], Json::parse(R"(["Be","St"])"));
    EXPECT_EQ(Run(DAX_INSPECT, "famos " + folder_.Write("c.dat", "|CF,1,1,?;")), 1);
    EXPECT_NE(err_.find("-332784"), std::string::npos);
    EXPECT_NE(err_.find("-332782"), std::string::npos);
}
