// Opens the input as a Famos file and reads the values of its components.

#include "FuzzFile.h"
#include "bus/VDFamosUtil.h"
#include "bus/VDFamosValues.h"

#include <algorithm>

namespace {

void ReadValues(const char* filename, const VDFamosHeader& header)
{
    constexpr std::int64_t most = 1000;
    double points[most];
    VDIo io(filename);
    if (!io.Open(VTOpenRead))
        return;
    VDFamosValues values;
    VDFamosLayout layout;
    const VDFamosPlacement placement(header, io.GetFileSize());
    for (std::size_t group = 0; group < header.groups.size(); ++group)
        for (std::size_t index = 0; index < header.groups[group].components.size(); ++index)
            if (placement.Find(group, index, &layout)) {
                values.Read(io, layout, 0, std::min(layout.count, most), points);
                values.Read(io, layout, layout.count - 1, 1, points);
            }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".dat");
    VDFamosUtil famos;
    unsigned long count = 0;
    const char* const filename = file.Write(FuzzText(data, size));
    if (famos.Open(VDString(filename), "") && famos.GetChannelCount(&count))
        ReadValues(filename, famos.GetHeader());
    return 0;
}
