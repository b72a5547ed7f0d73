// What calculating statistics costs beside reading the same blocks of a warm storage file.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

constexpr std::int64_t BlockPoints = 16'384;
constexpr int Channels = 4;
constexpr int StorageSubId = 11;

struct BenchFile
{
    std::int64_t points;  ///< of each channel
    int type;
    const char* name;
};
constexpr BenchFile VVFloats = {1024 * BlockPoints, DaxDataType::Float, "floats.z4t"};
constexpr BenchFile VVDoubles = {512 * BlockPoints, DaxDataType::Double, "doubles.z4t"};

std::string VVFolder;

void Check(int result)
{
    if (result)
        return;
    std::fprintf(stderr, "%s\n", VFErrorGetText(VFGetBaseLibError()).c_str());
    std::abort();
}

int Get(VDTsAcc* acc, int channel, std::int64_t first, float* values)
{
    return TSAccGetData(acc, channel, first, BlockPoints, nullptr, values);
}
int Get(VDTsAcc* acc, int channel, std::int64_t first, double* values)
{
    return TSAccGetDataDoublePrecision(acc, channel, first, BlockPoints, nullptr, values);
}
int Put(VDTsAcc* acc, int channel, std::int64_t first, const float* values)
{
    return TSAccPutData(acc, channel, first, BlockPoints, values);
}
int Put(VDTsAcc* acc, int channel, std::int64_t first, const double* values)
{
    return TSAccPutDataDoublePrecision(acc, channel, first, BlockPoints, values);
}

VDTsAccHandle Open(const BenchFile& file, int mode)
{
    const VDFileIdHandle id(FIDCreate());
    Check(FIDSetFilename(id.Get(), VTNameFormFile, (VVFolder + file.name).c_str(), ""));
    Check(FIDSetFileId(id.Get(), DaxStorageFileId, StorageSubId));
    for (int channel = 0, index = 0; channel < Channels; ++channel) {
        Check(FIDAddChannel(id.Get(), channel + 1, &index));
        Check(FIDSetChanType(id.Get(), index, file.type));
    }
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    VDTsAccHandle acc(TSAccCreate());
    Check(TSAccSetId(acc.Get(), id.Get(), mode >= VTTsAccOpenCreate));
    Check(TSAccOpen(acc.Get(), mode));
    return acc;
}

/// Channels in turn, a block each.
template <class Value>
void Write(const BenchFile& file)
{
    static const std::vector<Value> values = [] {
        std::mt19937_64 engine(3);
        std::normal_distribution<Value> noise(Value(1e6), 1);
        std::vector<Value> made(BlockPoints);
        for (Value& value : made)
            value = noise(engine);
        return made;
    }();
    const VDTsAccHandle acc = Open(file, VTTsAccOpenCreate);
    for (std::int64_t first = 1; first < file.points; first += BlockPoints)
        for (int channel = 0; channel < Channels; ++channel)
            Check(Put(acc.Get(), channel, first, values.data()));
    Check(TSAccClose(acc.Get()));
}

template <class Value>
void Read(benchmark::State& state, const BenchFile& file)
{
    const VDTsAccHandle acc = Open(file, VTTsAccOpenRead);
    std::vector<Value> values(BlockPoints);
    for (auto _ : state)
        for (int channel = 0; channel < Channels; ++channel)
            for (std::int64_t first = 1; first < file.points; first += BlockPoints) {
                Check(Get(acc.Get(), channel, first, values.data()));
                benchmark::DoNotOptimize(values.data());
            }
    state.SetItemsProcessed(state.iterations() * Channels * file.points);
}

void Calc(benchmark::State& state, const BenchFile& file)
{
    const VDTsAccHandle acc = Open(file, VTTsAccOpenRead);
    for (auto _ : state)
        Check(TSAccCalcStats(acc.Get(), static_cast<int>(DaxChannel::All)));
    state.SetItemsProcessed(state.iterations() * Channels * file.points);
}

void ReadFloats(benchmark::State& state)
{
    Read<float>(state, VVFloats);
}
BENCHMARK(ReadFloats);

void CalcFloats(benchmark::State& state)
{
    Calc(state, VVFloats);
}
BENCHMARK(CalcFloats);

void ReadDoubles(benchmark::State& state)
{
    Read<double>(state, VVDoubles);
}
BENCHMARK(ReadDoubles);

void CalcDoubles(benchmark::State& state)
{
    Calc(state, VVDoubles);
}
BENCHMARK(CalcDoubles);

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVFolder = folder.Name("");
    Write<float>(VVFloats);
    Write<double>(VVDoubles);
    return RunBenchRatios(argc, argv, {{"CalcFloats", "ReadFloats", 0.5, true}, {"CalcDoubles", "ReadDoubles", 0.5, true}});
}
