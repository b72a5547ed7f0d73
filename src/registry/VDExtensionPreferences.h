#pragma once

#include "VDFileInfoRecords.h"

/// What the preferences say about identification by extension. A fresh object has the state before they are first read.
class VDExtensionPreferences
{
public:
    /// Reads the switches and lists.
    void Read();
    /// Reads what concerns one file type into its row.
    static void ReadFileType(VDFileInfoFileIdInfo& type);

    bool GetIdentifyByExtension() const { return identifyByExtension_; }
    void SetIdentifyByExtension(bool enable) { identifyByExtension_ = enable; }
    /// Whether files of this extension are to be passed over.
    bool IsIgnored(const VDString& upperExtension) const;

private:
    bool identifyByExtension_ = false;
    bool identifyUnknownExtensions_ = true;
    VDStringArray ignored_;   ///< counts while unknown extensions are identified
    VDStringArray included_;  ///< counts while they aren't
};
