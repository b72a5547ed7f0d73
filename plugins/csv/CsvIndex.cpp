#include "CsvIndex.h"

#include "CsvIndexPass.h"
#include "CsvValue.h"

#include <algorithm>
#include <chrono>
#include <list>
#include <mutex>
#include <sys/stat.h>

namespace {

/// What tells one state of a file from another.
struct FileState
{
    dev_t device;
    ino_t number;
    off_t size;
    std::int64_t modified;
    std::int64_t changed;

    bool operator==(const FileState&) const = default;
};

std::optional<FileState> StateOf(const VDIo& io)
{
    struct stat status = {};
    if (::stat(io.GetFilename().c_str(), &status) != 0)
        return {};
    const auto time = [](const timespec& at) { return std::int64_t(at.tv_sec) * 1000000000 + at.tv_nsec; };
    return FileState{status.st_dev, status.st_ino, status.st_size, time(status.st_mtim), time(status.st_ctim)};
}

/// The last few indexes: identification, the channel list and each opening of a file need the same one.
class IndexCache
{
public:
    std::shared_ptr<const CsvIndex> Find(const FileState& state, const CsvSettings& settings)
    {
        const std::lock_guard guard(mutex_);
        for (auto entry = entries_.begin(); entry != entries_.end(); ++entry)
            if (entry->state == state && entry->settings == settings) {
                entries_.splice(entries_.begin(), entries_, entry);
                return entry->index;
            }
        return nullptr;
    }
    void Keep(const FileState& state, const CsvSettings& settings, std::shared_ptr<const CsvIndex> index)
    {
        const std::lock_guard guard(mutex_);
        entries_.push_front({state, settings, std::move(index)});
        std::int64_t columns = 0;
        for (const Entry& entry : entries_)
            columns += static_cast<std::int64_t>(entry.index->GetColumns().size());
        for (; entries_.size() > MaxEntries || (entries_.size() > 1 && columns > CsvIndex::MaxColumns); entries_.pop_back())
            columns -= static_cast<std::int64_t>(entries_.back().index->GetColumns().size());
    }

private:
    static constexpr std::size_t MaxEntries = 8;
    struct Entry
    {
        FileState state;
        CsvSettings settings;
        std::shared_ptr<const CsvIndex> index;
    };
    std::mutex mutex_;
    std::list<Entry> entries_;
};

IndexCache Cache;

/// A file that was changed just now may change again without any other time.
bool IsSettled(const FileState& state)
{
    using namespace std::chrono;
    constexpr std::int64_t clockTick = 100000000;
    const std::int64_t now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    return std::max(state.modified, state.changed) < now - clockTick;
}

}  // namespace

bool CsvColumn::IsNumeric() const
{
    return DaxColumnType::IsNumeric(type);
}

std::shared_ptr<const CsvIndex> CsvIndex::Get(VDIo& io, const CsvSettings& settings)
{
    const std::optional<FileState> state = StateOf(io);
    if (state)
        if (auto index = Cache.Find(*state, settings))
            return index;
    const std::int64_t size = io.GetFileSize();
    CsvGuess guess;
    if (size < 0 || !guess.Make(io, size, settings) || guess.columns > MaxColumns)
        return nullptr;
    auto index = std::make_shared<CsvIndex>();
    if (!CsvIndexPass(io, size, guess, *index).Run())
        return nullptr;
    if (state && IsSettled(*state) && StateOf(io) == state)
        Cache.Keep(*state, settings, index);
    return index;
}

CsvIndex::Place CsvIndex::Find(std::int64_t row) const
{
    const auto behind = std::upper_bound(places_.begin(), places_.end(), row,
                                         [](std::int64_t wanted, const Place& place) { return wanted < place.row; });
    return *(behind - 1);
}

double CsvTime::GetSeconds(const CsvColumn& column)
{
    struct Unit
    {
        double seconds;
        const char* names[6];
    };
    static constexpr Unit units[] = {
        {1.0, {"s", "sec", "secs", "second", "seconds", "Sekunden"}},
        {1e-3, {"ms", "msec", "millisecond", "milliseconds"}},
        {1e-6, {"us", "\xc2\xb5s", "\xce\xbcs", "usec", "microsecond", "microseconds"}},
        {1e-9, {"ns", "nsec", "nanosecond", "nanoseconds"}},
        {60.0, {"min", "mins", "minute", "minutes"}},
        {3600.0, {"h", "hr", "hour", "hours"}},
    };
    static constexpr const char* titles[] = {"t",      "time",         "times",         "zeit",   "temps",    "tempo",
                                             "tiempo", "elapsed time", "relative time", "x_time", "timestamp"};
    // A title may have its unit with it: "Time (ms)".
    VDString title(std::string(CsvTrim(column.title)));
    VDString unit(column.units);
    const std::size_t bracket = column.title.find_first_of("([");
    if (bracket != std::string::npos && (column.title.ends_with(')') || column.title.ends_with(']'))) {
        title = std::string(CsvTrim(std::string_view(column.title).substr(0, bracket)));
        if (column.units.empty())
            unit =
                std::string(CsvTrim(std::string_view(column.title).substr(bracket + 1, column.title.size() - bracket - 2)));
    }
    for (const Unit& known : units)
        for (const char* name : known.names)
            if (name != nullptr && unit.CompareNoCase(name) == 0)
                return known.seconds;
    const bool timely = std::any_of(std::begin(titles), std::end(titles),
                                    [&](const char* known) { return title.CompareNoCase(known) == 0; });
    return timely && unit.Str().empty() ? 1.0 : 0.0;
}
