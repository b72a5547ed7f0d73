// Identification of files by their content.

#include "ConfiguredTypes.h"
#include "FileHeader.h"
#include "FileTypeQuery.h"
#include "NewFileId.h"
#include "VDFileInfo.h"
#include "WalkFileIds.h"
#include "identity/VDFileId.h"

#include "vdbase/VFFilename.h"

#include <array>

namespace {

constexpr const char* VVRoutine = "VDFileInfo::IdentifyFile";

/// Marks an id as being identified, for the length of a scope.
class VDInIdentGuard
{
public:
    explicit VDInIdentGuard(VDFileId* id) : id_(id) { FIDSetInIdent(id_, 1); }
    ~VDInIdentGuard() { FIDSetInIdent(id_, 0); }
    VDInIdentGuard(const VDInIdentGuard&) = delete;
    VDInIdentGuard& operator=(const VDInIdentGuard&) = delete;

private:
    VDFileId* id_;
};

/// A file under identification, as the plug-ins see it.
struct VDFileToIdentify
{
    VDFileId* id;
    VDString filename = {};
    /// The last byte stays zero, so that a plug-in may treat the header as text.
    std::array<char, VVHeaderSize + 1> header = {};
    int headerSize = 0;
};

bool VFIsClaimed(const VDFileInfoPluginInfo& plugin, const VDFileToIdentify& file, VDIo& io, VDFileIdArray* tests)
{
    char claimed = 0;
    try {
        return plugin.entryPoints.identifyFile(file.id, file.header.data(), file.headerSize, &io, tests, &claimed) != 0 &&
               claimed != 0;
    } catch (...) {
        // A plug-in that can't cope with a file must not keep the others from it.
        return false;
    }
}

/// Takes out what a plug-in appended before it declined after all.
void VFTruncate(VDFileIdArray* tests, int base)
{
    int size = 0;
    for (FIAGetSize(tests, &size); size > base; --size)
        FIARemoveAt(tests, size - 1);
}

/// Puts the open file back to where a plug-in expects it, whatever the one before did with it.
bool VFRewind(const VDFileToIdentify& file, VDIo& io)
{
    return (io.IsOpen() || io.Open(VTOpenRead) || VFReportForFile(DaxError::IdentOpen, VVRoutine, file.id, 1)) &&
           io.SetCurPos(file.headerSize);
}

/// Asks the plug-ins in turn; the first that claims the file wins. One that declines leaves no trace on what the next one sees.
/// @param base  size of the array before
/// @return false, recorded, if the file is gone meanwhile
bool VFAskPlugins(const VDFormatRegistry& registry, const VDFileToIdentify& file, VDIo& io, VDFileIdArray* tests, int base,
                  bool* claimed)
{
    const VDPluginTable<VDFileInfoPluginInfo>& plugins = registry.GetPlugins();
    const std::size_t count = plugins.size();
    const auto start = static_cast<std::size_t>(registry.GetStartIndex(file.filename));
    const VDFileId::VDSnapshot before = file.id->Save();
    for (std::size_t step = 0; step < count && !*claimed; ++step) {
        const VDFileInfoPluginInfo& plugin = *plugins[(start + step) % count];
        if (!plugin.loaded)
            continue;
        if (!VFRewind(file, io))
            return false;
        *claimed = VFIsClaimed(plugin, file, io, tests);
        if (!*claimed) {
            VFTruncate(tests, base);
            file.id->Restore(before);
        }
    }
    return true;
}

}  // namespace

bool VDFileInfo::IdentifyFile(VDFileId* id, char loadInfo, VDFileIdArray** tests)
{
    char flag = 0;
    if (!FIDGetInIdent(id, &flag))
        return false;
    if (flag)
        return VFReportForFile(DaxError::RecursiveIdent, VVRoutine, id, 0);
    const VDInIdentGuard inIdent(id);

    VDFormatRegistry& registry = VDFormatRegistry::Get();
    int base = 0;
    if (!VFEnsureArray(tests) || !registry.LoadPlugIns() || !FIAGetSize(*tests, &base))
        return false;

    char identified = 0;
    char infoLoaded = 0;
    if (!FIDGetIdentified(id, &identified) || !FIDGetInfoLoaded(id, &infoLoaded))
        return false;
    if (identified && (!loadInfo || infoLoaded))
        return FIAAppendItem(*tests, id);

    VDFileToIdentify file = {.id = id};
    if (!VFGetFirstFilename(id, &file.filename, VVRoutine))
        return false;
    VDIo io(file.filename);
    if (!VFReadFileHeader(id, io, file.header.data(), &file.headerSize, VVRoutine))
        return false;

    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    bool claimed = false;
    if (!VFAskPlugins(registry, file, io, *tests, base, &claimed))
        return false;
    if (claimed) {
        io.Close();
        return VFWalkFileIds(*tests, base, false, [](VDFileId* test) { return FIDSetIdentified(test, 1) != 0; }) &&
               (!loadInfo || VFWalkFileIds(*tests, base, false, [this](VDFileId* test) { return LoadInfo(test); }));
    }

    if (!registry.LoadGeneralFiles())
        return false;
    VDString extension;
    VFSplitFilename(file.filename, nullptr, nullptr, &extension);
    if (const VDGeneralFileType* type = VFFindConfiguredType(registry.GetGeneralFiles(), extension))
        return VFAppendPlaceholder(file.filename, type->GetFileId(), *tests);

    // Setting a type counts as identification; here it says the contrary.
    FIDSetFileId(id, 0, 0);
    FIDSetIdentified(id, 0);
    return VFReportForFile(DaxError::NotRecognised, VVRoutine, id, 0);
}

bool VDFileInfo::IdentifyFiles(VDFileIdArray* ids, char loadInfo, char carryOn, VDFileIdArray** tests)
{
    return VFEnsureArray(tests) &&
           VFWalkFileIds(ids, 0, carryOn != 0, [&](VDFileId* id) { return IdentifyFile(id, loadInfo, tests); });
}
