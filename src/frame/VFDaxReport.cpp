#include "VFDaxReport.h"

#include "VDDaxLib.h"

VDString VFDaxText(int id)
{
    VDString text;
    VFTextGet(VDDaxLib::Get().GetCatalogue(), id, &text);
    return text;
}

int VFDaxReportError(int code, const char* routine)
{
    return VFDaxReport(code, routine, {});
}

int VFDaxReport(int code, const char* routine, const VDDaxReportDetail& detail)
{
    VDString text = detail.text.IsEmpty() ? VFDaxText(code) : detail.text;
    text += detail.appended;
    if (detail.label != 0)
        text += "\n" + VFDaxText(detail.label) + detail.name;
    VFErrorSet(code, text, routine, detail.chain);
    return 0;
}
