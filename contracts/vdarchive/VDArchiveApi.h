#pragma once

/// Marks what the library `vdarchive` exports.
#if defined(VDARCHIVE_BUILD)
#define VDARCHIVE_API __attribute__((visibility("default")))
#else
#define VDARCHIVE_API
#endif
