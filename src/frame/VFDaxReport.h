#pragma once

#include "DaxErrorCodes.h"

#include "vdbase/VFError.h"

/// A text of the catalogue.
VDString VFDaxText(int id);

/// Records the catalogue text of the code.
/// @return 0 always, so that a wrapper reports and fails in one step
int VFDaxReportError(int code, const char* routine);

/// What a report may carry besides its code and routine.
struct VDDaxReportDetail
{
    VDString text = {};       ///< the message; empty for the catalogue text of the code
    VDString appended = {};   ///< follows the message directly
    int label = 0;            ///< id of a label text that opens a line of its own behind the message, 0 for none
    VDString name = {};       ///< follows the label directly
    int chain = 0;            ///< 1 puts the report on top of those already recorded
};

/// Records a report with detail. Every other report function of the library comes down to this one.
/// @return 0 always
int VFDaxReport(int code, const char* routine, const VDDaxReportDetail& detail);

/// Records the exception that is being handled, as an exported function that it would leave: -327681 when memory is short, the
/// code of a `VDBaseException`, and else -327690 with what the exception says.
/// @return 0 always
int VFReportException(const char* routine) noexcept;
