#pragma once

#include "daxlib/VFDax.h"
#include "vdbase/VFError.h"

#include <string>

/// Records a failure: the catalogue text of the code, a line that says what is wrong with this file, and a line that names
/// the file. `GetLastError` of a plug-in that reports so answers "VARDO".
/// @param detail  may be empty
/// @param file    may be empty
/// @param chain   1 puts the report on top of those that are recorded already
/// @return 0 always
inline int PluginReport(int code, const char* routine, const std::string& file, const std::string& detail, int chain = 0)
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
