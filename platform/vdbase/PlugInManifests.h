#pragma once

#include "vdbase/VDString.h"

#include <memory>
#include <vector>

/// One plug-in of a manifest.
struct VDPlugInEntry
{
    VDString family;
    VDString name;
    VDString description;
    VDString module;  ///< as written; a relative name with a separator is made absolute from the manifest's folder
    VDString prefix;
    VDString folder;  ///< of the manifest
    bool skip = false;
};

using VDPlugInList = std::vector<VDPlugInEntry>;

/// All configured plug-ins in the order of the manifests; of entries with the same family and name, the first. The files are
/// read at the first call, and again after a failure.
/// @return null, recorded, if a manifest can't be read or is wrong
std::shared_ptr<const VDPlugInList> VFGetPlugIns();

/// The folders of the manifests that name this library, as far as manifests have been read.
std::vector<VDString> VFGetManifestFolders(const VDString& library);

/// Adds a plug-in that no manifest has to name. What was read is forgotten.
void VFAddBuiltIn(VDPlugInEntry entry);

/// Forgets what was read.
void VFForgetPlugIns();
