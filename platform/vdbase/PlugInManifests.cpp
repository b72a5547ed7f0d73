#include "PlugInManifests.h"

#include "FileReport.h"
#include "ProcessRights.h"
#include "TomlFile.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFTrace.h"

#include <algorithm>
#include <mutex>
#include <string>
#include <string_view>

namespace {

constexpr const char* Routine = "VFEnumPlugIns";

struct VDPlugInStore
{
    std::mutex lock;
    VDPlugInList builtIn;
    std::shared_ptr<const VDPlugInList> plugIns;
    std::mutex warningLock;
    std::vector<VDErrorReport> warnings;
};

VDPlugInStore& VFStore()
{
    // Never destroyed: libraries may ask while the process ends.
    static auto& store = *new VDPlugInStore;
    return store;
}

// Turns what a scope records into warnings.
void VFWarnOfAll(const VDErrorCapture& capture)
{
    for (const VDErrorReport& report : capture.GetReports())
        VFAddWarning(report);
}

bool VFReportManifest(const VDString& filename, const toml::node& node, const std::string& reason)
{
    return VFReportTomlNode(filename, node.source(), reason, VDBaseError::PluginConfig, Routine);
}

// Takes one value of a [[plugin]] table.
bool VFTakeValue(const VDString& filename, std::string_view key, const toml::node& node, VDPlugInEntry* entry)
{
    if (key == "skip") {
        const std::optional<bool> flag = node.value_exact<bool>();
        entry->skip = flag.value_or(false);
        return flag.has_value() || VFReportManifest(filename, node, "\"skip\" must be true or false");
    }
    VDString* const target = key == "family"        ? &entry->family
                             : key == "name"        ? &entry->name
                             : key == "description" ? &entry->description
                             : key == "library"     ? &entry->module
                             : key == "prefix"      ? &entry->prefix
                                                    : nullptr;
    if (target == nullptr)
        return VFReportManifest(filename, node, "unknown key \"" + std::string(key) + '"');
    const std::optional<std::string_view> text = node.value_exact<std::string_view>();
    if (!text || text->empty() || text->find('\0') != std::string_view::npos)
        return VFReportManifest(filename, node, '"' + std::string(key) + "\" must be a text that isn't empty");
    *target = VDString(*text);
    return true;
}

bool VFReadEntry(const VDString& filename, const toml::table& table, VDPlugInEntry* entry)
{
    for (const auto& [key, node] : table)
        if (!VFTakeValue(filename, key.str(), node, entry))
            return false;
    for (const char* needed : {"family", "name", "description", "library", "prefix"})
        if (!table.contains(needed))
            return VFReportManifest(filename, table, '"' + std::string(needed) + "\" is missing in this plug-in");
    VFSplitFilename(filename, &entry->folder, nullptr, nullptr);
    if (entry->module.Find('/') >= 0)
        entry->module = VDFileSystem::GetFullPath(VFBuildFilename(entry->folder, entry->module));
    return true;
}

void VFAddEntry(VDPlugInEntry entry, VDPlugInList* plugIns)
{
    const bool known = std::any_of(plugIns->begin(), plugIns->end(), [&](const VDPlugInEntry& other) {
        return other.family.CompareNoCase(entry.family) == 0 && other.name.CompareNoCase(entry.name) == 0;
    });
    if (!known)
        plugIns->push_back(std::move(entry));
}

bool VFReadManifest(const VDString& filename, VDPlugInList* plugIns)
{
    toml::table root;
    if (!VFParseTomlFile(filename, &root, VDBaseError::PluginConfig, Routine, 0))
        return false;
    for (const auto& [key, node] : root) {
        const toml::array* const list = node.as_array();
        if (key.str() != "plugin" || list == nullptr || !list->is_homogeneous(toml::node_type::table))
            return VFReportManifest(filename, node, "only [[plugin]] tables are expected here");
        for (const toml::node& item : *list) {
            VDPlugInEntry entry;
            if (!VFReadEntry(filename, *item.as_table(), &entry))
                return false;
            VFAddEntry(std::move(entry), plugIns);
        }
    }
    return true;
}

// Leaves out what must not be obeyed.
bool VFReadTrusted(const VDString& filename, VDPlugInList* plugIns)
{
    return VFWarnOfDistrust(filename, VDBaseError::PluginConfig, Routine) || VFReadManifest(filename, plugIns);
}

// Nothing of a manifest counts if something in it is wrong.
void VFReadOneOfMany(const VDString& filename, VDPlugInList* plugIns)
{
    const VDErrorCapture capture;
    VDPlugInList own;
    if (!VFReadTrusted(filename, &own)) {
        VFWarnOfAll(capture);
        return;
    }
    for (VDPlugInEntry& entry : own)
        VFAddEntry(std::move(entry), plugIns);
}

bool VFReadFolder(const char* logicalName, VDPlugInList* plugIns)
{
    const VDString folder = VFTranslateName(logicalName);
    if (folder.IsEmpty())
        return true;
    if (!VFReadTrusted(VFBuildFilename(folder, "plugins", "toml"), plugIns))
        return false;
    const std::unique_ptr<const VDStringArray> more(
        VDFileSystem::GetFileList(VFBuildFilename(folder, "plugins.d/*", "toml"), VDFileSystem::Files));
    if (more != nullptr)
        for (const VDString& filename : *more)
            VFReadOneOfMany(filename, plugIns);
    return true;
}

// A relative name is ignored; whoever set it should know.
void VFWarnOfVariable(const char* name)
{
    const std::string_view value = VFEnvironment(name);
    if (!value.empty() && VFEnvironmentFolder(name).empty())
        VFAddWarning({VDBaseError::PluginConfig,
                      VDString("The environment variable ") + name + " doesn't count: it is no absolute name: " +
                          VDString(value),
                      Routine});
}

// All sources of plug-ins. The order counts, for the first entry of a name wins.
bool VFReadSources(const VDPlugInList& builtIn, VDPlugInList* plugIns)
{
    VFWarnOfVariable("DAX_HOME");
    VFWarnOfVariable("DAX_SYS");
    if (!VFReadFolder("home", plugIns) || !VFReadFolder("vdsys", plugIns))
        return false;
    for (const VDPlugInEntry& entry : builtIn)
        VFAddEntry(entry, plugIns);
    return true;
}

}  // namespace

bool VFWarnOfDistrust(const VDString& filename, int code, const char* routine)
{
    const VDString reason = VFFindDistrust(filename);
    if (reason.IsEmpty())
        return false;
    const VDErrorCapture capture;
    VFReportFile(code, filename, reason.c_str(), routine);
    VFWarnOfAll(capture);
    return true;
}

std::shared_ptr<const VDPlugInList> VFGetPlugIns()
{
    VDPlugInStore& store = VFStore();
    const std::lock_guard guard(store.lock);
    if (store.plugIns == nullptr) {
        auto plugIns = std::make_shared<VDPlugInList>();
        if (VFReadSources(store.builtIn, plugIns.get()))
            store.plugIns = std::move(plugIns);
    }
    return store.plugIns;
}

std::vector<VDString> VFGetManifestFolders(const VDString& library)
{
    VDPlugInStore& store = VFStore();
    const std::lock_guard guard(store.lock);
    std::vector<VDString> folders;
    if (store.plugIns != nullptr)
        for (const VDPlugInEntry& entry : *store.plugIns)
            if (entry.module == library && std::find(folders.begin(), folders.end(), entry.folder) == folders.end())
                folders.push_back(entry.folder);
    return folders;
}

void VFAddBuiltIn(VDPlugInEntry entry)
{
    VDPlugInStore& store = VFStore();
    const std::lock_guard guard(store.lock);
    VFAddEntry(std::move(entry), &store.builtIn);
    store.plugIns.reset();
}

void VFForgetPlugIns()
{
    VDPlugInStore& store = VFStore();
    const std::scoped_lock guard(store.lock, store.warningLock);
    store.plugIns.reset();
    store.warnings.clear();
}

void VFAddWarning(VDErrorReport warning)
{
    VDPlugInStore& store = VFStore();
    const std::lock_guard guard(store.warningLock);
    const bool known = std::any_of(store.warnings.begin(), store.warnings.end(), [&](const VDErrorReport& other) {
        return other.code == warning.code && other.text == warning.text;
    });
    if (known)
        return;
    VFTracePrintf("%s\n", warning.text.c_str());
    store.warnings.push_back(std::move(warning));
}

VDArray<VDErrorReport> VFGetWarnings()
{
    VDPlugInStore& store = VFStore();
    const std::lock_guard guard(store.warningLock);
    VDArray<VDErrorReport> warnings;
    for (const VDErrorReport& warning : store.warnings)
        warnings.AppendItem(warning);
    return warnings;
}
