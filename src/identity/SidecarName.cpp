#include "SidecarName.h"

#include "daxlib/FID.h"
#include "vdbase/VFFilename.h"

bool VFSidecarFilename(VDFileId* id, VDString* filename)
{
    int nameForm = 0;
    VDString name;
    VDString extension;
    if (!FIDGetNameForm(id, &nameForm) || !FIDGetFilename(id, &name, &extension) || name.IsEmpty())
        return false;
    VDString folder;
    VDString base;
    VFSplitFilename(name, &folder, &base, nullptr);
    VDString sidecarBase;
    // A single file and a test of several files may share stem and extension; the last letter tells their sidecars apart.
    sidecarBase.Format(nameForm == VTNameFormTestPlusChannels ? "%s_%s" : "%s_%s_s", base.c_str(), extension.c_str());
    *filename = VFBuildFilename(folder, sidecarBase, "vmd");
    return true;
}
