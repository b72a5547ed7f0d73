#include "FileReport.h"

#include "vdbase/VFError.h"

#include <cstring>

namespace {

const char* VFWhatFailed(int code)
{
    switch (code) {
    case VDBaseError::FileOpen:
        return "The file can't be opened";
    case VDBaseError::FileRead:
        return "The file can't be read";
    case VDBaseError::FileWrite:
        return "The file can't be written";
    case VDBaseError::FileDelete:
        return "The file can't be deleted";
    case VDBaseError::PluginConfig:
        return "The plug-in manifest can't be used";
    case VDBaseError::Preferences:
        return "The preference file can't be used";
    default:
        return "The file can't be used";
    }
}

}  // namespace

bool VFReportFile(int code, const char* filename, int reason, const char* routine)
{
    char buffer[256];
    return VFReportFile(code, filename, strerror_r(reason, buffer, sizeof buffer), routine);
}

bool VFReportFile(int code, const char* filename, const char* reason, const char* routine, int chain)
{
    const VDString text = VDString(VFWhatFailed(code)) + ": " + reason + "\nFile : " + filename;
    return VFErrorSet(code, text, routine, chain) != 0;
}
