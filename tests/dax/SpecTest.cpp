#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include <filesystem>

namespace fs = std::filesystem;

// Specs of tests on the command line, and what is done with many tests.

namespace {

class DaxSpec : public StandIn::StandInTest
{
protected:
    std::vector<std::string> Paths(const std::string& spec) const
    {
        std::vector<std::string> names;
        const nlohmann::json document = dax_.Json({"info", folder_.Path() + "/" + spec, "--json"});
        for (const auto& test : document["tests"])
            names.push_back(fs::path(test["path"].get<std::string>()).filename());
        return names;
    }

    DaxProgram dax_;
    const std::string first_ = folder_.Write("a1.wav", MakeWav16(8000, 2, {0, 1, 2, 3}));
    const std::string second_ = folder_.Write("sub/a2.wav", MakeWav16(8000, 2, {0, 1, 2, 3}));
    const std::string odd_ = folder_.Write("x;r2|*.wav", MakeWav16(8000, 1, {0, 1}));
    const std::string runs_ = folder_.Write("runs.sta", "STAND subid=2 tests=3 channels=2 points=5");
};

}  // namespace

TEST_F(DaxSpec, AFileArgumentIsAFileOrASpec)
{
    EXPECT_EQ(dax_.Json({"info", "--json", odd_})["path"], odd_);
    EXPECT_EQ(Paths("*1.wav|" + runs_ + ";r2,3"), (std::vector<std::string>{"a1.wav", "runs.sta", "runs.sta"}));
    // Channels that are selected are those that the command sees.
    EXPECT_EQ(dax_.Json({"info", "--json", first_ + ";c2"})["tests"][0]["channels"].size(), 1U);
    EXPECT_EQ(Lines(dax_.Run({"read", first_ + ";c2"}).out), Lines(dax_.Run({"read", first_, "--chan", "2"}).out));
    dax_.ExpectFailure({"read", folder_.Name("runs.sta;aTS")}, -328604);
    dax_.ExpectFailure({"read", folder_.Name("none*")}, -328605);
    // One that fails doesn't stop the others.
    const DaxResult result = dax_.Run({"info", "--json", folder_.Name("none.wav"), first_});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.Json()["tests"][0].contains("errors"));
    EXPECT_EQ(result.Json()["tests"][1]["path"], first_);
    EXPECT_EQ(dax_.Json({"size", "--json", first_, runs_})["bytes"], fs::file_size(first_) + fs::file_size(runs_));
    EXPECT_EQ(dax_.Run({"exists", first_, folder_.Name("none*")}).status, 1);
}

TEST_F(DaxSpec, DeletesWholeTestsOnly)
{
    dax_.ExpectFailure({"delete", first_}, -900001);
    dax_.ExpectFailure({"delete", "--yes", runs_ + ";r2"}, -900051);
    dax_.ExpectFailure({"delete", "--yes", first_ + ";c1"}, -900051);
    dax_.ExpectFailure({"delete", "--yes", folder_.Write("notes.txt", "text")}, -328688);
    ASSERT_EQ(dax_.Run({"meta", first_, "--put", "Test.Run=7"}).status, 0);
    const std::string sidecar = folder_.Name("a1_wav_s.vmd");
    ASSERT_TRUE(fs::exists(sidecar));
    EXPECT_EQ(dax_.Json({"delete", "--json", "--yes", first_ + ";aTS", runs_})["deleted"],
              (nlohmann::json{first_, sidecar, runs_}));
    EXPECT_FALSE(fs::exists(first_) || fs::exists(sidecar) || fs::exists(runs_));
    EXPECT_TRUE(fs::exists(odd_));
}

TEST_F(DaxSpec, CopiesManyTests)
{
    const std::string to = folder_.Name("to");
    folder_.Write("bad.wav", "RIFF");
    const auto copy = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"copy", "--json", folder_.Name("*"), "--to", to, "--recurse"});
        return dax_.Run(more);
    };
    DaxResult result = copy({"--jobs", "3", "--suffix", "_new"});
    EXPECT_EQ(result.Json()["copied"], 6) << result.out << result.err;
    for (const char* name : {"a1_new.z4t", "sub/a2_new.z4t", "x;r2|*_new.z4t", "runs_r02__new.z4t"})
        EXPECT_TRUE(fs::exists(fs::path(to) / name)) << name;
    EXPECT_EQ(dax_.Run({"read", to + "/a1_new.z4t"}).out, dax_.Run({"read", first_}).out);
    // Again: nothing is replaced, and what was copied is no input.
    result = copy({"--suffix", "_new"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.Json()["failed"].get<int>(), 6);
    EXPECT_EQ(result.Json()["passedOver"], 6);
    // What has a sound copy is left out, one that is cut off or older than the test is made anew.
    fs::resize_file(to + "/a1_new.z4t", 600);
    fs::last_write_time(second_, fs::file_time_type::clock::now() + std::chrono::hours(1));
    result = copy({"--suffix", "_new", "--resume"});
    EXPECT_EQ(result.Json()["copied"], 2) << result.out;
    EXPECT_EQ(result.Json()["leftOut"], 4);
    // Two tests with one output, and an output that is an input.
    folder_.Write("a1.sta", "STAND channels=1 points=5");
    dax_.ExpectFailure({"copy", folder_.Name("a1*"), "--to", folder_.Name("other")}, -900052);
    dax_.ExpectFailure({"copy", first_, "--to", folder_.Path(), "--format", "wav", "--overwrite"}, -900052);
    EXPECT_FALSE(fs::exists(folder_.Name("other")));
    dax_.ExpectFailure({"copy", first_, second_, odd_}, -900001);
}
