#pragma once

/// Marks what the library `vdstore` exports.
#if defined(VDSTORE_BUILD)
#define VDSTORE_API __attribute__((visibility("default")))
#else
#define VDSTORE_API
#endif
