#include "ConfiguredTypes.h"

#include "vdbase/VDTextIo.h"
#include "vdbase/VFError.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFNumber.h"

namespace {

constexpr int VVMaxLineLength = 1024;

bool VFHasExtension(const VDGeneralFileType& type, const VDString& extension)
{
    for (int index = 0; index < type.GetNumExtensions(); ++index)
        if (type.GetExtension(index).CompareNoCase(extension) == 0)
            return true;
    return false;
}

}  // namespace

bool VFMergeConfigurationFiles(VDGeneralFiles& files)
{
    constexpr struct
    {
        const char* folder;
        const char* stem;
    } sources[] = {{"vdsys", "GeneralFiles"}, {"vdsys", "GeneralFiles_custom"}, {"home", "GeneralFiles_custom"}};
    bool merged = false;
    for (const auto& [folder, stem] : sources)
        if (files.MergeConfigurationFile(VFBuildFilename(VFTranslateName(folder), stem, "sys")) != 0)
            merged = true;
    return merged;
}

const VDGeneralFileType* VFFindConfiguredType(const VDGeneralFiles& files, const VDString& extension)
{
    for (int access = 0; access < files.GetAccessTypes(); ++access) {
        const VDGeneralFileAccessType& accessType = *files.GetAccessType(access);
        if (!accessType.GetEnabled())
            continue;
        for (int index = 0; index < accessType.GetFileTypes(); ++index) {
            const VDGeneralFileType& type = *accessType.GetFileType(index);
            if (type.GetEnabled() && VFHasExtension(type, extension))
                return &type;
        }
    }
    return nullptr;
}

std::optional<VDString> VFGetLocalAccessTypeName(int accessType)
{
    // The file is optional, so nothing about it is an error.
    const VDErrorMute mute;
    VDTextIo file(VFBuildFilename(VFTranslateName("vdsys"), "LocalAccessTypes", "sys"));
    if (!file.Open(VTOpenRead))
        return std::nullopt;
    VDString line;
    while (file.ReadString(&line, VVMaxLineLength, nullptr)) {
        VDStringArray parts;
        int number = 0;
        if (parts.SplitString(line, ",") == 2 && VFAscToNum(parts[0], &number) && number == accessType)
            return parts[1];
    }
    return std::nullopt;
}
