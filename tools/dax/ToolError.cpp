#include "ToolError.h"

#include <cerrno>
#include <cstring>

void VFFail(int code, const std::string& text, const char* routine)
{
    VFErrorSet(code, text.c_str(), routine, 0);
    throw VDFailure();
}

void VFFailSystem(int code, const std::string& text, const char* routine)
{
    const std::string reason = std::strerror(errno);
    VFFail(code, text + ": " + reason, routine);
}

void VFCheck(int result)
{
    if (result == 0)
        throw VDFailure();
}

std::vector<VDErrorReport> VFTakeErrors()
{
    std::vector<VDErrorReport> reports;
    for (const VDErrorReport& report : VFErrorGetReports(VFGetBaseLibError()))
        reports.push_back(report);
    VFErrorClear();
    return reports;
}

void VFPutErrors(const std::vector<VDErrorReport>& reports)
{
    VFErrorClear();
    for (const VDErrorReport& report : reports)
        VFErrorSet(report.code, report.text, report.routine, 1);
}
