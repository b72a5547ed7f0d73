// What opening Famos files costs beside going through their bytes without a look at them.

#include "BenchFolder.h"
#include "BenchRatios.h"
#include "bus/VDFamosUtil.h"
#include "support/FamosBuilder.h"

#include "vdbase/VDPreferenceSystem.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numeric>

namespace {

constexpr int Groups = 20'000;
constexpr std::size_t GroupSize = 10'000;
constexpr std::int64_t StreamSize = 500'000'000;
constexpr unsigned DistinctIds = 64;
std::string VVHeaderFile;
std::string VVStreamFile;

void WriteHeaderFile()
{
    std::ofstream file(VVHeaderFile, std::ios::binary);
    file << FamosStart();
    for (int group = 0; group < Groups; ++group)
        file << FamosGroup(7, "channel " + std::to_string(group)) << FamosSamples(std::string(GroupSize, '|'));
}

void WriteStreamFile()
{
    std::ofstream file(VVStreamFile, std::ios::binary);
    std::vector<std::string> records;
    // 127 blocks hold a whole number of such records.
    unsigned random = 1;
    for (int index = 0; index < 127 * 508 / 20 * 5; ++index) {
        random = random * 1664525u + 1013904223u;
        records.push_back(FamosRecord((random >> 24) % DistinctIds * 29, "12345678", static_cast<unsigned>(index)));
    }
    records.resize(127 * 508 / 4);
    const std::string piece = FamosBlocks(records);
    const std::int64_t pieces = StreamSize / static_cast<std::int64_t>(piece.size());
    file << FamosStampedStart() << "|CS,1," << pieces * static_cast<std::int64_t>(piece.size()) + 2 << ",1,";
    for (std::int64_t index = 0; index < pieces; ++index)
        file << piece;
    file << ';';
}

// The bare hop over the keys: their lengths alone.
void BM_BareHop(benchmark::State& state)
{
    for (auto _ : state) {
        const int file = open(VVHeaderFile.c_str(), O_RDONLY | O_CLOEXEC);
        const off_t size = lseek(file, 0, SEEK_END);
        char buffer[512];
        for (off_t at = static_cast<off_t>(FamosStart().size()); at < size;) {
            const ssize_t got = pread(file, buffer, sizeof buffer, at);
            const std::string_view text(buffer, static_cast<std::size_t>(got));
            const std::size_t key = text.find("|CS,1,");
            if (key == std::string_view::npos)
                break;
            char* end = nullptr;
            const long length = std::strtol(buffer + key + 6, &end, 10);
            at += end + 1 - buffer + length + 1;
        }
        close(file);
    }
}
BENCHMARK(BM_BareHop)->Unit(benchmark::kMillisecond);

void BM_OpenHeader(benchmark::State& state)
{
    for (auto _ : state) {
        VDFamosUtil famos;
        unsigned long count = 0;
        if (!famos.Open(VDString(VVHeaderFile), "") || !famos.GetChannelCount(&count) || count != Groups)
            state.SkipWithError("not opened");
    }
}
BENCHMARK(BM_OpenHeader)->Unit(benchmark::kMillisecond);

void BM_ReadAndSum(benchmark::State& state)
{
    constexpr std::size_t pieceSize = 1 << 20;
    const auto piece = std::make_unique<unsigned char[]>(pieceSize);
    for (auto _ : state) {
        const int file = open(VVStreamFile.c_str(), O_RDONLY | O_CLOEXEC);
        std::uint64_t sum = 0;
        for (ssize_t got = 0; (got = read(file, piece.get(), pieceSize)) > 0;)
            sum = std::accumulate(piece.get(), piece.get() + got, sum);
        close(file);
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(VVStreamFile)));
}
BENCHMARK(BM_ReadAndSum)->Unit(benchmark::kMillisecond);

void Scan(benchmark::State& state, bool fastLookup)
{
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/FastFrameIdLookup", fastLookup);
    for (auto _ : state) {
        VDFamosUtil famos;
        unsigned long count = 0;
        if (!famos.Open(VDString(VVStreamFile), "") || !famos.GetChannelCount(&count) || count != DistinctIds * 8)
            state.SkipWithError("not scanned");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(VVStreamFile)));
}

void BM_ScanFastLookup(benchmark::State& state)
{
    Scan(state, true);
}
BENCHMARK(BM_ScanFastLookup)->Unit(benchmark::kMillisecond);

void BM_ScanSorted(benchmark::State& state)
{
    Scan(state, false);
}
BENCHMARK(BM_ScanSorted)->Unit(benchmark::kMillisecond);

std::string ManyComponents(int count)
{
    std::string content = FamosStart() + FamosKey("CG", "1,1,1");
    for (int index = 0; index < count; ++index)
        content += FamosKey("CC", "1,1");
    return content;
}

std::string ManyGroups(int count)
{
    std::string content = FamosStart();
    for (int index = 0; index < count; ++index)
        content += FamosGroup(7, "channel");
    return content;
}

/// A damaged stream, in which no id comes twice.
std::string ManyIds(int count, std::size_t frameBytes)
{
    std::vector<std::string> records;
    for (int index = 0; index < count; ++index)
        records.push_back(FamosRecord(static_cast<unsigned>(index) * 2654435761u, std::string(frameBytes, 'x')));
    return FamosStampedStart() + FamosSamples(FamosBlocks(records));
}

/// What a file of many small things takes: memory that stays, and time of the processor, both by the byte of the file.
/// Neither must grow with the file.
void PrintGrowth(const BenchFolder& folder)
{
    const struct
    {
        const char* what;
        std::string (*make)(int count);
        double limit;
    } kinds[] = {
        {"components", ManyComponents, 10},
        {"groups", ManyGroups, 5},
        {"frame ids of 1 byte", [](int count) { return ManyIds(count, 1); }, 8},
        {"frame ids of 500 bytes", [](int count) { return ManyIds(count, 500); }, 1},
    };
    std::printf("\n%-24s %10s %12s %16s %16s\n", "many", "number", "file, kB", "memory / file", "ns a byte");
    for (const auto& kind : kinds)
        for (const int count : {1'000, 10'000, 100'000}) {
            const std::string name = folder.Name("growth.dat");
            std::ofstream(name, std::ios::binary) << kind.make(count);
            const auto size = static_cast<double>(std::filesystem::file_size(name));
            const std::clock_t start = std::clock();
            const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
            VDFamosUtil famos;
            const bool good = famos.Open(VDString(name), "");
            const double memory = static_cast<double>(mallinfo2().uordblks + mallinfo2().hblkhd - before) / size;
            const double time = static_cast<double>(std::clock() - start) * 1e9 / CLOCKS_PER_SEC / size;
            // Of a small file the tables that every file has are the greater part.
            const char* const verdict = !good ? "failed" : count < 10'000 ? "" : memory <= kind.limit ? "kept" : "NOT KEPT";
            std::printf("%-24s %10d %12.1f %8.2f <= %4.0f %16.2f  %s\n", kind.what, count, size / 1000, memory, kind.limit,
                        time, verdict);
        }
}

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVHeaderFile = folder.Name("header.dat");
    VVStreamFile = folder.Name("stream.dat");
    WriteHeaderFile();
    WriteStreamFile();
    PrintGrowth(folder);
    return RunBenchRatios(argc, argv,
                          {{"BM_OpenHeader", "BM_BareHop", 2.4},
                           {"BM_ScanFastLookup", "BM_ReadAndSum", 0.15, true},
                           {"BM_ScanSorted", "BM_ReadAndSum", 0.10, true}});
}
