#pragma once

#include "vdbase/VDString.h"

// Failures come back as results; nothing is thrown.
#define TOML_EXCEPTIONS 0
#include <toml++/toml.h>

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
