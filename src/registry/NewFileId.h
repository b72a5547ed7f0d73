#pragma once

#include "daxlib/DaxHandle.h"

/// Ids that the registry makes itself.

/// An id of a file and a file type, titled with the file's base name and not identified yet; empty, recorded, on failure.
VDFileIdHandle VFNewFileId(const VDString& filename, int fileId, int subId);

/// Adds the one channel that the id is to have, and marks the id as identified and its channel list as known.
bool VFSetOnlyChannel(VDFileId* id, int number, const char* title, const VDString& units);

/// Appends the id of a file of a configured type, which no plug-in reads, to the array.
bool VFAppendPlaceholder(const VDString& filename, int fileId, VDFileIdArray* tests);

/// Makes the array if there is none; it is then the caller's.
bool VFEnsureArray(VDFileIdArray** tests);
