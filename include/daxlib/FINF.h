#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDStringArray.h"

/// The format registry: which formats there are and what a file is.
///
/// A `VDFileInfo` holds nothing; all of them look at the same process-wide tables, which are built at the first question.
/// "File type" stands for three arguments: an id, or null, followed by file id and sub id; an id that isn't null counts
/// before the numbers. A file type that nobody serves fails with -328692 "Unknown file ID specified".

extern "C" {

/// A new object with one reference; null with -327681 when memory is short.
DAX_API VDFileInfo* FINFCreate();
DAX_API int FINFAddRef(VDFileInfo* info);
DAX_API int FINFRelease(VDFileInfo* info);

/// @name What a file is
/// @{
/// Identifies a file by its content: the plug-ins see its first 512 bytes in turn, and the first that claims it wins.
/// @param loadInfo  non-zero loads the channel lists as well
/// @param tests     gets the tests that the file holds, appended. A null handle is replaced by a new array for the caller
DAX_API int FINFIdentifyFile(VDFileInfo* info, VDFileId* id, char loadInfo, VDFileIdArray** tests);
/// The same for each id of a list.
/// @param carryOn  non-zero passes over failures
DAX_API int FINFIdentifyFiles(VDFileInfo* info, VDFileIdArray* ids, char loadInfo, char carryOn, VDFileIdArray** tests);
/// Identifies a file by its extension alone; the file isn't opened (a file of a folder test may be).
/// @param found       the array holds the answer
/// @param ignored     files of this extension are to be passed over
/// @param asStandard  content has to decide as well; may be null
DAX_API int FINFIdentifyFileByExtension(VDFileInfo* info, VDFileId* id, VDFileIdArray** tests, char* found, char* ignored,
                                        char* asStandard);
/// Loads the channel list of an identified id.
DAX_API int FINFLoadInfo(VDFileInfo* info, VDFileId* id);
DAX_API int FINFLoadInfoForFiles(VDFileInfo* info, VDFileIdArray* ids, char carryOn);
/// @}

/// @name File types
/// @{
/// Walks the enabled file types.
/// @param index  0 at first; moved behind the type given out
/// @param more   0 at the end, and the other arguments are then void
DAX_API int FINFGetNextFileType(VDFileInfo* info, int* index, int* fileId, int* subId, char* more);
/// @param accessType   a `VTFileAccessType`
/// @param accessClass  class id text of the access plug-in
DAX_API int FINFGetAccessClass(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* accessType, VDString* accessClass);
DAX_API int FINFGetFileDescription(VDFileInfo* info, VDFileId* id, int fileId, int subId, VDString* description);
/// Walks the capabilities of a type, as `FINFGetNextFileType` walks the types.
DAX_API int FINFGetNextCapability(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* index, VDString* name,
                                  int* value, char* more);
/// @param found  0 with value 0 for a capability, or a file type, that isn't known; that is no failure
DAX_API int FINFGetCapability(VDFileInfo* info, VDFileId* id, int fileId, int subId, const char* name, int* value,
                              char* found);
/// The format's short name, the key of its preferences.
DAX_API int FINFGetFileFormatKeyword(VDFileInfo* info, VDFileId* id, int fileId, int subId, VDString* keyword);
/// @param hint  a keyword that narrows the choice, or null
DAX_API int FINFGetDefaultExtension(VDFileInfo* info, VDFileId* id, int fileId, int subId, const char* hint,
                                    VDString* extension);
/// @param nameForm  a `VTNameForm`
DAX_API int FINFGetNameForm(VDFileInfo* info, VDFileId* id, int fileId, int subId, int* nameForm);
/// Keywords of all enabled types of an access type, or of all with `VTFileAccessAll`.
DAX_API int FINFGetFileFormatKeywords(VDFileInfo* info, int accessType, VDStringArray* keywords);
/// First type of this keyword, without regard to case; -328699 if there is none.
DAX_API int FINFGetFileIdFromKeyword(VDFileInfo* info, const char* keyword, int accessType, int* fileId, int* subId);
/// Name of an access type. An unknown one gives a text with the number, and fails without a report.
DAX_API int FINFGetAccessDescription(VDFileInfo* info, int accessType, VDString* description);
/// @}

/// @name The registry as a whole
/// @{
/// Adds a FileFormat plug-in that isn't configured; a name that is there already is left alone.
DAX_API int FINFAddPlugin(const char* name, const char* prefix, const char* library, const char* description);
/// Reads the extension preferences again and then sets the master switch of identification by extension.
DAX_API int FINFSetEnableIdentifyByExtension(char enable);
DAX_API int FINFGetIdentifyByExtension();
DAX_API int FINFGetValidAccessTypes(VDArray<VTFileAccessType>* types);
/// Which folders hold one test, and in which files: two parallel lists.
DAX_API int FINFGetFolderTestExtensions(VDArray<VDStringArray>* folderExtensions, VDArray<VDStringArray>* fileExtensions);
/// The id through which a plug-in serves this test instead.
/// @param proxy  gets a reference for the caller, or null
DAX_API int FINFGetProxyAccessFileId(VDFileId* id, VDFileId** proxy);
/// @}

}  // extern "C"
