#include "VFDaxReport.h"

#include "VDDaxLib.h"

#include <exception>
#include <new>
#include <stdexcept>

namespace {

void VFReportPresentException(const char* routine)
{
    try {
        throw;
    } catch (const std::bad_alloc&) {
        VFDaxReportError(DaxError::OutOfMemory, routine);
    } catch (const std::length_error&) {
        // More than there could ever be memory for.
        VFDaxReportError(DaxError::OutOfMemory, routine);
    } catch (const VDBaseException& exception) {
        VFErrorSet(exception.GetCode(), exception.what(), routine, 0);
    } catch (const std::exception& exception) {
        VFDaxReport(DaxError::UnknownAccessFailure, routine,
                    {.text = VFDaxText(DaxText::UnexpectedError), .appended = VDString("\n") + exception.what()});
    } catch (...) {
        VFDaxReport(DaxError::UnknownAccessFailure, routine, {.text = VFDaxText(DaxText::UnexpectedError)});
    }
}

}  // namespace

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

int VFReportException(const char* routine) noexcept
{
    try {
        VFReportPresentException(routine);
    } catch (...) {
        // There is no memory even for the catalogue's text. This one needs none.
        VFErrorSet(DaxError::OutOfMemory, "Out of memory ", "", 0);
    }
    return 0;
}
