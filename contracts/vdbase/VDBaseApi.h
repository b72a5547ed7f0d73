#pragma once

/// Marks what the library `vdbase` exports.
#if defined(VDBASE_BUILD)
#define VDBASE_API __attribute__((visibility("default")))
#else
#define VDBASE_API
#endif
