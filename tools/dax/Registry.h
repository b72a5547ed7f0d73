#pragma once

#include "daxlib/DaxHandle.h"
#include "vdbase/VFError.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// One file type of the registry.
struct VDFileType
{
    int fileId = 0;
    int subId = 0;
    std::string keyword;
    std::string description;
    int accessType = VTFileAccessUnknown;
    std::string accessName;
    bool readable = false;  ///< by a plug-in that is there; set by `GetFileTypes` alone, as the next
    bool writable = false;
    bool temporary = false;  ///< its files go with the last id of the test
    std::vector<std::string> extensions;

    /// The older kind of the same, which holds floats only.
    bool IsFloatStorage() const { return fileId == DaxStorageFileId && subId == 4; }
    /// Known by its extension alone, through the configuration.
    bool IsConfigured() const
    {
        return accessType >= VTFileAccessFirstConfigured && accessType <= VTFileAccessLastConfigured;
    }
};

/// The format registry as the program uses it.
class VDRegistry
{
public:
    /// Brings the registry up; throws if that fails.
    VDRegistry();

    VDFileInfo* Get() const { return info_.Get(); }
    /// Plug-ins that couldn't be loaded, manifests that aren't obeyed. The registry works without them.
    const std::vector<VDErrorReport>& GetLoadProblems() const { return loadProblems_; }

    std::vector<VDFileType> GetFileTypes() const;
    /// Throws for a type that isn't known.
    const VDFileType& Describe(int fileId, int subId) const;

private:
    VDFileType MakeDescription(int fileId, int subId) const;
    bool HasCapability(int fileId, int subId, const char* name) const;
    std::vector<std::string> GetExtensions(const VDFileType& type) const;

    VDFileInfoHandle info_;
    std::vector<VDErrorReport> loadProblems_;
    mutable std::map<std::pair<int, int>, VDFileType> described_;
};
