#pragma once

#include "vdbase/VDString.h"

/// Names written relative to the folder that a caller stores its document in, so that document and data can move together.
class VDBASE_API VDStoredRelativePath
{
public:
    /// @param baseFolder  of the document; empty for the current folder
    explicit VDStoredRelativePath(const char* baseFolder = "");

    /// The name relative to the base folder if it lies in it or below; otherwise the name as it is.
    /// @param isFile  1 names a file, 0 a stem
    VDString GetRelativeName(const char* filename, int isFile) const;
    VDString GetRelativeNameNoCopyFail(const char* filename, int isFile) const;

private:
    VDString baseFolder_;
};
