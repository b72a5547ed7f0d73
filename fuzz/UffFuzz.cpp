// Universal files: whatever the file, nothing breaks, what is read doesn't depend on the order of reading, and a binary copy
// has the same values.

#include "FuzzFile.h"

#include "daxlib/daxlib.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr std::int64_t MaxPoints = 3000;
constexpr int MaxChannels = 20;

void Check(bool kept)
{
    if (!kept)
        std::abort();
}

void AddPlugins()
{
    FINFAddPlugin("UFF", "UffFF", DAX_UFF, "Universal files");
    TSAccAddPlugin("6D0F4B52-8E37-4C19-A5D4-92B7E16C3F08", "UffTS", DAX_UFF, "Universal files");
    CFAccAddPlugin("B81C9E27-5A40-4D63-9F7E-3C05D2A8641B", "UffCF", DAX_UFF, "Universal files");
}

bool IsSame(double left, double right)
{
    return left == right || (left != left && right != right);
}

/// All points of a channel at once, and some by themselves.
std::vector<double> ReadPoints(VDTsAcc* acc, int channel)
{
    std::int64_t count = 0;
    Check(TSAccGetNumPoints(acc, channel, &count));
    count = std::min(count, MaxPoints);
    std::vector<double> values(static_cast<std::size_t>(count));
    std::int64_t got = 0;
    // Lines of a text may turn out to be fewer than there seemed to be.
    if (count == 0 || !TSAccGetDataDoublePrecision(acc, channel, 1, count, &got, values.data()))
        return {};
    for (const std::int64_t point : {count, std::int64_t(1), count / 2 + 1}) {
        double one = 0;
        Check(TSAccGetDataDoublePrecision(acc, channel, point, 1, &got, &one) &&
              IsSame(one, values[static_cast<std::size_t>(point - 1)]));
    }
    return values;
}

VDFileIdHandle CopyId(const char* filename, int channels)
{
    VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), 31002, 1);
    FIDSetFilename(id.Get(), VTNameFormFile, filename, "");
    for (int channel = 0, index = 0; channel < channels; ++channel) {
        FIDAddChannel(id.Get(), channel + 1, &index);
        FIDSetChanType(id.Get(), index, DaxDataType::Double);
    }
    FIDSetIdentified(id.Get(), 1);
    FIDSetInfoLoaded(id.Get(), 1);
    return id;
}

void UseTimes(VDFileId* id)
{
    static FuzzFile file(".copy.uff");
    const VDTsAccHandle acc(TSAccCreate());
    LQChannelMapper* mapper = nullptr;
    long channels = 0;
    if (!TSAccSetId(acc.Get(), id, 0) || !TSAccOpen(acc.Get(), VTTsAccOpenRead))
        return;
    Check(TSAccGetMetaData(acc.Get(), &mapper) && TSAccGetNumChans(acc.Get(), &channels));
    const int count = std::min(static_cast<int>(channels), MaxChannels);
    const char* const name = file.Write("");
    const VDFileIdHandle copyId = CopyId(name, count);
    std::vector<std::vector<double>> values;
    {
        const VDTsAccHandle copy(TSAccCreate());
        Check(TSAccSetId(copy.Get(), copyId.Get(), 1) && TSAccOpen(copy.Get(), VTTsAccOpenCreate));
        for (int channel = 0; channel < count; ++channel) {
            VDString title;
            TSAccGetChanTitle(acc.Get(), channel, &title);
            TSAccSetChanTitle(copy.Get(), channel, title);
            values.push_back(ReadPoints(acc.Get(), channel));
            Check(TSAccPutDataDoublePrecision(copy.Get(), channel, 1, static_cast<std::int64_t>(values.back().size()),
                                              values.back().data()));
        }
        Check(TSAccClose(copy.Get()));
    }
    const VDTsAccHandle copy(TSAccCreate());
    Check(TSAccSetId(copy.Get(), copyId.Get(), 0) && TSAccOpen(copy.Get(), VTTsAccOpenRead));
    for (int channel = 0; channel < count; ++channel) {
        const std::vector<double> back = ReadPoints(copy.Get(), channel);
        Check(std::equal(back.begin(), back.end(), values[static_cast<std::size_t>(channel)].begin(),
                         values[static_cast<std::size_t>(channel)].end(), IsSame));
    }
}

void UseSpectra(VDFileId* id)
{
    const VDCFAccHandle acc(CFAccCreate());
    LQChannelMapper* mapper = nullptr;
    std::int64_t lines = 0;
    long channels = 0;
    if (!CFAccSetId(acc.Get(), id, 0) || !CFAccOpen(acc.Get(), 1))
        return;
    Check(CFAccGetMetaData(acc.Get(), &mapper) && CFAccGetNumChans(acc.Get(), &channels) &&
          CFAccGetNumLines(acc.Get(), &lines));
    lines = std::min(lines, MaxPoints);
    std::vector<double> values(static_cast<std::size_t>(2 * lines));
    std::int64_t got = 0;
    for (int channel = 0; lines > 0 && channel < std::min(static_cast<int>(channels), MaxChannels); ++channel) {
        CFAccGetData(acc.Get(), channel, 1, 1, lines, DaxSpectrumKind::ComplexDouble, &got, values.data());
        CFAccGetData(acc.Get(), channel, 1, lines / 2 + 1, lines, DaxSpectrumKind::ComplexFloat, &got, values.data());
        CFAccGetLineAxisData(acc.Get(), 1, lines, DaxSpectrumKind::Double, &got, values.data());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".uff");
    static const bool added = (AddPlugins(), true);
    const VDFileIdHandle id(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    int count = 0;
    if (!added || !FIDSetFilename(id.Get(), VTNameFormFile, file.Write(FuzzText(data, size)), "") ||
        !FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) || !FIAGetSize(tests.Get(), &count))
        return 0;
    for (int test = 0; test < std::min(count, 10); ++test) {
        VDFileIdHandle each;
        int type = 0;
        VDString classId;
        VDString description;
        if (FIAGetAt(tests.Get(), test, each.Out()) && FIDGetAccessInfo(each.Get(), &type, &classId, &description))
            type == VTFileAccessTimeSeries ? UseTimes(each.Get()) : UseSpectra(each.Get());
    }
    return 0;
}
