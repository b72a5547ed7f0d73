#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDStringArray.h"

/// A file type that is known by its extension only: no plug-in reads it, but it can be listed and recognised.
class DAX_API VDGeneralFileType
{
public:
    /// @param keyword             the type's name
    /// @param fileId              28000 to 28999 for a type from a configuration file
    /// @param extensions          without dots, separated by ";"
    /// @param identifyAsStandard  non-zero offers files of this type to the plug-ins as well
    VDGeneralFileType(VDString keyword, int fileId, VDString extensions, char enabled, char identifyAsStandard);
    VDGeneralFileType(const VDGeneralFileType& other);
    VDGeneralFileType& operator=(const VDGeneralFileType& other);
    ~VDGeneralFileType();

    const VDString& GetKeyword() const { return keyword_; }
    void SetKeyword(VDString keyword) { keyword_ = keyword; }
    int GetFileId() const { return fileId_; }
    void SetFileId(int fileId) { fileId_ = fileId; }
    char GetEnabled() const { return enabled_; }
    void SetEnabled(char enabled) { enabled_ = enabled; }
    char GetIdentifyAsStandard() const { return identifyAsStandard_; }
    void SetIdentifyAsStandard(char identifyAsStandard) { identifyAsStandard_ = identifyAsStandard; }

    /// The extensions in the case in which they were written.
    VDStringArray GetExtensions() const { return extensions_; }
    int GetNumExtensions() const { return extensions_.GetSize(); }
    /// Empty for an index out of range.
    const VDString& GetExtension(int index) const { return extensions_[index]; }
    /// @param extensions  separated by ";"
    /// @param merge       non-zero adds those that aren't there yet, without regard to case; 0 replaces the list
    void SetExtensions(VDString extensions, char merge);
    /// 0 if the extension is there already, without regard to case.
    char AddExtension(VDString extension);

private:
    VDString keyword_;
    int fileId_;
    VDStringArray extensions_;
    char enabled_;
    char identifyAsStandard_;
};
