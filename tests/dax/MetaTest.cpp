#include "DaxProgram.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

/// The items of a list of sets as "Set.Item:type=value".
std::vector<std::string> ItemsOf(const json& sets)
{
    std::vector<std::string> items;
    for (const json& set : sets)
        for (const json& item : set["items"])
            if (set["set"] == "Test" || set["set"] == "Sensor")
                items.push_back(set["set"].get<std::string>() + "." + item["item"].get<std::string>() + ":" +
                                item["type"].get<std::string>() + "=" + item["value"].dump());
    return items;
}

/// A recording of two channels whose format keeps no metadata, and a copy of it in the storage format, which does.
class DaxMeta : public testing::TestWithParam<const char*>
{
protected:
    DaxMeta()
    {
        folder_.Write("run.wav", MakeWav16(1000, 2, {1, 2, 3, 4}));
        dax_.Json({"copy", Path("run.wav"), Path("run.z4t")});
    }
    std::string Path(const char* name) const { return folder_.Name(name); }
    std::vector<std::string> TestItems(const std::string& file) const { return ItemsOf(dax_.Json({"meta", file})["test"]); }
    std::vector<std::string> ChannelItems(const std::string& file, const char* channel) const
    {
        return ItemsOf(dax_.Json({"meta", file, "--chan", channel})["channels"][0]["sets"]);
    }
    std::string Eval(const std::vector<std::string>& arguments) const { return dax_.Run({"eval"}, arguments).out; }

    TestFolder folder_;
    DaxProgram dax_;
};

using Strings = std::vector<std::string>;

TEST_P(DaxMeta, AllChangesOrNone)
{
    const std::string file = Path(GetParam());
    dax_.Json({"meta", file, "--put", "Test.Run=7", "--put", "Test.Vehicle=A 4711", "--put", "Test.Load=1e-320"});
    dax_.Json({"meta", file, "--put", "Sensor.Gain=0.5", "--type", "float", "--chan", "2"});
    EXPECT_EQ(TestItems(file), (Strings{"Test.Run:int64=7", "Test.Vehicle:string=\"A 4711\"", "Test.Load:double=1e-320"}));
    EXPECT_EQ(ChannelItems(file, "2"), Strings{"Sensor.Gain:float=0.5"});
    EXPECT_EQ(ChannelItems(file, "1"), Strings{});

    // One of the changes fails, so none is made.
    dax_.ExpectFailure({"meta", file, "--put", "Test.New=1", "--put", "Test.Run=seven"}, -900026);
    dax_.ExpectFailure({"meta", file, "--put", "Test.New=1", "--remove", "Test.Old"}, -900025);
    dax_.ExpectFailure({"meta", file, "--put", "Test.New=1", "--put", "InputTestInfo.Path=x"}, -900024);
    dax_.ExpectFailure({"meta", file, "--put", "Test.New=1", "--chan", "3"}, -900002);
    EXPECT_EQ(TestItems(file).size(), 3U);

    dax_.Json({"meta", file, "--remove", "Test.Load", "--put", "Test.Run=eight", "--type", "string"});
    EXPECT_EQ(TestItems(file), (Strings{"Test.Run:string=\"eight\"", "Test.Vehicle:string=\"A 4711\""}));
    EXPECT_EQ(dax_.Run({"read", file}).out, dax_.Run({"read", Path("run.wav")}).out);
}

TEST_P(DaxMeta, XmlThereAndBack)
{
    const std::string file = Path(GetParam());
    const std::string xml = Path("meta.xml");
    dax_.Json({"meta", file, "--put", "Test.Run=7", "--put", "Test.Note=<\"\xe2\x80\xae&"});
    dax_.Json({"meta", file, "--put", "Sensor.Gain=-nan", "--type", "double", "--chan", "1-2"});
    dax_.Json({"meta", file, "--xml", "--out", xml});
    EXPECT_EQ(dax_.Run({"meta", file, "--xml"}).out, TestReadFile(xml));
    EXPECT_EQ(TestReadFile(xml).find("\xe2\x80\xae"), std::string::npos);  // turns the direction of writing

    folder_.Write("other.wav", MakeWav16(1000, 1, {1}));
    const std::string other = Path("other.wav");
    dax_.Json({"meta", other, "--put", "Test.Run=1", "--type", "string"});
    json result = dax_.Json({"meta", other, "--from-xml", xml, "--merge", "keep"});
    EXPECT_EQ(result["warnings"].size(), 1U);  // it has no channel 2
    EXPECT_EQ(TestItems(other).front(), "Test.Run:string=\"1\"");
    dax_.Json({"meta", other, "--from-xml", xml});
    EXPECT_EQ(TestItems(other), TestItems(file));
    EXPECT_EQ(ChannelItems(other, "1"), ChannelItems(file, "1"));
}

INSTANTIATE_TEST_SUITE_P(BesideAndInside, DaxMeta, testing::Values("run.wav", "run.z4t"));

TEST_F(DaxMeta, EvaluatesTextsAndExpressions)
{
    const std::string file = Path("run.wav");
    dax_.Json({"meta", file, "--put", "Test.Run=7", "--put", "Test.Track=oval\x1b"});
    dax_.Json({"meta", file, "--put", "Sensor.Gain=0.5", "--chan", "2"});
    EXPECT_EQ(Eval({file, "run #Test.Run# on #Test.Track#"}), "run 7 on oval\xef\xbf\xbd\n");
    EXPECT_EQ(Eval({file, "--value", "#Sensor.Gain# * 3 + #Test.Run#"}), "8.5\n");
    EXPECT_EQ(Eval({file, "#No.Such#-", "--keep"}), "#No.Such#-\n");
    dax_.ExpectFailure({"eval", file, "#No.Such#"}, -327696);
    EXPECT_EQ(dax_.Run({"eval", file, "--value", "Sensor.Gain", "--chan", "1"}).status, 1);  // channel 2 has it
    const DaxResult bad = dax_.Run({"eval", file, "--value", "#Test.Run# * (4"});
    EXPECT_EQ(bad.status, 1);
    EXPECT_NE(bad.err.find("position 14"), std::string::npos) << bad.err;
}

TEST_F(DaxMeta, NamesAnOutput)
{
    const std::string file = Path("run.wav");
    dax_.Json({"meta", file, "--put", "Test.Run=../7", "--put", "Test.Empty="});
    const std::string folder = Path("out");
    fs::create_directory(folder);
    const auto name = [&](const std::string& text, const std::string& format) {
        return dax_.Json({"copy", file, folder, "--name", text, "--format", format});
    };
    const json made = name("r_#Test.Run#", "WAV");
    EXPECT_EQ(made["output"], folder + "/r_.._7.wav");
    EXPECT_EQ(made["warnings"].size(), 1U);
    EXPECT_EQ(TestItems(made["output"]), TestItems(file));
    EXPECT_EQ(name("#Test.Run#.wav", "WAV")["output"], folder + "/_._7.wav");
    for (const char* bad : {"x_#Test.No#", "#Test.Empty#"})
        EXPECT_EQ(dax_.Run({"copy", file, folder, "--name", bad, "--json"}).status, 1);
    const std::string bare = folder + "/bare.wav";
    dax_.Json({"copy", file, bare, "--no-meta", "--strict"});
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 5);  // two with a file beside them, one without
}

TEST_F(DaxMeta, DataStayReadableBesideDamagedMetaData)
{
    const std::string file = Path("run.wav");
    dax_.Json({"meta", file, "--put", "Test.Run=7"});
    const std::string sidecar = Path("run_wav_s.vmd");
    fs::resize_file(sidecar, 700);
    for (const char* command : {"info", "read"}) {
        EXPECT_EQ(dax_.Run({command, file, "--json"}).Json()["warnings"].size(), 1U) << command;
        dax_.ExpectFailure({command, file, "--strict"}, -900028);
    }
    EXPECT_EQ(dax_.Run({"meta", file, "--put", "Test.Run=8"}).status, 1);
    EXPECT_EQ(fs::file_size(sidecar), 700U);
    EXPECT_EQ(dax_.Run({"copy", file, Path("copy.wav")}).status, 1);
    EXPECT_EQ(dax_.Run({"copy", file, Path("copy.wav"), "--no-meta"}).status, 0);
}

}  // namespace
