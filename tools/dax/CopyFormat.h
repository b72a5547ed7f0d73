#pragma once

#include "Registry.h"

/// Formats of the same kind of data that a copy of this type may have. A temporary one's files would be gone with the
/// program, and the older kind of storage file, which holds floats only, takes what comes from its own kind.
std::vector<VDFileType> VFGetTargetTypes(const VDRegistry& registry, const VDFileType& source);

/// Whether an output of this extension gets the format if none is asked for; without an extension it is the storage format,
/// which has room for everything.
bool VFHasExtension(const VDFileType& type, const std::string& extension);
