// What reading the values of a Famos recording costs beside reading its bytes.

#include "BenchFolder.h"
#include "BenchRatios.h"
#include "support/FamosBuilder.h"

#include "daxlib/daxlib.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <memory>

namespace {

constexpr int Channels = 8;
constexpr std::int64_t SamplesSize = 200'000'000;

/// How the values of a recording lie. 16-bit numbers are given as doubles with factor and offset, floats as they are.
struct Placing
{
    const char* name;
    int format;
    int bytes;
    bool isInterleaved;
};
constexpr Placing Placings[] = {
    {"FloatsTogether", 7, 4, false},
    {"ShortsTogether", 4, 2, false},
    {"FloatsInterleaved", 7, 4, true},
    {"ShortsInterleaved", 4, 2, true},
};
std::string VVRecording;  // without ending: one file a placing

std::string RecordingName(const Placing& placing)
{
    return VVRecording + placing.name + ".raw";
}

void WriteRecording(const Placing& placing)
{
    const std::string each = std::to_string(SamplesSize / Channels);
    const std::string size = placing.isInterleaved ? std::to_string(SamplesSize) : each;
    std::ofstream file(RecordingName(placing), std::ios::binary);
    file << FamosStart() << FamosKey("CG", "8,1,1") << FamosKey("CD", "0.001,1,1,s,0,0,0");
    for (int channel = 0; channel < Channels; ++channel) {
        const std::string start = placing.isInterleaved ? "0" : std::to_string(SamplesSize / Channels * channel);
        const std::string packet = placing.isInterleaved ? std::to_string(channel * placing.bytes) + ",1," +
                                                               std::to_string((Channels - 1) * placing.bytes)
                                                         : "0,1,0";
        file << FamosKey("CC", "1,1")
             << FamosKey("CP",
                         "1," + std::to_string(placing.bytes) + "," + std::to_string(placing.format) + ",16,0," + packet)
             << FamosKey("Cb", "1,0,1,1," + start + "," + size + ",0," + size + ",1,0,0,")
             << FamosKey("CR", placing.format == 4 ? "1,0.1,2,1,1,V" : "0,1,0,1,1,V") << FamosKey("CN", "0,0,0,1,a,0,");
    }
    file << "|CS,1," << SamplesSize + 2 << ",1,";
    const std::string piece(1 << 20, '\x11');
    for (std::int64_t rest = SamplesSize; rest > 0; rest -= static_cast<std::int64_t>(piece.size()))
        file.write(piece.data(), static_cast<std::streamsize>(std::min<std::int64_t>(rest, 1 << 20)));
    file << ';';
}

// What any reader of the file has to do: its bytes, in pieces that stay in the processor's cache.
void BM_Pread(benchmark::State& state)
{
    constexpr std::size_t pieceSize = 128 * 1024;
    const auto piece = std::make_unique<unsigned char[]>(pieceSize);
    for (auto _ : state) {
        const int file = open(RecordingName(Placings[0]).c_str(), O_RDONLY | O_CLOEXEC);
        for (off_t at = 0; pread(file, piece.get(), pieceSize, at) > 0;)
            at += pieceSize;
        close(file);
        benchmark::DoNotOptimize(piece[0]);
    }
    state.SetBytesProcessed(state.iterations() * SamplesSize);
}
BENCHMARK(BM_Pread)->Unit(benchmark::kMillisecond);

VDFileIdHandle RecordingId(const Placing& placing)
{
    VDFileIdHandle id(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    FIDSetFilename(id.Get(), VTNameFormFile, RecordingName(placing).c_str(), "");
    FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out());
    return id;
}

template <class Value, class Get>
bool ReadRecording(VDTsAcc* acc, bool inTurn, Get get)
{
    long block = 0;
    std::int64_t points = 0;
    if (!TSAccGetBufferSize(acc, &block) || !TSAccGetNumPoints(acc, 0, &points) || points < 1'000'000)
        return false;
    std::vector<Value> values(static_cast<std::size_t>(block));
    const auto readBlock = [&](int channel, std::int64_t first) {
        std::int64_t got = 0;
        return get(acc, channel, first, block, &got, values.data()) != 0;
    };
    const int outer = inTurn ? 1 : Channels;
    bool good = true;
    for (int channel = 0; channel < outer; ++channel)
        for (std::int64_t first = 1; good && first <= points; first += block)
            for (int inner = 0; good && inner < Channels / outer; ++inner)
                good = readBlock(channel + inner, first);
    return good;
}

void BM_Read(benchmark::State& state, const Placing& placing)
{
    const VDFileIdHandle id = RecordingId(placing);
    for (auto _ : state) {
        const VDTsAccHandle acc(TSAccCreate());
        if (!TSAccSetId(acc.Get(), id.Get(), 0) || !TSAccOpen(acc.Get(), 0) ||
            !(placing.format == 4 ? ReadRecording<double>(acc.Get(), placing.isInterleaved, TSAccGetDataDoublePrecision)
                                  : ReadRecording<float>(acc.Get(), placing.isInterleaved, TSAccGetData)))
            state.SkipWithError("not read");
    }
    state.SetBytesProcessed(state.iterations() * SamplesSize);
}
BENCHMARK_CAPTURE(BM_Read, FloatsTogether, Placings[0])->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, ShortsTogether, Placings[1])->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, FloatsInterleaved, Placings[2])->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Read, ShortsInterleaved, Placings[3])->Unit(benchmark::kMillisecond);

// Of a recording of 200 MB the header alone.
void BM_Open(benchmark::State& state)
{
    const VDFileIdHandle id = RecordingId(Placings[3]);
    for (auto _ : state) {
        const VDTsAccHandle acc(TSAccCreate());
        if (!TSAccSetId(acc.Get(), id.Get(), 0) || !TSAccOpen(acc.Get(), 0))
            state.SkipWithError("not opened");
    }
}
BENCHMARK(BM_Open)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVRecording = folder.Name("recording");
    for (const Placing& placing : Placings)
        WriteRecording(placing);
    return RunBenchRatios(argc, argv,
                          {{"BM_Read/FloatsTogether", "BM_Pread", 0.70, true},
                           {"BM_Read/ShortsTogether", "BM_Pread", 0.70, true},
                           {"BM_Read/FloatsInterleaved", "BM_Pread", 0.40, true},
                           {"BM_Read/ShortsInterleaved", "BM_Pread", 0.40, true},
                           {"BM_Open", "BM_Pread", 0.02}});
}
