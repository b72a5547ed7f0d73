#include "DaxProgram.h"

#include <filesystem>
#include <unistd.h>

// dax ls: which tests are listed, and what is said of them.

namespace {

class LsTest : public testing::Test
{
protected:
    LsTest()
    {
        folder_.Write("a.wav", MakeWav16(1000, 2, std::vector<std::int16_t>(4000)));
        folder_.Write("b.wav", MakeWav16(500, 1, std::vector<std::int16_t>(3000)));
        folder_.Write("notes.txt", "\x01\x02 nothing known");
        folder_.Write("sub/c.wav", MakeWav16(100, 3, std::vector<std::int16_t>(30)));
        folder_.Write("odd;*|\x1b[31m.wav", MakeWav16(1000, 1, {1, 2, 3}));
    }

    /// The names under a key, of a list as objects.
    std::vector<std::string> Names(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"ls", "--json"});
        const DaxResult result = dax_.Run(arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        std::vector<std::string> names;
        for (const std::string& line : Lines(result.out)) {
            const nlohmann::json test = nlohmann::json::parse(line);
            names.push_back(std::filesystem::path(test.at("name").get<std::string>()).filename());
        }
        return names;
    }

    using List = std::vector<std::string>;
    const std::string Odd = "odd;*|\x1b[31m.wav";

    DaxProgram dax_;
    TestFolder folder_;
};

}  // namespace

TEST_F(LsTest, ListsATestALine)
{
    const DaxResult result = dax_.Run({"ls", folder_.Path()});
    EXPECT_EQ(result.status, 0) << result.err;
    const std::vector<std::string> lines = Lines(result.out);
    ASSERT_EQ(lines.size(), 3U) << result.out;
    EXPECT_TRUE(lines[0].starts_with(folder_.Name("a.wav"))) << lines[0];
    for (const char* part : {" WAV ", " 2 ch ", " 2000 pts ", " 1000 Hz ", " 2 s ", " 8044 B"})
        EXPECT_NE((lines[0] + " ").find(part), std::string::npos) << lines[0];
    EXPECT_EQ(result.out.find('\x1b'), std::string::npos);

    const nlohmann::json test = nlohmann::json::parse(Lines(dax_.Run({"ls", "--json", folder_.Name("b.wav")}).out).at(0));
    EXPECT_EQ(test["keyword"], "WAV");
    EXPECT_EQ(test["channels"], 1);
    EXPECT_EQ(test["points"], 3000);
    EXPECT_EQ(test["sampleRate"], 500);
    EXPECT_EQ(test["duration"], 6);
    EXPECT_EQ(test["size"], 6044);
}

TEST_F(LsTest, SpecsFiltersAndOrder)
{
    EXPECT_EQ(Names({folder_.Path(), "--recurse"}), (List{"a.wav", "b.wav", "c.wav", Odd}));
    EXPECT_EQ(Names({folder_.Path() + "/*.wav;s;c3"}), List{"c.wav"});
    EXPECT_EQ(Names({folder_.Path(), "--recurse", "--chan", "3"}), List{"c.wav"});
    EXPECT_EQ(Names({folder_.Path(), "--type", "hs"}), List{});
    EXPECT_EQ(Names({folder_.Path(), "--unknown", "--sort", "size", "--reverse"}),
              (List{"a.wav", "b.wav", Odd, "notes.txt"}));
    EXPECT_EQ(Names({folder_.Path(), "--sort", "rate"}), (List{"b.wav", "a.wav", Odd}));
    // A file that is there is that file; as a spec the text would mean two more.
    EXPECT_EQ(Names({folder_.Name(Odd)}), List{Odd});
    EXPECT_EQ(dax_.Run({"ls", "--null", folder_.Name(Odd)}).out, folder_.Name(Odd) + '\0');

    EXPECT_EQ(dax_.Run({"meta", folder_.Name("b.wav"), "--put", "Test.Run=7"}).status, 0);
    EXPECT_EQ(Names({folder_.Path() + "/*.wav", "--where", "#Test.Run# > 6"}), List{"b.wav"});
    EXPECT_NE(dax_.Run({"ls", folder_.Name("b.wav"), "--show", "Test.Run"}).out.find(" 7\n"), std::string::npos);
    EXPECT_EQ(dax_.Run({"ls", "--json", folder_.Path(), "--where", "1 +"}).Codes().at(0), -65631);
}

TEST_F(LsTest, WhatCantBeReadEndsNothing)
{
    folder_.Write("empty.wav", "");
    folder_.Write("bad.wav", MakeWav16(1000, 1, {1, 2, 3}).substr(0, 20));
    const DaxResult quiet = dax_.Run({"ls", folder_.Path()});
    EXPECT_EQ(quiet.status, 0);
    EXPECT_EQ(Lines(quiet.out).size(), 3U);
    EXPECT_NE(quiet.err.find("-900042"), std::string::npos);
    const DaxResult told = dax_.Run({"ls", "--errors", folder_.Path(), folder_.Name("none.wav")});
    EXPECT_EQ(told.status, 0);
    EXPECT_NE(told.err.find(folder_.Name("empty.wav") + ": File header is blank"), std::string::npos) << told.err;
    EXPECT_NE(told.err.find("-900041"), std::string::npos) << told.err;
}
