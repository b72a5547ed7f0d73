#include "VDAccessPlugins.h"

#include "frame/VDDaxLib.h"

#include <mutex>

VDString VDAccessPlugins::Routine() const
{
    return VDString(family_.className) + "::LoadPlugIns";
}

bool VDAccessPlugins::LoadOne(VDAccessPluginInfo& plugin, const VDString& library, const VDString& prefix) const
{
    auto entryPoints = family_.makeEntryPoints();
    if (!VFLoadEntryPoints(library, prefix, plugin.description, family_.entryPointList, {}, entryPoints.get(), Routine()))
        return false;
    plugin.entryPoints = std::move(entryPoints);
    return true;
}

bool VDAccessPlugins::LoadPlugIns()
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    if (pluginsLoaded_)
        return true;
    bool allLoaded = true;
    // Where the first failure ends it, those behind it aren't tried.
    const auto load = [&](VDAccessPluginInfo& plugin, const VDString& library, const VDString& prefix) {
        if (family_.loadFailureIsFatal && !allLoaded)
            return false;
        const bool loaded = LoadOne(plugin, library, prefix);
        allLoaded = allLoaded && loaded;
        return loaded;
    };
    if (!VFLoadPluginTable(family_.section, plugins_, Routine(), load))
        return false;
    if (family_.loadFailureIsFatal && !allLoaded) {
        for (const auto& plugin : plugins_)
            if (!plugin->problem.IsEmpty())
                VFErrorSetAll(plugin->problem, 0);
        return false;
    }
    pluginsLoaded_ = true;
    return true;
}

bool VDAccessPlugins::AddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    const auto load = [this](VDAccessPluginInfo& plugin, const VDString& file, const VDString& start) {
        return LoadOne(plugin, file, start);
    };
    if (VFAddPluginByHand(plugins_, name, prefix, library, description, load))
        return true;
    if (family_.loadFailureIsFatal)
        plugins_.pop_back();
    return false;
}

const VDAccessPluginInfo* VDAccessPlugins::Find(const VDString& classId) const
{
    const int index = VFFindPlugin(plugins_, classId);
    const VDAccessPluginInfo* const plugin = index < 0 ? nullptr : plugins_[static_cast<std::size_t>(index)].get();
    // One that is switched off is as good as none where there are no disabled ones.
    return plugin != nullptr && !plugin->loaded && family_.loadFailureIsFatal ? nullptr : plugin;
}
