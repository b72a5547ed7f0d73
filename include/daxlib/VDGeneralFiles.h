#pragma once

#include "daxlib/VDGeneralFileAccessType.h"

/// The configured file types: those of the files `GeneralFiles.sys` and `GeneralFiles_custom.sys`. Such a file is XML:
///
///     <GeneralFiles Version="1.0">
///       <AccessType Id="1000" Name="Documents" Enabled="True">
///         <FileType Keyword="Report" FileId="28000" Extensions="doc;pdf" Enabled="True" IdentifyAsStandard="False"/>
///       </AccessType>
///     </GeneralFiles>
class DAX_API VDGeneralFiles
{
public:
    VDGeneralFiles();
    /// Copies the access types and their file types too.
    VDGeneralFiles(const VDGeneralFiles& other);
    VDGeneralFiles& operator=(const VDGeneralFiles& other);
    ~VDGeneralFiles();

    /// Of the last file that was merged.
    double GetVersion() const { return version_; }
    void SetVersion(double version) { version_ = version; }

    /// The number of access types.
    int GetAccessTypes() const { return accessTypes_.GetSize(); }
    /// Access types stay this object's; null for an index out of range.
    VDGeneralFileAccessType* GetAccessType(int index) const { return accessTypes_[index].get(); }
    /// The first of this id, or null.
    VDGeneralFileAccessType* GetAccessTypeFromId(int id) const;
    /// The first of this id in the last access type that has it, or null.
    VDGeneralFileType* GetFileTypeFromFileId(int fileId) const;
    /// Adds an access type. One of this name (without regard to case) and id that is there already takes the new flag.
    /// @return the access type, which stays this object's; null if only one of name and id is taken
    VDGeneralFileAccessType* AddAccessType(int id, VDString name, char enabled);
    void ClearAccessTypes();

    /// Adds what a configuration file declares. Elements of other names and ids outside their ranges are passed over.
    /// @return 0, with nothing recorded, for a file that can't be parsed or in which a needed attribute is missing or no
    ///         number; what stands before that place is taken
    char MergeConfigurationFile(VDString path);

private:
    double version_ = 0;
    VDArray<std::unique_ptr<VDGeneralFileAccessType>> accessTypes_{10};
};
