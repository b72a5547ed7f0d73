// Spectra in storage files: a waterfall of 1,000 spectra by 4,096 complex lines written and read spectrum by spectrum as a
// host does, beside plain calls of the system with the same bytes and, where that was found, a two-dimensional HDF5 data
// set. And universal files: binary values beside reading their bytes, text beside a plain loop over its numbers.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/FINF.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>
#ifdef DAX_HAVE_HDF5
#include <hdf5.h>
#endif

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Spectra = 1'000;
constexpr int Lines = 4'096;
constexpr std::size_t RowBytes = Lines * 2 * sizeof(float);
constexpr std::int64_t Bytes = std::int64_t(Spectra) * RowBytes;
constexpr int Points = 2'000'000;

const BenchFolder& Folder()
{
    static const BenchFolder folder;
    return folder;
}

const std::vector<float>& Row()
{
    static const std::vector<float> row = [] {
        std::vector<float> made(2 * Lines);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = std::sin(static_cast<float>(i));
        return made;
    }();
    return row;
}

VDFileIdHandle NewId(const std::string& name, int fileId, int subId)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), fileId, subId);
    FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
    int index = 0;
    FIDAddChannel(id.Get(), 1, &index);
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    return id;
}

// The kinds of files. A kind has
// - a constructor (name, whether it is made anew), and a destructor that gives the file up;
// - Write() and Read() of one spectrum;
// - Leave(), after which the system has all values, on the way to the disk or not;
// - Commit(), after which a loss of power harms nothing.
// All give false if something fails.

class PlainFile
{
public:
    PlainFile(const std::string& name, bool create)
        : handle_(open(name.c_str(), create ? O_RDWR | O_CREAT | O_TRUNC : O_RDONLY, 0644))
    {
    }
    ~PlainFile() { close(handle_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    bool Write(int spectrum)
    {
        return pwrite(handle_, Row().data(), RowBytes, static_cast<off_t>(spectrum) * RowBytes) ==
               static_cast<ssize_t>(RowBytes);
    }
    bool Read(int spectrum, float* row)
    {
        return pread(handle_, row, RowBytes, static_cast<off_t>(spectrum) * RowBytes) == static_cast<ssize_t>(RowBytes);
    }
    bool Leave() { return handle_ >= 0; }
    bool Commit() { return fdatasync(handle_) == 0; }

private:
    int handle_;
};

class StorageFile
{
public:
    StorageFile(const std::string& name, bool create)
    {
        const VDFileIdHandle id = NewId(name, DaxStorageFileId, 10);
        if (!CFAccSetId(acc_.Get(), id.Get(), create ? 1 : 0) || !CFAccOpen(acc_.Get(), create ? 3 : 1) ||
            (create && !CFAccSetNumLines(acc_.Get(), Lines)))
            acc_.Reset();
    }
    bool Write(int spectrum)
    {
        return CFAccPutData(acc_.Get(), 0, spectrum + 1, 1, Lines, DaxSpectrumKind::ComplexFloat, Row().data()) != 0;
    }
    bool Read(int spectrum, float* row)
    {
        return CFAccGetData(acc_.Get(), 0, spectrum + 1, 1, Lines, DaxSpectrumKind::ComplexFloat, nullptr, row) != 0;
    }
    /// No values are held back; the index follows with the commit.
    bool Leave() { return static_cast<bool>(acc_); }
    bool Commit() { return CFAccClose(acc_.Get()) != 0; }

private:
    VDCFAccHandle acc_{CFAccCreate()};
};

#ifdef DAX_HAVE_HDF5
class Hdf5File
{
public:
    Hdf5File(const std::string& name, bool create)
        : name_(name),
          file_(create ? H5Fcreate(name.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)
                       : H5Fopen(name.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT))
    {
        const hsize_t sides[] = {Spectra, 2 * Lines};
        space_ = H5Screate_simple(2, sides, nullptr);
        row_ = H5Screate_simple(1, sides + 1, nullptr);
        set_ = create ? H5Dcreate2(file_, "spectra", H5T_NATIVE_FLOAT, space_, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT)
                      : H5Dopen2(file_, "spectra", H5P_DEFAULT);
    }
    ~Hdf5File() { Leave(); }
    Hdf5File(const Hdf5File&) = delete;
    Hdf5File& operator=(const Hdf5File&) = delete;

    bool Write(int spectrum)
    {
        return Select(spectrum) && H5Dwrite(set_, H5T_NATIVE_FLOAT, row_, space_, H5P_DEFAULT, Row().data()) >= 0;
    }
    bool Read(int spectrum, float* row)
    {
        return Select(spectrum) && H5Dread(set_, H5T_NATIVE_FLOAT, row_, space_, H5P_DEFAULT, row) >= 0;
    }
    bool Leave()
    {
        const bool good =
            file_ < 0 || (H5Dclose(set_) >= 0 && H5Sclose(space_) >= 0 && H5Sclose(row_) >= 0 && H5Fclose(file_) >= 0);
        file_ = -1;
        return good;
    }
    bool Commit()
    {
        if (!Leave())
            return false;
        const int handle = open(name_.c_str(), O_RDWR);
        const bool good = fdatasync(handle) == 0;
        close(handle);
        return good;
    }

private:
    bool Select(int spectrum)
    {
        const hsize_t start[] = {static_cast<hsize_t>(spectrum), 0};
        const hsize_t count[] = {1, 2 * Lines};
        return H5Sselect_hyperslab(space_, H5S_SELECT_SET, start, nullptr, count, nullptr) >= 0;
    }

    std::string name_;
    hid_t file_;
    hid_t set_ = -1;
    hid_t space_ = -1;
    hid_t row_ = -1;
};
#endif

template <class File>
bool WriteAll(File& file)
{
    bool good = true;
    for (int spectrum = 0; good && spectrum < Spectra; ++spectrum)
        good = file.Write(spectrum);
    return good;
}

/// Times a new file from its making to `end`. Giving the file up isn't timed.
template <class File, bool (File::*End)()>
void WriteRow(benchmark::State& state)
{
    const std::string name = Folder().Name("written");
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        auto file = std::make_unique<File>(name, true);
        const bool good = WriteAll(*file) && ((*file).*End)();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        file.reset();
        std::filesystem::remove(name);
        if (!good)
            state.SkipWithError("write failed");
    }
    state.SetBytesProcessed(state.iterations() * Bytes);
}

template <class File>
void ReadRow(benchmark::State& state, const std::string& kind)
{
    const std::string name = Folder().Name(kind);
    if (File made(name, true); !WriteAll(made) || !made.Commit())
        state.SkipWithError("write failed");
    File file(name, false);
    std::vector<float> row(2 * Lines);
    for (auto _ : state)
        for (int spectrum = 0; spectrum < Spectra; ++spectrum)
            if (!file.Read(spectrum, row.data()))
                state.SkipWithError("read failed");
    state.SetBytesProcessed(state.iterations() * Bytes);
}

template <class File>
void AddRows(const std::string& kind)
{
    const auto write = [&kind](const std::string& name, auto row) {
        benchmark::RegisterBenchmark((name + kind).c_str(), row)
            ->Unit(benchmark::kMillisecond)
            ->UseManualTime()
            ->MinTime(0.2);
    };
    write("Write", WriteRow<File, &File::Leave>);
    write("Commit", WriteRow<File, &File::Commit>);
    benchmark::RegisterBenchmark(("Read" + kind).c_str(), [kind](benchmark::State& state) { ReadRow<File>(state, kind); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->MinTime(0.2);
}

/// A universal file of one channel of time, in one of the two forms (sub ids).
const std::string& UffFile(int subId)
{
    static std::string names[3];
    std::string& name = names[subId];
    if (name.empty()) {
        name = Folder().Name("values" + std::to_string(subId) + ".uff");
        std::vector<float> values(Points);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = std::sin(static_cast<float>(i) / 7);
        const VDFileIdHandle id = NewId(name, 31002, subId);
        const VDTsAccHandle acc(TSAccCreate());
        if (!TSAccSetId(acc.Get(), id.Get(), 1) || !TSAccOpen(acc.Get(), VTTsAccOpenCreate) ||
            !TSAccPutData(acc.Get(), 0, 1, Points, values.data()) || !TSAccClose(acc.Get()))
            name.clear();
    }
    return name;
}

constexpr int Block = 16'384;

/// With the opening, which goes through the whole text.
void UffRow(benchmark::State& state, int subId)
{
    const std::string& name = UffFile(subId);
    std::vector<float> values(Block);
    for (auto _ : state) {
        const VDTsAccHandle acc(TSAccCreate());
        bool good = !name.empty() && TSAccSetId(acc.Get(), NewId(name, 31002, subId).Get(), 0) &&
                    TSAccOpen(acc.Get(), VTTsAccOpenRead);
        std::int64_t got = Block;
        for (std::int64_t first = 1; good && first <= Points; first += got)
            good = TSAccGetData(acc.Get(), 0, first, Block, &got, values.data());
        if (!good)
            state.SkipWithError("read failed");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(name)));
}

/// Reads the file in blocks and makes nothing of it or, of text, its numbers.
void PlainUffRow(benchmark::State& state, int subId)
{
    const std::string& name = UffFile(subId);
    std::vector<char> block(256 * 1024);
    for (auto _ : state) {
        const int handle = open(name.c_str(), O_RDONLY);
        double sum = 0;
        for (ssize_t got; (got = read(handle, block.data(), block.size())) > 0;) {
            const char* const end = block.data() + got;
            for (const char* at = block.data(); subId == 2 && at < end;) {
                float value = 0;
                const auto [stop, error] = std::from_chars(at, end, value);
                at = error == std::errc() ? stop : at + 1;
                sum += static_cast<double>(value);
            }
        }
        benchmark::DoNotOptimize(sum);
        close(handle);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(name)));
}

void AddPlugins()
{
    CFAccAddPlugin("0E9A7D34-1F62-4B85-A0C9-6D53F81B27E4", "ResultsCF", DAX_RESULTS, "");
    FINFAddPlugin("Results", "ResultsFF", DAX_RESULTS, "");
    FINFAddPlugin("UFF", "UffFF", DAX_UFF, "");
    TSAccAddPlugin("6D0F4B52-8E37-4C19-A5D4-92B7E16C3F08", "UffTS", DAX_UFF, "");
}

}  // namespace

int main(int argc, char** argv)
{
    AddPlugins();
    AddRows<PlainFile>("Plain");
    AddRows<StorageFile>("Storage");
#ifdef DAX_HAVE_HDF5
    AddRows<Hdf5File>("Hdf5");
#endif
    const auto uff = [](const char* name, auto row, int subId) {
        benchmark::RegisterBenchmark(name, [=](benchmark::State& state) { row(state, subId); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime()
            ->MinTime(0.2);
    };
    uff("UffBinary", UffRow, 1);
    uff("PlainBytes", PlainUffRow, 1);
    uff("UffText", UffRow, 2);
    uff("PlainNumbers", PlainUffRow, 2);
    std::vector<BenchRatio> ratios = {
        {"WriteStorage", "WritePlain", 0.5, true}, {"CommitStorage", "CommitPlain", 0.5, true},
        {"ReadStorage", "ReadPlain", 0.6, true},   {"UffBinary", "PlainBytes", 0.5, true},
        {"UffText", "PlainNumbers", 0.5, true},
    };
#ifdef DAX_HAVE_HDF5
    for (const std::string row : {"Write", "Read", "Commit"})
        ratios.push_back({row + "Storage", row + "Hdf5", 1, true});
#endif
    return RunBenchRatios(argc, argv, ratios);
}
