#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;
using namespace std::string_literals;

namespace {

class DaxCopy : public StandIn::StandInTest
{
protected:
    /// Entries of the test's folder that the program made and didn't clear away.
    std::size_t CountLeftovers() const
    {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(folder_.Path()))
            count += entry.path().filename().string().starts_with(".dax-") ? 1U : 0U;
        return count;
    }
    /// Starts a copy over an existing file that takes its time, and waits until it has begun to write.
    pid_t StartSlowCopy(std::size_t leftovers = 1) const
    {
        const std::string slow = folder_.Write("slow.sta", "STAND points=100000 buffer=16 overlap=300 rate=100");
        folder_.Write("out.wav", "earlier");
        const pid_t process = dax_.Start({"copy", slow, folder_.Name("out.wav"), "--overwrite"});
        for (int wait = 0; wait < 1000 && CountLeftovers() != leftovers; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(CountLeftovers(), leftovers);
        return process;
    }

    DaxProgram dax_;
    const std::string stereo_ = folder_.Write("stereo.wav", MakeWav16(8000, 2, {0, 16384, -32768, 8192, 16384, -16384}));
    const std::string out_ = folder_.Name("out.wav");
};

TEST_F(DaxCopy, TheCopyHoldsTheSameValues)
{
    const DaxResult result = dax_.Run({"copy", "--json", stereo_, out_});
    ASSERT_EQ(result.status, 0) << result.out;
    EXPECT_EQ(result.Json()["lost"], nlohmann::json::array());
    EXPECT_EQ(result.Json()["points"], 6);
    EXPECT_EQ(dax_.Run({"read", out_}).out, dax_.Run({"read", stereo_}).out);

    // A format that numbers its channels itself gets them in the order asked for.
    ASSERT_EQ(dax_.Run({"copy", stereo_, folder_.Name("named.bin"), "--format", "wav", "--chan", "2,1"}).status, 0);
    EXPECT_EQ(Lines(dax_.Run({"read", folder_.Name("named.bin")}).out)[2], "0.000125,0.25,-1");
    EXPECT_EQ(CountLeftovers(), 0U);
}

TEST_F(DaxCopy, RefusesWhatWouldLoseAFile)
{
    const std::string earlier = folder_.Write("earlier.wav", "earlier");
    dax_.ExpectFailure({"copy", stereo_, earlier}, -900008);
    EXPECT_EQ(TestReadFile(earlier), "earlier");

    const std::string before = TestReadFile(stereo_);
    fs::create_hard_link(stereo_, folder_.Name("twin.wav"));
    for (const std::string& same : {stereo_, folder_.Name("twin.wav")})
        dax_.ExpectFailure({"copy", stereo_, same, "--overwrite"}, -900009);
    EXPECT_EQ(TestReadFile(stereo_), before);

    dax_.ExpectFailure({"copy", stereo_, "-"}, -900022);
    dax_.ExpectFailure({"copy", stereo_, folder_.Name("out.xyz")}, -900011);
    dax_.ExpectFailure({"copy", stereo_, out_, "--format", "nosuch"}, -328699);
    EXPECT_EQ(dax_.Run({"copy", "--json", stereo_, folder_.Path(), "--format", "wav", "--overwrite"}).status, 1);
    EXPECT_EQ(CountLeftovers(), 0U);

    fs::create_symlink(earlier, folder_.Name("link.wav"));
    ASSERT_EQ(dax_.Run({"copy", stereo_, folder_.Name("link.wav"), "--overwrite"}).status, 0);
    EXPECT_TRUE(fs::is_symlink(folder_.Name("link.wav")));
    EXPECT_EQ(dax_.Run({"info", earlier}).status, 0);
}

TEST_F(DaxCopy, WhatIsLostIsListedAndStrictRefusesIt)
{
    const std::string source = folder_.Write("load.sta", "STAND channels=2 points=20 units=kN base=5 rate=100");
    dax_.ExpectFailure({"copy", source, out_, "--strict"}, -900013);
    EXPECT_FALSE(fs::exists(out_));
    EXPECT_EQ(CountLeftovers(), 0U);

    const std::set<std::string> lost = dax_.Run({"copy", "--json", source, out_}).Lost();
    EXPECT_TRUE(lost.contains("units"));
    EXPECT_TRUE(lost.contains("baseTime"));
    EXPECT_FALSE(lost.contains("values"));
    ASSERT_EQ(dax_.Run({"copy", "--strict", stereo_, folder_.Name("whole.wav")}).status, 0);
}

TEST_F(DaxCopy, DamageIsToldAndStrictRefusesIt)
{
    const std::string cut = folder_.Write("cut.wav", TestReadFile(stereo_).substr(0, 52));
    for (const std::vector<std::string>& command : {std::vector<std::string>{"info", cut},
                                                    {"read", cut},
                                                    {"stats", cut},
                                                    {"meta", cut},
                                                    {"copy", cut, out_, "--overwrite"}}) {
        const DaxResult result = dax_.Run(command, {"--json"});
        EXPECT_EQ(result.status, 0) << command[0];
        EXPECT_EQ(result.Json()["warnings"][0]["code"], -900020);
        EXPECT_EQ(result.err.find("dax: warning -900020: "), 0U) << result.err;
        EXPECT_NE(result.err.find("12 bytes of data, the file holds 8."), std::string::npos) << result.err;
        std::vector<std::string> strict = command;
        strict.push_back("--strict");
        dax_.ExpectFailure(strict, -900020);
    }
}

TEST_F(DaxCopy, WhatTheFormatSaysUnderItsOwnNamesIsKeptOrTold)
{
    const std::string texts = "LIST\x1cz00INFOIART\x05z00Anna\0\0ISFT\x02z00x\0"s;
    std::string wav = TestReadFile(stereo_) + texts;
    for (std::size_t at = wav.find("z00"); at != std::string::npos; at = wav.find("z00"))
        wav.replace(at, 3, 3, '\0');
    const std::string source = folder_.Write("texts.wav", wav);
    const nlohmann::json values = {{"Encoding", "Signed 16 bit PCM"}, {"Software", "x"}, {"Artist", "Anna"}};
    EXPECT_EQ(dax_.Json({"info", source})["formatValues"], values);
    EXPECT_EQ(dax_.Run({"copy", "--json", "--strict", source, folder_.Name("a.rf64")}).Lost(), std::set<std::string>());
    EXPECT_EQ(dax_.Json({"info", folder_.Name("a.rf64")})["formatValues"], values);
    // By way of a format that has no place for them.
    EXPECT_EQ(dax_.Run({"copy", "--json", "--strict", source, folder_.Name("a.z4t")}).Lost(), std::set<std::string>());
    EXPECT_EQ(dax_.Run({"copy", "--json", "--strict", folder_.Name("a.z4t"), out_}).Lost(), std::set<std::string>());
    EXPECT_EQ(dax_.Json({"info", out_})["formatValues"], values);
    EXPECT_EQ(dax_.Run({"copy", "--json", "--strict", source, folder_.Name("a.w64")}).Lost(), std::set<std::string>());
    EXPECT_NE(dax_.Run({"meta", folder_.Name("a.w64")}).out.find("Anna"), std::string::npos);
    // One that is in nobody's power to write.
    wav[20] = 7;
    const std::string law = folder_.Write("law.wav", wav.replace(32, 4, "\x02\0\x08\0"s));
    EXPECT_EQ(dax_.Run({"copy", "--json", law, folder_.Name("a.wav")}).Lost(),
              std::set<std::string>{"format value Encoding"});
    dax_.ExpectFailure({"copy", "--strict", law, folder_.Name("b.wav")}, -900013);
}

TEST_F(DaxCopy, FoldersOfDeadWritersAreClearedAway)
{
    pid_t process = StartSlowCopy();
    kill(process, SIGKILL);
    dax_.Wait(process);
    EXPECT_EQ(CountLeftovers(), 1U);
    // Those that look like one, but needn't be one, or hold something else, stay as they are.
    const auto make = [&](const std::string& name, const std::string& list, fs::perms mode) {
        fs::create_directory(folder_.Name(name));
        folder_.Write(name + "/victim", "");
        folder_.Write(name + "/.dax-owner", list);
        fs::permissions(folder_.Name(name + "/.dax-owner"), fs::perms::owner_read | fs::perms::owner_write);
        fs::permissions(folder_.Name(name), mode);
    };
    const std::string list = "dax staging folder 1\nvictim\0other/x\0"s;
    make(".dax-shared", list, fs::perms::owner_all | fs::perms::group_all);
    make(".dax-nolist", "", fs::perms::owner_all);
    make(".dax-cutoff", list.substr(0, 27), fs::perms::owner_all);
    make(".dax-toolong", list, fs::perms::owner_all);
    make("elsewhere", list, fs::perms::owner_all);
    fs::create_directory_symlink(folder_.Name("elsewhere"), folder_.Name(".dax-linked"));

    process = StartSlowCopy(6);  // it clears away the one, and lives itself while the next does so
    ASSERT_EQ(dax_.Run({"copy", stereo_, folder_.Name("next.wav")}).status, 0);
    EXPECT_EQ(CountLeftovers(), 6U);
    for (const char* kept : {".dax-shared", ".dax-nolist", ".dax-cutoff", ".dax-toolong", "elsewhere"})
        EXPECT_TRUE(fs::exists(folder_.Name(std::string(kept) + "/victim"))) << kept;
    kill(process, SIGTERM);
    EXPECT_EQ(dax_.Wait(process).err.find("dax: error -900015: "), 0U);
    EXPECT_EQ(CountLeftovers(), 5U);
}

TEST_F(DaxCopy, ChannelsThatCannotShareAHeaderAreNotWritten)
{
    for (const char* unlike : {"rates=100,50", "lengths=20,10"}) {
        const std::string source = folder_.Write("unlike.sta", std::string("STAND channels=2 ") + unlike);
        dax_.ExpectFailure({"copy", source, out_}, -900012);
        EXPECT_FALSE(fs::exists(out_));
    }
}

TEST_F(DaxCopy, AFailureOnTheWayLeavesTheEarlierFile)
{
    const std::string broken = folder_.Write("broken.sta", "STAND tsfail=GetData points=100 rate=100");
    folder_.Write("out.wav", "earlier");
    dax_.ExpectFailure({"copy", broken, out_, "--overwrite"}, -328020);
    EXPECT_EQ(TestReadFile(out_), "earlier");
    EXPECT_EQ(CountLeftovers(), 0U);
}

TEST_F(DaxCopy, AFullDiskIsToldByTheNameOfTheOutput)
{
    const std::string large = folder_.Write("large.sta", "STAND points=100000 rate=100");
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small = {64 * 1024, before.rlim_max};
    for (const char* name : {"full.z4t", "full.wav"}) {
        setrlimit(RLIMIT_FSIZE, &small);
        const DaxResult result = dax_.Run({"copy", large, folder_.Name(name)});
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err.find(folder_.Name(name)), std::string::npos) << result.err;
        EXPECT_EQ(result.err.find(".dax-"), std::string::npos) << result.err;
        EXPECT_EQ(CountLeftovers(), 0U);
    }
}

TEST_F(DaxCopy, ASignalLeavesTheEarlierFile)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        const pid_t process = StartSlowCopy();
        kill(process, signal);
        const DaxResult result = dax_.Wait(process);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err.find("dax: error -900015: "), 0U) << result.err;
        EXPECT_EQ(TestReadFile(out_), "earlier");
        EXPECT_EQ(CountLeftovers(), 0U);
    }
    const pid_t process = StartSlowCopy();
    kill(process, SIGKILL);
    EXPECT_EQ(dax_.Wait(process).status, -1);
    EXPECT_EQ(TestReadFile(out_), "earlier");
}

}  // namespace
