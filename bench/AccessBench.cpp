// What the access layer adds to a plug-in that does nothing but copy memory.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

namespace {

constexpr std::int64_t BlockPoints = 16'384;
constexpr std::int64_t Blocks = 64;
constexpr std::int64_t Points = BlockPoints * Blocks;

std::string VVFilename;

void AddPlugins()
{
    FINFAddPlugin("Stand", "StandFF", DAX_STANDIN, "Stand-in format");
    TSAccAddPlugin("STAND-TS", "StandTS", DAX_STANDIN, "Stand-in access");
}

VDTsAccHandle Open(benchmark::State& state)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFilename(id.Get(), VTNameFormFile, VVFilename.c_str(), "");
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    VDTsAccHandle acc(TSAccCreate());
    if (!FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) || !TSAccSetId(acc.Get(), id.Get(), 0) ||
        !TSAccOpen(acc.Get(), VTTsAccOpenRead))
        state.SkipWithError(VFErrorGetText(VFGetBaseLibError()));
    return acc;
}

void BM_MemcpyBlocks(benchmark::State& state)
{
    const std::vector<float> source(Points, 1.0F);
    std::vector<float> target(BlockPoints);
    for (auto _ : state)
        for (std::int64_t block = 0; block < Blocks; ++block) {
            std::memcpy(target.data(), source.data() + block * BlockPoints, BlockPoints * sizeof(float));
            benchmark::DoNotOptimize(target.data());
            benchmark::ClobberMemory();
        }
}
BENCHMARK(BM_MemcpyBlocks);

void BM_TSAccGetData(benchmark::State& state)
{
    const VDTsAccHandle acc = Open(state);
    std::vector<float> target(BlockPoints);
    for (auto _ : state)
        for (std::int64_t block = 0; block < Blocks; ++block) {
            if (!TSAccGetData(acc.Get(), 0, block * BlockPoints + 1, BlockPoints, nullptr, target.data()))
                state.SkipWithError("read failed");
            benchmark::DoNotOptimize(target.data());
        }
}
BENCHMARK(BM_TSAccGetData);

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVFilename = folder.Name("bench.sta");
    std::ofstream(VVFilename) << "STAND channels=1 points=" << Points << "\n";
    AddPlugins();
    return RunBenchRatios(argc, argv, {{"BM_TSAccGetData", "BM_MemcpyBlocks", 1.05}});
}
