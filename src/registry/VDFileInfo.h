#pragma once

#include "VDFileInfoRecords.h"

#include "vdbase/VDCompBase.h"

/// The format registry as a handle. It holds nothing: all objects answer from the same tables. The arguments and results are
/// those of the `FINF` functions.
class VDFileInfo : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::FileInfo;
    static constexpr bool GuardedHandle = true;

    VDFileInfo() : VDCompBase(HandleId) {}

    /// @name What a file is
    /// @{
    bool IdentifyFile(VDFileId* id, char loadInfo, VDFileIdArray** tests);
    bool IdentifyFiles(VDFileIdArray* ids, char loadInfo, char carryOn, VDFileIdArray** tests);
    bool IdentifyFileByExtension(VDFileId* id, VDFileIdArray** tests, char* found, char* ignored, char* asStandard);
    bool LoadInfo(VDFileId* id);
    bool LoadInfoForFiles(VDFileIdArray* ids, char carryOn);
    /// @}

    /// @name File types
    /// @{
    bool GetNextFileType(int* index, int* fileId, int* subId, char* more);
    bool GetAccessClass(VDFileId* id, int fileId, int subId, int* accessType, VDString* accessClass);
    bool GetFileDescription(VDFileId* id, int fileId, int subId, VDString* description);
    bool GetNextCapability(VDFileId* id, int fileId, int subId, int* index, VDString* name, int* value, char* more);
    bool GetCapability(VDFileId* id, int fileId, int subId, const char* name, int* value, char* found);
    bool GetFileFormatKeyword(VDFileId* id, int fileId, int subId, VDString* keyword);
    bool GetDefaultExtension(VDFileId* id, int fileId, int subId, const char* hint, VDString* extension);
    bool GetNameForm(VDFileId* id, int fileId, int subId, int* nameForm);
    bool GetFileFormatKeywords(int accessType, VDStringArray* keywords);
    bool GetFileIdFromKeyword(const char* keyword, int accessType, int* fileId, int* subId);
    bool GetAccessDescription(int accessType, VDString* description);
    /// @}

    /// @name Of the registry as a whole
    /// @{
    static bool GetIdentifyByExtension();
    static bool GetValidAccessTypes(VDArray<VTFileAccessType>* types);
    static bool GetFolderTestExtensions(VDArray<VDStringArray>* folderExtensions, VDArray<VDStringArray>* fileExtensions);
    static bool GetProxyAccessFileId(VDFileId* id, VDFileId** proxy);
    /// @}
};
