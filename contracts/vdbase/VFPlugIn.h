#pragma once

#include "vdbase/VDString.h"
#include "vdbase/VFError.h"

/// Plug-in configuration and loading. Manifests are TOML files: `plugins.toml` and every `plugins.d/*.toml` (in byte order),
/// first in the logical folder `home`, then in `vdsys`. Each holds tables
///
///     [[plugin]]
///     family      = "FileFormat"          # section
///     name        = "WAV"                 # unique in its family; the first entry of a name wins
///     description = "WAV audio files"
///     library     = "daxwav"
///     prefix      = "WavFF"
///     skip        = false                 # optional
///
/// They are read once, at the first question of the process. Behind them come the plug-ins that loaded modules bring along, so
/// that a manifest's entry of the same name takes their place or, with `skip`, takes them out.
///
/// Manifests and libraries decide what code runs. One that belongs, or lies in a folder that belongs, to anybody but root and
/// the effective user, or that others may write to, is not obeyed.

/// @return 0 to stop the enumeration, which is then a failure
using VFPlugInCallback = int (*)(void* context, const char* name, const char* description);

/// Calls back for each configured plug-in of the family, in the order of the manifests.
/// @return false, recorded, if a `plugins.toml` can't be read or parsed; the callback isn't called then
VDBASE_API bool VFEnumPlugIns(const char* family, VFPlugInCallback callback, void* context);

/// How a plug-in is loaded. Names compare without regard to case.
/// @param skip     non-zero leaves the plug-in unloaded
/// @param library  for `VFLoadLibrary`
/// @return false if no such plug-in is configured, which is no error
VDBASE_API bool VFGetPlugInType(const char* family, const char* name, int* skip, VDString* library, VDString* prefix);

/// A loaded library. Libraries are never unloaded.
class VDLibrary;

/// Loads a library. A name with a separator is a path. Any other name stands for the module registered under it, or for the
/// file of that name (also with "lib" before and ".so" behind it) beside the manifest that named it, in the plug-in folder
/// of the installation, or where the system's loader finds it, in this order.
/// @return null, recorded, on failure
VDBASE_API VDLibrary* VFLoadLibrary(const char* library);

/// Finds the function prefix + suffix.
/// @param function  an address; the caller knows its type
VDBASE_API bool VFGetLibFunc(VDLibrary* library, const char* prefix, const char* suffix, void** function);

/// Makes a loaded module known under a name, so that a manifest can name it as a plug-in library.
/// @param addressInside  of anything in the module
VDBASE_API void VFRegisterModule(const char* name, const void* addressInside);

/// Makes a plug-in known that needs no manifest.
/// @param library  as in a manifest; usually the name under which the module is registered
VDBASE_API void VFAddBuiltInPlugIn(const char* family, const char* name, const char* description, const char* library,
                                   const char* prefix);

/// What was left out of the configuration, and why, in the order in which that was found: manifests in `plugins.d` with a
/// fault, manifests that aren't to be obeyed, environment variables that don't count, plug-ins that didn't load. None of these
/// fails the question that came upon it, so that a host looks here to tell its user. Each is traced (`VFTrace`), too.
VDBASE_API VDArray<VDErrorReport> VFGetConfigurationWarnings();
/// Adds to these warnings, for what turns out later. One that is there already isn't added again.
VDBASE_API void VFAddConfigurationWarning(const VDErrorReport& warning);

/// Forgets the manifests and the warnings, so that they are read again at the next question. For hosts that change them.
VDBASE_API void VFReloadPlugInConfiguration();
