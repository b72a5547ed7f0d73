#pragma once

#include "frame/ExportedWrapper.h"

/// Runs the work of an exported function; whatever it throws is recorded under the function's name and a failure.
template <class Work>
auto VFGuardMetaData(Work work, const char* routine = __builtin_FUNCTION()) noexcept -> decltype(work())
{
    return VFExport(routine, work);
}
