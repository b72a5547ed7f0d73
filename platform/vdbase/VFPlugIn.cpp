#include "vdbase/VFPlugIn.h"

#include "PlugInManifests.h"

bool VFEnumPlugIns(const char* family, VFPlugInCallback callback, void* context)
{
    // The callback runs without a lock: it may load libraries, which may ask in turn.
    const std::shared_ptr<const VDPlugInList> plugIns = VFGetPlugIns();
    if (plugIns == nullptr)
        return false;
    for (const VDPlugInEntry& entry : *plugIns)
        if (entry.family.CompareNoCase(family) == 0 && callback(context, entry.name, entry.description) == 0)
            return false;
    return true;
}

bool VFGetPlugInType(const char* family, const char* name, int* skip, VDString* library, VDString* prefix)
{
    const std::shared_ptr<const VDPlugInList> plugIns = VFGetPlugIns();
    if (plugIns == nullptr)
        return false;
    for (const VDPlugInEntry& entry : *plugIns) {
        if (entry.family.CompareNoCase(family) != 0 || entry.name.CompareNoCase(name) != 0)
            continue;
        if (skip != nullptr)
            *skip = entry.skip ? 1 : 0;
        if (library != nullptr)
            *library = entry.module;
        if (prefix != nullptr)
            *prefix = entry.prefix;
        return true;
    }
    return false;
}

void VFAddBuiltInPlugIn(const char* family, const char* name, const char* description, const char* library,
                        const char* prefix)
{
    VFAddBuiltIn(
        {.family = family, .name = name, .description = description, .module = library, .prefix = prefix, .folder = {}});
}

VDArray<VDErrorReport> VFGetConfigurationWarnings()
{
    return VFGetWarnings();
}

void VFAddConfigurationWarning(const VDErrorReport& warning)
{
    VFAddWarning(warning);
}

void VFReloadPlugInConfiguration()
{
    VFForgetPlugIns();
}
