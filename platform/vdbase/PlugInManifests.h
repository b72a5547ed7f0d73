#pragma once

#include "vdbase/VDString.h"
#include "vdbase/VFError.h"

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
/// read at the first call, and again after a failure. A manifest that isn't to be obeyed is left out with a warning, and so is
/// one of `plugins.d` that is wrong.
/// @return null, recorded, if a `plugins.toml` can't be read or is wrong
std::shared_ptr<const VDPlugInList> VFGetPlugIns();

/// The folders of the manifests that name this library, as far as manifests have been read.
std::vector<VDString> VFGetManifestFolders(const VDString& library);

/// Adds a plug-in that no manifest has to name. What was read is forgotten.
void VFAddBuiltIn(VDPlugInEntry entry);

/// Forgets what was read, and the warnings.
void VFForgetPlugIns();

/// What of the configuration was left out. A warning that is there already isn't added again.
void VFAddWarning(VDErrorReport warning);
VDArray<VDErrorReport> VFGetWarnings();

/// Whether a configuration file isn't to be obeyed (`VFFindDistrust`), with a warning that says why.
/// @param code  of `VDBaseError`
bool VFWarnOfDistrust(const VDString& filename, int code, const char* routine);
