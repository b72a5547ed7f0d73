#pragma once

#include "vdbase/VDFileSystem.h"

#include <sys/stat.h>

/// The attribute of `VDFileSystem::Attributes` that the mode of a file stands for; 0 for what is neither a plain file nor a
/// folder.
inline int VFAttributesOfMode(mode_t mode)
{
    return S_ISREG(mode) ? VDFileSystem::Files : S_ISDIR(mode) ? VDFileSystem::Folders : 0;
}

/// The same of a name, or what a link leads to; 0 for a name that isn't there.
inline int VFAttributesOfName(const char* name)
{
    struct stat status
    {
    };
    return name != nullptr && stat(name, &status) == 0 ? VFAttributesOfMode(status.st_mode) : 0;
}
