#pragma once

/// Marks what `daxlib` exports.
#if defined(DAX_BUILD)
#define DAX_API __attribute__((visibility("default")))
#else
#define DAX_API
#endif

#define DAX_VERSION_MAJOR 2
#define DAX_VERSION_MINOR 80
#define DAX_VERSION_PATCH 35
