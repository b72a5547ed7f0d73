// Identification of files by their extension.

#include "ConfiguredTypes.h"
#include "FileHeader.h"
#include "FileTypeQuery.h"
#include "NewFileId.h"
#include "VDFileInfo.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

namespace {

constexpr const char* VVRoutine = "VDFileInfo::IdentifyFileByExtension";

/// The format whose folder tests name their units elsewhere.
constexpr int VVFileIdWithoutUnits = 2200;
constexpr int VVFolderTestChannel = 1;

/// Finds the units of a file in a folder test, which only its content tells.
bool VFGetFolderTestUnits(VDFileInfo& info, VDFileId* id, VDString* units)
{
    char identified = 0;
    char infoLoaded = 0;
    if (!FIDGetIdentified(id, &identified))
        return false;
    if (identified)
        return FIDGetInfoLoaded(id, &infoLoaded) && (infoLoaded || info.LoadInfo(id));
    VDFileIdArrayHandle tests;
    VDFileIdHandle first;
    return info.IdentifyFile(id, 1, tests.Out()) && FIAGetAt(tests.Get(), 0, first.Out()) &&
           FIDGetChanUnits(first.Get(), 0, units);
}

/// Appends what the extension alone says about a file.
bool VFAppendByExtension(VDFileInfo& info, VDFileId* id, const VDString& filename, const VDFileInfoFileIdInfo& type,
                         VDFileIdArray* tests)
{
    const VDFileIdHandle test = VFNewFileId(filename, type.fileId, type.subId);
    char folderTest = 0;
    if (!test || !FIDGetFolderTest(id, &folderTest))
        return false;
    if (folderTest) {
        VDString units;
        if (type.fileId != VVFileIdWithoutUnits && !VFGetFolderTestUnits(info, id, &units))
            return false;
        if (!VFSetOnlyChannel(test.Get(), VVFolderTestChannel, VDFileSystem::GetBaseFileName(filename), units))
            return false;
    } else if (!FIDSetIdentByExtension(test.Get(), 1)) {
        return false;
    }
    return FIAAppendItem(tests, test.Get());
}

}  // namespace

bool VDFileInfo::IdentifyFileByExtension(VDFileId* id, VDFileIdArray** tests, char* found, char* ignored, char* asStandard)
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    *found = 0;
    *ignored = 0;
    if (asStandard != nullptr)
        *asStandard = 0;
    VDFormatRegistry& registry = VDFormatRegistry::Get();
    if (!registry.LoadPlugIns() || !VFEnsureArray(tests))
        return false;
    const VDExtensionPreferences& preferences = registry.GetPreferences();
    if (!preferences.GetIdentifyByExtension())
        return true;

    char identified = 0;
    if (!FIDGetIdentified(id, &identified))
        return false;
    if (identified)
        return FIAAppendItem(*tests, id);

    VDString filename;
    if (!VFGetFirstFilename(id, &filename, VVRoutine))
        return false;
    VDString extension;
    VFSplitFilename(filename, nullptr, nullptr, &extension);
    extension.MakeUpper();

    // Every type that lists the extension gives an id of its own; which it is, content has to say later.
    // By position, and only up to the present end: identification on the way may make the table grow.
    const VDFileTypeTable& types = registry.GetFileTypes();
    for (std::size_t index = 0, count = types.size(); index < count; ++index) {
        const VDFileInfoFileIdInfo& type = types[index];
        if (!type.enabled || !type.identifyByExtension || type.extensions.Find(extension) < 0)
            continue;
        if (!VFAppendByExtension(*this, id, filename, type, *tests))
            return false;
        *found = 1;
    }
    if (*found)
        return true;

    *ignored = preferences.IsIgnored(extension);
    if (!registry.LoadGeneralFiles())
        return false;
    const VDGeneralFileType* type = VFFindConfiguredType(registry.GetGeneralFiles(), extension);
    if (type == nullptr)
        return true;
    if (!VFAppendPlaceholder(filename, type->GetFileId(), *tests))
        return false;
    *found = 1;
    if (asStandard != nullptr)
        *asStandard = type->GetIdentifyAsStandard();
    return true;
}
