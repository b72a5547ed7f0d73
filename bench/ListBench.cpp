// What it costs to list a folder beside the bare system calls on its files, how grouping and filters grow with the number of
// files, and what memory a listed test takes.

#include "BenchFolder.h"

#include "daxlib/daxlib.h"
#include "vdbase/VDPreferenceSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <string>

namespace {

constexpr int Counts[] = {1'000, 10'000, 100'000};

/// A folder of files that are named by their number.
const std::string& FolderOf(const std::string& kind, int count, const std::string& content,
                            const std::function<std::string(int)>& name)
{
    static const BenchFolder folder;
    static std::map<std::string, std::string> made;
    std::string& path = made[kind + std::to_string(count)];
    if (path.empty()) {
        path = folder.Name(kind + std::to_string(count));
        std::filesystem::create_directory(path);
        for (int number = 0; number < count; ++number)
            std::ofstream(path + "/" + name(number), std::ios::binary) << content;
    }
    return path;
}

std::string WavContent()
{
    std::string content = "RIFF----WAVEfmt ----------------------data----";
    const auto put = [&](std::size_t at, std::uint32_t value, std::size_t size) {
        for (std::size_t byte = 0; byte < size; ++byte)
            content[at + byte] = static_cast<char>(value >> (8 * byte));
    };
    content.resize(1068);
    put(4, 1060, 4);
    content.replace(12, 4, "fmt ");
    put(16, 16, 4);
    put(20, 1, 2);
    put(22, 1, 2);
    put(24, 1000, 4);
    put(28, 2000, 4);
    put(32, 2, 2);
    put(34, 16, 2);
    content.replace(36, 4, "data");
    put(40, 1024, 4);
    return content;
}

const std::string& WavFolder(int count)
{
    return FolderOf("wav", count, WavContent(), [](int number) { return "run_a" + std::to_string(number) + "x.wav"; });
}

/// A hundred files make up a test, or each does.
const std::string& ChannelFolder(int count, bool together)
{
    return FolderOf(together ? "few" : "many", count, "STAND fileid=601\n", [=](int number) {
        const int test = together ? number % (count / 100) : number;
        char name[40];
        std::snprintf(name, sizeof name, "test%06d_%02d.dat", test, together ? number / (count / 100) : 0);
        return std::string(name);
    });
}

VDFileIdArrayHandle List(const std::string& folder, const std::string& text)
{
    const VDDirListHandle list(VFDirListCreate());
    VDFileIdArrayHandle tests;
    VFDirListSetPath(list.Get(), folder);
    VFDirListSetFilesMatching(list.Get(), text);
    if (!VFDirListCreateList(list.Get())) {
        std::fprintf(stderr, "the folder isn't listed: %s\n", VFErrorGetText(VFGetBaseLibError()).c_str());
        std::exit(1);
    }
    VFDirListGetFileIdArray(list.Get(), tests.Out());
    return tests;
}

void CheckCount(const VDFileIdArrayHandle& tests, int wanted)
{
    int count = 0;
    FIAGetSize(tests.Get(), &count);
    if (count == wanted)
        return;
    std::fprintf(stderr, "%d tests instead of %d\n", count, wanted);
    std::exit(1);
}

/// The least that a list takes: each name, what it is and, if asked for, its first bytes.
void VisitFiles(const std::string& folder, bool read)
{
    DIR* const stream = opendir(folder.c_str());
    while (const dirent* entry = readdir(stream)) {
        struct stat status;
        const std::string name = folder + "/" + entry->d_name;
        if (stat(name.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || !read)
            continue;
        char header[512];
        const int file = open(name.c_str(), O_RDONLY);
        if (pread(file, header, sizeof header, 0) < 0)
            std::exit(1);
        close(file);
    }
    closedir(stream);
}

double Time(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

struct Row
{
    const char* name;
    std::function<void(int count)> run;
    std::function<void(int count)> reference;
    const char* promised;
};

/// Best of some runs that take turns.
void Print(const Row& row)
{
    std::printf("%-44s", row.name);
    for (const int count : Counts) {
        double best = 1e9;
        double reference = 1e9;
        for (int run = 0; run < std::clamp(200'000 / count, 3, 20); ++run) {
            best = std::min(best, Time([&] { row.run(count); }));
            reference = std::min(reference, Time([&] { row.reference(count); }));
        }
        std::printf(" %9.3f us %6.2fx", best / count * 1e6, best / reference);
        std::fflush(stdout);
    }
    std::printf("  %s\n", row.promised);
}

void PrefersExtensions(bool prefers)
{
    FINFSetEnableIdentifyByExtension(prefers ? 1 : 0);
}

std::string ManyNumbers(int count)
{
    std::string text = "*;c";
    for (int number = 0; number < count; ++number)
        text += std::to_string(3 * number + 1) + ",";
    return text;
}

void PrintMemory()
{
    constexpr int tests = 100'000;
    const auto used = [] { return static_cast<double>(mallinfo2().uordblks); };
    double before = used();
    const VDFileIdArrayHandle flat = List(WavFolder(tests), "*");
    std::printf("%-44s %9.0f bytes  < 1500\n", "memory a test", (used() - before) / tests);
    before = used();
    const VDFileIdArrayHandle grouped = List(ChannelFolder(tests, true), "*");
    std::printf("%-44s %9.0f bytes  < 300\n", "memory a channel, with its share of the test", (used() - before) / tests);
}

}  // namespace

int main()
{
    FINFAddPlugin("Stand", "StandFF", DAX_STANDIN, "Stand-in");
    FINFAddPlugin("Other", "OtherFF", DAX_STANDIN, "Stand-in");
    VDPreferenceSystem preferences;
    preferences.OverrideBooleanValue("/FileFormats/Extensions/IdentifyByExtension_WAV", true);
    preferences.OverrideStringValue("/FileFormats/Extensions/Extensions_WAV", "wav");

    const auto readdirAndStat = [](int count) { VisitFiles(WavFolder(count), false); };
    const auto withContent = [](int count) { VisitFiles(WavFolder(count), true); };
    const auto listGroups = [](int count, bool together) {
        CheckCount(List(ChannelFolder(count, together), "*"), together ? count / 100 : count);
    };
    std::printf("%-44s %20s %20s %20s  %s\n", "a file, and beside its reference", "1,000", "10,000", "100,000", "promised");
    for (const Row& row : {
             Row{"by extension : readdir + stat",
                 [](int count) {
                     PrefersExtensions(true);
                     CheckCount(List(WavFolder(count), "*"), count);
                 },
                 readdirAndStat, "<= 2"},
             Row{"by content : the same + open + read + close",
                 [](int count) {
                     PrefersExtensions(false);
                     CheckCount(List(WavFolder(count), "*"), count);
                 },
                 withContent, "<= 1.5"},
             Row{"100 files a test : list of single files", [&](int count) { listGroups(count, true); }, withContent,
                 "even"},
             Row{"a file a test : list of single files", [&](int count) { listGroups(count, false); }, withContent, "even"},
             Row{"10,000 numbers : 10", [](int count) { List(WavFolder(count), ManyNumbers(10'000)); },
                 [](int count) { List(WavFolder(count), ManyNumbers(10)); }, "even"},
         })
        Print(row);
    PrintMemory();
    return 0;
}
