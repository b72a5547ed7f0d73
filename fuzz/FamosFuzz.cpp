// Opens the input as a Famos file.

#include "FuzzFile.h"
#include "bus/VDFamosUtil.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".dat");
    VDFamosUtil famos;
    unsigned long count = 0;
    if (famos.Open(VDString(file.Write(FuzzText(data, size))), ""))
        famos.GetChannelCount(&count);
    return 0;
}
