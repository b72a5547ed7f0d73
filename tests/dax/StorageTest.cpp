#include "DaxProgram.h"
#include "plugins/StandIn.h"

#include "vdstore/LQDataManager.h"

#include <signal.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace {

using nlohmann::json;

constexpr std::int64_t Points = 20'000;

template <class Value>
std::vector<Value> Ramp(Value first)
{
    std::vector<Value> values(Points);
    for (Value& value : values)
        value = first++;
    return values;
}

bool FillTyped(LQTimeSeries& series)
{
    return series.AdjustChannelCountSinglePrecision(1) && series.AdjustChannelCountDoublePrecision(1) &&
           series.AdjustChannelCountDigital32(1, 1) && series.AdjustChannelCountDigital64(1, 1) &&
           series.SetDataDoublePrecision(0, Points, Ramp(0.1).data(), 1) &&
           series.SetDataDigital32(0, Points, Ramp(0xffff0000U).data(), 2) &&
           series.SetDataDigital64(0, Points, Ramp(std::uint64_t{0xffffffffffff0000}).data(), 3);
}

/// A storage file with metadata and without statistics: of the older kind with one channel, or typed with one of each type,
/// whose numbers are in another order than the types.
void WriteStorage(const std::string& name, bool typed)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->CreateFile(name.c_str(), nullptr);
    ASSERT_TRUE(file != nullptr && file->SetSubType(typed ? 11 : 4));
    LQTimeChannels* series = nullptr;
    if (typed) {
        LQTimeSeries* const made = data.AdoptTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
        ASSERT_TRUE(made != nullptr && FillTyped(*made));
        series = made;
    } else {
        series = data.AdoptFlexTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
        ASSERT_TRUE(series != nullptr && series->AdjustChannelCount(1));
    }
    ASSERT_TRUE(series->SetData(0, Points, Ramp(1.5F).data(), 0));
    LQChannelMapper& mapper = *series->GetMapper();
    for (int index = 0; index < series->GetChannelCount(); ++index) {
        mapper.SetChannelNumber(std::array{2, 1, 4, 3}[static_cast<std::size_t>(index)], index);
        series->SetChanTitle(index, ("Load " + std::to_string(index)).c_str());
        series->SetYTitle(index, ("Axis " + std::to_string(index)).c_str());
        series->SetYUnits(index, "kN");
        series->SetSampleRate(index, 400);
        series->SetBaseTime(index, 2.5);
        mapper.AdoptMetaDataSet("Sensor", nullptr, index)->PutDouble("Gain", index + 0.1);
    }
    Z4PropertySet& test = *mapper.AdoptMetaDataSet("Vehicle", nullptr, LQChannelMapper::GLOBAL);
    test.PutString("Driver", "Anna");
    mapper.AdoptMetaDataSet("ExtraDetails", nullptr, LQChannelMapper::GLOBAL)->PutString("Encoding", "Signed 16 bit PCM");
    test.AddProperty(Z4Property::Create(Z4TypeLong, "Mileage"));
    ASSERT_TRUE(data.Close(series, true) && data.GetFileManager()->CloseFile(file, true));
}

class DaxStorage : public testing::Test
{
protected:
    DaxStorage()
    {
        WriteStorage(typed_, true);
        WriteStorage(older_, false);
    }
    std::string Keyword(const std::string& file) const { return dax_.Json({"info", file})["keyword"]; }
    /// The rows of the metadata that are neither header nor place of the file.
    std::vector<std::string> OwnMetaData(const std::string& file) const
    {
        std::vector<std::string> rows = Lines(dax_.Run({"meta", file}).out);
        std::erase_if(rows, [](const std::string& row) {
            return row.find("Attributes") != std::string::npos || row.find("InputTestInfo") != std::string::npos;
        });
        return rows;
    }

    TestFolder folder_;
    DaxProgram dax_;
    const std::string typed_ = folder_.Name("typed.z4t");
    const std::string older_ = folder_.Name("older.z4t");
    const std::string wav_ = folder_.Write("mono.wav", MakeWav16(8000, 1, {0, 16384, -32768, 8192}));
};

TEST_F(DaxStorage, ACopyKeepsTypesValuesAndMetaData)
{
    const std::string whole = folder_.Name("whole.z4t");
    EXPECT_EQ(dax_.Run({"copy", "--json", "--strict", typed_, whole}).Lost(), std::set<std::string>());
    const std::string values = dax_.Run({"read", typed_}).out;
    EXPECT_NE(values.find("\n2.5,0.1,1.5,18446744073709486080,4294901760\n"), std::string::npos) << values.substr(0, 200);
    EXPECT_TRUE(dax_.Run({"read", whole}).out == values);
    const json info = dax_.Json({"info", whole});
    EXPECT_EQ(info["channels"], dax_.Json({"info", typed_})["channels"]);
    EXPECT_EQ(info["channels"][2]["type"], "digital64");
    std::vector<std::string> meta = OwnMetaData(typed_);
    EXPECT_EQ(meta.size(), 8U);
    EXPECT_EQ(OwnMetaData(whole), meta);
    EXPECT_EQ(TestReadFile(whole).find(".dax-"), std::string::npos);  // no trace of the place where it was written

    const std::string part = folder_.Name("part.z4t");
    EXPECT_EQ(dax_.Run({"copy", "--json", typed_, part, "--chan", "1,3"}).Lost(), std::set<std::string>());
    EXPECT_TRUE(dax_.Run({"read", part}).out == dax_.Run({"read", typed_, "--chan", "1,3"}).out);
    std::erase_if(meta, [](const std::string& row) { return row[0] == '2' || row[0] == '4'; });
    EXPECT_EQ(OwnMetaData(part), meta);
}

TEST_F(DaxStorage, TheTypedKindIsTheDefault)
{
    const std::string olderKind = "Z4TimeSeries(VG4.0)";
    ASSERT_EQ(dax_.Run({"copy", wav_, folder_.Name("plain")}).status, 0);
    EXPECT_EQ(Keyword(folder_.Name("plain.z4t")), "Z4TimeSeries");
    ASSERT_EQ(dax_.Run({"copy", older_, folder_.Name("newer.z4t")}).status, 0);
    EXPECT_EQ(Keyword(folder_.Name("newer.z4t")), "Z4TimeSeries");
    EXPECT_EQ(dax_.Run({"copy", "--json", older_, folder_.Name("same.z4t"), "--format", olderKind}).Lost(),
              std::set<std::string>());
    EXPECT_EQ(Keyword(folder_.Name("same.z4t")), olderKind);

    const std::string target = folder_.Name("no.y4t");
    for (const std::vector<std::string>& options :
         {std::vector<std::string>{}, {"--format", olderKind}, {"--format", "TemporaryTimeSeries"}}) {
        const DaxResult result = dax_.Run({"copy", "--json", typed_, target}, options);
        EXPECT_EQ(result.Codes(), std::vector<int>{-900011});
        EXPECT_EQ(result.out.find(", TemporaryTimeSeries"), std::string::npos) << result.out;
    }
    dax_.ExpectFailure({"copy", wav_, folder_.Path()}, -900010);
}

TEST_F(DaxStorage, AFormatWithoutMetaDataGetsAFileForThemBesideIt)
{
    const std::string wav = folder_.Name("part.wav");
    const std::string beside = folder_.Name("part_wav_s.vmd");
    // The values don't fit into the encoding of the past.
    const std::set<std::string> lost = {"channelNumber", "title",    "yTitle",
                                        "units",         "baseTime", "metadata ExtraDetails/Encoding"};
    EXPECT_EQ(dax_.Run({"copy", "--json", typed_, wav, "--chan", "2"}).Lost(), lost);
    EXPECT_EQ(dax_.Json({"info", wav})["formatValues"]["Encoding"], "32 bit float");
    EXPECT_EQ(dax_.Run({"read", wav, "--count", "1"}).out, "time [s],Channel 1\n0,1.5\n");
    const std::vector<std::string> meta = OwnMetaData(wav);
    EXPECT_EQ(meta.size(), 4U);
    EXPECT_TRUE(std::any_of(meta.begin(), meta.end(), [](const auto& row) { return row.ends_with("  Anna"); }));
    EXPECT_TRUE(std::filesystem::exists(beside));
    // What described the earlier file goes with it.
    dax_.ExpectFailure({"copy", wav_, wav}, -900008);
    ASSERT_EQ(dax_.Run({"copy", wav_, wav, "--overwrite"}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(beside));
}

TEST_F(DaxStorage, StatisticsAreThoseOfTheFileOrOfTheData)
{
    const json stored = dax_.Json({"stats", typed_});
    EXPECT_TRUE(stored["channels"][0]["max"].is_null() && stored["channels"][0]["pointOfMax"].is_null());
    EXPECT_TRUE(stored.contains("hint"));
    EXPECT_FALSE(dax_.Json({"stats", typed_, "--chan", "3-4"}).contains("hint"));

    const std::string before = TestReadFile(typed_);
    const json document = dax_.Json({"stats", "--calc", typed_});
    EXPECT_TRUE(TestReadFile(typed_) == before);
    const json channels = document["channels"];
    EXPECT_EQ(channels[0]["max"].get<double>(), Ramp(0.1).back());  // with all digits of a double
    EXPECT_NEAR(channels[0]["mean"].get<double>(), 0.1 + (Points - 1) / 2.0, 1e-8);
    EXPECT_EQ(channels[0]["pointOfAbs"], Points);
    EXPECT_EQ(channels[1]["min"], 1.5);
    EXPECT_TRUE(channels[2]["mean"].is_null() && channels[3]["mean"].is_null() && !document.contains("hint"));
    EXPECT_EQ(dax_.Json({"stats", "--calc", typed_, "--chan", "1,3"})["channels"][0], channels[0]);

    // A copy stores what it has seen.
    ASSERT_EQ(dax_.Run({"copy", typed_, folder_.Name("copy.z4t")}).status, 0);
    EXPECT_EQ(dax_.Json({"stats", folder_.Name("copy.z4t")})["channels"], channels);
}

TEST_F(DaxStorage, ASignalCancelsTheCalculation)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests());
    const std::string slow = folder_.Write("slow.sta", "STAND points=100000 buffer=16 overlap=300 rate=100");
    const pid_t process = dax_.Start({"stats", "--calc", slow});
    const auto catchesInterrupts = [&] {
        const std::string status = TestReadFile("/proc/" + std::to_string(process) + "/status");
        const std::size_t at = status.find("SigCgt:");
        return at != std::string::npos && (std::stoull(status.substr(at + 7), nullptr, 16) & (1U << (SIGINT - 1))) != 0;
    };
    for (int wait = 0; wait < 1000 && !catchesInterrupts(); ++wait)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    kill(process, SIGINT);
    const DaxResult result = dax_.Wait(process);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.find("dax: error -328019: "), 0U) << result.err;
}

TEST_F(DaxStorage, MetaShowsSetsAndItems)
{
    const json sets = dax_.Json({"meta", typed_})["test"];
    const json vehicle = {{"set", "Vehicle"},
                          {"items",
                           {{{"item", "Driver"}, {"type", "string"}, {"value", "Anna"}},
                            {{"item", "Mileage"}, {"type", "int32"}, {"value", nullptr}}}}};
    EXPECT_NE(std::find(sets.begin(), sets.end(), vehicle), sets.end()) << sets;
    const std::vector<std::string> rows = OwnMetaData(typed_);
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const auto& row) { return row.ends_with("  int32   Undefined"); }),
              1);
    const DaxResult none = dax_.Run({"meta", wav_});
    EXPECT_EQ(none.status, 0);
    EXPECT_EQ(Lines(none.out).back(), wav_ + ": no metadata of its own");
}

TEST_F(DaxStorage, CheckFindsWhatIsWrong)
{
    EXPECT_EQ(dax_.Run({"check", typed_}).out, typed_ + ": sound\n");
    std::string bytes = TestReadFile(typed_);
    const float value = 1000.5F;
    bytes.at(bytes.find(std::string(reinterpret_cast<const char*>(&value), sizeof value))) = 1;
    const std::string damaged = folder_.Write("damaged.z4t", bytes);
    const DaxResult result = dax_.Run({"check", "--json", damaged});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.Json()["sound"], false);
    ASSERT_EQ(result.Json()["findings"].size(), 1U) << result.out;
    const std::string finding = result.Json()["findings"][0];
    EXPECT_EQ(dax_.Run({"check", damaged}).out, damaged + ": " + finding + "\n");
    for (const std::string& foreign : {wav_, folder_.Name("none.z4t")})
        dax_.ExpectFailure({"check", foreign}, -66050);
}

}  // namespace
