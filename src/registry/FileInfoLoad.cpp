// The load of channel lists.

#include "FileHeader.h"
#include "FileTypeQuery.h"
#include "FormatPlugin.h"
#include "VDFileInfo.h"
#include "WalkFileIds.h"
#include "identity/VDFileId.h"

#include <array>

namespace {

constexpr const char* VVRoutine = "VDFileInfo::LoadInfo";

bool VFCallLoadFileInfo(const VDFileInfoPluginInfo& plugin, VDFileId* id, const char* header, int headerSize, VDIo& io)
{
    VFErrorClear();
    try {
        return plugin.entryPoints.loadFileInfo(id, header, headerSize, &io) != 0 ||
               VFReportFormatFailure(plugin, "LoadInfo");
    } catch (...) {
        VDString text;
        text.FormatRuntime(VFDaxText(DaxError::FormatPluginUnknown), "LoadInfo", plugin.description.c_str());
        return VFReportForFile(DaxError::FormatPluginUnknown, VVRoutine, id, 0, text);
    }
}

}  // namespace

bool VDFileInfo::LoadInfo(VDFileId* id)
{
    VDFormatRegistry& registry = VDFormatRegistry::Get();
    if (!registry.LoadPlugIns())
        return false;

    char flag = 0;
    if (!FIDGetIdentified(id, &flag))
        return VFReportForFile(DaxError::FormatDetails, VVRoutine, id, 1);
    if (!flag)
        return VFReportForFile(DaxError::FormatDetails, VVRoutine, id, 0);
    if (FIDGetInfoLoaded(id, &flag) && flag)
        return true;

    int fileId = 0;
    int subId = 0;
    if (!FIDGetFileId(id, &fileId, &subId))
        return VFReportForFile(DaxError::FormatDetails, VVRoutine, id, 1);
    VDString filename;
    if (!VFGetFirstFilename(id, &filename, VVRoutine))
        return false;
    VDIo io(filename);
    std::array<char, VVHeaderSize> header;
    int headerSize = 0;
    if (!VFReadFileHeader(id, io, header.data(), &headerSize, VVRoutine))
        return false;

    const auto loading = id->MarkLoading();
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    const VDFileInfoFileIdInfo* type = registry.GetFileType(fileId, subId);
    if (type == nullptr)
        return VFReportForFile(DaxError::NotRecognised, VVRoutine, id, 1);
    const VDFileInfoPluginInfo* plugin = registry.GetLoadedPlugin(*type);
    return plugin != nullptr && VFCallLoadFileInfo(*plugin, id, header.data(), headerSize, io) && FIDSetInfoLoaded(id, 1);
}

bool VDFileInfo::LoadInfoForFiles(VDFileIdArray* ids, char carryOn)
{
    return VFWalkFileIds(ids, 0, carryOn != 0, [this](VDFileId* id) { return LoadInfo(id); });
}
