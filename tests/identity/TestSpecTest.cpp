#include "plugins/StandIn.h"
#include "support/TestFileId.h"

// Tests by one line of text: from a folder, from a list, from a plug-in.

namespace {

class TestSpec : public testing::Test
{
protected:
    TestSpec()
    {
        TestWriteFile(TestHomeFolder(), "plugins.toml",
                      StandIn::Manifest("FileFormat", "Other", "OtherFF") + StandIn::Manifests());
    }

    /// "a;b|c" with the folder in front of each name.
    std::string Spec(std::string text) const
    {
        for (std::size_t at = 0; at != std::string::npos; at = text.find('|', at)) {
            at += at == 0 ? 0 : 1;
            text.insert(at, folder_.Path() + "/");
            at += folder_.Path().size();
        }
        return text;
    }
    std::string Descriptor(const std::string& spec) const
    {
        const VDFileIdHandle id = TestId();
        return FIDCreateFromTestSpec(id.Get(), Spec(spec).c_str()) ? TestDescriptor(id, VTTestDescSelected) : "";
    }
    /// The descriptors of all that a spec names, without the folder.
    std::vector<std::string> Descriptors(const std::string& spec) const
    {
        std::vector<std::string> texts;
        const VDFileIdArrayHandle ids(FIACreate());
        if (!FIACreateFromTestSpec(ids.Get(), Spec(spec).c_str()))
            return texts;
        for (int index = 0; index < TestValue<FIAGetSize>(ids.Get()); ++index) {
            VDFileIdHandle id;
            EXPECT_TRUE(FIAGetAt(ids.Get(), index, id.Out()));
            texts.push_back(TestDescriptor(id, VTTestDescSelected).substr(folder_.Path().size() + 1));
        }
        return texts;
    }

    TestFolder folder_;
};

}  // namespace

TEST_F(TestSpec, NamesTestsAndReadsBack)
{
    folder_.Write("road.dat", "STAND channels=3");
    folder_.Write("runs.dat", "STAND tests=3 subid=2 channels=2");
    for (const char* number : {"01", "02"})
        folder_.Write(std::string("part") + number + ".ch", std::string("STAND fileid=2200 numbers=") + number);
    folder_.Write("other07.ch", "STAND fileid=2200 numbers=7");
    using Texts = std::vector<std::string>;
    struct Row
    {
        const char* spec;
        Texts found;
    };
    for (const Row& row :
         std::vector<Row>{{"road.dat", {"road.dat;ats;c1-3"}},
                          {"road.dat;c2-9;r-1;AHS", {}},
                          {"road.dat; C2-9 ;ATS;pGain=2", {"road.dat;ats;c2,3;pGain=2"}},
                          {"runs.dat;r2,3;tChannel 2", {"runs.dat;r2;ats;c2", "runs.dat;r3;ats;c2"}},
                          {"road.dat|runs.dat;r1;c1", {"road.dat;ats;c1-3", "runs.dat;r1;ats;c1"}},
                          {"part;xch", {"part;xch;ats;c1,2"}},
                          // A channel's file is the whole test with that channel; in a list the folder is looked at once.
                          {"part02.ch", {"part;xch;ats;c2"}},
                          {"*.ch;c2-2000000000", {"other;xch;ats;c7", "part;xch;ats;c2"}},
                          {"none*", {}}})
        EXPECT_EQ(Descriptors(row.spec), row.found) << row.spec;
    // Each of these is what its descriptor names.
    for (const char* spec : {"road.dat", "runs.dat;r2", "part", "part;xch;c2", "other;xch"}) {
        const std::string text = Descriptor(spec);
        EXPECT_NE(text, "") << spec;
        EXPECT_EQ(Descriptor(text.substr(text.find('/', 1) == 0 ? 0 : folder_.Path().size() + 1)), text);
    }
    VDStringArray files;
    EXPECT_TRUE(FIDGetFilenamesForTestDescriptor(Spec("part;xch").c_str(), 1, &files));
    ASSERT_EQ(files.GetSize(), 2);
    EXPECT_EQ(files[1], folder_.Name("part02.ch").c_str());
    folder_.Write("road_dat_s.vmd", "x");
    EXPECT_TRUE(FIDGetFilenamesForTestDescriptor(Spec("road.dat;c1").c_str(), 1, &files));
    ASSERT_EQ(files.GetSize(), 2);
    EXPECT_EQ(files[1], folder_.Name("road_dat_s.vmd").c_str());
}

TEST_F(TestSpec, ExactlyOneTestOrAReport)
{
    folder_.Write("runs.dat", "STAND tests=3 subid=2");
    const VDFileIdHandle id = TestId("/d/before.dat");
    const auto fail = [&](const std::string& spec, int code, const std::string& text) {
        EXPECT_FALSE(FIDCreateFromTestSpec(id.Get(), spec.c_str()));
        ExpectReport(code, text, "VDFileId::CreateFromTestSpec");
        EXPECT_EQ(TestFilename(id), "/d/before.dat");
    };
    const std::string spec = Spec("runs.dat");
    fail(spec, -328604, "More than one test matched the input string.\nTest Specifier: " + spec);
    fail(spec + ";r9", -328605, "No tests matched the input string.\nTest Specifier: " + spec + ";r9");
    fail("none://x", -328614, "Failed to decode test descriptor: none://x");
    const VDFileIdArrayHandle ids(FIACreate());
    ExpectFailure(FIACreateFromTestSpec(ids.Get(), (spec + ";r9").c_str()), -328605, "\nTest spec: " + spec + ";r9",
                  "VDFileIdArray::CreateFromTestSpec");
    // A plug-in's own descriptors.
    const std::string own = "standdesc://" + folder_.Name("runs.dat");
    EXPECT_TRUE(FIACreateFromTestSpec(ids.Get(), own.c_str()));
    EXPECT_EQ(TestValue<FIAGetSize>(ids.Get()), 3);
    fail(own, -328604, "More than one test matched the input string.\nTest Specifier: " + own);
    folder_.Write("bad.dat", "STAND descfail=1");
    fail("standdesc://" + folder_.Name("bad.dat"), -328614,
         "Failed to decode test descriptor: standdesc://" + folder_.Name("bad.dat"));
    EXPECT_TRUE(VFErrorCheck(-328689));
    // A temporary test has no file yet.
    const VDFileIdHandle temporary = TestId(folder_.Name("temp.y4t"));
    ASSERT_TRUE(FIDSetFileId(temporary.Get(), 154, 13));
    EXPECT_TRUE(FIDCreateFromTestSpec(id.Get(), Spec("temp.y4t;c1").c_str()));
    EXPECT_EQ(TestFilename(id), folder_.Name("temp.y4t"));
    EXPECT_FALSE(FIACreateFromTestSpec(ids.Get(), Spec("temp.y4t").c_str()));
}

TEST_F(TestSpec, IsFoundInAList)
{
    const VDFileIdArrayHandle ids(FIACreate());
    for (int run = 0; run < 4; ++run) {
        const VDFileIdHandle id = run < 3 ? TestId("/d/Road.dat") : TestStemId("/d/road", "Dat");
        ASSERT_TRUE(FIDSetFileId(id.Get(), StandIn::FileId, 2) && FIDSetRunNumber(id.Get(), run));
        TestAddChannels(id, {3, 1, 2});
        ASSERT_TRUE(FIAAppendItem(ids.Get(), id.Get()));
    }
    const auto run = [&](const char* text) {
        VDFileIdHandle id;
        EXPECT_TRUE(FIAFindFromTestSpec(ids.Get(), text, id.Out())) << text;
        return id ? TestInt<FIDGetRunNumber>(id) : -1;
    };
    const std::tuple<const char*, int> rows[] = {{"/d/road.DAT", 0},
                                                 {"/d/road.dat;r2;m-1", 2},
                                                 {"/d/road.dat;r-1;q7", 0},
                                                 {"/d/road.dat;r7", -1},
                                                 {"/d/road", 3},
                                                 {"/d/road;xdat", 3},
                                                 {"/d/road;xraw", -1},
                                                 {"/d/road.dat;c1,2-3; R1", 1},
                                                 {"/d/*", -1},
                                                 {"/d/road.dat;c1-3,3", -1},
                                                 {"/d/road.dat;c1,2", -1},
                                                 {"/d/road.dat;c1-2000000000", -1},
                                                 {"", -1},
                                                 {"/d/road.dat;ATS;c-4,1-3", 0},
                                                 {"/d/road.dat;ahs", -1},
                                                 {"/d/road.dat;c", -1}};
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(run(text), expected) << text;
    VDFileId* id = nullptr;
    ExpectFailure(FIAFindFromTestSpec(ids.Get(), "/d/a;rx", &id), -328615, "single test: /d/a;rx",
                  "VDFileIdArray::FindFromTestSpec");
    ExpectFailure(FIAFindFromTestSpec(ids.Get(), "/d/a;afe", &id), -328616, "descriptor: /d/a;afe");
}
