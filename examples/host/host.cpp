// The smallest useful host: says what a file is, lists its channels and prints their first values.

#include <daxlib/DaxHandle.h>
#include <daxlib/daxlib.h>

#include <vdbase/VFError.h>

#include <cstdio>
#include <vector>

static int Fail()
{
    const VDErrorRecord* error = VFGetBaseLibError();
    std::fprintf(stderr, "%d %s (%s)\n", VFErrorGetCode(error), VFErrorGetText(error).c_str(),
                 VFErrorGetRoutine(error).c_str());
    return 1;
}

// What the file holds: one id for each test in it. Only the first is shown here. Handles go back with the scope.
static VDFileIdHandle Identify(const char* filename)
{
    const VDFileIdHandle file(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    VDFileIdHandle test;
    if (FIDSetFilename(file.Get(), VTNameFormFile, filename, "") && FINFIdentifyFile(info.Get(), file.Get(), 1, tests.Out()))
        FIAGetAt(tests.Get(), 0, test.Out());
    return test;
}

static bool PrintChannel(VDFileId* test, VDTsAcc* access, int index)
{
    VDString title;
    VDString units;
    double rate = 0.0;
    std::int64_t points = 0;
    std::int64_t count = 0;
    std::vector<float> values(5);
    if (!FIDGetChanTitle(test, index, &title) || !TSAccGetYUnits(access, index, &units) ||
        !TSAccGetSampleRate(access, index, &rate) || !TSAccGetNumPoints(access, index, &points) ||
        !TSAccGetData(access, index, 1, static_cast<std::int64_t>(values.size()), &count, values.data()))
        return false;
    std::printf("%s [%s], %lld points at %g a second:", title.c_str(), units.c_str(), static_cast<long long>(points), rate);
    for (std::int64_t at = 0; at < count; ++at)
        std::printf(" %g", static_cast<double>(values[static_cast<std::size_t>(at)]));
    std::printf("\n");
    return true;
}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: host FILE\n");
        return 1;
    }
    const VDFileIdHandle test = Identify(argv[1]);
    VDString format;
    if (!test || !FIDGetFileTypeDesc(test.Get(), 0, &format))
        return Fail();
    std::printf("%s: %s\n", argv[1], format.c_str());

    const VDTsAccHandle access(TSAccCreate());
    long channels = 0;
    if (!TSAccSetId(access.Get(), test.Get(), 0) || !TSAccOpen(access.Get(), VTTsAccOpenRead) ||
        !TSAccGetNumChans(access.Get(), &channels))
        return Fail();
    for (int index = 0; index < channels; ++index)
        if (!PrintChannel(test.Get(), access.Get(), index))
            return Fail();
    return 0;
}
