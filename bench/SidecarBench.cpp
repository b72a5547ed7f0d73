// What it costs to open a metadata sidecar and look up one item of one channel, beside reading the same storage file and
// beside reading its bytes; and how that grows.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/VFDaxMetaDataExpression.h"
#include "vdstore/LQDataManager.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>
#include <iterator>

namespace {

constexpr int ItemsPerChannel = 20;

const std::string& SidecarOf(int channels)
{
    static const BenchFolder folder;
    static std::map<int, std::string> names;
    std::string& name = names[channels];
    if (!name.empty())
        return name;
    name = folder.Name("run" + std::to_string(channels) + ".vmd");
    VDVmdFileHandle sidecar(VMDCreate());
    LQChannelMapper* mapper = nullptr;
    VMDAdopt(sidecar.Get(), name.c_str(), false);
    VMDGetMetaData(sidecar.Get(), &mapper);
    for (int channel = 0; channel < channels; ++channel) {
        mapper->SetChannelNumber(channel + 1, mapper->Append());
        Z4PropertySet& set = *mapper->AdoptMetaDataSet("Sensor", nullptr, channel);
        for (int item = 0; item < ItemsPerChannel; ++item)
            set.AddDouble(("Item" + std::to_string(item)).c_str(), channel / 7.0 + item);
    }
    VMDRelease(sidecar.Detach());
    return name;
}

bool FindOneItem(const std::string& name, int channels)
{
    const VDVmdFileHandle sidecar(VMDCreate());
    LQChannelMapper* mapper = nullptr;
    Z4Property* item = nullptr;
    const VDString keyword = VDString("chan") + std::to_string(channels / 2).c_str() + ".Sensor.Item7";
    return VMDAdopt(sidecar.Get(), name.c_str(), true) && VMDGetMetaData(sidecar.Get(), &mapper) &&
           VFDaxGetMetaDataItem(mapper, keyword, -1, &item, 0, nullptr, nullptr) && item != nullptr;
}

bool ReadStorage(const std::string& name, int channels)
{
    LQDataManager& data = *LQGetDataManager();
    Z4File* const file = data.GetFileManager()->OpenFile(name.c_str(), false);
    LQMetaDataHost* const host = file != nullptr ? data.AdoptMetaDataHost(file->GetRoot(), "MetaData", nullptr) : nullptr;
    const bool whole = host != nullptr && host->GetMapper()->GetChannelCount() == channels;
    return host != nullptr && data.Close(host, false) && data.GetFileManager()->CloseFile(file, false) && whole;
}

constexpr int Channels = 10'000;

void BM_OneItemOfASidecar(benchmark::State& state)
{
    const std::string& name = SidecarOf(Channels);
    for (auto _ : state)
        if (!FindOneItem(name, Channels))
            state.SkipWithError("the item was not found");
}
BENCHMARK(BM_OneItemOfASidecar)->Unit(benchmark::kMillisecond);

void BM_ReadTheStorageFile(benchmark::State& state)
{
    const std::string& name = SidecarOf(Channels);
    for (auto _ : state)
        if (!ReadStorage(name, Channels))
            state.SkipWithError("the file was not read");
}
BENCHMARK(BM_ReadTheStorageFile)->Unit(benchmark::kMillisecond);

void BM_ReadItsBytes(benchmark::State& state)
{
    const std::string& name = SidecarOf(Channels);
    for (auto _ : state) {
        std::ifstream file(name, std::ios::binary);
        const std::string bytes{std::istreambuf_iterator<char>(file), {}};
        benchmark::DoNotOptimize(bytes.data());
    }
}
BENCHMARK(BM_ReadItsBytes)->Unit(benchmark::kMillisecond);

void PrintGrowth()
{
    std::printf("\n%12s %22s\n", "channels", "one item, us a channel");
    for (const int channels : {1'000, 10'000, 100'000}) {
        const std::string& name = SidecarOf(channels);
        const auto start = std::chrono::steady_clock::now();
        const bool found = FindOneItem(name, channels);
        const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
        std::printf("%12d %22.2f%s\n", channels, time.count() / channels, found ? "" : "  failed");
    }
}

}  // namespace

int main(int argc, char** argv)
{
    PrintGrowth();
    return RunBenchRatios(argc, argv, {{"BM_OneItemOfASidecar", "BM_ReadTheStorageFile", 1.3}});
}
