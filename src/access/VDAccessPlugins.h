#pragma once

#include "AccessFamily.h"

/// The process-wide plug-in table of one access family. It is filled at the family's first `SetId` and lives to unload.
class VDAccessPlugins
{
public:
    explicit VDAccessPlugins(const VDAccessFamily& family) : family_(family) {}
    VDAccessPlugins(const VDAccessPlugins&) = delete;
    VDAccessPlugins& operator=(const VDAccessPlugins&) = delete;

    /// Reads the section of the configuration and loads its plug-ins, once. A failure is recorded, and the next call tries
    /// again.
    bool LoadPlugIns();

    /// Registers one plug-in by hand; true if it is loaded or its name was there already.
    bool AddPlugin(const char* name, const char* prefix, const char* library, const char* description);

    /// The plug-in of a class id text, compared without regard to case; null if there is none. It may not be loaded.
    const VDAccessPluginInfo* Find(const VDString& classId) const;

private:
    bool LoadOne(VDAccessPluginInfo& plugin, const VDString& library, const VDString& prefix) const;
    VDString Routine() const;

    const VDAccessFamily& family_;
    VDPluginTable<VDAccessPluginInfo> plugins_;
    bool pluginsLoaded_ = false;
};
