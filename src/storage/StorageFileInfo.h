#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDIo.h"

/// Fills the channel list of an id from the objects of its storage file.
/// @param io  open on the file; it is closed, as the storage opens the file itself
/// @return 0, recorded, for a file that can't be read or has no channels
int VFLoadStorageFileInfo(VDFileId* id, VDIo& io);
