#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace {

class DaxBadInput : public testing::Test
{
protected:
    /// Every subcommand that opens the file fails with the code, in text and in JSON, and prints nothing else.
    void ExpectFailure(const std::string& file, int code) const
    {
        const std::string out = folder_.Name("never.wav");
        for (const std::vector<std::string>& command : {std::vector<std::string>{"identify", file},
                                                        {"info", file},
                                                        {"read", file},
                                                        {"stats", file},
                                                        {"meta", file},
                                                        {"copy", file, out}}) {
            const DaxResult text = dax_.Run(command);
            EXPECT_EQ(text.status, 1) << command[0] << ' ' << file;
            EXPECT_EQ(text.out, "");
            EXPECT_NE(text.err.find("dax: error " + std::to_string(code) + ": "), std::string::npos) << text.err;
            const DaxResult json = dax_.Run(command, {"--json"});
            EXPECT_EQ(json.status, 1);
            const std::vector<int> codes = json.Codes();
            EXPECT_NE(std::find(codes.begin(), codes.end(), code), codes.end()) << json.out;
            EXPECT_NE(access(out.c_str(), F_OK), 0);
        }
    }

    TestFolder folder_;
    DaxProgram dax_;
    const std::string good_ = folder_.Write("good.wav", MakeWav16(8000, 1, {1, 2, 3}));
};

TEST_F(DaxBadInput, FilesThatAreNoTests)
{
    ExpectFailure(folder_.Name("missing.wav"), -328684);
    ExpectFailure(folder_.Write("empty.wav", ""), -328687);
    ExpectFailure(folder_.Write("short.bin", std::string(511, 'x')), -328688);
    // A folder stands for the tests in it, of which one can be read.
    const DaxResult folder = dax_.Run({"info", folder_.Path()});
    EXPECT_EQ(folder.status, 1);
    EXPECT_NE(folder.err.find("-900042"), std::string::npos) << folder.err;
    EXPECT_NE(folder.out.find("good.wav"), std::string::npos) << folder.out;
    if (geteuid() != 0) {
        const std::string closed = folder_.Write("closed.wav", TestReadFile(good_));
        chmod(closed.c_str(), 0);
        ExpectFailure(closed, -328684);
    }
}

TEST_F(DaxBadInput, CorruptRecordings)
{
    const std::string wav = TestReadFile(good_);
    std::string noChannels = wav;
    noChannels[22] = 0;
    std::string noRate = wav;
    noRate.replace(24, 4, 4, '\0');
    for (const std::string& bytes : {wav.substr(0, 20), wav.substr(0, 36), noChannels, noRate}) {
        const std::string file = folder_.Write("corrupt.wav", bytes);
        const DaxResult result = dax_.Run({"read", "--json", file});
        EXPECT_EQ(result.status, 1) << result.out;
        ASSERT_FALSE(result.Codes().empty());
        EXPECT_LT(result.Codes().front(), 0);
    }
    // Sizes that pass the end: what the file holds counts, or it is refused; nothing is made up.
    std::string endless = wav;
    endless.replace(40, 4, 4, '\xff');
    const DaxResult result = dax_.Run({"read", folder_.Write("endless.wav", endless)});
    EXPECT_LE(Lines(result.out).size(), 4U);
    EXPECT_TRUE(result.status == 1 || Lines(result.out).size() == 4U);
}

TEST_F(DaxBadInput, PluginsThatCannotBeUsed)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", "[[plugin]\nthis is no TOML");
    ExpectFailure(good_, -328681);

    const std::string notALibrary = folder_.Write("not-a-library.so", "text");
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  "[[plugin]]\nfamily = \"FileFormat\"\nname = \"Broken\"\ndescription = \"Broken\"\nlibrary = \"" +
                      notALibrary + "\"\nprefix = \"BrokenFF\"\n");
    ExpectFailure(folder_.Write("unknown.bin", std::string(600, 'x')), -328682);
    // It doesn't keep the others from their work, but isn't passed over in silence.
    const DaxResult works = dax_.Run({"info", good_});
    EXPECT_EQ(works.status, 0);
    EXPECT_NE(works.err.find("dax: warning -328682: "), std::string::npos) << works.err;
    // Who asks for the plug-ins themselves gets those that work, and the failure.
    const DaxResult types = dax_.Run({"types"});
    EXPECT_EQ(types.status, 1);
    EXPECT_NE(types.out.find("WAV"), std::string::npos);
    EXPECT_NE(types.err.find("dax: error -328682: "), std::string::npos) << types.err;

    TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests());
    ExpectFailure(folder_.Write("throwing.sta", "STAND throw=1"), -328688);
    dax_.ExpectFailure({"read", folder_.Write("x.sta", "STAND tsthrow=Open")}, -328020);
}

TEST_F(DaxBadInput, TheCommandLine)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                      {"nosuch"},
                                                      {"read"},
                                                      {"read", good_, "--first", "0"},
                                                      {"read", good_, "--chan", "x"},
                                                      {"read", good_, "--nosuch"},
                                                      {"copy", good_}}) {
        const DaxResult text = dax_.Run(arguments);
        EXPECT_EQ(text.status, 1);
        EXPECT_EQ(text.out, "");
        EXPECT_EQ(text.err.find("dax: error -900001: "), 0U) << text.err;
        dax_.ExpectFailure(arguments, -900001);
    }
    for (const char* command : {"types", "identify", "info", "read", "stats", "meta", "copy", "check"}) {
        const DaxResult help = dax_.Run({command, "--help"});
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.out.find("--json"), std::string::npos) << command;
    }
    EXPECT_NE(dax_.Run({"--help"}).out.find("identify"), std::string::npos);
    EXPECT_EQ(dax_.Run({"--version"}).out, "dax 2.80.35\n");
}

TEST_F(DaxBadInput, NamesThatAreNoUtf8)
{
    const std::string file = folder_.Write("name\xff.wav", TestReadFile(good_));
    for (const char* command : {"info", "read"}) {
        const DaxResult result = dax_.Run({command, "--json", file});
        EXPECT_EQ(result.status, 0);
        EXPECT_FALSE(result.Json().is_discarded());
    }
    EXPECT_FALSE(dax_.Run({"info", "--json", folder_.Name("none\xff.wav")}).Codes().empty());
}

}  // namespace
