// The structured storage beside plain system calls on the same bytes, and beside HDF5 if that was found. Four float channels
// are written in turn, in blocks of 16,384 points, and read from a warm file. DAX_BENCH_MIB sets the size of the data.

#include "BenchRatios.h"

#include "vdbase/VFError.h"
#include "vdstore/LQDataManager.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>
#ifdef DAX_HAVE_HDF5
#include <hdf5.h>
#endif

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int Channels = 4;
constexpr std::int64_t BlockPoints = 16'384;
constexpr std::int64_t BlockBytes = BlockPoints * 4;
constexpr std::int64_t RandomPoints = 1'000;
constexpr int RandomReads = 1'000;

std::string VVFolder;
std::int64_t VVBlocks;  // of each channel

std::string Name(const char* name)
{
    return VVFolder + "/" + name;
}

std::vector<float> MakeBlock()
{
    std::vector<float> block(BlockPoints);
    std::mt19937 random(1);
    for (float& value : block)
        value = static_cast<float>(random()) * 1e-9F;
    return block;
}

std::vector<std::int64_t> RandomPlaces(std::int64_t limit)
{
    std::mt19937_64 random(2);
    std::vector<std::int64_t> places(RandomReads);
    for (std::int64_t& place : places)
        place = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(limit));
    return places;
}

void SetRate(benchmark::State& state, std::int64_t bytes)
{
    state.SetBytesProcessed(state.iterations() * bytes);
}

std::int64_t AllBytes()
{
    return VVBlocks * Channels * BlockBytes;
}

class PlainFile
{
public:
    PlainFile(const char* name, int flags) : handle_(open(Name(name).c_str(), flags, 0644)) {}
    ~PlainFile() { close(handle_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;
    int Get() const { return handle_; }

private:
    int handle_;
};

bool WriteBlocks(const char* name)
{
    const std::vector<float> block = MakeBlock();
    const PlainFile file(name, O_RDWR | O_CREAT | O_TRUNC);
    for (std::int64_t i = 0; i < VVBlocks * Channels; ++i)
        if (write(file.Get(), block.data(), BlockBytes) != BlockBytes)
            return false;
    return true;
}

class TimeSeries
{
public:
    TimeSeries(const char* name, bool create)
    {
        Z4Manager& files = *LQGetDataManager()->GetFileManager();
        file_ = create ? files.CreateFile(Name(name).c_str(), nullptr) : files.OpenFile(Name(name).c_str(), false);
        if (file_ == nullptr)
            return;
        object_ = LQGetDataManager()->AdoptTimeSeries(file_->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
        if (create)
            object_->AdjustChannelCountSinglePrecision(Channels);
    }
    bool Close(bool save)
    {
        const bool good = LQGetDataManager()->Close(object_, save);
        return LQGetDataManager()->GetFileManager()->CloseFile(file_, save) && good;
    }
    LQTimeSeries* operator->() const { return object_; }

private:
    Z4File* file_ = nullptr;
    LQTimeSeries* object_ = nullptr;
};

bool WriteChannels(TimeSeries& series)
{
    const std::vector<float> block = MakeBlock();
    for (std::int64_t i = 0; i < VVBlocks; ++i)
        for (int channel = 0; channel < Channels; ++channel)
            if (!series->SetData(i * BlockPoints, BlockPoints, block.data(), channel))
                return false;
    return true;
}

// All writers write a new file and leave what they wrote to the system: waiting for the disk and removing the file aren't
// timed.

void RemoveUntimed(benchmark::State& state, const char* name)
{
    state.PauseTiming();
    std::filesystem::remove(Name(name));
    state.ResumeTiming();
}

void BM_WritePlain(benchmark::State& state)
{
    for (auto _ : state) {
        if (!WriteBlocks("write.bin"))
            state.SkipWithError("write failed");
        RemoveUntimed(state, "write.bin");
    }
    SetRate(state, AllBytes());
}
BENCHMARK(BM_WritePlain)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_WriteStorage(benchmark::State& state)
{
    for (auto _ : state) {
        TimeSeries series("write.z4t", true);
        if (!WriteChannels(series))
            state.SkipWithError(VFErrorGetText(VFGetBaseLibError()));
        state.PauseTiming();
        series.Close(false);
        state.ResumeTiming();
    }
    SetRate(state, AllBytes());
}
BENCHMARK(BM_WriteStorage)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadPlain(benchmark::State& state)
{
    const PlainFile file("plain.bin", O_RDONLY);
    std::vector<float> block(BlockPoints);
    for (auto _ : state)
        for (std::int64_t i = 0; i < VVBlocks * Channels; ++i)
            if (pread(file.Get(), block.data(), BlockBytes, i * BlockBytes) != BlockBytes)
                state.SkipWithError("read failed");
    SetRate(state, AllBytes());
}
BENCHMARK(BM_ReadPlain)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadStorage(benchmark::State& state)
{
    TimeSeries series("read.z4t", false);
    std::vector<float> block(BlockPoints);
    std::int64_t count = 0;
    for (auto _ : state)
        for (int channel = 0; channel < Channels; ++channel)
            for (std::int64_t i = 0; i < VVBlocks; ++i)
                if (!series->GetData(i * BlockPoints, BlockPoints, &count, block.data(), channel) || count != BlockPoints)
                    state.SkipWithError("read failed");
    SetRate(state, AllBytes());
    series.Close(false);
}
BENCHMARK(BM_ReadStorage)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_RandomPlain(benchmark::State& state)
{
    const PlainFile file("plain.bin", O_RDONLY);
    const auto places = RandomPlaces(AllBytes() / 4 - RandomPoints);
    std::vector<float> points(RandomPoints);
    for (auto _ : state)
        for (const std::int64_t place : places)
            if (pread(file.Get(), points.data(), RandomPoints * 4, place * 4) != RandomPoints * 4)
                state.SkipWithError("read failed");
}
BENCHMARK(BM_RandomPlain)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_RandomStorage(benchmark::State& state)
{
    TimeSeries series("read.z4t", false);
    const auto places = RandomPlaces(VVBlocks * BlockPoints - RandomPoints);
    std::vector<float> points(RandomPoints);
    std::int64_t count = 0;
    int channel = 0;
    for (auto _ : state)
        for (const std::int64_t place : places) {
            channel = (channel + 1) % Channels;
            if (!series->GetData(place, RandomPoints, &count, points.data(), channel) || count != RandomPoints)
                state.SkipWithError("read failed");
        }
    series.Close(false);
}
BENCHMARK(BM_RandomStorage)->Unit(benchmark::kMicrosecond)->UseRealTime();

// Often enough that the system has spread the threads over the processors.
constexpr int ThreadRounds = 8;

/// Reads all four channels at the same time, a thread for each.
template <class ReadChannel>
void ReadInThreads(benchmark::State& state, ReadChannel readChannel)
{
    std::atomic<bool> good = true;
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int channel = 0; channel < Channels; ++channel)
            threads.emplace_back([&good, &readChannel, channel] { good = good && readChannel(channel); });
        for (std::thread& thread : threads)
            thread.join();
    }
    if (!good)
        state.SkipWithError("read failed");
    SetRate(state, AllBytes() * ThreadRounds);
}

void BM_ThreadsPlain(benchmark::State& state)
{
    ReadInThreads(state, [](int channel) {
        const PlainFile file("plain.bin", O_RDONLY);
        std::vector<float> block(BlockPoints);
        bool good = true;
        for (std::int64_t round = 0; round < ThreadRounds; ++round)
            for (std::int64_t i = channel * VVBlocks; i < (channel + 1) * VVBlocks; ++i)
                good = good && pread(file.Get(), block.data(), BlockBytes, i * BlockBytes) == BlockBytes;
        return good;
    });
}
BENCHMARK(BM_ThreadsPlain)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ThreadsStorage(benchmark::State& state)
{
    ReadInThreads(state, [](int channel) {
        TimeSeries series("read.z4t", false);
        std::vector<float> block(BlockPoints);
        bool good = true;
        for (std::int64_t round = 0; round < ThreadRounds; ++round)
            for (std::int64_t i = 0; i < VVBlocks; ++i)
                good = good && series->GetData(i * BlockPoints, BlockPoints, nullptr, block.data(), channel);
        return series.Close(false) && good;
    });
}
BENCHMARK(BM_ThreadsStorage)->Unit(benchmark::kMillisecond)->UseRealTime();

#ifdef DAX_HAVE_HDF5
/// The same channels as four chunked data sets.
class HdfFile
{
public:
    explicit HdfFile(const char* name, bool create)
    {
        file_ = create ? H5Fcreate(Name(name).c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)
                       : H5Fopen(Name(name).c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
        const hsize_t size = static_cast<hsize_t>(VVBlocks * BlockPoints);
        const hsize_t unlimited = H5S_UNLIMITED;
        const hsize_t chunk = 32 * 1024 / 4;
        const hid_t space = H5Screate_simple(1, &size, &unlimited);
        const hid_t layout = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_chunk(layout, 1, &chunk);
        H5Pset_fill_time(layout, H5D_FILL_TIME_NEVER);
        for (int i = 0; i < Channels; ++i) {
            const std::string set = "channel" + std::to_string(i);
            sets_[i] = create ? H5Dcreate2(file_, set.c_str(), H5T_NATIVE_FLOAT, space, H5P_DEFAULT, layout, H5P_DEFAULT)
                              : H5Dopen2(file_, set.c_str(), H5P_DEFAULT);
        }
        H5Pclose(layout);
        H5Sclose(space);
    }
    ~HdfFile()
    {
        for (const hid_t set : sets_)
            H5Dclose(set);
        H5Fclose(file_);
    }
    HdfFile(const HdfFile&) = delete;
    HdfFile& operator=(const HdfFile&) = delete;

    template <class Move>
    bool Transfer(int channel, std::int64_t first, std::int64_t count, Move move) const
    {
        const auto start = static_cast<hsize_t>(first);
        const auto size = static_cast<hsize_t>(count);
        const hid_t memory = H5Screate_simple(1, &size, nullptr);
        const hid_t space = H5Dget_space(sets_[channel]);
        H5Sselect_hyperslab(space, H5S_SELECT_SET, &start, nullptr, &size, nullptr);
        const bool good = move(sets_[channel], memory, space) >= 0;
        H5Sclose(space);
        H5Sclose(memory);
        return good;
    }
    bool Write(int channel, std::int64_t first, const std::vector<float>& points) const
    {
        return Transfer(channel, first, static_cast<std::int64_t>(points.size()), [&](hid_t set, hid_t memory, hid_t space) {
            return H5Dwrite(set, H5T_NATIVE_FLOAT, memory, space, H5P_DEFAULT, points.data());
        });
    }
    bool Read(int channel, std::int64_t first, std::vector<float>& points) const
    {
        return Transfer(channel, first, static_cast<std::int64_t>(points.size()), [&](hid_t set, hid_t memory, hid_t space) {
            return H5Dread(set, H5T_NATIVE_FLOAT, memory, space, H5P_DEFAULT, points.data());
        });
    }

private:
    hid_t file_;
    hid_t sets_[Channels];
};

bool WriteHdf(const char* name)
{
    const std::vector<float> block = MakeBlock();
    const HdfFile file(name, true);
    for (std::int64_t i = 0; i < VVBlocks; ++i)
        for (int channel = 0; channel < Channels; ++channel)
            if (!file.Write(channel, i * BlockPoints, block))
                return false;
    return true;
}

void BM_WriteHdf5(benchmark::State& state)
{
    for (auto _ : state) {
        if (!WriteHdf("write.h5"))
            state.SkipWithError("write failed");
        RemoveUntimed(state, "write.h5");
    }
    SetRate(state, AllBytes());
}
BENCHMARK(BM_WriteHdf5)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_ReadHdf5(benchmark::State& state)
{
    const HdfFile file("read.h5", false);
    std::vector<float> block(BlockPoints);
    for (auto _ : state)
        for (int channel = 0; channel < Channels; ++channel)
            for (std::int64_t i = 0; i < VVBlocks; ++i)
                if (!file.Read(channel, i * BlockPoints, block))
                    state.SkipWithError("read failed");
    SetRate(state, AllBytes());
}
BENCHMARK(BM_ReadHdf5)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_RandomHdf5(benchmark::State& state)
{
    const HdfFile file("read.h5", false);
    const auto places = RandomPlaces(VVBlocks * BlockPoints - RandomPoints);
    std::vector<float> points(RandomPoints);
    int channel = 0;
    for (auto _ : state)
        for (const std::int64_t place : places)
            if (!file.Read(channel = (channel + 1) % Channels, place, points))
                state.SkipWithError("read failed");
}
BENCHMARK(BM_RandomHdf5)->Unit(benchmark::kMicrosecond)->UseRealTime();
#endif

}  // namespace

int main(int argc, char** argv)
{
    namespace fs = std::filesystem;
    const char* const size = std::getenv("DAX_BENCH_MIB");
    VVBlocks = (size == nullptr ? 128 : std::atoll(size)) * 1024 * 1024 / (Channels * BlockBytes);
    std::string folder = (fs::temp_directory_path() / "daxbench.XXXXXX").string();
    if (VVBlocks < 1 || mkdtemp(folder.data()) == nullptr)
        return 1;
    VVFolder = folder;
    std::vector<BenchRatio> ratios = {{"BM_ReadStorage", "BM_ReadPlain", 0.8, true},
                                      {"BM_RandomStorage", "BM_RandomPlain", 1.5},
                                      {"BM_ThreadsStorage", "BM_ThreadsPlain", 0.8, true},
                                      {"BM_WriteStorage", "BM_WritePlain", 0.7, true}};
    TimeSeries series("read.z4t", true);
    bool prepared = WriteBlocks("plain.bin") && WriteChannels(series) && series.Close(true);
#ifdef DAX_HAVE_HDF5
    prepared = prepared && WriteHdf("read.h5");
    for (const char* const what : {"Read", "Random", "Write"})
        ratios.push_back({std::string("BM_") + what + "Storage", std::string("BM_") + what + "Hdf5", 1, true});
#endif
    const int status = prepared ? RunBenchRatios(argc, argv, ratios) : 1;
    fs::remove_all(folder);
    return status;
}
