#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

#include <exception>
#include <vector>

/// The error system. Every thread has a record of its own: a stack of reports, the oldest first. What one thread reports or
/// clears is never seen by another.

/// One report.
struct VDErrorReport
{
    int code = 0;
    VDString text;
    VDString routine;
};

/// What the library `vdbase` throws where a call has no other way to fail.
class VDBASE_API VDBaseException : public std::exception
{
public:
    VDBaseException(int code, const VDString& text) : code_(code), text_(text) {}
    ~VDBaseException() override;
    int GetCode() const noexcept { return code_; }
    const char* what() const noexcept override { return text_.c_str(); }

private:
    int code_;
    VDString text_;
};

/// Records a report; nothing happens while recording is off on this thread. Where memory is too short for it, the code stands
/// alone, with the text if that is no longer than 15 bytes.
/// @param chain  0 starts a new record, so that earlier reports are gone; otherwise the report goes on top of those
/// @return 0 always, so that a caller reports and fails in one step
VDBASE_API int VFErrorSet(int code, const char* text, const char* routine, int chain);
/// Whether the code is recorded, also beneath a later report.
VDBASE_API bool VFErrorCheck(int code);
VDBASE_API void VFErrorClear();
/// Turns recording off (0) or on (1) for this thread. While it is off the record stays as it is: nothing is added, and nothing
/// is cleared. Calls nest: recording is on again when each off has had its on.
VDBASE_API void VFErrorEnableNew(int flag);

/// The reports of this thread; valid until the thread's next report.
class VDErrorRecord;
VDBASE_API const VDErrorRecord* VFGetBaseLibError();
/// The code of the last report; 0 if there is none.
VDBASE_API int VFErrorGetCode(const VDErrorRecord* record);
/// Text and routine of the last report; empty if there is none.
VDBASE_API VDString VFErrorGetText(const VDErrorRecord* record);
VDBASE_API VDString VFErrorGetRoutine(const VDErrorRecord* record);
/// The first line of the last report's text; empty if there is none.
VDBASE_API VDString VFErrorGetBriefString(const VDErrorRecord* record);
/// All reports, the oldest first.
VDBASE_API VDArray<VDErrorReport> VFErrorGetReports(const VDErrorRecord* record);

/// Turns recording off for the length of a scope.
class VDErrorMute
{
public:
    VDErrorMute() { VFErrorEnableNew(0); }
    ~VDErrorMute() { VFErrorEnableNew(1); }
    VDErrorMute(const VDErrorMute&) = delete;
    VDErrorMute& operator=(const VDErrorMute&) = delete;
};

/// Records again what was recorded before.
/// @param chain  for the first; the others go on top of it
VDBASE_API void VFErrorSetAll(const VDArray<VDErrorReport>& reports, int chain);

/// Gives a scope a record of its own, empty at first and recording. The record that the thread had comes back at the end as it
/// was.
class VDBASE_API VDErrorCapture
{
public:
    VDErrorCapture();
    ~VDErrorCapture();
    VDErrorCapture(const VDErrorCapture&) = delete;
    VDErrorCapture& operator=(const VDErrorCapture&) = delete;

    /// What was recorded since, the oldest first.
    VDArray<VDErrorReport> GetReports() const { return VFErrorGetReports(VFGetBaseLibError()); }

private:
    std::vector<VDErrorReport> before_;
    int muteDepth_;
};
