#pragma once

#include "vdbase/VDString.h"

/// File names are the platform's byte strings with "/" as separator, and case counts.

/// Splits a name. Each out argument may be null.
/// @param folder     up to and including the last separator; empty without one
/// @param base       the last element without its extension
/// @param extension  behind the last dot of the last element, without the dot. An element that begins with its only dot
///                   (".profile") has no extension, and neither have "." and ".."
VDBASE_API void VFSplitFilename(const char* filename, VDString* folder, VDString* base, VDString* extension);

/// Joins folder, base and extension; the separator and the dot are put in where they are needed, and an empty part adds
/// nothing. A base that is itself absolute stands without the folder.
VDBASE_API VDString VFBuildFilename(const char* folder, const char* base, const char* extension = "");

/// A folder name with exactly one separator at its end; an empty name stays empty.
VDBASE_API VDString VFMakePath(const char* folder);

/// The folder behind a logical name, with no separator at its end; empty for a name that isn't known.
/// `vdsys`: environment `DAX_SYS`, else the installation's `share/daxlib`.
/// `home`: environment `DAX_HOME`, else `$XDG_CONFIG_HOME/daxlib`, else `~/.config/daxlib`.
VDBASE_API VDString VFTranslateName(const char* logicalName);

/// Whether the whole name matches a pattern of "*" (any text, also none), "?" (one byte) and plain bytes.
/// @param noCase  1 compares ASCII letters without regard to case
VDBASE_API bool VFPatternMatch(int noCase, const char* pattern, const char* name);
