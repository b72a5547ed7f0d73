#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDString.h"

/// Test descriptors that the formats make and read themselves.

/// Asks the id's format for its own descriptor of a test.
/// @param type   a `VTTestDescriptorType`
/// @param text   assigned only if the format is asked
/// @param found  true if the format gave a text. An id of no known type, or of a format that makes no descriptors, is no
///               failure and records nothing: found is then false
/// @return false, recorded, if the plug-in failed or is not loaded
bool VFRegistryFileIdToTestDesc(VDFileId* id, int type, VDString* text, bool* found);

/// Offers a descriptor to the formats in turn.
/// @param tests    the format that knows the descriptor fills it
/// @param handled  true if one did
/// @return false, recorded, if a plug-in failed
bool VFRegistryTestDescToFileIdArray(const char* text, VDFileIdArray* tests, bool* handled);
