#include "daxlib/VFDirList.h"

#include "VDDirList.h"
#include "frame/ExportedWrapper.h"

VDDirList* VFDirListCreate()
{
    return VFCreate<VDDirList>(__func__);
}

int VFDirListRelease(VDDirList* list)
{
    return VFRelease(list, __func__);
}

int VFDirListSetPath(VDDirList* list, const VDString& path)
{
    return VFForward<&VDDirList::SetPath>(list, __func__, path);
}

int VFDirListSetFilesMatching(VDDirList* list, const VDString& text)
{
    return VFForward<&VDDirList::SetFilesMatching>(list, __func__, text);
}

int VFDirListSetRecurseSubDirs(VDDirList* list, char recurse)
{
    return VFForward<&VDDirList::SetRecurseSubDirs>(list, __func__, recurse);
}

int VFDirListSetFilterByAccessType(VDDirList* list, VTFileAccessType type)
{
    return VFForward<&VDDirList::SetFilterByAccessType>(list, __func__, type);
}

int VFDirListSetFilterByAccessTypes(VDDirList* list, VDArray<VTFileAccessType> types)
{
    return VFForward<&VDDirList::SetFilterByAccessTypes>(list, __func__, types);
}

int VFDirListSetFilterByFileId(VDDirList* list, int fileId, int subId)
{
    return VFForward<&VDDirList::SetFilterByFileId>(list, __func__, fileId, subId);
}

int VFDirListSetFilterByFileIds(VDDirList* list, VDArray<int> fileIds, VDArray<int> subIds)
{
    return VFForward<&VDDirList::SetFilterByFileIds>(list, __func__, fileIds, subIds);
}

int VFDirListClearFilter(VDDirList* list)
{
    return VFForward<&VDDirList::ClearFilter>(list, __func__);
}

int VFDirListCreateList(VDDirList* list)
{
    return VFForward<&VDDirList::CreateList>(list, __func__, false);
}

int VFDirListCreateListWithInfo(VDDirList* list)
{
    return VFForward<&VDDirList::CreateList>(list, __func__, true);
}

int VFDirListGetFileIdArray(VDDirList* list, VDFileIdArray** tests)
{
    return VFForward<&VDDirList::GetFileIdArray>(list, __func__, tests);
}

int VFDirListSetProgressCallback(VDDirList* list, VDDirListProgress* progress, void* context)
{
    return VFForward<&VDDirList::SetProgressCallback>(list, __func__, progress, context);
}

int VFDirListSetChanSep(VDDirList* list, const VDChanSep* chanSep)
{
    return VFForward<&VDDirList::SetChanSep>(list, __func__, chanSep);
}

int VFDirListSetErrorOnLoadDetails(VDDirList* list, char errorOnLoad, char recordDetails)
{
    return VFForward<&VDDirList::SetErrorOnLoadDetails>(list, __func__, errorOnLoad, recordDetails);
}

int VFDirListGetLoadErrorDetails(VDDirList* list, VDFileIdArray** tests, VDStringArray* texts)
{
    return VFForward<&VDDirList::GetLoadErrorDetails>(list, __func__, tests, texts);
}

int VFDirListGetSkipped(VDDirList* list, VDStringArray* names, VDStringArray* texts)
{
    return VFForward<&VDDirList::GetSkipped>(list, __func__, names, texts);
}
