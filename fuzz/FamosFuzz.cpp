// Opens the input as a Famos file: its keys by the parser, and as a test with channels, metadata and values, as the format's
// plug-ins do.

#include "FuzzFile.h"
#include "bus/VDFamosUtil.h"
#include "famos/FamosFormat.h"
#include "famos/VDFamosPairs.h"
#include "famos/VDTsAccFamos.h"
#include "famos/VDTsAccFamosStamped.h"

#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FamosFF.h"
#include "daxlib/MultiColumnPlugin.h"
#include "daxlib/TimeSeriesPlugin.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr std::int64_t VVMostPoints = 1000;

void ReadChannel(VDTsAccFamosBase& acc, int channel)
{
    VDVariant points;
    std::int64_t count = 0;
    if (!acc.GetValue(channel, DaxTimeSeries::NumPoints, &points) || !points.GetHuge(&count) || count < 0)
        std::abort();
    double doubles[VVMostPoints];
    float floats[VVMostPoints];
    std::uint32_t words[VVMostPoints];
    acc.GetDataDoublePrecision(channel, 1, std::min(count, VVMostPoints), doubles);
    acc.GetData(channel, std::max<std::int64_t>(count - VVMostPoints, 0) + 1, std::min(count, VVMostPoints), floats);
    acc.GetDataDigital32(channel, count, std::min<std::int64_t>(count, 1), words);
    if (acc.GetData(channel, count + 1, 1, floats))
        std::abort();
}

template <class Access>
void ReadTest(VDFileId* id)
{
    Access acc;
    int channels = 0;
    LQChannelMapper* mapper = nullptr;
    if (!acc.SetId(id, 0) || !acc.Open(1) || !FIDGetNumChans(id, &channels))
        return;
    if (!acc.LoadMetaData(&mapper) || mapper->GetChannelCount() != channels)
        std::abort();
    for (int channel = 0; channel < std::min(channels, 20); ++channel)
        ReadChannel(acc, channel);
}

void ReadPairs(VDFileId* id)
{
    VDFamosPairs pairs;
    VDVariant value;
    std::int64_t rows = 0;
    LQChannelMapper* mapper = nullptr;
    if (!pairs.SetId(id, 0) || !pairs.Open(1))
        return;
    pairs.LoadMetaData(&mapper);
    for (long channel = 0; channel < std::min(mapper->GetChannelCount(), 20); ++channel) {
        if (!pairs.GetValue(channel, -1, DaxMultiColumn::NumRows, &value) || !value.GetHuge(&rows) || rows < 0)
            std::abort();
        for (const long column : {0L, 1L})
            pairs.GetElement(channel, column, rows, &value);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".dat");
    const char* const filename = file.Write(FuzzText(data, size));
    VDFamosUtil famos;
    unsigned long count = 0;
    if (famos.Open(VDString(filename), ""))
        famos.GetChannelCount(&count);

    const VDFileIdHandle id(FIDCreate());
    const VDFileIdArrayHandle tests(FIACreate());
    VDIo io(filename);
    FIDSetFilename(id.Get(), VTNameFormFile, filename, "");
    // Whatever the beginning is: that it must be the format's own is tried elsewhere.
    char claimed = 0;
    if (!io.Open(VTOpenRead) || !FamosFFIdentifyFile(id.Get(), "|CF,1", 5, &io, tests.Get(), &claimed) || claimed == 0)
        return 0;
    FIDSetIdentified(id.Get(), 1);
    if (FamosFFLoadFileInfo(id.Get(), "|CF,1", 5, &io) == 0)
        return 0;
    FIDSetInfoLoaded(id.Get(), 1);
    int fileId = 0;
    int subId = 0;
    FIDGetFileId(id.Get(), &fileId, &subId);
    if (subId == FamosFormat::TimeStamped)
        ReadTest<VDTsAccFamosStamped>(id.Get());
    else if (subId == FamosFormat::Pairs)
        ReadPairs(id.Get());
    else
        ReadTest<VDTsAccFamos>(id.Get());
    return 0;
}
