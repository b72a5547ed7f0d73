// What reading a CAN database and decoding its signals cost.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/VDCanDefinition.h"
#include "daxlib/VDCanFrameDecoder.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <vector>

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

/// The bytes of the file, each looked at once: lines and numbers are counted, and nothing is kept.
void BM_BareScan(benchmark::State& state)
{
    std::string text(std::filesystem::file_size(VVDatabase), '\0');
    for (auto _ : state) {
        std::ifstream(VVDatabase, std::ios::binary).read(text.data(), static_cast<std::streamsize>(text.size()));
        std::int64_t sum = 0;
        std::int64_t number = 0;
        for (const char byte : text) {
            const bool isDigit = byte >= '0' && byte <= '9';
            number = isDigit ? number * 10 + (byte - '0') : 0;
            sum += number + (byte == '\n');
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(BM_BareScan)->Unit(benchmark::kMicrosecond);

constexpr int Signals = 8;

/// Signals in both byte orders, with and without a sign.
VDCanFrameDefinition MakeFrame(int frameBytes)
{
    VDCanFrameDefinition frame;
    frame.Init(1, "Frame", frameBytes, "");
    for (int index = 0; index < Signals; ++index) {
        const bool upward = index % 2 == 0;
        const int byte = index * (frameBytes - 1) / Signals;
        auto* const chan = new VDCanChanDefinition;
        chan->Init("Signal", 0, 0, 0, upward ? byte * 8 : byte * 8 + 7, 6 + index % 3, upward, index % 4 < 2, 0.25, -10, 0,
                   100, "V", VDStringArray(), frameBytes);
        frame.AppendChan(chan);
    }
    return frame;
}

/// Frames of a recording, side by side.
struct Recording
{
    std::vector<unsigned char> bytes;

    explicit Recording(int frameBytes, std::int64_t count) : bytes(static_cast<std::size_t>(frameBytes * count))
    {
        unsigned random = 1;
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>((random = random * 1664525u + 1013904223u) >> 24);
    }
};

/// What somebody writes by hand who has looked up the signals of a frame of 8 bytes.
struct BareSignal
{
    bool isReversed;
    unsigned char shift;
    std::uint64_t mask;
    std::uint64_t signBit;
    double factor;
    double offset;

    std::int64_t Get(const unsigned char* frame) const
    {
        std::uint64_t word;
        std::memcpy(&word, frame, sizeof word);
        word = (isReversed ? __builtin_bswap64(word) : word) >> shift & mask;
        return static_cast<std::int64_t>((word ^ signBit) - signBit);
    }
};

std::vector<BareSignal> MakeBareSignals()
{
    std::vector<BareSignal> signals;
    const VDCanFrameDefinition frame = MakeFrame(8);
    for (int index = 0; index < Signals; ++index) {
        const VDCanChanDefinition& chan = *frame.GetChanDefinition(index);
        const int start = chan.GetStartBit();
        const bool reversed = chan.GetBigEndian() == 0;
        const int shift = reversed ? (7 - start / 8) * 8 + start % 8 - chan.GetNumBits() + 1 : start;
        const std::uint64_t top = std::uint64_t{1} << (chan.GetNumBits() - 1);
        signals.push_back({reversed, static_cast<unsigned char>(shift), top * 2 - 1, chan.GetIsSigned() ? top : 0,
                           chan.GetFactor(), chan.GetOffset()});
    }
    return signals;
}

/// Keeps what `value` gives for each signal of one frame after the other.
template <class Signal, class Value>
void KeepSignals(benchmark::State& state, const std::vector<Signal>& signals, Value value)
{
    const Recording recording(8, 256);
    std::size_t next = 0;
    decltype(value(signals[0], recording.bytes.data())) values[Signals];
    for (auto _ : state) {
        const unsigned char* const frame = &recording.bytes[next++ % 256 * 8];
        auto* at = values;
        for (const Signal& signal : signals)
            *at++ = value(signal, frame);
        benchmark::DoNotOptimize(values);
    }
    state.SetItemsProcessed(state.iterations() * Signals);
}

std::vector<VDCanChanDefinition> Chans(int frameBytes)
{
    const VDCanFrameDefinition frame = MakeFrame(frameBytes);
    std::vector<VDCanChanDefinition> chans;
    for (int index = 0; index < Signals; ++index)
        chans.push_back(*frame.GetChanDefinition(index));
    return chans;
}

std::int64_t Raw(const VDCanChanDefinition& chan, const unsigned char* frame)
{
    std::int64_t value = 0;
    chan.GetValueFromFrame(frame, &value);
    return value;
}

double Physical(const VDCanChanDefinition& chan, const unsigned char* frame)
{
    return chan.GetPhysical(Raw(chan, frame));
}

double BarePhysical(const BareSignal& signal, const unsigned char* frame)
{
    return static_cast<double>(signal.Get(frame)) * signal.factor + signal.offset;
}

void BM_BareRaw(benchmark::State& state)
{
    KeepSignals(state, MakeBareSignals(),
                [](const BareSignal& signal, const unsigned char* frame) { return signal.Get(frame); });
}
BENCHMARK(BM_BareRaw);

void BM_BarePhysical(benchmark::State& state)
{
    KeepSignals(state, MakeBareSignals(), BarePhysical);
}
BENCHMARK(BM_BarePhysical);

void BM_DecodeRaw(benchmark::State& state)
{
    KeepSignals(state, Chans(8), Raw);
}
BENCHMARK(BM_DecodeRaw);

void BM_DecodePhysical(benchmark::State& state)
{
    KeepSignals(state, Chans(8), Physical);
}
BENCHMARK(BM_DecodePhysical);

void BM_DecodeShortFrame(benchmark::State& state)
{
    KeepSignals(state, Chans(5), Raw);
}
BENCHMARK(BM_DecodeShortFrame);

void BM_DecodeTinyFrame(benchmark::State& state)
{
    KeepSignals(state, Chans(3), Raw);
}
BENCHMARK(BM_DecodeTinyFrame);

void BM_WholeFrame(benchmark::State& state)
{
    const VDCanFrameDecoder decoder(MakeFrame(8));
    const Recording recording(8, 256);
    std::size_t next = 0;
    double physical[Signals];
    for (auto _ : state) {
        decoder.DecodeFrame(&recording.bytes[next++ % 256 * 8], nullptr, physical, nullptr);
        benchmark::DoNotOptimize(physical);
    }
    state.SetItemsProcessed(state.iterations() * Signals);
}
BENCHMARK(BM_WholeFrame);

constexpr std::int64_t Near = 100'000;   // frames that stay in the processor's cache with their column
constexpr std::int64_t Far = 1'000'000;  // frames that don't: the memory has the last word

// The signals take turns, so that none is a constant of the loop.
template <class Decode>
void Columns(benchmark::State& state, int frameBytes, std::int64_t count, Decode decode)
{
    const Recording recording(frameBytes, count);
    std::vector<double> column(static_cast<std::size_t>(count));
    std::size_t signal = 0;
    for (auto _ : state) {
        decode(signal, recording.bytes.data(), column);
        signal = (signal + 1) % Signals;
        benchmark::DoNotOptimize(column.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * count);
}

template <class Signal, class Value>
void ByValue(benchmark::State& state, int frameBytes, std::int64_t count, const std::vector<Signal>& signals, Value get)
{
    Columns(state, frameBytes, count, [&](std::size_t signal, const unsigned char* frame, std::vector<double>& column) {
        for (double& value : column) {
            value = get(signals[signal], frame);
            frame += frameBytes;
        }
    });
}

void ByColumn(benchmark::State& state, int frameBytes, std::int64_t count)
{
    const VDCanFrameDecoder decoder(MakeFrame(frameBytes));
    Columns(state, frameBytes, count, [&](std::size_t signal, const unsigned char* frames, std::vector<double>& column) {
        decoder.DecodePhysical(static_cast<int>(signal), {frames, frameBytes, count}, column.data(), nullptr);
    });
}

void AddColumnRows()
{
    const auto add = [](const char* name, auto row) {
        benchmark::RegisterBenchmark(name, row)->Unit(benchmark::kMicrosecond);
    };
    using State = benchmark::State;
    add("BareNear", [](State& state) { ByValue(state, 8, Near, MakeBareSignals(), BarePhysical); });
    add("SinglesNear", [](State& state) { ByValue(state, 8, Near, Chans(8), Physical); });
    add("ColumnNear", [](State& state) { ByColumn(state, 8, Near); });
    add("ShortColumnNear", [](State& state) { ByColumn(state, 5, Near); });
    add("SinglesFar", [](State& state) { ByValue(state, 8, Far, Chans(8), Physical); });
    add("ColumnFar", [](State& state) { ByColumn(state, 8, Far); });
    add("LongSinglesFar", [](State& state) { ByValue(state, 64, Far, Chans(64), Physical); });
    add("LongColumnFar", [](State& state) { ByColumn(state, 64, Far); });
}

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVDatabase = folder.Name("a.dbc");
    std::ofstream(VVDatabase, std::ios::binary) << MakeDatabase();
    AddColumnRows();
    return RunBenchRatios(argc, argv,
                          {{"BM_ReadDatabase", "BM_BareScan", 0.1, true},
                           {"BM_DecodeRaw", "BM_BareRaw", 0.55, true},
                           {"BM_DecodePhysical", "BM_BarePhysical", 0.45, true},
                           {"BM_DecodeShortFrame", "BM_DecodeRaw", 0.6, true},
                           {"BM_DecodeTinyFrame", "BM_DecodeRaw", 0.6, true},
                           {"BM_WholeFrame", "BM_DecodePhysical", 1.2, true},
                           {"ColumnNear", "SinglesNear", 4, true},
                           {"ColumnNear", "BareNear", 2, true},
                           {"ShortColumnNear", "SinglesNear", 4, true},
                           {"ColumnFar", "SinglesFar", 2, true},
                           {"LongColumnFar", "LongSinglesFar", 0.95, true}});
}
