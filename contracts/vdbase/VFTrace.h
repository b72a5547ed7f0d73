#pragma once

#include "vdbase/VDBaseApi.h"

/// Diagnostics for developers. They go to standard error when the environment variable `DAX_TRACE` is set, and to the sink
/// of `VFTraceSetSink` if there is one.
VDBASE_API void VFTrace(const char* text);
VDBASE_API void VFTracePrintf(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Receives each traced text; called on the tracing thread. Null removes it.
using VFTraceSink = void (*)(const char* text);
VDBASE_API void VFTraceSetSink(VFTraceSink sink);
