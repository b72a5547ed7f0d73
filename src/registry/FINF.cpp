#include "daxlib/FINF.h"

#include "frame/ExportedWrapper.h"
#include "VDFileInfo.h"
#include "VDFormatRegistry.h"

VDFileInfo* FINFCreate()
{
    return VFCreate<VDFileInfo>(__func__);
}

int FINFAddRef(VDFileInfo* info)
{
    return VFAddRef(info, __func__);
}

int FINFRelease(VDFileInfo* info)
{
    return VFRelease(info, __func__);
}

int FINFIdentifyFile(VDFileInfo* info, VDFileId* id, char loadInfo, VDFileIdArray** tests)
{
    return VFForward<&VDFileInfo::IdentifyFile>(info, __func__, id, loadInfo, tests);
}

int FINFIdentifyFiles(VDFileInfo* info, VDFileIdArray* ids, char loadInfo, char carryOn, VDFileIdArray** tests)
{
    return VFForward<&VDFileInfo::IdentifyFiles>(info, __func__, ids, loadInfo, carryOn, tests);
}

int FINFIdentifyFileByExtension(VDFileInfo* info, VDFileId* id, VDFileIdArray** tests, char* found, char* ignored,
                                char* asStandard)
{
    return VFForward<&VDFileInfo::IdentifyFileByExtension>(info, __func__, id, tests, found, ignored, asStandard);
}

int FINFLoadInfo(VDFileInfo* info, VDFileId* id)
{
    return VFForward<&VDFileInfo::LoadInfo>(info, __func__, id);
}

int FINFLoadInfoForFiles(VDFileInfo* info, VDFileIdArray* ids, char carryOn)
{
    return VFForward<&VDFileInfo::LoadInfoForFiles>(info, __func__, ids, carryOn);
}

int FINFGetNextFileType(VDFileInfo* info, int* index, int* fileId, int* subId, char* more)
{
    return VFForward<&VDFileInfo::GetNextFileType>(info, __func__, index, fileId, subId, more);
}

int FINFGetAccessClass(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* accessType, VDString* accessClass)
{
    return VFForward<&VDFileInfo::GetAccessClass>(info, __func__, id, fileId, subId, accessType, accessClass);
}

int FINFGetFileDescription(VDFileInfo* info, VDFileId* id, int fileId, int subId, VDString* description)
{
    return VFForward<&VDFileInfo::GetFileDescription>(info, __func__, id, fileId, subId, description);
}

int FINFGetNextCapability(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* index, VDString* name, int* value,
                          char* more)
{
    return VFForward<&VDFileInfo::GetNextCapability>(info, __func__, id, fileId, subId, index, name, value, more);
}

int FINFGetCapability(VDFileInfo* info, VDFileId* id, int fileId, int subId, const char* name, int* value, char* found)
{
    return VFForward<&VDFileInfo::GetCapability>(info, __func__, id, fileId, subId, name, value, found);
}

int FINFGetFileFormatKeyword(VDFileInfo* info, VDFileId* id, int fileId, int subId, VDString* keyword)
{
    return VFForward<&VDFileInfo::GetFileFormatKeyword>(info, __func__, id, fileId, subId, keyword);
}

int FINFGetDefaultExtension(VDFileInfo* info, VDFileId* id, int fileId, int subId, const char* hint, VDString* extension)
{
    return VFForward<&VDFileInfo::GetDefaultExtension>(info, __func__, id, fileId, subId, hint, extension);
}

int FINFGetNameForm(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* nameForm)
{
    return VFForward<&VDFileInfo::GetNameForm>(info, __func__, id, fileId, subId, nameForm);
}

int FINFGetFileFormatKeywords(VDFileInfo* info, int accessType, VDStringArray* keywords)
{
    return VFForward<&VDFileInfo::GetFileFormatKeywords>(info, __func__, accessType, keywords);
}

int FINFGetFileIdFromKeyword(VDFileInfo* info, const char* keyword, int accessType, int* fileId, int* subId)
{
    return VFForward<&VDFileInfo::GetFileIdFromKeyword>(info, __func__, keyword, accessType, fileId, subId);
}

int FINFGetAccessDescription(VDFileInfo* info, int accessType, VDString* description)
{
    return VFForward<&VDFileInfo::GetAccessDescription>(info, __func__, accessType, description);
}

int FINFAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VDFormatRegistry::Get().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int FINFSetEnableIdentifyByExtension(char enable)
{
    return VFExport(__func__, [=] {
        VDFormatRegistry::Get().SetIdentifyByExtension(enable != 0);
        return 1;
    });
}

int FINFGetIdentifyByExtension()
{
    return VFExport(__func__, [] { return VDFileInfo::GetIdentifyByExtension() ? 1 : 0; });
}

int FINFGetValidAccessTypes(VDArray<VTFileAccessType>* types)
{
    return VFExport(__func__, [=] { return VDFileInfo::GetValidAccessTypes(types) ? 1 : 0; });
}

int FINFGetFolderTestExtensions(VDArray<VDStringArray>* folderExtensions, VDArray<VDStringArray>* fileExtensions)
{
    return VFExport(__func__, [=] { return VDFileInfo::GetFolderTestExtensions(folderExtensions, fileExtensions) ? 1 : 0; });
}

int FINFGetProxyAccessFileId(VDFileId* id, VDFileId** proxy)
{
    return VFExport(__func__, [=] { return VDFileInfo::GetProxyAccessFileId(id, proxy) ? 1 : 0; });
}
