#pragma once

#include "daxlib/VDGeneralFiles.h"

#include <optional>

/// Questions to the configured file types.

/// Merges the configuration files of the logical folders, in their order.
/// @return whether at least one could be merged; nothing is recorded
bool VFMergeConfigurationFiles(VDGeneralFiles& files);

/// The first enabled file type of an enabled access type that has the extension, without regard to case; null if none has.
const VDGeneralFileType* VFFindConfiguredType(const VDGeneralFiles& files, const VDString& extension);

/// The name that the file `LocalAccessTypes.sys` gives to an access type: its lines are "<number>,<name>".
std::optional<VDString> VFGetLocalAccessTypeName(int accessType);
