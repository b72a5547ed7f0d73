#pragma once

#include "VDExtensionPreferences.h"
#include "VDFileInfoRecords.h"

#include "daxlib/VDGeneralFiles.h"

#include <atomic>
#include <optional>

/// The process-wide tables behind every `VDFileInfo`: plug-ins, file types and access types. They are built at first use and
/// then only grow. Whoever looks at a table holds the library lock; the functions that fill them take it themselves.
class VDFormatRegistry
{
public:
    static VDFormatRegistry& Get();

    /// @name Filling the tables
    /// @{
    /// Loads the configured plug-ins, at the first successful call. A plug-in that doesn't load stays in the table and is no
    /// failure.
    /// @return false, recorded, if the list of plug-ins can't be had; the next call tries again
    bool LoadPlugIns();
    /// Registers one plug-in by hand.
    /// @return true if it is loaded, or if the name was there already; else false, recorded
    bool AddPlugin(const char* name, const char* prefix, const char* library, const char* description);
    /// Loads the configured file types, at the first call.
    /// @return false, with nothing recorded, if the first call finds no configuration; every later call succeeds
    bool LoadGeneralFiles();
    /// Reads the preferences into the tables. A plug-in of which no file type is enabled counts as not loaded from then on.
    void ReadPreferences();
    void SetIdentifyByExtension(bool enable);
    /// @}

    /// @name The tables
    /// @{
    const VDPluginTable<VDFileInfoPluginInfo>& GetPlugins() const { return plugins_; }
    const VDFileTypeTable& GetFileTypes() const { return fileTypes_; }
    const VDGeneralFiles& GetGeneralFiles() const { return generalFiles_; }
    const VDExtensionPreferences& GetPreferences() const { return preferences_; }
    /// Position of a file type in its table; -1, recorded, if there is none.
    int GetIndexFromFileId(int fileId, int subId) const;
    /// The row of a file type; null, recorded, if there is none.
    const VDFileInfoFileIdInfo* GetFileType(int fileId, int subId) const;
    /// The plug-in of a file type; null, recorded with -328702, if it isn't loaded.
    const VDFileInfoPluginInfo* GetLoadedPlugin(const VDFileInfoFileIdInfo& type) const;
    /// Null if no file type has this access type.
    const VDFileInfoAccessInfo* GetAccessInfo(VTFileAccessType accessType) const;
    /// Position of the plug-in that is asked first about a file.
    int GetStartIndex(const VDString& filename) const;
    /// @}

private:
    bool LoadPlugin(VDFileInfoPluginInfo& plugin, const VDString& library, const VDString& prefix);
    void BuildAccessTable();
    std::optional<VDString> FindAccessTypeName(VTFileAccessType accessType) const;

    std::atomic<bool> pluginsLoaded_ = false;
    bool loading_ = false;
    bool generalFilesLoaded_ = false;
    VDPluginTable<VDFileInfoPluginInfo> plugins_;
    VDFileTypeTable fileTypes_;
    std::vector<VDFileInfoAccessInfo> accessTypes_;
    VDGeneralFiles generalFiles_;
    VDExtensionPreferences preferences_;
    int lexadeIndex_ = -1;  ///< the plug-in that is asked first about its own extension
};

/// The name of an access type that has none: "Unknown file type (n)".
VDString VFUnknownAccessTypeName(int accessType);
