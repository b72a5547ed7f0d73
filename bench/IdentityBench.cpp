// What naming a file and finding out what it is costs beside the bare system calls, and what the calls on tests with many
// channels and on many tests cost each, which stays about the same however many there are.

#include "BenchFolder.h"
#include "BenchRatios.h"

#include "daxlib/daxlib.h"
#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDIo.h"
#include "vdstore/LQChannelMapper.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Files = 20'000;
std::vector<std::string> VVFilenames;

void BM_CreateAndName(benchmark::State& state)
{
    const std::string& name = VVFilenames.front();
    for (auto _ : state) {
        VDFileId* id = FIDCreate();
        FIDSetFilename(id, VTNameFormFile, name.c_str(), "");
        FIDRelease(id);
    }
}
BENCHMARK(BM_CreateAndName);

/// The least that a named file takes: an object with the name's three parts.
void BM_BareName(benchmark::State& state)
{
    struct Name
    {
        std::string folder;
        std::string stem;
        std::string extension;
    };
    const std::string& name = VVFilenames.front();
    for (auto _ : state) {
        const std::size_t slash = name.rfind('/');
        const std::size_t point = name.rfind('.');
        auto parts = std::make_unique<Name>();
        parts->folder = name.substr(0, slash);
        parts->stem = name.substr(slash + 1, point - slash - 1);
        parts->extension = name.substr(point + 1);
        benchmark::DoNotOptimize(parts.get());
    }
}
BENCHMARK(BM_BareName);

void BM_OpenReadClose(benchmark::State& state)
{
    char header[512];
    for (auto _ : state)
        for (const std::string& name : VVFilenames) {
            const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
            if (file < 0 || read(file, header, sizeof header) < 0)
                state.SkipWithError("read failed");
            close(file);
        }
}
BENCHMARK(BM_OpenReadClose)->Unit(benchmark::kMillisecond);

void BM_IdentifyFile(benchmark::State& state)
{
    const VDFileInfoHandle info(FINFCreate());
    for (auto _ : state)
        for (const std::string& name : VVFilenames) {
            const VDFileIdHandle id(FIDCreate());
            FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
            VDFileIdArrayHandle tests;
            if (!FINFIdentifyFile(info.Get(), id.Get(), 0, tests.Out()))
                state.SkipWithError("not identified");
        }
}
BENCHMARK(BM_IdentifyFile)->Unit(benchmark::kMillisecond);

VDString Title(int i)
{
    return VDString("Channel " + std::to_string(i));
}

constexpr int MetadataChannels = 10'000;
constexpr int MetadataKeywords = 5;
VDFileIdHandle VVMetadataTest;
std::string VVGrowthFile;

/// A storage file of many channels with some metadata items each.
VDFileIdHandle MakeMetadataTest(const std::string& name, int channels, int items)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), DaxStorageFileId, 11);
    FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
    int index = 0;
    for (int number = 1; number <= channels; ++number)
        FIDAddChannel(id.Get(), number, &index);
    FIDSetInfoLoaded(id.Get(), 1);
    const VDTsAccHandle access(TSAccCreate());
    LQChannelMapper* mapper = nullptr;
    if (!TSAccSetId(access.Get(), id.Get(), 1) || !TSAccOpen(access.Get(), VTTsAccOpenCreate) ||
        !TSAccGetMetaData(access.Get(), &mapper))
        return {};
    for (int channel = 0; channel < mapper->GetChannelCount(); ++channel) {
        Z4PropertySet& set = *mapper->AdoptMetaDataSet("Sensor", nullptr, channel);
        for (int item = 0; item < items; ++item)
            set.PutDouble(Title(item), channel + item);
    }
    return TSAccClose(access.Get()) ? std::move(id) : VDFileIdHandle();
}

void BM_FetchMapper(benchmark::State& state)
{
    for (auto _ : state) {
        VDMetaDataReader reader;
        LQChannelMapper* mapper = nullptr;
        if (!reader.SetFileId(VVMetadataTest.Get()) || !reader.GetMetaData(&mapper) ||
            mapper->GetChannelCount() != MetadataChannels)
            state.SkipWithError("no mapper");
    }
}
BENCHMARK(BM_FetchMapper)->Unit(benchmark::kMillisecond);

void BM_LoadMetadata(benchmark::State& state)
{
    VDStringArray none;
    VDStringArray keywords;
    VDStringArray types;
    for (int i = 0; i < MetadataKeywords; ++i) {
        keywords.AppendItem("Sensor." + Title(i * 3));
        types.AppendItem("real");
    }
    FIDSetMetadataKeywords(VVMetadataTest.Get(), &none, &none, &keywords, &types, 0);
    VDVariant value;
    double number = 0;
    for (auto _ : state)
        if (!FIDLoadMetadata(VVMetadataTest.Get()) ||
            !FIDGetMetadata(VVMetadataTest.Get(), MetadataChannels - 1, keywords[0], &value) || !value.GetDouble(&number) ||
            number != MetadataChannels - 1)
            state.SkipWithError("no values");
}
BENCHMARK(BM_LoadMetadata)->Unit(benchmark::kMillisecond);

/// A WAV file with one channel of a few points.
std::string WavContent()
{
    std::string content("RIFF\x34\x00\x00\x00WAVEfmt \x10\x00\x00\x00\x01\x00\x01\x00\x44\xAC\x00\x00\x88\x58\x01\x00"
                        "\x02\x00\x10\x00"
                        "data\x10\x00\x00\x00",
                        44);
    content.append(16, '\1');
    return content;
}

/// A list of tests, in which the last is looked for by its descriptor.
constexpr int ListedTests = 100'000;
VDFileIdArrayHandle VVListed;
VDString VVObjectFile;

void BM_FindFromTestSpec(benchmark::State& state)
{
    const std::string text = "/d/run" + std::to_string(ListedTests - 1) + ".dat;r-1;c";
    for (auto _ : state) {
        VDFileIdHandle found;
        if (FIAFindFromTestSpec(VVListed.Get(), text.c_str(), found.Out()) == 0 || !found)
            state.SkipWithError("not found");
    }
}
BENCHMARK(BM_FindFromTestSpec)->Unit(benchmark::kMillisecond);

/// The same by what tests are compared by, the first time.
void BM_WalkList(benchmark::State& state)
{
    const std::string wanted = "/d/run" + std::to_string(ListedTests - 1) + ".dat";
    VDString name;
    VDString extension;
    for (auto _ : state)
        for (int index = 0; index < ListedTests; ++index) {
            VDFileIdHandle id;
            if (FIAGetAt(VVListed.Get(), index, id.Out()) == 0 || FIDGetFilename(id.Get(), &name, &extension) == 0)
                state.SkipWithError("no entry");
            benchmark::DoNotOptimize(name.CompareNoCase(wanted.c_str()));
        }
}
BENCHMARK(BM_WalkList)->Unit(benchmark::kMillisecond);

/// A piece of work on so many items.
struct Growth
{
    const char* name;
    void (*run)(int count);
};

using Ids = std::vector<VDFileIdHandle>;

Ids MakeIds(int count, bool named)
{
    Ids ids;
    for (int i = 0; i < count; ++i) {
        ids.emplace_back(FIDCreate());
        if (named)
            FIDSetFilename(ids.back().Get(), VTNameFormFile, ("/d/run" + std::to_string(i) + ".dat").c_str(), "");
    }
    return ids;
}

/// An id with channels whose numbers are in no order.
VDFileIdHandle MakeUnordered(int count)
{
    VDFileIdHandle id(FIDCreate());
    int index = 0;
    for (int i = count; i > 0; --i)
        FIDAddChannel(id.Get(), i ^ 1, &index);
    return id;
}

const Growth VVGrowth[] = {
    {"temporary ids, live at one time",
     [](int count) {
         const Ids ids = MakeIds(count, false);
         for (const VDFileIdHandle& id : ids)
             FIDSetFileId(id.Get(), DaxStorageFileId, 13);
     }},
    {"channels added, numbers rising",
     [](int count) {
         const VDFileIdHandle id(FIDCreate());
         int index = 0;
         for (int i = 0; i < count; ++i)
             FIDAddChannel(id.Get(), i, &index);
     }},
    {"channels added, numbers falling", [](int count) { MakeUnordered(count); }},
    {"channels added by title, renamed",
     [](int count) {
         const VDFileIdHandle id(FIDCreate());
         int index = 0;
         for (int i = 0; i < count; ++i) {
             const VDString title = Title(i);
             FIDAddChannelByTitle(id.Get(), &title, &index);
             FIDSetChanTitle(id.Get(), index, title + "!");
         }
     }},
    {"channels renumbered and found",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         int index = 0;
         for (int i = 0; i < count; ++i) {
             FIDSetChanNumber(id.Get(), i, -i);
             FIDGetChanIndex(id.Get(), -i, &index);
         }
     }},
    {"channels removed from the front",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         for (int i = 0; i < count; ++i)
             FIDRemoveChan(id.Get(), 0);
     }},
    {"channels found and removed",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         int index = 0;
         for (int i = 0; i < count; ++i) {
             FIDGetChanIndex(id.Get(), i ^ 1, &index);
             FIDRemoveChan(id.Get(), index);
         }
     }},
    {"channels unselected, asked each time",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         char some = 0;
         for (int i = 0; i < count; ++i) {
             FIDSetChanSelect(id.Get(), i, 0);
             FIDGetSomeChansSelected(id.Get(), &some);
         }
     }},
    {"a test copied, sorted and described",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         const VDFileIdHandle copy(FIDCreate());
         FIDCopy(copy.Get(), id.Get(), ~0U);
         FIDSortChans(copy.Get(), 0);
         FIDSetChanSelect(copy.Get(), 0, 0);
         VDString text;
         FIDGetTestDescriptor(copy.Get(), VTTestDescSelected, &text);
         FIDGetChanSelText(copy.Get(), 100, &text);
     }},
    {"tests listed, each once",
     [](int count) {
         const Ids ids = MakeIds(count, true);
         const VDFileIdArrayHandle list(FIACreate());
         int index = 0;
         for (const VDFileIdHandle& id : ids) {
             FIAFind(list.Get(), id.Get(), &index);
             FIAAppendItem(list.Get(), id.Get());
         }
     }},
    {"tests removed from the front",
     [](int count) {
         const VDFileIdArrayHandle list(FIACreate());
         for (const VDFileIdHandle& id : MakeIds(count, false))
             FIAAppendItem(list.Get(), id.Get());
         for (int i = 0; i < count; ++i)
             FIARemoveAt(list.Get(), 0);
     }},
    {"tests copied, sorted and thinned out",
     [](int count) {
         const VDFileIdArrayHandle list(FIACreate());
         for (const VDFileIdHandle& id : MakeIds(count, true))
             FIAAppendItem(list.Get(), id.Get());
         const VDFileIdArrayHandle copy(FIACreate());
         FIACopy(copy.Get(), list.Get());
         FIASort(copy.Get(), VTFileIdArraySortTests | VTFileIdArraySortTestsDescending);
         for (int i = 0; i < count; i += 2)
             FIASelectAt(copy.Get(), i, 1);
         FIARemoveSelected(copy.Get(), 1);
     }},
    {"ids to XML and back",
     [](int count) {
         const VDFileIdHandle copy(FIDCreate());
         VDString xml;
         for (const VDFileIdHandle& id : MakeIds(count, true)) {
             FIDToXml(id.Get(), &xml);
             FIDFromXml(copy.Get(), &xml);
         }
     }},
    {"channels of an id to XML and back",
     [](int count) {
         const VDFileIdHandle id = MakeUnordered(count);
         VDString xml;
         FIDToXml(id.Get(), &xml);
         FIDFromXml(id.Get(), &xml);
     }},
    {"ids to an object in a file and back",
     [](int count) {
         const VDFileIdArrayHandle list(FIACreate());
         for (const VDFileIdHandle& id : MakeIds(count, true))
             FIAAppendItem(list.Get(), id.Get());
         VDIo io(VVObjectFile);
         io.Open(VTOpenCreate);
         FIASerialise(list.Get(), &io, 0, nullptr);
         io.SetCurPos(0);
         FIASerialise(list.Get(), &io, 1, nullptr);
     }},
    {"preferences of a test",
     [](int count) {
         const VDFileIdHandle id(FIDCreate());
         VDFileIdPreferences* preferences = nullptr;
         FIDGetPreferences(id.Get(), 1, &preferences);
         for (int i = 0; i < count; ++i)
             preferences->SetInt(Title(i), i);
     }},
    {"metadata of channels written, loaded",
     [](int count) {
         const VDFileIdHandle id = MakeMetadataTest(VVGrowthFile, count, 2);
         VDStringArray none;
         VDStringArray keywords;
         VDStringArray types;
         keywords.AppendItem("Sensor.Channel 1");
         types.AppendItem("real");
         VDVariant value;
         FIDSetMetadataKeywords(id.Get(), &none, &none, &keywords, &types, 1);
         for (int i = 0; i < count; ++i)
             FIDGetMetadata(id.Get(), i, keywords[0], &value);
     }},
    {"metadata sets copied by name, checked",
     [](int count) {
         LQChannelMapper source(nullptr);
         LQChannelMapper target(nullptr);
         VDStringArray names;
         for (int i = 0; i < count; ++i) {
             names.AppendItem(Title(i));
             source.AdoptMetaDataSet(names[i], nullptr, LQChannelMapper::GLOBAL);
         }
         VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(&source, LQChannelMapper::GLOBAL, &target,
                                                                         LQChannelMapper::GLOBAL, VTMetaDataCopyMatching,
                                                                         true, true, true, true, names);
     }},
};

/// Seconds of processor an item, the best of some runs: others on the machine take longer turns from a longer run.
double TimeAnItem(const Growth& growth, int count)
{
    double best = 0;
    for (int run = 0; run < 5 && best * count < 1; ++run) {
        const std::clock_t start = std::clock();
        for (int done = 0; done < 10'000; done += count)
            growth.run(count);
        const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        const double anItem = seconds / std::max(count, 10'000);
        best = run == 0 ? anItem : std::min(best, anItem);
    }
    return best;
}

void PrintGrowth()
{
    std::printf("\n%-38s %12s %14s %14s\n", "time an item, beside that of 1,000", "1,000 (us)", "10,000", "100,000");
    for (const Growth& growth : VVGrowth) {
        const double reference = TimeAnItem(growth, 1'000);
        std::printf("%-38s %12.3f", growth.name, reference * 1e6);
        for (int count = 10'000; count <= 100'000; count *= 10)
            std::printf(" %13.2fx", TimeAnItem(growth, count) / reference);
        std::printf("\n");
        std::fflush(stdout);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    const BenchFolder folder;
    const std::string content = WavContent();
    for (int number = 0; number < Files; ++number) {
        VVFilenames.push_back(folder.Name("run" + std::to_string(number) + ".wav"));
        std::ofstream(VVFilenames.back(), std::ios::binary) << content;
    }
    VVMetadataTest = MakeMetadataTest(folder.Name("metadata.z4t"), MetadataChannels, 20);
    VVGrowthFile = folder.Name("growth.z4t");
    VVObjectFile = folder.Name("objects").c_str();
    VVListed.Reset(FIACreate());
    for (const VDFileIdHandle& id : MakeIds(ListedTests, true))
        FIAAppendItem(VVListed.Get(), id.Get());
    const int status = RunBenchRatios(argc, argv,
                                      {{"BM_IdentifyFile", "BM_OpenReadClose", 2.0},
                                       {"BM_CreateAndName", "BM_BareName", 40},
                                       {"BM_FindFromTestSpec", "BM_WalkList", 0.5},
                                       {"BM_LoadMetadata", "BM_FetchMapper", 1.2}});
    PrintGrowth();
    VVListed.Reset();
    return status;
}
