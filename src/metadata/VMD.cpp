#include "daxlib/VMD.h"

#include "VDVmdFile.h"
#include "frame/ExportedWrapper.h"
#include "identity/SidecarName.h"

VDVmdFile* VMDCreate()
{
    return VFCreate<VDVmdFile>(__func__);
}

int VMDRelease(VDVmdFile* sidecar)
{
    const char* const routine = __func__;
    return VFExport(routine, [=] {
        if (!VFCheckHandle(sidecar, routine))
            return 0;
        if (sidecar->Release() > 0)
            return 1;
        // The object's end must not hide that its last writing failed.
        const int written = VFForward<&VDVmdFile::Close>(sidecar, routine);
        delete sidecar;
        return written;
    });
}

int VMDAdopt(VDVmdFile* sidecar, const char* filename, bool readMode)
{
    return VFForward<&VDVmdFile::Adopt>(sidecar, __func__, filename, readMode);
}

int VMDAdoptTestVmd(VDVmdFile* sidecar, VDFileId* id, bool readMode)
{
    return VFForward<&VDVmdFile::AdoptTestVmd>(sidecar, __func__, id, readMode);
}

int VMDGetMetaData(VDVmdFile* sidecar, LQChannelMapper** mapper)
{
    return VFForward<&VDVmdFile::GetMetaData>(sidecar, __func__, mapper);
}

int VMDFlush(VDVmdFile* sidecar)
{
    return VFForward<&VDVmdFile::Flush>(sidecar, __func__);
}

int VMDClear(VDVmdFile* sidecar)
{
    return VFForward<&VDVmdFile::Clear>(sidecar, __func__);
}

int VMDCreateFilenameFromFileId(VDFileId* id, VDString* filename)
{
    return VFExport(__func__, [=] { return VFSidecarFilename(id, filename) ? 1 : 0; });
}

int VMDSetChannelNumberList(VDVmdFile* sidecar, const VDArrayWithSort<long>& numbers)
{
    return VFForward<&VDVmdFile::SetChannelNumberList>(sidecar, __func__, numbers);
}
