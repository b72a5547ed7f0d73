#include "NewFileId.h"

#include "identity/VDFileId.h"

#include "vdbase/VDFileSystem.h"

VDFileIdHandle VFNewFileId(const VDString& filename, int fileId, int subId)
{
    VDFileIdHandle id(FIDCreate());
    if (!id || !FIDSetFilename(id.Get(), VTNameFormFile, filename, "") ||
        !FIDSetTestTitle(id.Get(), VDFileSystem::GetBaseFileName(filename)))
        return {};
    // A file that somebody made comes with its type, also where that is one of temporary files, which go with their ids.
    id.Get()->SuggestFileId(fileId, subId);
    return id;
}

bool VFSetOnlyChannel(VDFileId* id, int number, const char* title, const VDString& units)
{
    int index = 0;
    return FIDAddChannel(id, number, &index) && FIDSetChanTitle(id, index, title) &&
           (units.IsEmpty() || FIDSetChanUnits(id, index, units)) && FIDSetIdentified(id, 1) && FIDSetInfoLoaded(id, 1);
}

bool VFAppendPlaceholder(const VDString& filename, int fileId, VDFileIdArray* tests)
{
    const VDFileIdHandle id = VFNewFileId(filename, fileId, 0);
    return id && VFSetOnlyChannel(id.Get(), 0, "No Channels", {}) && FIDSetIdentByExtension(id.Get(), 1) &&
           FIAAppendItem(tests, id.Get());
}

bool VFEnsureArray(VDFileIdArray** tests)
{
    if (*tests == nullptr)
        *tests = FIACreate();
    return *tests != nullptr;
}
