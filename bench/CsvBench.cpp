// Reading a table of numbers as text, with all that the library finds out about it, beside a loop that does nothing but read
// and convert, and beside the fastest reader that the distribution packages. That one has to be told the columns and doesn't
// round as it should; the loop doesn't look at what it reads.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"

#include <benchmark/benchmark.h>
#define CSV_IO_NO_THREAD  // what it would do beside is work, too
#include <libfccp/csv.h>

#include <charconv>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int Columns = 8;
constexpr int Rows = 500'000;

std::string VVFilename;
std::int64_t VVBytes = 0;

void MakeTable(const std::string& filename)
{
    std::ofstream file(filename);
    unsigned seed = 1;
    char number[32];
    file << "a,b,c,d,e,f,g,h\n";
    for (int row = 0; row < Rows; ++row)
        for (int column = 0; column < Columns; ++column) {
            seed = seed * 1664525U + 1013904223U;
            std::snprintf(number, sizeof number, "%.6g", (static_cast<double>(seed >> 8) - 8e6) / 1677.7216);
            file << number << (column + 1 < Columns ? ',' : '\n');
        }
    VVBytes = file.tellp();
}

/// What was found out about the file so far doesn't hold for one that has changed.
void Touch(benchmark::State& state)
{
    state.PauseTiming();
    utimensat(AT_FDCWD, VVFilename.c_str(), nullptr, 0);
    state.ResumeTiming();
}

VDXYAccHandle Open(benchmark::State& state, const std::string& filename, bool create)
{
    VDFileIdHandle id(FIDCreate());
    int index = 0;
    FIDSetFileId(id.Get(), 31001, 1);
    FIDSetFilename(id.Get(), VTNameFormFile, filename.c_str(), "");
    FIDAddChannel(id.Get(), 1, &index);
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    VDXYAccHandle acc(XYAccCreate());
    if (!XYAccSetId(acc.Get(), id.Get(), create) || !XYAccOpen(acc.Get(), create ? VTXyAccOpenCreate : VTXyAccOpenRead))
        state.SkipWithError(VFErrorGetText(VFGetBaseLibError()));
    return acc;
}

/// Reads whole columns or, as hosts do, a block of each in turn.
void ReadColumns(benchmark::State& state, int columns)
{
    const VDXYAccHandle acc = Open(state, VVFilename, false);
    int block = 0;
    XYAccGetBufferSize(acc.Get(), &block);
    VDVariant values;
    for (std::int64_t row = 1; row <= Rows; row += block)
        for (int column = 0; column < columns; ++column)
            if (!XYAccGetData(acc.Get(), 0, 0, column, row, block, &values))
                state.SkipWithError(VFErrorGetText(VFGetBaseLibError()));
    benchmark::DoNotOptimize(values.GetBuffer<double>().data());
}

void BM_FirstRead(benchmark::State& state)
{
    for (auto _ : state) {
        Touch(state);
        ReadColumns(state, Columns);
    }
    state.SetBytesProcessed(state.iterations() * VVBytes);
}
BENCHMARK(BM_FirstRead)->Unit(benchmark::kMillisecond);

void BM_FirstOpen(benchmark::State& state)
{
    for (auto _ : state) {
        Touch(state);
        Open(state, VVFilename, false);
    }
    state.SetBytesProcessed(state.iterations() * VVBytes);
}
BENCHMARK(BM_FirstOpen)->Unit(benchmark::kMillisecond);

void BM_PlainLoop(benchmark::State& state)
{
    for (auto _ : state) {
        const int file = open(VVFilename.c_str(), O_RDONLY);
        std::string text(static_cast<std::size_t>(VVBytes), 0);
        if (file < 0 || read(file, text.data(), text.size()) != VVBytes)
            state.SkipWithError("The table can't be read.");
        close(file);
        std::vector<double> values[Columns];
        const char* p = text.data() + text.find('\n') + 1;
        const char* const end = text.data() + text.size();
        for (int column = 0; p < end; column = (column + 1) % Columns) {
            double value = 0.0;
            p = std::from_chars(p, end, value).ptr + 1;
            values[column].push_back(value);
        }
        benchmark::DoNotOptimize(values[0].data());
    }
    state.SetBytesProcessed(state.iterations() * VVBytes);
}
BENCHMARK(BM_PlainLoop)->Unit(benchmark::kMillisecond);

void BM_PackagedReader(benchmark::State& state)
{
    for (auto _ : state) {
        io::CSVReader<Columns> reader(VVFilename);
        std::vector<double> values[Columns];
        double row[Columns];
        reader.next_line();
        while (reader.read_row(row[0], row[1], row[2], row[3], row[4], row[5], row[6], row[7]))
            for (int column = 0; column < Columns; ++column)
                values[column].push_back(row[column]);
        benchmark::DoNotOptimize(values[0].data());
    }
    state.SetBytesProcessed(state.iterations() * VVBytes);
}
BENCHMARK(BM_PackagedReader)->Unit(benchmark::kMillisecond);

void BM_Write(benchmark::State& state)
{
    const std::vector<double> source(16384, 1234.5678);
    VDVariant values;
    values.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, 16384);
    std::copy(source.begin(), source.end(), values.GetBuffer<double>().begin());
    const std::string filename = VVFilename + ".out.csv";
    for (auto _ : state) {
        const VDXYAccHandle acc = Open(state, filename, true);
        XYAccAppendDataSet(acc.Get(), 0);
        for (int column = 0; column < Columns; ++column)
            XYAccAppendCol(acc.Get(), 0, DaxColumnType::Double);
        for (std::int64_t row = 1; row < Rows; row += 16384)
            for (int column = 0; column < Columns; ++column)
                XYAccPutData(acc.Get(), 0, 0, column, row, &values);
        if (!XYAccClose(acc.Get()))
            state.SkipWithError(VFErrorGetText(VFGetBaseLibError()));
    }
    struct stat status = {};
    stat(filename.c_str(), &status);
    state.SetBytesProcessed(state.iterations() * status.st_size);
}
BENCHMARK(BM_Write)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    VVFilename = folder.Name("table.csv");
    MakeTable(VVFilename);
    return RunBenchRatios(
        argc, argv,
        {{"BM_FirstRead", "BM_PlainLoop", 2.0},
         {"BM_FirstRead", "BM_PackagedReader", 1.3},  // which goes over the file once, and is told the types
         {"BM_FirstOpen", "BM_PlainLoop", 0.6}});
}
