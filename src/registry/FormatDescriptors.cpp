#include "FormatDescriptors.h"

#include "FileTypeQuery.h"
#include "FormatPlugin.h"

bool VFRegistryFileIdToTestDesc(VDFileId* id, int type, VDString* text, bool* found)
{
    *found = false;
    int fileId = 0;
    int subId = 0;
    if (!VDFormatRegistry::Get().LoadPlugIns() || !FIDGetFileId(id, &fileId, &subId))
        return false;
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        const VDFileInfoFileIdInfo* row = nullptr;
        {
            const VDErrorMute mute;
            row = registry.GetFileType(fileId, subId);
        }
        if (row == nullptr || row->pluginIndex < 0)
            return true;
        const VDFileInfoPluginInfo* plugin = registry.GetLoadedPlugin(*row);
        if (plugin == nullptr)
            return false;
        if (plugin->entryPoints.fileIdToTestDesc == nullptr)
            return true;
        text->Empty();
        const bool succeeded =
            VFCallFormat(*plugin, "FileIdToTestDesc", [&] { return plugin->entryPoints.fileIdToTestDesc(id, type, text); });
        *found = succeeded && !text->IsEmpty();
        return succeeded;
    });
}

bool VFRegistryTestDescToFileIdArray(const char* text, VDFileIdArray* tests, bool* handled)
{
    *handled = false;
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        // By position: a plug-in may register another one, and the table then grows.
        for (std::size_t index = 0; index < registry.GetPlugins().size() && !*handled; ++index) {
            const VDFileInfoPluginInfo& plugin = *registry.GetPlugins()[index];
            const auto readDescriptor = plugin.entryPoints.testDescToFileIdArray;
            char claimed = 0;
            if (readDescriptor != nullptr &&
                !VFCallFormat(plugin, "TestDescToFileIdArray", [&] { return readDescriptor(text, tests, &claimed); }))
                return false;
            *handled = claimed != 0;
        }
        return true;
    });
}
