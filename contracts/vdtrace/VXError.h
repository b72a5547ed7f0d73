#pragma once

#include "vdtrace/VDTraceApi.h"

/// Tells the developers of something that must not happen and that the caller can live with. It goes to the trace
/// (`VFTrace`), not to the error system.
/// @param code   of the error, 0 for none
/// @param level  how bad it is, from 1
VDTRACE_API void VXError(const char* text, int code, int level);
