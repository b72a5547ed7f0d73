#pragma once

#include "daxlib/VDGeneralFileType.h"

#include <memory>

/// An access type of the configuration, with the file types that belong to it.
class DAX_API VDGeneralFileAccessType
{
public:
    /// @param id  a `VTFileAccessType`, 1000 to 2999 for one from a configuration file
    VDGeneralFileAccessType(int id, VDString name, char enabled);
    /// Copies the file types too.
    VDGeneralFileAccessType(const VDGeneralFileAccessType& other);
    VDGeneralFileAccessType& operator=(const VDGeneralFileAccessType& other);
    ~VDGeneralFileAccessType();

    int GetId() const { return id_; }
    void SetId(int id) { id_ = id; }
    const VDString& GetName() const { return name_; }
    void SetName(VDString name) { name_ = name; }
    char GetEnabled() const { return enabled_; }
    void SetEnabled(char enabled) { enabled_ = enabled; }

    /// The number of file types.
    int GetFileTypes() const { return fileTypes_.GetSize(); }
    /// Stays the access type's; null for an index out of range.
    VDGeneralFileType* GetFileType(int index) const { return fileTypes_[index].get(); }
    /// Adds a file type. If one of this keyword (without regard to case) and file id is there already, the extensions are
    /// merged into it and its flags stay.
    /// @return the file type, which stays the access type's; null if only one of keyword and file id is taken
    VDGeneralFileType* AddFileType(VDString keyword, int fileId, VDString extensions, char enabled, char identifyAsStandard);
    void ClearFileTypes();

private:
    int id_;
    VDString name_;
    char enabled_;
    VDArray<std::unique_ptr<VDGeneralFileType>> fileTypes_{10};
};
