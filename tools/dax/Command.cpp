#include "Command.h"

#include "Printable.h"
#include "ToolError.h"

#include <unistd.h>

void VFPrintReport(const VDErrorReport& report, const char* kind)
{
    std::string text = VFPrintable(report.text.View());
    text.erase(text.find_last_not_of(' ') + 1);
    // There is nobody left to tell when this fails.
    VFWriteAll(STDERR_FILENO, std::string("dax: ") + kind + ' ' + std::to_string(report.code) + ": " + text + " (" +
                                  VFPrintable(report.routine.View()) + ")\n");
}

void VDCommandContext::Warn(const VDErrorReport& report)
{
    warnings_.push_back(report);
    VFPrintReport(report, "warning");
}

void VDCommandContext::TakeErrors()
{
    const std::vector<VDErrorReport> reports = VFTakeErrors();
    errors.insert(errors.end(), reports.begin(), reports.end());
}
