#include "PluginTable.h"

#include "VFDaxReport.h"

#include "vdbase/VFPlugIn.h"

namespace {

int VFCollectPlugin(void* context, const char* name, const char* description)
{
    auto& plugins = *static_cast<std::vector<VDPluginRecord>*>(context);
    plugins.push_back({false, name, description});
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

bool VFGetPluginSource(const char* section, const VDString& name, VDString& library, VDString& prefix)
{
    int skip = 0;
    return VFGetPlugInType(section, name, &skip, &library, &prefix) && skip == 0;
}
