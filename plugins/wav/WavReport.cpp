#include "WavReport.h"

#include "daxlib/VFDax.h"
#include "vdbase/VFError.h"

int WavReport(int code, const char* routine, const std::string& file, const std::string& detail, int chain)
{
    constexpr int fileLabel = 1005;
    VDString text;
    VFTextGet(VFGetDaxLibText(), code, &text);
    if (!detail.empty())
        text += "\n" + VDString(detail);
    if (!file.empty()) {
        VDString label;
        VFTextGet(VFGetDaxLibText(), fileLabel, &label);
        text += "\n" + label + file.c_str();
    }
    return VFErrorSet(code, text, routine, chain);
}
