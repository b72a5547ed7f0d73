#include "VDTemporaryFileIds.h"

#include "VDFileId.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFTrace.h"

#include <algorithm>

// Constructed at load, not at first use, so that it outlives the static objects of the host.
VDTemporaryFileIds VVAllTemporaryFileIds;

VDTemporaryFileIds::~VDTemporaryFileIds()
{
    if (!ids_.empty())
        VFTracePrintf("ERROR: VVAllTemporaryFileIds is not empty at app exit in VDFileId in daxlib\n");
}

const VDFileId* VDTemporaryFileIds::Find(const char* filename) const
{
    const auto found = std::find_if(ids_.begin(), ids_.end(), [filename](const VDFileId* id) {
        return VDFileSystem::CompareFilenames(id->GetRecord().filename, filename) == 0;
    });
    return found != ids_.end() ? *found : nullptr;
}
