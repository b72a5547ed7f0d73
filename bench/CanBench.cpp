// What reading a CAN database and decoding its signals cost.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/VDCanDefinition.h"

#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>

namespace {

constexpr int Frames = 300;
constexpr int SignalsPerFrame = 9;
constexpr std::size_t DatabaseSize = 230'000;
std::string VVDatabase;

/// 300 frames with 2,700 signals, and comments, periods and value names in the proportions of real databases.
std::string MakeDatabase()
{
    std::string text = "VERSION \"\"\n\nBS_:\n\nBU_: Engine Gearbox Brakes Dashboard\n\n";
    std::string tail = "\nCM_ \"Generated\" ;\n";
    for (int frame = 0; frame < Frames; ++frame) {
        const std::string id = std::to_string(256 + frame * 3);
        text += "BO_ " + id + " ControlFrame" + std::to_string(frame) + ": 8 Engine\n";
        for (int signal = 0; signal < SignalsPerFrame; ++signal) {
            const std::string name = "Sig" + std::to_string(frame) + "_" + std::to_string(signal);
            text += " SG_ " + name + " : " + std::to_string(signal * 7) + "|7@1" + (signal % 3 == 0 ? "-" : "+") +
                    " (0.0125,-40) [-40|60.5] \"km/h\" Dashboard\n";
            if (signal == 0)
                tail += "CM_ SG_ " + id + " " + name + " \"What the signal of the frame means\";\n";
        }
        text += "\n";
    }
    for (int frame = 0; text.size() + tail.size() < DatabaseSize; ++frame)
        tail += "VAL_ " + std::to_string(256 + frame % Frames * 3) + " Sig" + std::to_string(frame % Frames) + "_" +
                std::to_string(frame % SignalsPerFrame) + " 0 \"Off\" 1 \"On\" 2 \"Error\" 3 \"Not available\" ;\n";
    return text + tail;
}

void BM_ReadDatabase(benchmark::State& state)
{
    for (auto _ : state) {
        VDCanDefinition database;
        if (!database.ReadDatabase(VVDatabase.c_str()) || database.GetFrameDefinitionCount() != Frames)
            state.SkipWithError("not read");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(VVDatabase)));
}
BENCHMARK(BM_ReadDatabase)->Unit(benchmark::kMicrosecond);

/// Eight signals of an 8-byte frame, in both byte orders and with and without a sign.
class EightSignals
{
public:
    EightSignals()
    {
        for (int index = 0; index < 8; ++index) {
            const bool upward = index % 2 == 0;
            channels_[static_cast<std::size_t>(index)].Init("Signal", 0, 0, 0, upward ? index * 8 : index * 8 + 7,
                                                            6 + index % 3, upward, index % 4 < 2, 0.25, -10, 0, 100, "V",
                                                            VDStringArray(), 8);
        }
    }
    const std::array<VDCanChanDefinition, 8>& Get() const { return channels_; }

private:
    std::array<VDCanChanDefinition, 8> channels_;
};

void BM_DecodeRaw(benchmark::State& state)
{
    const EightSignals signals;
    unsigned char frame[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    for (auto _ : state) {
        ++frame[3];
        std::int64_t sum = 0;
        for (const VDCanChanDefinition& chan : signals.Get()) {
            std::int64_t value = 0;
            chan.GetValueFromFrame(frame, &value);
            sum += value;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 8);
}
BENCHMARK(BM_DecodeRaw);

void BM_DecodePhysical(benchmark::State& state)
{
    const EightSignals signals;
    unsigned char frame[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    for (auto _ : state) {
        ++frame[3];
        double sum = 0;
        for (const VDCanChanDefinition& chan : signals.Get()) {
            std::int64_t value = 0;
            chan.GetValueFromFrame(frame, &value);
            sum += static_cast<double>(value) * chan.GetFactor() + chan.GetOffset();
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * 8);
}
BENCHMARK(BM_DecodePhysical);

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVDatabase = folder.Name("a.dbc");
    std::ofstream(VVDatabase, std::ios::binary) << MakeDatabase();
    // 120 MB/s, 300 and 150 million signals a second.
    return RunBenchRatios(argc, argv, {},
                          {{"BM_ReadDatabase", static_cast<double>(std::filesystem::file_size(VVDatabase)) / 120e6},
                           {"BM_DecodeRaw", 8 / 300e6},
                           {"BM_DecodePhysical", 8 / 150e6}});
}
