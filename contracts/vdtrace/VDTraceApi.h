#pragma once

/// Marks what the library `vdtrace` exports.
#if defined(VDTRACE_BUILD)
#define VDTRACE_API __attribute__((visibility("default")))
#else
#define VDTRACE_API
#endif
