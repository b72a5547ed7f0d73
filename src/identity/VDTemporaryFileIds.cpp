#include "VDTemporaryFileIds.h"

#include "vdbase/VFTrace.h"

// Constructed at load, not at first use, so that it outlives the static objects of the host.
VDTemporaryFileIds VVAllTemporaryFileIds;

VDTemporaryFileIds::~VDTemporaryFileIds()
{
    if (!ids_.empty())
        VFTracePrintf("ERROR: VVAllTemporaryFileIds is not empty at app exit in VDFileId in daxlib\n");
}
