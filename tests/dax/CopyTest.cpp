#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;

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
    pid_t StartSlowCopy() const
    {
        const std::string slow = folder_.Write("slow.sta", "STAND points=100000 buffer=16 overlap=300 rate=100");
        folder_.Write("out.wav", "earlier");
        const pid_t process = dax_.Start({"copy", slow, folder_.Name("out.wav"), "--overwrite"});
        for (int wait = 0; wait < 1000 && CountLeftovers() == 0; ++wait)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_EQ(CountLeftovers(), 1U);
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

    ASSERT_EQ(dax_.Run({"copy", stereo_, folder_.Name("named.bin"), "--format", "wav", "--chan", "2"}).status, 0);
    EXPECT_EQ(dax_.Json({"info", folder_.Name("named.bin")})["channels"].size(), 1U);
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
