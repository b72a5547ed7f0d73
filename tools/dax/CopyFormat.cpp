#include "CopyFormat.h"

#include <algorithm>

std::vector<VDFileType> VFGetTargetTypes(const VDRegistry& registry, const VDFileType& source)
{
    std::vector<VDFileType> types = registry.GetFileTypes();
    std::erase_if(types, [&](const VDFileType& type) {
        return !type.writable || type.temporary || type.accessType != source.accessType ||
               (type.IsFloatStorage() && !source.IsFloatStorage());
    });
    return types;
}

bool VFHasExtension(const VDFileType& type, const std::string& extension)
{
    if (extension.empty())
        return type.fileId == DaxStorageFileId && !type.IsFloatStorage();
    return !type.IsFloatStorage() &&
           std::any_of(type.extensions.begin(), type.extensions.end(),
                       [&](const std::string& own) { return VDString(own).CompareNoCase(extension.c_str()) == 0; });
}
