#pragma once

#include "vdbase/VDBaseErrorCodes.h"

/// The reports on files and folders, all in one shape: what can't be done and why, then a "File :" line.

/// Records that something can't be done with a file, with the system's reason.
/// @param code    of `VDBaseError`; decides the words
/// @param reason  an `errno` value
/// @return false always
bool VFReportFile(int code, const char* filename, int reason, const char* routine);
/// The same with a reason in words.
/// @param chain  as for `VFErrorSet`
bool VFReportFile(int code, const char* filename, const char* reason, const char* routine, int chain = 0);
