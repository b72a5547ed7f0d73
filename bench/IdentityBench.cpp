// What naming a file and finding out what it is costs beside the bare system calls.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Files = 20'000;
std::vector<std::string> VVFilenames;

void BM_CreateAndName(benchmark::State& state)
{
    const std::string& name = VVFilenames.front();
    for (auto _ : state) {
        VDFileId* id = FIDCreate();
        FIDSetFilename(id, VTNameFormFile, name.c_str(), "");
        FIDRelease(id);
    }
}
BENCHMARK(BM_CreateAndName);

/// The least that a named file takes: an object with the name's three parts.
void BM_BareName(benchmark::State& state)
{
    struct Name
    {
        std::string folder;
        std::string stem;
        std::string extension;
    };
    const std::string& name = VVFilenames.front();
    for (auto _ : state) {
        const std::size_t slash = name.rfind('/');
        const std::size_t point = name.rfind('.');
        auto parts = std::make_unique<Name>();
        parts->folder = name.substr(0, slash);
        parts->stem = name.substr(slash + 1, point - slash - 1);
        parts->extension = name.substr(point + 1);
        benchmark::DoNotOptimize(parts.get());
    }
}
BENCHMARK(BM_BareName);

void BM_OpenReadClose(benchmark::State& state)
{
    char header[512];
    for (auto _ : state)
        for (const std::string& name : VVFilenames) {
            const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
            if (file < 0 || read(file, header, sizeof header) < 0)
                state.SkipWithError("read failed");
            close(file);
        }
}
BENCHMARK(BM_OpenReadClose)->Unit(benchmark::kMillisecond);

void BM_IdentifyFile(benchmark::State& state)
{
    const VDFileInfoHandle info(FINFCreate());
    for (auto _ : state)
        for (const std::string& name : VVFilenames) {
            const VDFileIdHandle id(FIDCreate());
            FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
            VDFileIdArrayHandle tests;
            if (!FINFIdentifyFile(info.Get(), id.Get(), 0, tests.Out()))
                state.SkipWithError("not identified");
        }
}
BENCHMARK(BM_IdentifyFile)->Unit(benchmark::kMillisecond);

/// A WAV file with one channel of a few points.
std::string WavContent()
{
    std::string content("RIFF\x34\x00\x00\x00WAVEfmt \x10\x00\x00\x00\x01\x00\x01\x00\x44\xAC\x00\x00\x88\x58\x01\x00"
                        "\x02\x00\x10\x00"
                        "data\x10\x00\x00\x00",
                        44);
    content.append(16, '\1');
    return content;
}

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    const std::string content = WavContent();
    for (int number = 0; number < Files; ++number) {
        VVFilenames.push_back(folder.Name("run" + std::to_string(number) + ".wav"));
        std::ofstream(VVFilenames.back(), std::ios::binary) << content;
    }
    return RunBenchRatios(argc, argv,
                          {{"BM_IdentifyFile", "BM_OpenReadClose", 2.0}, {"BM_CreateAndName", "BM_BareName", 40}});
}
