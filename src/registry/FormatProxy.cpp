// Tests that a plug-in serves through another test.

#include "daxlib/DaxHandle.h"
#include "FileTypeQuery.h"
#include "FormatPlugin.h"
#include "VDFileInfo.h"

namespace {

/// Selects a channel as another test has it. A proxy need not have all the channels of the test that it stands for.
bool VFSelectChannel(VDFileId* id, int number, char selected)
{
    const VDErrorMute mute;
    int index = 0;
    return !FIDGetChanIndex(id, number, &index) || FIDSetChanSelect(id, index, selected);
}

/// Gives the proxy the selection of the test that it stands for.
bool VFCopySelection(VDFileId* source, VDFileId* proxy)
{
    char selected = 0;
    if (!FIDGetSelected(source, &selected) || !FIDSetSelected(proxy, selected) || !FIDGetAllChansSelected(source, &selected))
        return false;
    if (selected)
        return FIDSetAllChanSelect(proxy, 1) != 0;
    int count = 0;
    if (!FIDGetNumChans(source, &count))
        return false;
    for (int index = 0; index < count; ++index) {
        int number = 0;
        if (!FIDGetChanNumber(source, index, &number) || !FIDGetChanSelected(source, index, &selected) ||
            !VFSelectChannel(proxy, number, selected))
            return false;
    }
    return true;
}

}  // namespace

bool VDFileInfo::GetProxyAccessFileId(VDFileId* id, VDFileId** proxy)
{
    *proxy = nullptr;
    int fileId = 0;
    int subId = 0;
    if (!VDFormatRegistry::Get().LoadPlugIns() || !FIDGetFileId(id, &fileId, &subId))
        return false;
    VDFileIdHandle served;
    const bool asked = VFAskFileType(fileId, subId, [&](VDFormatRegistry& registry, const VDFileInfoFileIdInfo& type) {
        if (type.pluginIndex < 0)
            return true;
        const VDFileInfoPluginInfo* plugin = registry.GetLoadedPlugin(type);
        if (plugin == nullptr)
            return false;
        const auto getProxy = plugin->entryPoints.getProxyAccessFileId;
        return getProxy == nullptr ||
               VFCallFormat(*plugin, "GetProxyAccessFileId", [&] { return getProxy(id, served.Out()); });
    });
    if (!asked || (served && !VFCopySelection(id, served.Get())))
        return false;
    *proxy = served.Detach();
    return true;
}
