#include "VDFormatRegistry.h"

#include "ConfiguredTypes.h"
#include "FormatPlugin.h"
#include "frame/VDDaxLib.h"
#include "frame/VDValueGuard.h"

#include <algorithm>
#include <iterator>
#include <mutex>

namespace {

using VDLibraryLock = std::lock_guard<VDThreadSync>;

constexpr const char* VVLexadePrefix = "LexadeFF";
constexpr const char* VVLexadeEnd = ".sig";
constexpr int VVLexadeEndLength = 4;

const VDFileInfoAccessInfo* VFFindAccessInfo(const std::vector<VDFileInfoAccessInfo>& accessTypes, VTFileAccessType accessType)
{
    const auto found = std::find_if(accessTypes.begin(), accessTypes.end(),
                                    [&](const VDFileInfoAccessInfo& info) { return info.accessType == accessType; });
    return found == accessTypes.end() ? nullptr : &*found;
}

/// The rows of the enabled types of a configuration.
void VFListConfiguredTypes(const VDGeneralFiles& files, VDFileTypeTable& types, std::vector<VDFileInfoAccessInfo>& accessTypes)
{
    for (int access = 0; access < files.GetAccessTypes(); ++access) {
        const VDGeneralFileAccessType& accessType = *files.GetAccessType(access);
        if (!accessType.GetEnabled())
            continue;
        const auto id = static_cast<VTFileAccessType>(accessType.GetId());
        if (VFFindAccessInfo(accessTypes, id) == nullptr)
            accessTypes.push_back({id, accessType.GetName()});
        for (int index = 0; index < accessType.GetFileTypes(); ++index) {
            const VDGeneralFileType& configured = *accessType.GetFileType(index);
            if (!configured.GetEnabled())
                continue;
            VDFileInfoFileIdInfo& type = types.emplace_back();
            type.fileId = configured.GetFileId();
            type.accessType = id;
            type.description = accessType.GetName();
            type.keyword = configured.GetKeyword();
            type.identifyByExtension = true;
            type.extensions = configured.GetExtensions();
        }
    }
}

}  // namespace

VDFormatRegistry& VDFormatRegistry::Get()
{
    static VDFormatRegistry registry;
    return registry;
}

bool VDFormatRegistry::LoadPlugIns()
{
    if (pluginsLoaded_.load(std::memory_order_acquire))
        return true;
    const VDLibraryLock lock(VDDaxLib::Get().GetLock());
    // A plug-in may put a question to the registry while it is loaded itself: it sees what there is so far.
    if (pluginsLoaded_ || loading_)
        return true;
    const VDValueGuard loading(loading_, true);
    const bool listed = VFLoadPluginTable("FileFormat", plugins_, "VDFileInfo::LoadPlugIns",
                                          [this](VDFileInfoPluginInfo& plugin, const VDString& library,
                                                 const VDString& prefix) { return LoadPlugin(plugin, library, prefix); });
    if (listed) {
        BuildAccessTable();
        ReadPreferences();
    }
    pluginsLoaded_.store(listed, std::memory_order_release);
    return listed;
}

bool VDFormatRegistry::AddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    const VDLibraryLock lock(VDDaxLib::Get().GetLock());
    return VFAddPluginByHand(plugins_, name, prefix, library, description,
                             [this](VDFileInfoPluginInfo& plugin, const VDString& file, const VDString& pluginPrefix) {
                                 return LoadPlugin(plugin, file, pluginPrefix);
                             });
}

bool VDFormatRegistry::LoadPlugin(VDFileInfoPluginInfo& plugin, const VDString& library, const VDString& prefix)
{
    const auto position =
        std::find_if(plugins_.begin(), plugins_.end(), [&](const auto& record) { return record.get() == &plugin; });
    const int index = static_cast<int>(position - plugins_.begin());
    if (prefix == VVLexadePrefix)
        lexadeIndex_ = index;
    return VFLoadFormatPlugin(plugins_, index, library, prefix, fileTypes_);
}

void VDFormatRegistry::BuildAccessTable()
{
    for (const VDFileInfoFileIdInfo& type : fileTypes_) {
        if (GetAccessInfo(type.accessType) != nullptr)
            continue;
        VDFileInfoAccessInfo info = {.accessType = type.accessType};
        if (const std::optional<VDString> name = FindAccessTypeName(type.accessType))
            info.name = name->IsEmpty() ? VFUnknownAccessTypeName(type.accessType) : *name;
        accessTypes_.push_back(std::move(info));
    }
}

std::optional<VDString> VDFormatRegistry::FindAccessTypeName(VTFileAccessType accessType) const
{
    if (accessType >= VTFileAccessTimeSeries && accessType <= VTFileAccessFEModels)
        return VFDaxText(DaxText::AccessTypeUnknown + accessType);
    // The configuration isn't loaded on purpose for a name.
    if (const VDGeneralFileAccessType* configured = generalFiles_.GetAccessTypeFromId(accessType))
        return configured->GetName();
    return VFGetLocalAccessTypeName(accessType);
}

bool VDFormatRegistry::LoadGeneralFiles()
{
    const VDLibraryLock lock(VDDaxLib::Get().GetLock());
    if (generalFilesLoaded_)
        return true;
    VDFileTypeTable types;
    std::vector<VDFileInfoAccessInfo> accessTypes = accessTypes_;
    bool merged = false;
    try {
        merged = VFMergeConfigurationFiles(generalFiles_);
        VFListConfiguredTypes(generalFiles_, types, accessTypes);
        fileTypes_.insert(fileTypes_.end(), std::make_move_iterator(types.begin()), std::make_move_iterator(types.end()));
    } catch (...) {
        // The next call is to find nothing of this one.
        generalFiles_.ClearAccessTypes();
        throw;
    }
    accessTypes_ = std::move(accessTypes);
    generalFilesLoaded_ = true;
    return merged;
}

void VDFormatRegistry::ReadPreferences()
{
    const VDLibraryLock lock(VDDaxLib::Get().GetLock());
    VDExtensionPreferences preferences;
    preferences.Read();
    preferences_ = std::move(preferences);
    std::vector<bool> hasType(plugins_.size());
    for (VDFileInfoFileIdInfo& type : fileTypes_) {
        VDExtensionPreferences::ReadFileType(type);
        if (type.enabled && type.pluginIndex >= 0)
            hasType[static_cast<std::size_t>(type.pluginIndex)] = true;
    }
    // This only ever takes a plug-in out: one that is enabled again comes back with the next process.
    for (std::size_t index = 0; index < plugins_.size(); ++index)
        plugins_[index]->loaded = plugins_[index]->loaded && hasType[index];
}

void VDFormatRegistry::SetIdentifyByExtension(bool enable)
{
    const VDLibraryLock lock(VDDaxLib::Get().GetLock());
    ReadPreferences();
    preferences_.SetIdentifyByExtension(enable);
}

int VDFormatRegistry::GetIndexFromFileId(int fileId, int subId) const
{
    for (std::size_t index = 0; index < fileTypes_.size(); ++index)
        if (fileTypes_[index].fileId == fileId && fileTypes_[index].subId == subId)
            return static_cast<int>(index);
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::UnknownFileId), fileId, subId);
    VFDaxReport(DaxError::UnknownFileId, "VDFileInfo::GetIndexFromFileId", {.text = text});
    return -1;
}

const VDFileInfoFileIdInfo* VDFormatRegistry::GetFileType(int fileId, int subId) const
{
    const int index = GetIndexFromFileId(fileId, subId);
    return index < 0 ? nullptr : &fileTypes_[static_cast<std::size_t>(index)];
}

const VDFileInfoPluginInfo* VDFormatRegistry::GetLoadedPlugin(const VDFileInfoFileIdInfo& type) const
{
    const VDFileInfoPluginInfo* plugin =
        type.pluginIndex < 0 ? nullptr : plugins_[static_cast<std::size_t>(type.pluginIndex)].get();
    if (plugin != nullptr && plugin->loaded)
        return plugin;
    if (plugin != nullptr)
        VFReportDisabledPlugin(*plugin, DaxError::FormatPluginNotLoaded, "VDFileInfo::LoadInfo");
    else  // A configured type has no plug-in; its own description has to do.
        VFDaxReport(DaxError::FormatPluginNotLoaded, "VDFileInfo::LoadInfo", {.appended = type.description});
    return nullptr;
}

const VDFileInfoAccessInfo* VDFormatRegistry::GetAccessInfo(VTFileAccessType accessType) const
{
    return VFFindAccessInfo(accessTypes_, accessType);
}

int VDFormatRegistry::GetStartIndex(const VDString& filename) const
{
    const bool lexadeFirst = lexadeIndex_ >= 0 && filename.Right(VVLexadeEndLength).CompareNoCase(VVLexadeEnd) == 0;
    return lexadeFirst ? lexadeIndex_ : 0;
}

VDString VFUnknownAccessTypeName(int accessType)
{
    VDString name;
    name.Format("%s (%d)", VFDaxText(DaxText::AccessTypeUnknown).c_str(), accessType);
    return name;
}
