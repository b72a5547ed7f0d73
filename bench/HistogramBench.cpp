// Histograms in storage files: 1,000 by 1,000 bins of doubles written and read as a host does, beside plain copies of the
// same bytes to and from a file and, where that was found, a two-dimensional HDF5 data set, in one piece and with checksums;
// what a call costs beside the plug-in; and how describing many histograms grows.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/HistogramPlugin.h"
#include "vdstore/LQChannelMapper.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>
#ifdef DAX_HAVE_HDF5
#include <hdf5.h>
#endif

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <vector>

namespace {

constexpr int Side = 1'000;
constexpr std::size_t Bytes = std::size_t(Side) * Side * sizeof(double);

const BenchFolder& Folder()
{
    static const BenchFolder folder;
    return folder;
}

const std::vector<double>& Values()
{
    static const std::vector<double> values = [] {
        std::vector<double> made(std::size_t(Side) * Side);
        for (std::size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<double>(i * 7 % 1001) / 3;
        return made;
    }();
    return values;
}

VDFileIdHandle NewId(const std::string& name, int channels)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), DaxStorageFileId, 6);
    FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
    int index = 0;
    for (int number = 1; number <= channels; ++number)
        FIDAddChannel(id.Get(), number, &index);
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    return id;
}

VDHistAccHandle Open(const std::string& name, int channels, int mode)
{
    VDHistAccHandle acc(HFAccCreate());
    const VDFileIdHandle id = NewId(name, channels);
    if (!HFAccSetId(acc.Get(), id.Get(), mode == 3) || !HFAccOpen(acc.Get(), mode))
        acc.Reset();
    return acc;
}

VDHistHandle MakeHist(int side)
{
    VDHistHandle hist(VFHistCreate());
    VFHistSetFormat(hist.Get(), VTHistFormatDouble);
    VFHistSet3D(hist.Get(), 1);
    VFHistSetXLimits(hist.Get(), 0, 1, side);
    VFHistSetYLimits(hist.Get(), 0, 1, side);
    VFHistSetXYBins_D(hist.Get(), 0, Values().data(), std::int64_t(side) * side);
    return hist;
}

VDHist* Hist()
{
    static const VDHistHandle hist = MakeHist(Side);
    return hist.Get();
}

/// The same memory for all kinds of files.
const void* Bins()
{
    std::int64_t bytes = 0;
    const void* bins = nullptr;
    VFHistGetRawBins(Hist(), &bytes, &bins);
    return bins;
}

// The kinds of files. A kind has
// - a constructor (name, whether it is made anew), and a destructor that gives the file up;
// - Write() of all bins, and Read() of them into new memory, as `HFAccGetHistogram` gives them;
// - Leave(), after which the system has all bins, on the way to the disk or not;
// - Commit(), after which a loss of power harms nothing.
// All give false if something fails.

/// The bins and nothing else.
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

    bool Write(const void* bins = Bins()) { return pwrite(handle_, bins, Bytes, 0) == static_cast<ssize_t>(Bytes); }
    bool Read()
    {
        const auto bins = std::make_unique_for_overwrite<double[]>(Values().size());
        const bool good = pread(handle_, bins.get(), Bytes, 0) == static_cast<ssize_t>(Bytes);
        benchmark::DoNotOptimize(bins.get()[Values().size() / 2]);
        return good;
    }
    bool Leave() { return handle_ >= 0; }
    bool Commit() { return fdatasync(handle_) == 0; }

private:
    int handle_;
};

class StorageFile
{
public:
    StorageFile(const std::string& name, bool create) : acc_(Open(name, 1, create ? 3 : 1)) {}
    bool Write() { return HFAccPutHistogram(acc_.Get(), 0, Hist()) != 0; }
    bool Read()
    {
        VDHistHandle got;
        return HFAccGetHistogram(acc_.Get(), 0, got.Out()) != 0;
    }
    /// No bins are held back; the index follows with the commit.
    bool Leave() { return static_cast<bool>(acc_); }
    bool Commit() { return HFAccClose(acc_.Get()) != 0; }

private:
    VDHistAccHandle acc_;
};

#ifdef DAX_HAVE_HDF5
bool Sync(const std::string& name)
{
    const int handle = open(name.c_str(), O_RDWR);
    const bool good = fdatasync(handle) == 0;
    close(handle);
    return good;
}

/// What makes a histogram of bins: limits, texts and overflow counts, each an attribute of the data set.
class Hdf5Attributes
{
public:
    static bool Write(hid_t set)
    {
        bool good = true;
        const hid_t space = H5Screate(H5S_SCALAR);
        const hid_t text = MakeText();
        for (const std::string& name : Names("Text", 6))
            good = Put(set, name, text, space, "text of axis") && good;
        for (const std::string& name : Names("Limit", 12)) {
            const double limit = 1;
            good = Put(set, name, H5T_NATIVE_DOUBLE, space, &limit) && good;
        }
        for (const std::string& name : Names("Overflow", 12)) {
            const std::int64_t count = 7;
            good = Put(set, name, H5T_NATIVE_INT64, space, &count) && good;
        }
        H5Tclose(text);
        H5Sclose(space);
        return good;
    }
    static bool Read(hid_t set)
    {
        char text[16] = {};
        double limit = 0;
        std::int64_t count = 0;
        bool good = true;
        const hid_t type = MakeText();
        for (const std::string& name : Names("Text", 6))
            good = Get(set, name, type, text) && good;
        for (const std::string& name : Names("Limit", 12))
            good = Get(set, name, H5T_NATIVE_DOUBLE, &limit) && good;
        for (const std::string& name : Names("Overflow", 12))
            good = Get(set, name, H5T_NATIVE_INT64, &count) && good;
        H5Tclose(type);
        return good;
    }

private:
    static std::vector<std::string> Names(const std::string& stem, int count)
    {
        std::vector<std::string> names;
        for (int i = 0; i < count; ++i)
            names.push_back(stem + std::to_string(i));
        return names;
    }
    static hid_t MakeText()
    {
        const hid_t type = H5Tcopy(H5T_C_S1);
        H5Tset_size(type, 12);
        return type;
    }
    static bool Put(hid_t set, const std::string& name, hid_t type, hid_t space, const void* value)
    {
        const hid_t attribute = H5Acreate2(set, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT);
        const bool good = H5Awrite(attribute, type, value) >= 0;
        return H5Aclose(attribute) >= 0 && good;
    }
    static bool Get(hid_t set, const std::string& name, hid_t type, void* value)
    {
        const hid_t attribute = H5Aopen(set, name.c_str(), H5P_DEFAULT);
        const bool good = H5Aread(attribute, type, value) >= 0;
        return H5Aclose(attribute) >= 0 && good;
    }
};

/// @tparam Checked  with a checksum over each chunk of the bins, as the storage has over each record
template <bool Checked>
class Hdf5File
{
public:
    Hdf5File(const std::string& name, bool create)
        : name_(name),
          file_(create ? H5Fcreate(name.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)
                       : H5Fopen(name.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT))
    {
        const hsize_t sides[] = {Side, Side};
        const hid_t space = H5Screate_simple(2, sides, nullptr);
        const hid_t layout = H5Pcreate(H5P_DATASET_CREATE);
        if (Checked) {
            const hsize_t chunk[] = {4, Side};  // 32,000 bytes
            H5Pset_chunk(layout, 2, chunk);
            H5Pset_fletcher32(layout);
        }
        set_ = create ? H5Dcreate2(file_, "bins", H5T_NATIVE_DOUBLE, space, H5P_DEFAULT, layout, H5P_DEFAULT)
                      : H5Dopen2(file_, "bins", H5P_DEFAULT);
        H5Pclose(layout);
        H5Sclose(space);
    }
    ~Hdf5File() { Leave(); }
    Hdf5File(const Hdf5File&) = delete;
    Hdf5File& operator=(const Hdf5File&) = delete;

    bool Write()
    {
        return H5Dwrite(set_, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, Bins()) >= 0 && Hdf5Attributes::Write(set_);
    }
    bool Read()
    {
        const auto bins = std::make_unique_for_overwrite<double[]>(Values().size());
        const bool good =
            H5Dread(set_, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, bins.get()) >= 0 && Hdf5Attributes::Read(set_);
        benchmark::DoNotOptimize(bins.get()[Values().size() / 2]);
        return good;
    }
    bool Leave()
    {
        const bool good = file_ < 0 || (H5Dclose(set_) >= 0 && H5Fclose(file_) >= 0);
        file_ = -1;
        return good;
    }
    bool Commit() { return Leave() && Sync(name_); }

private:
    std::string name_;
    hid_t file_;
    hid_t set_;
};
#endif

/// Gives every writer the same start: as much memory as it is going to fill has just been in use for a file, and nothing of
/// what others wrote is on its way to the disk any more.
bool Settle()
{
    const std::string name = Folder().Name("settle");
    bool good = PlainFile(name, true).Write(Values().data());
    std::filesystem::remove(name);
    const int folder = open(Folder().Path().c_str(), O_RDONLY | O_DIRECTORY);
    good = syncfs(folder) == 0 && good;
    close(folder);
    return good;
}

/// Times a new file from its making to `end`. Giving the file up isn't timed.
template <class File, bool (File::*End)()>
void WriteRow(benchmark::State& state)
{
    const std::string name = Folder().Name("written");
    for (auto _ : state) {
        bool good = Settle();
        const auto start = std::chrono::steady_clock::now();
        auto file = std::make_unique<File>(name, true);
        good = file->Write() && ((*file).*End)() && good;
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        file.reset();
        std::filesystem::remove(name);
        if (!good)
            state.SkipWithError("write failed");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Bytes));
}

/// Opens a warm file, reads the histogram and gives the file up.
template <class File>
void ReadRow(benchmark::State& state, const std::string& kind)
{
    const std::string name = Folder().Name(kind);
    if (!std::filesystem::exists(name)) {
        File made(name, true);
        if (!made.Write() || !made.Commit())
            state.SkipWithError("write failed");
    }
    for (auto _ : state)
        if (File file(name, false); !file.Read())
            state.SkipWithError("read failed");
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Bytes));
}

template <class File>
void AddRows(const std::string& kind, bool withCommit)
{
    const auto add = [](const std::string& name, auto row) {
        return benchmark::RegisterBenchmark(name.c_str(), row)->Unit(benchmark::kMicrosecond);
    };
    add("Write" + kind, WriteRow<File, &File::Leave>)->UseManualTime()->Iterations(3);
    // Until the bins are safe, which the disk has the greatest part in.
    if (withCommit)
        add("Commit" + kind, WriteRow<File, &File::Commit>)->UseManualTime()->Iterations(3);
    add("Read" + kind, [kind](benchmark::State& state) { ReadRow<File>(state, kind); })->UseRealTime()->MinTime(0.05);
}

/// A file of many small histograms; describing them all in the metadata.
void PrintGrowth()
{
    std::printf("%12s %22s\n", "channels", "describing, us each");
    for (const int channels : {100, 1'000, 10'000}) {
        const std::string name = Folder().Name("many" + std::to_string(channels));
        const VDHistHandle hist = MakeHist(10);
        VDHistAccHandle acc = Open(name, channels, 3);
        for (int index = 0; index < channels; ++index)
            HFAccPutHistogram(acc.Get(), index, hist.Get());
        HFAccClose(acc.Get());
        acc = Open(name, channels, 1);
        LQChannelMapper* mapper = nullptr;
        const auto start = std::chrono::steady_clock::now();
        const bool good = HFAccGetMetaData(acc.Get(), &mapper) && mapper->GetMetaDataItem("ZMax", channels - 1) != nullptr;
        const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
        std::printf("%12d %22.2f%s\n", channels, time.count() / channels, good ? "" : "  failed");
    }
}

/// Check and framing of a call into the plug-in, and what the plug-in takes to say the least that it can.
void CallRow(benchmark::State& state)
{
    const VDHistAccHandle acc = Open(Folder().Name("call"), 1, 3);
    char answer = 0;
    for (auto _ : state)
        HFAccGetCapability(acc.Get(), DaxHistogram::Writable, &answer);
}

}  // namespace

int main(int argc, char** argv)
{
    AddRows<PlainFile>("Plain", true);
    AddRows<StorageFile>("Storage", true);
#ifdef DAX_HAVE_HDF5
    AddRows<Hdf5File<false>>("Hdf5", false);
    AddRows<Hdf5File<true>>("Hdf5Checked", false);
#endif
    PrintGrowth();
    benchmark::RegisterBenchmark("Call", CallRow);
    std::vector<BenchRatio> ratios = {
        {"WriteStorage", "WritePlain", 0.3, true},
        {"ReadStorage", "ReadPlain", 0.3, true},
        {"CommitStorage", "CommitPlain", 0.3, true},
    };
#ifdef DAX_HAVE_HDF5
    for (const char* const kind : {"Hdf5", "Hdf5Checked"})
        for (const std::string row : {"Write", "Read"})
            ratios.push_back({row + "Storage", row + kind, 1, true});
#endif
    return RunBenchRatios(argc, argv, ratios);
}
