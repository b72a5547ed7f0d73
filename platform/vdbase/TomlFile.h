#pragma once

#include "vdbase/VDString.h"

// Failures come back as results; nothing is thrown.
#define TOML_EXCEPTIONS 0
// The parser asserts on some faults in what it reads, before it comes to report them; and where assertions are off it lets some
// compilers take them for granted. Both are out of place: what it reads is anybody's.
#pragma push_macro("NDEBUG")
#undef NDEBUG
#define TOML_ASSERT(condition) static_assert(true)
// Inline tables and arrays in each other. They and tables in tables are walked by recursion.
#define TOML_MAX_NESTED_VALUES 16
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")

/// Configuration files in TOML, for preferences and plug-in manifests alike.

/// Reads and parses a file. One that doesn't exist is an empty table.
/// @param code   of the reports, of `VDBaseError`
/// @param chain  for `VFErrorSet`
/// @return false, recorded with file, line and reason, if it can't be read or parsed
bool VFParseTomlFile(const VDString& filename, toml::table* table, int code, const char* routine, int chain);

/// Records what is wrong at one place of a parsed file.
/// @return false always
bool VFReportTomlNode(const VDString& filename, const toml::source_region& place, const VDString& reason, int code,
                      const char* routine, int chain = 0);
