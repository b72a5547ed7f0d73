// Tables in the structured storage, through the multi-column access: beside plain system calls on the same bytes, and beside
// HDF5's table interface if that was found. A table of eight columns (four float, four double) is written in blocks of 16,384
// rows, column by column in each block, and read from a warm file, one column at a time.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"
#include "vdbase/VFPlugIn.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>
#ifdef DAX_HAVE_HDF5_TABLES
#include <hdf5.h>
#include <hdf5_hl.h>
#endif

#include <chrono>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace {

constexpr std::int64_t BlockRows = 16'384;
constexpr std::int64_t Rows = BlockRows * 128;  // 96 MiB
constexpr int Floats = 4;
constexpr int Columns = 8;

std::string VVFolder;

std::string Name(const char* name)
{
    return VVFolder + "/" + name;
}

constexpr std::int64_t SizeOf(int column)
{
    return column < Floats ? 4 : 8;
}

/// A row as a table of records has it.
struct Record
{
    float floats[Floats];
    double doubles[Columns - Floats];
};

void Check(benchmark::State& state, bool good)
{
    if (!good)
        state.SkipWithError(VFErrorGetText(VFGetBaseLibError()).c_str());
}

VDFileIdHandle MakeId(const std::string& name)
{
    VDFileIdHandle id(FIDCreate());
    int index = 0;
    FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
    FIDSetFileId(id.Get(), DaxStorageFileId, 12);
    FIDAddChannel(id.Get(), 1, &index);
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    return id;
}

VDXYAccHandle Open(const std::string& name, int mode)
{
    VDXYAccHandle acc(XYAccCreate());
    if (!XYAccSetId(acc.Get(), MakeId(name).Get(), mode >= VTXyAccOpenCreate) || !XYAccOpen(acc.Get(), mode)) {
        std::fprintf(stderr, "%s\n", VFErrorGetText(VFGetBaseLibError()).c_str());
        std::exit(1);
    }
    return acc;
}

/// One block of each column.
struct Blocks
{
    Blocks()
    {
        floats.SetBufferSizeAndAllocate(VTVariantFloatBuffer, BlockRows);
        doubles.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, BlockRows);
        records.resize(BlockRows);
        for (std::int64_t row = 0; row < BlockRows; ++row) {
            const auto value = static_cast<double>(row * 7919 % 10'007);
            floats.SetDoubleAt(row, value);
            doubles.SetDoubleAt(row, value);
            Record& record = records[static_cast<std::size_t>(row)];
            for (float& each : record.floats)
                each = static_cast<float>(value);
            for (double& each : record.doubles)
                each = value;
        }
    }
    VDVariant& Of(int column) { return column < Floats ? floats : doubles; }

    VDVariant floats;
    VDVariant doubles;
    std::vector<Record> records;
};

bool AddColumns(VDXYAcc* acc)
{
    bool good = XYAccAppendDataSet(acc, 0) != 0;
    for (int column = 0; column < Columns; ++column)
        good = good && XYAccAppendCol(acc, 0, column < Floats ? DaxColumnType::Float : DaxColumnType::Double);
    return good;
}

bool WriteTable(VDXYAcc* acc, Blocks& blocks)
{
    for (std::int64_t first = 1; first < Rows; first += BlockRows)
        for (int column = 0; column < Columns; ++column)
            if (!XYAccPutData(acc, 0, 0, column, first, &blocks.Of(column)))
                return false;
    return true;
}

bool WritePlain(int file, Blocks& blocks)
{
    const auto bytes = [&](int column) -> const void* {
        return column < Floats ? static_cast<const void*>(blocks.floats.GetBuffer<float>().data())
                               : static_cast<const void*>(blocks.doubles.GetBuffer<double>().data());
    };
    for (std::int64_t first = 0; first < Rows; first += BlockRows)
        for (int column = 0; column < Columns; ++column) {
            const std::int64_t size = BlockRows * SizeOf(column);
            if (write(file, bytes(column), static_cast<std::size_t>(size)) != size)
                return false;
        }
    return true;
}

/// Times the writing of a new file. Making it and giving it up isn't timed; all start with the same memory in use.
template <class Write>
void TimeWriting(benchmark::State& state, Write write)
{
    Blocks blocks;
    for (auto _ : state) {
        const int settle = open(Name("settle").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
        WritePlain(settle, blocks);
        close(settle);
        std::filesystem::remove(Name("settle"));
        state.SetIterationTime(write(blocks));
        std::filesystem::remove(Name("written"));
    }
    state.SetBytesProcessed(state.iterations() * Rows * static_cast<std::int64_t>(sizeof(Record)));
}

using Clock = std::chrono::steady_clock;

double Since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_WritePlain(benchmark::State& state)
{
    TimeWriting(state, [&](Blocks& blocks) {
        const int file = open(Name("written").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
        const auto start = Clock::now();
        Check(state, WritePlain(file, blocks));
        const double time = Since(start);
        close(file);
        return time;
    });
}

void BM_WriteTable(benchmark::State& state)
{
    TimeWriting(state, [&](Blocks& blocks) {
        const VDXYAccHandle acc = Open(Name("written"), VTXyAccOpenCreate);
        const auto start = Clock::now();
        Check(state, AddColumns(acc.Get()) && WriteTable(acc.Get(), blocks));
        return Since(start);
    });
}

void ReadPlain(benchmark::State& state, int column)
{
    const int file = open(Name("plain").c_str(), O_RDONLY);
    std::vector<double> values(BlockRows);
    const std::int64_t size = BlockRows * SizeOf(column);
    for (auto _ : state)
        for (std::int64_t block = 0; block < Rows / BlockRows; ++block)
            Check(state, pread(file, values.data(), static_cast<std::size_t>(size), block * size) == size);
    close(file);
    state.SetBytesProcessed(state.iterations() * Rows * SizeOf(column));
}

void BM_ReadPlainFloats(benchmark::State& state)
{
    ReadPlain(state, 0);
}

void BM_ReadPlainDoubles(benchmark::State& state)
{
    ReadPlain(state, Floats);
}

void BM_GetDataF(benchmark::State& state)
{
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
    std::vector<float> values(BlockRows);
    for (auto _ : state)
        for (std::int64_t first = 1; first < Rows; first += BlockRows)
            Check(state, XYAccGetDataF(acc.Get(), 0, 0, 1, first, BlockRows, nullptr, values.data()) != 0);
    state.SetBytesProcessed(state.iterations() * Rows * 4);
}

/// Of a double column: read as doubles, given as floats.
void BM_GetDataFOfDoubles(benchmark::State& state)
{
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
    std::vector<float> values(BlockRows);
    for (auto _ : state)
        for (std::int64_t first = 1; first < Rows; first += BlockRows)
            Check(state, XYAccGetDataF(acc.Get(), 0, 0, Floats, first, BlockRows, nullptr, values.data()) != 0);
    state.SetBytesProcessed(state.iterations() * Rows * 8);
}

void BM_GetData(benchmark::State& state)
{
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
    VDVariant values;
    for (auto _ : state)
        for (std::int64_t first = 1; first < Rows; first += BlockRows)
            Check(state, XYAccGetData(acc.Get(), 0, 0, Floats, first, BlockRows, &values) != 0);
    state.SetBytesProcessed(state.iterations() * Rows * 8);
}

/// All columns, which is what their limits take; in the blocks that those are read in.
void BM_ReadAll(benchmark::State& state)
{
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
    int block = 0;
    XYAccGetBufferSize(acc.Get(), &block);
    VDVariant values;
    for (auto _ : state)
        for (int column = 0; column < Columns; ++column)
            for (std::int64_t first = 1; first < Rows; first += block)
                Check(state, XYAccGetData(acc.Get(), 0, 0, column, first, block, &values) != 0);
    state.SetBytesProcessed(state.iterations() * Rows * static_cast<std::int64_t>(sizeof(Record)));
}

void BM_Limits(benchmark::State& state)
{
    for (auto _ : state) {
        const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
        VDVariant minimum;
        VDVariant maximum;
        Check(state, XYAccGetColLimits(acc.Get(), 0, 0, 0, &minimum, &maximum) && maximum == VDVariant(10'006.0));
    }
    state.SetBytesProcessed(state.iterations() * Rows * static_cast<std::int64_t>(sizeof(Record)));
}

/// A value at a time: what a call costs.
void BM_OneValue(benchmark::State& state)
{
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenRead);
    float value = 0;
    std::int64_t row = 0;
    for (auto _ : state)
        Check(state, XYAccGetDataF(acc.Get(), 0, 0, 1, row++ % 1000 + 1, 1, nullptr, &value) != 0);
}

template <class Function>
Function* Find(void* library, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(library, name));
}

/// The same from the plug-in itself.
void BM_OneValuePlugin(benchmark::State& state)
{
    void* const library = dlopen(DAX_RESULTS, RTLD_NOW);
    void* const instance =
        Find<DaxMultiColumn::Create>(library, "ResultsXYCreate")("5B1C4E0A-6F0D-4C58-9A53-1D2C7E8F4B90");
    const VDFileIdHandle id = MakeId(Name("table"));
    Check(state, Find<DaxMultiColumn::SetId>(library, "ResultsXYSetId")(instance, id.Get(), 0) &&
                     Find<DaxMultiColumn::Open>(library, "ResultsXYOpen")(instance, 1));
    auto* const get = Find<DaxMultiColumn::GetDataF>(library, "ResultsXYGetDataF");
    float value = 0;
    std::int64_t row = 0;
    for (auto _ : state)
        Check(state, get(instance, 0, 0, 1, row++ % 1000 + 1, 1, &value) != 0);
    Find<DaxMultiColumn::Release>(library, "ResultsXYRelease")(instance);
}

#ifdef DAX_HAVE_HDF5_TABLES
const char* const VVFieldNames[Columns] = {"f0", "f1", "f2", "f3", "d0", "d1", "d2", "d3"};

hid_t MakeHdf5(const char* name)
{
    std::size_t offsets[Columns];
    hid_t types[Columns];
    for (int column = 0; column < Columns; ++column) {
        offsets[column] = column < Floats ? static_cast<std::size_t>(column) * 4 : static_cast<std::size_t>(column - 2) * 8;
        types[column] = column < Floats ? H5T_NATIVE_FLOAT : H5T_NATIVE_DOUBLE;
    }
    const hid_t file = H5Fcreate(Name(name).c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    H5TBmake_table("t", file, "t", Columns, 0, sizeof(Record), const_cast<const char**>(VVFieldNames), offsets, types,
                   BlockRows, nullptr, 0, nullptr);
    return file;
}

bool WriteHdf5(hid_t file, const Blocks& blocks)
{
    std::size_t offsets[Columns];
    std::size_t sizes[Columns];
    for (int column = 0; column < Columns; ++column) {
        offsets[column] = column < Floats ? static_cast<std::size_t>(column) * 4 : static_cast<std::size_t>(column - 2) * 8;
        sizes[column] = static_cast<std::size_t>(SizeOf(column));
    }
    for (std::int64_t first = 0; first < Rows; first += BlockRows)
        if (H5TBappend_records(file, "t", BlockRows, sizeof(Record), offsets, sizes, blocks.records.data()) < 0)
            return false;
    return true;
}

/// The records are ready, which the columns of the others would have to be made into first.
void BM_WriteHdf5(benchmark::State& state)
{
    TimeWriting(state, [&](Blocks& blocks) {
        const hid_t file = MakeHdf5("written");
        const auto start = Clock::now();
        Check(state, WriteHdf5(file, blocks) && H5Fflush(file, H5F_SCOPE_LOCAL) >= 0);
        const double time = Since(start);
        H5Fclose(file);
        return time;
    });
}

void ReadHdf5(benchmark::State& state, int column)
{
    const hid_t file = H5Fopen(Name("hdf5").c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
    std::vector<double> values(BlockRows);
    const auto size = static_cast<std::size_t>(SizeOf(column));
    const std::size_t offset = 0;
    for (auto _ : state)
        for (std::int64_t first = 0; first < Rows; first += BlockRows)
            Check(state, H5TBread_fields_name(file, "t", VVFieldNames[column], static_cast<hsize_t>(first), BlockRows, size,
                                              &offset, &size, values.data()) >= 0);
    H5Fclose(file);
    state.SetBytesProcessed(state.iterations() * Rows * SizeOf(column));
}

void BM_ReadHdf5Floats(benchmark::State& state)
{
    ReadHdf5(state, 1);
}

void BM_ReadHdf5Doubles(benchmark::State& state)
{
    ReadHdf5(state, Floats);
}
#endif

BENCHMARK(BM_WritePlain)->UseManualTime()->Iterations(1);
BENCHMARK(BM_WriteTable)->UseManualTime()->Iterations(1);
BENCHMARK(BM_ReadPlainFloats)->UseRealTime();
BENCHMARK(BM_ReadPlainDoubles)->UseRealTime();
BENCHMARK(BM_GetDataF)->UseRealTime();
BENCHMARK(BM_GetDataFOfDoubles)->UseRealTime();
BENCHMARK(BM_GetData)->UseRealTime();
BENCHMARK(BM_ReadAll)->UseRealTime();
BENCHMARK(BM_Limits)->UseRealTime();
BENCHMARK(BM_OneValue);
BENCHMARK(BM_OneValuePlugin);
#ifdef DAX_HAVE_HDF5_TABLES
BENCHMARK(BM_WriteHdf5)->UseManualTime()->Iterations(1);
BENCHMARK(BM_ReadHdf5Floats)->UseRealTime();
BENCHMARK(BM_ReadHdf5Doubles)->UseRealTime();
#endif

bool MakeFiles()
{
    Blocks blocks;
    const int plain = open(Name("plain").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0644);
    bool good = WritePlain(plain, blocks);
    close(plain);
    const VDXYAccHandle acc = Open(Name("table"), VTXyAccOpenCreate);
    good = good && AddColumns(acc.Get()) && WriteTable(acc.Get(), blocks) && XYAccClose(acc.Get());
#ifdef DAX_HAVE_HDF5_TABLES
    const hid_t file = MakeHdf5("hdf5");
    good = WriteHdf5(file, blocks) && H5Fclose(file) >= 0 && good;
#endif
    return good;
}

/// Writes, flushes, closes and opens a table whose shape grows with `count`; gives microseconds for each.
template <class Fill>
double Grow(std::int64_t count, Fill fill)
{
    const std::string name = Name("growth");
    const auto start = Clock::now();
    bool good = false;
    {
        const VDXYAccHandle acc = Open(name, VTXyAccOpenCreate);
        good = fill(acc.Get(), count) && XYAccClose(acc.Get());
    }
    Open(name, VTXyAccOpenRead);
    const double time = Since(start) * 1e6 / static_cast<double>(count);
    std::filesystem::remove(name);
    if (!good)
        std::fprintf(stderr, "%s\n", VFErrorGetText(VFGetBaseLibError()).c_str());
    return good ? time : -1;
}

bool AddMany(VDXYAcc* acc, std::int64_t columns, std::int64_t dataSets, bool withValues)
{
    const float values[10] = {};
    bool good = true;
    for (std::int64_t i = 0; good && i < dataSets; ++i)
        good = XYAccAppendDataSet(acc, 0) != 0;
    for (std::int64_t i = 0; good && i < columns; ++i)
        good = XYAccAppendCol(acc, 0, DaxColumnType::Float) != 0;
    for (int set = 0; good && withValues && set < dataSets; ++set)
        for (int column = 0; good && column < columns; ++column)
            good = XYAccPutDataF(acc, 0, set, column, 1, 10, values) != 0;
    return good;
}

void PrintGrowth()
{
    struct
    {
        const char* name;
        bool (*fill)(VDXYAcc* acc, std::int64_t count);
    } const rows[] = {
        {"columns", [](VDXYAcc* acc, std::int64_t count) { return AddMany(acc, count, 1, false); }},
        {"data sets", [](VDXYAcc* acc, std::int64_t count) { return AddMany(acc, 1, count, false); }},
        {"columns of 10 rows", [](VDXYAcc* acc, std::int64_t count) { return AddMany(acc, count, 1, true); }},
        {"data sets of 10 rows", [](VDXYAcc* acc, std::int64_t count) { return AddMany(acc, 1, count, true); }},
        {"batches of 100 rows",
         [](VDXYAcc* acc, std::int64_t count) {
             const float values[100] = {};
             bool good = AddMany(acc, 2, 1, false);
             for (std::int64_t batch = 0; good && batch < count; ++batch)
                 for (int column = 0; good && column < 2; ++column)
                     good = XYAccPutDataF(acc, 0, 0, column, batch * 100 + 1, 100, values) != 0;
             return good;
         }},
    };
    std::printf("\n%-24s%12s%12s%12s\n", "microseconds for each", "1,000", "10,000", "100,000");
    for (const auto& row : rows) {
        std::printf("%-24s", row.name);
        for (const std::int64_t count : {1'000, 10'000, 100'000})
            std::printf("%12.2f", Grow(count, row.fill));
        std::printf("\n");
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVFolder = folder.Path();
    if (!MakeFiles())
        return 1;
    std::vector<BenchRatio> ratios = {
        {"BM_GetDataF", "BM_ReadPlainFloats", 0.6, true},
        {"BM_GetDataFOfDoubles", "BM_ReadPlainDoubles", 0.6, true},
        {"BM_GetData", "BM_ReadPlainDoubles", 0.6, true},
        {"BM_WriteTable", "BM_WritePlain", 0.5, true},
        {"BM_Limits", "BM_ReadAll", 0.5, true},
    };
#ifdef DAX_HAVE_HDF5_TABLES
    ratios.push_back({"BM_GetDataF", "BM_ReadHdf5Floats", 1, true});
    ratios.push_back({"BM_GetData", "BM_ReadHdf5Doubles", 1, true});
    ratios.push_back({"BM_WriteTable", "BM_WriteHdf5", 1, true});
#endif
    BenchTimes times;
    const int status = RunBenchRatios(argc, argv, ratios, &times);
    std::printf("framing of a call: %.0f ns beside the plug-in's %.0f (promised: 100)\n",
                (times["BM_OneValue"] - times["BM_OneValuePlugin"]) * 1e9, times["BM_OneValuePlugin"] * 1e9);
    PrintGrowth();
    return status;
}
