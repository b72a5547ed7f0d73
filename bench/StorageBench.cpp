// The structured storage beside plain system calls on the same bytes, and beside HDF5 if that was found. Four float channels
// are written in turn, in blocks of 16,384 points, and read from a warm file. All rows run at several sizes of the data, so
// that what a point costs can be seen to stay the same; DAX_BENCH_MIB sets the largest, up to 2048.

#include "BenchFolder.h"
#include "BenchRatios.h"
#include "StorageBenchFiles.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <thread>

namespace {

constexpr std::int64_t MiB = 1024 * 1024;
constexpr std::int64_t Sizes[] = {64, 256, 1024, 2048};  // of the data, in MiB
constexpr std::int64_t DefaultLargest = 256;
constexpr std::int64_t BlockPoints = 16'384;
constexpr std::int64_t RandomPoints = 1'000;
constexpr int RandomReads = 1'000;
constexpr int Threads = 4;
// Rows that time more than the size, threads and the disk, take no more data than this.
constexpr std::int64_t SideBytes = 256 * MiB;
// What the rows of threads read in all: so much that the system has spread the threads over the processors.
constexpr std::int64_t ThreadBytes = 2048 * MiB;

std::string VVFolder;
std::int64_t VVPoints;      // of each channel
std::int64_t VVSidePoints;  // the same for rows of less data

std::string Name(const std::string& name)
{
    return VVFolder + "/" + name;
}

std::string ThreadName(const std::string& kind, int thread)
{
    return Name(kind + std::to_string(thread));
}

void SetPoints(benchmark::State& state, std::int64_t points)
{
    state.SetBytesProcessed(state.iterations() * points * 4);
}

std::vector<float> MakeBlock()
{
    std::vector<float> block(BlockPoints);
    std::mt19937 random(1);
    for (float& value : block)
        value = static_cast<float>(random()) * 1e-9F;
    return block;
}

template <class File>
bool WriteChannels(File& file, std::int64_t points)
{
    static const std::vector<float> block = MakeBlock();
    for (std::int64_t first = 0; first < points; first += BlockPoints)
        for (int channel = 0; channel < BenchChannels; ++channel)
            if (!file.Write(channel, first, BlockPoints, block.data()))
                return false;
    return true;
}

template <class File>
bool ReadChannels(File& file, std::int64_t points)
{
    std::vector<float> block(BlockPoints);
    for (int channel = 0; channel < BenchChannels; ++channel)
        for (std::int64_t first = 0; first < points; first += BlockPoints)
            if (!file.Read(channel, first, BlockPoints, block.data()))
                return false;
    return true;
}

template <class File>
bool MakeFile(const std::string& name, std::int64_t points)
{
    File file(name, points, true);
    return WriteChannels(file, points) && file.Commit();
}

/// Gives every writer the same start: as much memory as it is going to fill has just been in use for a file, and nothing of
/// what others wrote is on its way to the disk any more. In a virtual machine the first use of a page of memory takes ten
/// times as long as the copy into it, and which writer would meet such pages is luck.
bool Settle(std::int64_t points)
{
    const std::string name = Name("settle");
    bool good = false;
    {
        PlainFile scratch(name, points, true);
        good = WriteChannels(scratch, points);
    }
    std::filesystem::remove(name);
    const int folder = open(VVFolder.c_str(), O_RDONLY | O_DIRECTORY);
    good = syncfs(folder) == 0 && good;
    close(folder);
    return good;
}

/// Times a new file from its making to `end`, which follows the last block. Giving the file up isn't timed.
template <class File>
void TimeWriting(benchmark::State& state, std::int64_t points, bool (File::*end)())
{
    const std::string name = Name("written");
    for (auto _ : state) {
        bool good = Settle(points);
        const auto start = std::chrono::steady_clock::now();
        auto file = std::make_unique<File>(name, points, true);
        good = WriteChannels(*file, points) && ((*file).*end)() && good;
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        file.reset();
        std::filesystem::remove(name);
        if (!good)
            state.SkipWithError("write failed");
    }
    SetPoints(state, points * BenchChannels);
}

/// What is written is left to the system. The indexes of the storage, some 8 bytes for 32 KiB, aren't in it: they come with
/// the commit, which waits for the disk.
template <class File>
void WriteRow(benchmark::State& state)
{
    TimeWriting<File>(state, VVPoints, &File::Leave);
}

/// The same until the data are safe, which the disk has the greatest part in.
template <class File>
void CommitRow(benchmark::State& state)
{
    TimeWriting<File>(state, VVSidePoints, &File::Commit);
}

template <class File>
void ReadRow(benchmark::State& state, const std::string& kind)
{
    File file(Name(kind), VVPoints, false);
    for (auto _ : state)
        if (!ReadChannels(file, VVPoints))
            state.SkipWithError("read failed");
    SetPoints(state, VVPoints * BenchChannels);
}

template <class File>
void RandomRow(benchmark::State& state, const std::string& kind)
{
    File file(Name(kind), VVPoints, false);
    std::mt19937_64 random(2);
    std::vector<std::int64_t> places(RandomReads);
    for (std::int64_t& place : places)
        place = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(VVPoints - RandomPoints));
    std::vector<float> values(RandomPoints);
    int channel = 0;
    for (auto _ : state)
        for (const std::int64_t place : places) {
            channel = (channel + 1) % BenchChannels;
            if (!file.Read(channel, place, RandomPoints, values.data()))
                state.SkipWithError("read failed");
        }
    SetPoints(state, RandomReads * RandomPoints);
}

/// Reads four files, one behind the other or in a thread each.
template <class File>
void FilesRow(benchmark::State& state, const std::string& kind, bool atOnce)
{
    const std::int64_t points = VVSidePoints / Threads;
    const std::int64_t rounds = ThreadBytes / (points * BenchChannels * 4 * Threads);
    std::atomic<bool> good = true;
    const auto readFile = [&](int which) {
        File file(ThreadName(kind, which), points, false);
        for (std::int64_t round = 0; round < rounds; ++round)
            good = ReadChannels(file, points) && good;
    };
    for (auto _ : state) {
        std::vector<std::thread> threads;
        for (int i = 0; i < Threads; ++i)
            if (atOnce)
                threads.emplace_back(readFile, i);
            else
                readFile(i);
        for (std::thread& thread : threads)
            thread.join();
    }
    if (!good)
        state.SkipWithError("read failed");
    SetPoints(state, points * Threads * BenchChannels * rounds);
}

/// The reading rows of one kind of file, on the files that `MakeFiles` made for `dataOf`, which may be another kind.
template <class File>
void AddReadRows(const std::string& kind, const std::string& dataOf)
{
    const auto add = [](const std::string& name, auto row, benchmark::TimeUnit unit) {
        benchmark::RegisterBenchmark(name.c_str(), row)->Unit(unit)->UseRealTime()->MinTime(0.2);
    };
    add(
        "Read" + kind, [dataOf](benchmark::State& state) { ReadRow<File>(state, dataOf); }, benchmark::kMillisecond);
    add(
        "Random" + kind, [dataOf](benchmark::State& state) { RandomRow<File>(state, dataOf); }, benchmark::kMicrosecond);
    add(
        "OneThread" + kind, [dataOf](auto& state) { FilesRow<File>(state, dataOf, false); }, benchmark::kMillisecond);
    add(
        "FourThreads" + kind, [dataOf](auto& state) { FilesRow<File>(state, dataOf, true); }, benchmark::kMillisecond);
}

template <class File>
void AddWriteRows(const std::string& kind)
{
    const auto add = [](const std::string& name, auto row) {
        benchmark::RegisterBenchmark(name.c_str(), row)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(1);
    };
    add("Write" + kind, WriteRow<File>);
    add("Commit" + kind, CommitRow<File>);
}

/// The files that the reading rows of a kind need.
template <class File>
bool MakeFiles(const std::string& kind)
{
    bool good = MakeFile<File>(Name(kind), VVPoints);
    for (int i = 0; i < Threads; ++i)
        good = MakeFile<File>(ThreadName(kind, i), VVSidePoints / Threads) && good;
    return good;
}

/// What a kind has to keep.
void AddRatios(std::vector<BenchRatio>* ratios, const std::string& kind)
{
    ratios->push_back({"Read" + kind, "ReadPlain", 0.8, true});
    ratios->push_back({"Random" + kind, "RandomPlain", 1.5});
    ratios->push_back({"OneThread" + kind, "OneThreadPlain", 0.8, true});
    ratios->push_back({"FourThreads" + kind, "FourThreadsPlain", 0.8, true});
    ratios->push_back({"FourThreads" + kind, "OneThread" + kind, 1, true});
    ratios->push_back({"Write" + kind, "WritePlain", 0.7, true});
    ratios->push_back({"Commit" + kind, "CommitPlain", 0.5, true});
#ifdef DAX_HAVE_HDF5
    for (const char* const row : {"Read", "Random", "OneThread", "FourThreads", "Write", "Commit"})
        ratios->push_back({row + kind, std::string(row) + "Hdf5", 1, true});
#endif
}

/// Runs all rows with this much data.
int RunSize(std::int64_t mebibytes, int argc, char** argv, const std::vector<BenchRatio>& ratios, BenchTimes* times)
{
    VVPoints = mebibytes * MiB / (BenchChannels * 4);
    VVSidePoints = std::min(VVPoints, SideBytes / (BenchChannels * 4));
    std::printf("\n%lld MiB\n", static_cast<long long>(mebibytes));
    bool prepared = Settle(VVPoints) && MakeFiles<PlainFile>("Plain") && MakeFiles<StorageFile>("Storage");
#ifdef DAX_HAVE_HDF5
    prepared = prepared && MakeFiles<Hdf5File>("Hdf5");
#endif
    const int status = prepared ? RunBenchRatios(argc, argv, ratios, times) : 1;
    for (const auto& entry : std::filesystem::directory_iterator(VVFolder))
        std::filesystem::remove(entry);
    return status;
}

}  // namespace

int main(int argc, char** argv)
{
    const char* const text = std::getenv("DAX_BENCH_MIB");
    const std::int64_t largest = text == nullptr ? DefaultLargest : std::atoll(text);
    if (largest < Sizes[0]) {
        std::fprintf(stderr, "StorageBench: DAX_BENCH_MIB is at least %lld\n", static_cast<long long>(Sizes[0]));
        return 1;
    }
    const BenchFolder folder;
    VVFolder = folder.Path();
    AddReadRows<PlainFile>("Plain", "Plain");
    AddWriteRows<PlainFile>("Plain");
    AddReadRows<StorageFile>("Storage", "Storage");
    AddWriteRows<StorageFile>("Storage");
    AddReadRows<AccessFile>("Access", "Storage");
    AddWriteRows<AccessFile>("Access");
#ifdef DAX_HAVE_HDF5
    AddReadRows<Hdf5File>("Hdf5", "Hdf5");
    AddWriteRows<Hdf5File>("Hdf5");
#endif
    std::vector<BenchRatio> ratios;
    // How much four threads gain is the machine's affair: what the plain files gain stands beside it.
    ratios.push_back({"FourThreadsPlain", "OneThreadPlain", 1, true});
    AddRatios(&ratios, "Storage");
    AddRatios(&ratios, "Access");

    int status = 0;
    std::vector<std::pair<std::int64_t, BenchTimes>> all;
    for (const std::int64_t size : Sizes)
        if (size <= largest) {
            all.emplace_back(size, BenchTimes());
            status = std::max(status, RunSize(size, argc, argv, ratios, &all.back().second));
        }

    std::printf("\n%-24s", "nanoseconds a point");
    for (const auto& [size, times] : all)
        std::printf("%8lld MiB", static_cast<long long>(size));
    std::printf("\n");
    for (const char* const row : {"Read", "Random", "Write"})
        for (const auto& [name, seconds] : all.front().second) {
            if (!name.starts_with(row))
                continue;
            std::printf("%-24s", name.c_str());
            for (const auto& [size, times] : all) {
                const auto points = row == std::string("Random") ? RandomReads * RandomPoints : size * MiB / 4;
                const auto found = times.find(name);
                std::printf("%12.4f", found == times.end() ? 0.0 : found->second * 1e9 / static_cast<double>(points));
            }
            std::printf("\n");
        }
    return status;
}
