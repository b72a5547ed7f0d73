#include "RegistryTest.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <new>

// Allocations of this program, and of all that it loads, can be made to fail.

namespace {

long VVAllocations = 0;
long VVFirstFailure = 0;  ///< none while 0
bool VVFailOnce = true;

bool Fails() noexcept
{
    if (VVFirstFailure == 0)
        return false;
    ++VVAllocations;
    return VVFailOnce ? VVAllocations == VVFirstFailure : VVAllocations >= VVFirstFailure;
}

void* Allocate(std::size_t size) noexcept
{
    return Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size)
{
    if (void* memory = Allocate(size))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size)
{
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size)
{
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Allocate(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

using OutOfMemoryTest = RegistryTest;

enum Outcome { Unhurt = 0, Recovered = 1, Untold = 2, HalfLoaded = 3, StillBroken = 4 };

/// The first load of a fresh process while memory is short, and what the registry knows when there is memory again.
Outcome LoadShortOfMemory(VDFileInfo* info, VDFileId* id, long firstFailure, bool once)
{
    VDStringArray keywords;
    VDFileIdArray* tests = nullptr;
    VVFailOnce = once;
    VVFirstFailure = firstFailure;
    const bool loaded = FINFGetFileFormatKeywords(info, VTFileAccessAll, &keywords) != 0;
    VVFirstFailure = 0;
    if (!loaded && !VFErrorCheck(-327681))
        return Untold;
    const std::string found = loaded ? "some" : "";
    const auto isWhole = [&] {
        std::string all;
        for (const VDString& keyword : keywords)
            all += keyword.Str() + ' ';
        return all == "StandA StandRun StandSerial StandMissing StandNobody StandNoCreate StandB StandC StandSchedule "
                      "StandMetaFile Z4TimeSeries(VG4.0) Z4TimeSeries Z4Histogram TemporaryTimeSeries TemporaryHistogram Famos "
                      "FamosMultiColumn FamosTimeStamped ";
    };
    if (loaded && !isWhole())
        return HalfLoaded;
    if (!FINFGetFileFormatKeywords(info, VTFileAccessAll, &keywords) || !isWhole() ||
        !FINFIdentifyFile(info, id, 1, &tests))
        return StillBroken;
    return VVAllocations >= firstFailure ? Recovered : Unhurt;
}

int RunShortOfMemory(VDFileInfo* info, VDFileId* id, long firstFailure, bool once)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(LoadShortOfMemory(info, id, firstFailure, once));
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace

TEST_F(OutOfMemoryTest, LoadOfTheRegistryFailsWithAReportAndCanBeDoneAgain)
{
    // A library's own start isn't what is tried here.
    ASSERT_NE(StandIn::Find<void(VDString*)>("StandTSTakeLog"), nullptr);
    const VDFileIdHandle id = MakeFile("a.sta", "STAND");
    for (const bool once : {true, false}) {
        int outcome = Recovered;
        long firstFailure = 0;
        // Where all fail from one on, the steps may be wider: each of these was tried alone.
        while (outcome == Recovered) {
            firstFailure += once ? 1 : 7;
            outcome = RunShortOfMemory(Info(), id.Get(), firstFailure, once);
        }
        EXPECT_EQ(outcome, Unhurt) << "allocation " << firstFailure << (once ? "" : " and all behind it");
        EXPECT_GT(firstFailure, 300);
    }
}
