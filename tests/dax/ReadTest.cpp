#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

class DaxRead : public testing::Test
{
protected:
    /// Makes the stand-in plug-ins known to the program.
    void UseStandIns() const { TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests()); }

    TestFolder folder_;
    DaxProgram dax_;
    const std::string stereo_ = folder_.Write("stereo.wav", MakeWav16(8000, 2, {0, 16384, -32768, 8192, 16384, -16384}));
};

TEST_F(DaxRead, TypesNamesTheFormatsWithTheirExtensions)
{
    const auto types = dax_.Json({"types"})["types"];
    const auto wav = std::find_if(types.begin(), types.end(), [](const auto& type) { return type["keyword"] == "WAV"; });
    ASSERT_NE(wav, types.end());
    EXPECT_EQ((*wav)["accessType"], "Time series");
    EXPECT_TRUE((*wav)["readable"] == true && (*wav)["writable"] == true) << *wav;
    EXPECT_EQ((*wav)["extensions"], nlohmann::json({"wav"}));
    EXPECT_NE(dax_.Run({"types"}).out.find("WAV"), std::string::npos);
}

TEST_F(DaxRead, IdentifySaysWhatEachFileIsAndGoesOnAfterAFailure)
{
    const auto file = dax_.Json({"identify", stereo_})["files"][0];
    EXPECT_EQ(file["path"], stereo_);
    EXPECT_EQ(file["keyword"], "WAV");
    EXPECT_EQ(file["accessType"], "Time series");
    EXPECT_EQ(file["identifiedBy"], "content");
    EXPECT_TRUE(file["fileId"].is_number_integer() && file["subId"].is_number_integer());

    const DaxResult both = dax_.Run({"identify", "--json", folder_.Name("none.wav"), stereo_});
    EXPECT_EQ(both.status, 1);
    EXPECT_EQ(both.Json()["files"][0]["errors"].back()["code"], -328684);
    EXPECT_EQ(both.Json()["files"][1]["keyword"], "WAV");
    EXPECT_EQ(both.Codes().back(), -328684);
}

TEST_F(DaxRead, FilesOfSeveralTestsAreListedAndOneIsChosen)
{
    UseStandIns();
    const std::string file = folder_.Write("runs.sta", "STAND tests=2 points=3 units=kN");
    const auto tests = dax_.Json({"identify", file})["files"];
    ASSERT_EQ(tests.size(), 2U);
    EXPECT_EQ(tests[1]["run"], 2);
    dax_.ExpectFailure({"info", file}, -900003);
    dax_.ExpectFailure({"info", file, "--test", "3"}, -900004);
    EXPECT_EQ(dax_.Json({"info", file, "--test", "2"})["run"], 2);
}

TEST_F(DaxRead, InfoDescribesTheChannels)
{
    const auto document = dax_.Json({"info", stereo_});
    EXPECT_EQ(document["path"], stereo_);
    EXPECT_EQ(document["keyword"], "WAV");
    ASSERT_EQ(document["channels"].size(), 2U);
    const nlohmann::json second = {{"index", 1},      {"number", 2},          {"title", "Channel 2"}, {"units", ""},
                                   {"type", "float"}, {"sampleRate", 8000.0}, {"baseTime", 0.0},      {"points", 3}};
    EXPECT_EQ(document["channels"][1], second);
    EXPECT_NE(dax_.Run({"info", stereo_}).out.find("8000"), std::string::npos);
}

TEST_F(DaxRead, ReadPrintsARowForEachPoint)
{
    const std::vector<std::string> all = Lines(dax_.Run({"read", stereo_}).out);
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[0].substr(0, 4), "time");
    EXPECT_EQ(all[1], "0,0,0.5");
    EXPECT_EQ(all[2], "0.000125,-1,0.25");
    EXPECT_EQ(all[3], "0.00025,0.5,-0.5");

    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"read", stereo_, "--chan", "2", "--first", "2", "--count", "1"},
          {"read", "--chan", "2", stereo_, "--first", "2", "--count", "1"}}) {
        const std::vector<std::string> part = Lines(dax_.Run(arguments).out);
        ASSERT_EQ(part.size(), 2U);
        EXPECT_EQ(part[1], "0.000125,0.25");
    }
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"read", stereo_, "--chan", "1", "2"}, {"read", stereo_, "--chan", "1-2", "--out", "-"}})
        EXPECT_EQ(Lines(dax_.Run(arguments).out), all);
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"read", stereo_, "--chan", "2,1-2"}, {"read", stereo_, "--chan", "2", "--chan", "1"}})
        EXPECT_EQ(Lines(dax_.Run(arguments).out)[2], "0.000125,0.25,-1");
    dax_.ExpectFailure({"read", stereo_, "--chan", "1,3"}, -900002);
    dax_.ExpectFailure({"read", stereo_, "--first", "4"}, -900006);

    const auto document = dax_.Json({"read", stereo_, "--first", "2"});
    EXPECT_EQ(document["channels"][0]["values"], nlohmann::json({-1, 0.5}));
    EXPECT_EQ(document["channels"][1]["first"], 2);
}

TEST_F(DaxRead, ValuesReadBackAsTheSameBits)
{
    std::vector<float> values = {-0.0F,
                                 std::numeric_limits<float>::denorm_min(),
                                 std::numeric_limits<float>::max(),
                                 16777216.0F,
                                 0.1F,
                                 -1e-30F,
                                 std::nextafter(1.0F, 2.0F)};
    std::uint32_t bits = 0x12345678;
    while (values.size() < 3000) {
        bits = bits * 1664525 + 1013904223;
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value))
            values.push_back(value);
    }
    const std::string file = folder_.Write("bits.wav", MakeWavFloat(48000, 1, values));
    const std::vector<std::string> lines = Lines(dax_.Run({"read", file}).out);
    ASSERT_EQ(lines.size(), values.size() + 1);
    for (std::size_t index = 0; index < values.size(); ++index) {
        const std::string& line = lines[index + 1];
        const float value = std::strtof(line.c_str() + line.find(',') + 1, nullptr);
        ASSERT_EQ(std::memcmp(&value, &values[index], sizeof value), 0) << line;
        ASSERT_EQ(std::strtod(line.c_str(), nullptr), static_cast<double>(index) / 48000.0);
    }
}

TEST_F(DaxRead, ChannelsOfDifferentRatesAreNeverJoined)
{
    UseStandIns();
    const std::string file = folder_.Write("mixed.sta", "STAND channels=3 rates=100,50,100 lengths=3,2,1 units=kN");
    const DaxResult refused = dax_.Run({"read", file});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.out.empty());
    EXPECT_EQ(refused.err.find("dax: error -900007: "), 0U) << refused.err;

    const DaxResult written = dax_.Run({"read", "--json", file, "--out", folder_.Name("mixed.csv")});
    ASSERT_EQ(written.status, 0) << written.out;
    EXPECT_EQ(TestReadFile(folder_.Name("mixed_ch1_3.csv")),
              "time [s],Channel 1 [kN],Channel 3 [kN]\n0,1,2001\n0.01,2,\n0.02,3,\n");
    EXPECT_EQ(TestReadFile(folder_.Name("mixed_ch2.csv")), "time [s],Channel 2 [kN]\n0,1001\n0.02,1002\n");
    EXPECT_EQ(written.Json()["files"].size(), 2U);
    EXPECT_EQ(access(folder_.Name("mixed.csv").c_str(), F_OK), -1);
    EXPECT_EQ(dax_.Json({"read", file})["channels"][1]["values"], nlohmann::json({1001, 1002}));
}

TEST_F(DaxRead, WhatIsNoFiniteNumberIsTold)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const std::string file = folder_.Write("odd.wav", MakeWavFloat(8000, 1, {std::nanf(""), infinity, -infinity, 0.1F}));
    EXPECT_EQ(dax_.Json({"read", file})["channels"][0]["values"], nlohmann::json({"NaN", "Infinity", "-Infinity", 0.1}));
    EXPECT_EQ(dax_.Json({"stats", "--calc", file})["channels"][0]["min"], "-Infinity");
    EXPECT_EQ(Lines(dax_.Run({"read", file}).out)[2], "0.000125,inf");
}

TEST_F(DaxRead, NothingFromAFileSteersATerminal)
{
    UseStandIns();
    const std::string units = "\x1b[2J\a\xc2\x9b\xe2\x80\xae\xe2\x81\xa6\xc2\xb0";
    const std::string file = folder_.Write(units + ".sta", "STAND points=1 units=\"" + units + "\" title=\"" + units + "\"");
    for (const std::vector<std::string>& command : {std::vector<std::string>{"identify", file},
                                                    {"info", file},
                                                    {"read", file},
                                                    {"read", file, "--out", file + ".csv"},
                                                    {"stats", file},
                                                    {"meta", file},
                                                    {"copy", file, file + ".z4t"},
                                                    {"check", file + ".z4t"},
                                                    {"dbc", file},
                                                    {"info", folder_.Name("none" + units)}})
        for (const char* form : {"--overwrite", "--json"}) {
            if (*form == '-' && form[2] == 'o' && command[0] != "copy" && command.size() != 4)
                continue;
            const DaxResult result = dax_.Run(command, {form});
            for (const char* bad : {"\x1b", "\a", "\xc2\x9b", "\xe2\x80\xae", "\xe2\x81\xa6"})
                EXPECT_EQ((result.out + result.err).find(bad), std::string::npos) << command[0] << form << result.out;
        }
    EXPECT_EQ(Lines(TestReadFile(file + ".csv"))[0], "time [s],Channel 1 [\xef\xbf\xbd[2J"
                                                     "\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd\xc2\xb0]");
    EXPECT_EQ(dax_.Json({"info", file})["channels"][0]["units"], units);
    const std::string latin = folder_.Write("latin.sta", "STAND points=1 units=\xb0"
                                                         "C");
    EXPECT_EQ(dax_.Json({"info", latin})["channels"][0]["units"], "\xc2\xb0"
                                                                  "C");
}

TEST_F(DaxRead, AnOutputFileIsNotReplacedUnasked)
{
    const std::string csv = folder_.Write("out.csv", "earlier");
    dax_.ExpectFailure({"read", stereo_, "--out", csv}, -900008);
    EXPECT_EQ(TestReadFile(csv), "earlier");
    EXPECT_EQ(dax_.Run({"read", stereo_, "--out", csv, "--overwrite"}).status, 0);
    EXPECT_EQ(Lines(TestReadFile(csv)).size(), 4U);
    dax_.ExpectFailure({"read", stereo_, "--out", folder_.Path() + "/none/out.csv"}, -900010);
    dax_.ExpectFailure({"read", stereo_, "--out", stereo_, "--overwrite"}, -900009);
}

TEST_F(DaxRead, AnOutputThatIsNotReadyIsWaitedForAndOneThatIsGoneIsNoError)
{
    const std::string file = folder_.Write("long.wav", MakeWav16(8000, 1, std::vector<std::int16_t>(200000, 1)));
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    ASSERT_EQ(fcntl(ends[1], F_SETFL, O_NONBLOCK), 0);
    const pid_t patient = dax_.Start({"read", file}, ends[1]);
    close(ends[1]);
    std::string all;
    std::string block(10'000, 0);
    for (ssize_t got = 0; (got = read(ends[0], block.data(), block.size())) > 0;)
        all.append(block, 0, static_cast<std::size_t>(got));
    close(ends[0]);
    EXPECT_EQ(dax_.Wait(patient).status, 0);
    EXPECT_EQ(Lines(all).size(), 200'001U);

    ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const pid_t process = dax_.Start({"read", file}, ends[1]);
    close(ends[1]);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 1);
    close(ends[0]);
    const DaxResult result = dax_.Wait(process);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
}

}  // namespace
