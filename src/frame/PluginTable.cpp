#include "PluginTable.h"

#include "VFDaxReport.h"

#include "vdbase/VFPlugIn.h"

namespace {

constexpr const char* VVSwitchedOff = "This plug-in is switched off in the configuration. Plugin: ";

int VFCollectPlugin(void* context, const char* name, const char* description)
{
    auto& plugins = *static_cast<std::vector<VDPluginRecord>*>(context);
    plugins.push_back({.name = name, .description = description});
    return 1;
}

}  // namespace

bool VFLoadEntryPoints(const VDString& library, const VDString& prefix, const VDString& description,
                       std::span<const VDEntryPoint> needed, std::span<const VDEntryPoint> optional, void* entryPoints,
                       const char* routine)
{
    VDLibrary* handle = VFLoadLibrary(library);
    if (handle == nullptr)
        return VFDaxReport(DaxError::PluginLibrary, routine, {.appended = library, .chain = 1}) != 0;
    for (const VDEntryPoint& entry : needed) {
        void* function = nullptr;
        if (!VFGetLibFunc(handle, prefix, entry.suffix, &function)) {
            VDString text;
            text.FormatRuntime(VFDaxText(DaxError::PluginFunction), entry.suffix, library.c_str(), description.c_str());
            return VFDaxReport(DaxError::PluginFunction, routine, {.text = text}) != 0;
        }
        entry.store(entryPoints, function);
    }
    for (const VDEntryPoint& entry : optional) {
        void* function = nullptr;
        if (VFGetLibFunc(handle, prefix, entry.suffix, &function))
            entry.store(entryPoints, function);
    }
    return true;
}

bool VFListPlugins(const char* section, std::vector<VDPluginRecord>& plugins, const char* routine)
{
    // The report goes on top of the one that names the manifest and what is wrong in it.
    return VFEnumPlugIns(section, VFCollectPlugin, &plugins) ||
           VFDaxReport(DaxError::PluginList, routine, {.chain = 1}) != 0;
}

VDPluginSource VFGetPluginSource(const char* section, const VDString& name)
{
    VDPluginSource source;
    int skip = 0;
    source.configured = VFGetPlugInType(section, name, &skip, &source.nameOfLibrary, &source.prefix);
    source.skip = skip != 0;
    return source;
}

void VFLoadPlugin(VDPluginRecord& plugin, const std::function<bool()>& load)
{
    {
        const VDErrorCapture capture;
        plugin.loaded = load();
        plugin.problem.Clear();
        if (plugin.loaded)
            return;
        plugin.problem = capture.GetReports();
    }
    VFErrorSetAll(plugin.problem, 0);
    for (const VDErrorReport& report : plugin.problem)
        VFAddConfigurationWarning(report);
}

bool VFReportDisabledPlugin(const VDPluginRecord& plugin, int code, const char* routine)
{
    if (plugin.switchedOff)
        return VFDaxReport(code, routine, {.text = VDString(VVSwitchedOff) + plugin.description}) != 0;
    VFErrorSetAll(plugin.problem, 0);
    return VFDaxReport(code, routine, {.appended = plugin.description, .chain = plugin.problem.IsEmpty() ? 0 : 1}) != 0;
}
