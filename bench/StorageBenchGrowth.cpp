// What files that are flushed regularly take on the disk, beside their data, and what a flush takes beside writing and
// syncing the same bytes; and what the calls on many channels or items cost each, which stays the same however many there
// are.

#include "BenchFolder.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQDataManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr double MiB = 1024.0 * 1024.0;
// What is promised: room on the disk for so many times the data, and this much beside it until the file is closed.
constexpr double OpenFactor = 1.3;
constexpr double ClosedFactor = 1.1;
constexpr int MostFlushes = 1000;
constexpr std::int64_t MostPoints = 24'000'000;

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

const char* Verdict(bool kept)
{
    return kept ? "kept" : "NOT KEPT";
}

struct Room
{
    double size;
    double disk;
};

Room RoomOf(const std::string& name)
{
    struct stat status = {};
    stat(name.c_str(), &status);
    return {static_cast<double>(status.st_size), static_cast<double>(status.st_blocks) * 512};
}

/// Seconds for each of so many goes at writing a piece behind the others and syncing twice, as a commit does.
double TimePlain(const std::string& name, int flushes, const std::vector<float>& piece, int channels)
{
    const int file = open(name.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    const auto start = Clock::now();
    for (int flush = 0; flush < flushes; ++flush) {
        for (int channel = 0; channel < channels; ++channel)
            if (write(file, piece.data(), piece.size() * 4) < 0)
                std::perror(name.c_str());
        fdatasync(file);
        if (pwrite(file, "slot", 4, 0) != 4)
            std::perror(name.c_str());
        fdatasync(file);
    }
    close(file);
    return SecondsSince(start) / flushes;
}

/// Appends to all channels and flushes, again and again.
bool SweepRow(const std::string& folder, int channels, std::int64_t points)
{
    LQDataManager& manager = *LQGetDataManager();
    const std::string name = folder + "/sweep";
    const int flushes = static_cast<int>(std::clamp<std::int64_t>(MostPoints / (channels * points), 20, MostFlushes));
    const std::vector<float> piece(static_cast<std::size_t>(points), 1.5F);
    Z4File* const file = manager.GetFileManager()->CreateFile(name.c_str(), nullptr);
    LQTimeSeries* const series = manager.AdoptTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
    bool good = series->AdjustChannelCountSinglePrecision(channels);
    double data = 0;
    double worst = 0;
    double largest = 0;
    double seconds = 0;
    for (int flush = 0; good && flush < flushes; ++flush) {
        const auto start = Clock::now();
        for (int channel = 0; channel < channels; ++channel)
            good = good && series->SetData(flush * points, points, piece.data(), channel);
        good = good && manager.Flush(series);
        seconds += SecondsSince(start);
        data += static_cast<double>(channels * points * 4);
        const Room room = RoomOf(name);
        worst = std::max(worst, (room.disk - MiB) / data);
        largest = std::max(largest, (room.size - MiB) / data);
    }
    good = manager.Close(series, true) && manager.GetFileManager()->CloseFile(file, true) && good;
    const Room room = RoomOf(name);
    const double plain = TimePlain(folder + "/plain", flushes, piece, channels);
    const bool kept = good && worst <= OpenFactor && (room.disk <= ClosedFactor * data || room.disk - data < MiB / 4);
    std::printf("%8d %10lld %8d %9.2f %8.3f %8.3f %8.3f %8.3f %10.3f %7.2f  %s\n", channels, static_cast<long long>(points),
                flushes, data / MiB, worst, largest, room.disk / data, room.size / data, seconds / flushes * 1e3,
                seconds / flushes / plain, Verdict(kept));
    unlink(name.c_str());
    unlink((folder + "/plain").c_str());
    return kept;
}

bool Sweep(const std::string& folder)
{
    std::printf("Files that are flushed regularly: room for MiB of data, less 1 MiB while it is written; promised %.1f and "
                "%.1f on the disk\n",
                OpenFactor, ClosedFactor);
    std::printf("%8s %10s %8s %9s %8s %8s %8s %8s %10s %7s\n", "channels", "points", "flushes", "MiB", "disk", "size",
                "closed", "size", "ms a flush", "plain");
    bool kept = true;
    for (const int channels : {1, 4, 64})
        for (const std::int64_t points : {100, 1'000, 8'192, 100'000})
            kept = SweepRow(folder, channels, points) && kept;
    return kept;
}

/// A time series in a file that is given up again.
class Series
{
public:
    explicit Series(const std::string& folder)
        : file_(manager_.GetFileManager()->CreateFile((folder + "/series").c_str(), nullptr)),
          series_(manager_.AdoptTimeSeries(file_->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K))
    {
    }
    ~Series()
    {
        manager_.Close(series_, false);
        manager_.GetFileManager()->CloseFile(file_, false);
    }
    LQTimeSeries* operator->() const { return series_; }

private:
    LQDataManager& manager_ = *LQGetDataManager();
    Z4File* file_;
    LQTimeSeries* series_;
};

double RemoveFromFront(const std::string& folder, int count)
{
    Series series(folder);
    series->AdjustChannelCountSinglePrecision(count);
    for (int i = 0; i < count; ++i)
        series->GetMapper()->SetChannelNumber(i + 1, i);
    const auto start = Clock::now();
    for (int i = 0; i < count; ++i)
        series->RemoveChannel(series->GetMapper()->IndexFromNumber(i + 1, false));
    return series->GetChannelCount() == 0 ? SecondsSince(start) : -1;
}

double DropFloatsBeforeDoubles(const std::string& folder, int count)
{
    Series series(folder);
    series->AdjustChannelCountSinglePrecision(count / 2);
    series->AdjustChannelCountDoublePrecision(count / 2);
    const auto start = Clock::now();
    series->AdjustChannelCountSinglePrecision(0);
    return series->GetChannelCount() == count / 2 ? SecondsSince(start) : -1;
}

double OverwriteItems(const std::string&, int count)
{
    Z4PropertySet source("source");
    Z4PropertySet target("target");
    for (int i = 0; i < count; ++i) {
        const std::string name = "item" + std::to_string(i);
        source.AddLong(name.c_str(), i);
        target.AddDouble(name.c_str(), -1);
    }
    const auto start = Clock::now();
    target.Copy(&source, false);
    return target.GetProperty(0)->GetType() == Z4TypeLong ? SecondsSince(start) : -1;
}

double RemoveItems(const std::string&, int count)
{
    Z4PropertySet set("set");
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        names.push_back("item" + std::to_string(i));
        set.AddLong(names.back().c_str(), i);
    }
    const auto start = Clock::now();
    for (const std::string& name : names)
        set.RemoveProperty(name.c_str());
    return set.GetSize() == 0 ? SecondsSince(start) : -1;
}

/// What one of many calls takes. With forty times as many it may take six times as long, as memory is slower than caches.
bool Growth(const std::string& folder)
{
    constexpr int counts[] = {1'000, 10'000, 40'000};
    constexpr double mostGrowth = 6;
    constexpr int repetitions = 5;
    const struct
    {
        const char* name;
        double (*run)(const std::string&, int);
    } rows[] = {{"RemoveChannel from the front", RemoveFromFront},
                {"Drop floats before doubles", DropFloatsBeforeDoubles},
                {"Copy with overwrite", OverwriteItems},
                {"RemoveProperty from the front", RemoveItems}};
    std::printf("\n%-32s", "nanoseconds a call");
    for (const int count : counts)
        std::printf("%10d", count);
    std::printf("\n");
    bool kept = true;
    for (const auto& row : rows) {
        std::printf("%-32s", row.name);
        double times[3] = {};
        for (int i = 0; i < 3; ++i) {
            times[i] = row.run(folder, counts[i]) / counts[i] * 1e9;
            for (int again = 1; again < repetitions; ++again)
                times[i] = std::min(times[i], row.run(folder, counts[i]) / counts[i] * 1e9);
            std::printf("%10.0f", times[i]);
        }
        const bool isLinear = times[0] > 0 && times[2] > 0 && times[2] <= mostGrowth * times[0];
        std::printf("  %s\n", Verdict(isLinear));
        kept = kept && isLinear;
    }
    return kept;
}

}  // namespace

int main()
{
    const BenchFolder folder;
    const bool sweepKept = Sweep(folder.Path());
    return Growth(folder.Path()) && sweepKept ? 0 : 1;
}
