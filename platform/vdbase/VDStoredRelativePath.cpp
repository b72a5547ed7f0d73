#include "vdbase/VDStoredRelativePath.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

#include <string_view>

VDStoredRelativePath::VDStoredRelativePath(const char* baseFolder)
{
    const bool given = baseFolder != nullptr && *baseFolder != '\0';
    baseFolder_ = VFMakePath(given ? VDFileSystem::GetFullPath(baseFolder) : VDFileSystem::GetCurDirectory());
}

VDString VDStoredRelativePath::GetRelativeName(const char* filename, int /*isFile*/) const
{
    const VDString whole = VDFileSystem::GetFullPath(filename);
    const std::string_view base = baseFolder_.View();
    if (base.empty() || !whole.View().starts_with(base) || whole.View().size() == base.size())
        return VDString(filename);
    return VDString(whole.View().substr(base.size()));
}

VDString VDStoredRelativePath::GetRelativeNameNoCopyFail(const char* filename, int isFile) const
{
    return GetRelativeName(filename, isFile);
}
