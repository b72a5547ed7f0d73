#pragma once

/// Marks what the library `vdxml` exports.
#if defined(VDXML_BUILD)
#define VDXML_API __attribute__((visibility("default")))
#else
#define VDXML_API
#endif
