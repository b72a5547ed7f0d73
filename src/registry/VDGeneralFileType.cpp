#include "daxlib/VDGeneralFileType.h"

VDGeneralFileType::VDGeneralFileType(VDString keyword, int fileId, VDString extensions, char enabled,
                                     char identifyAsStandard)
    : keyword_(keyword), fileId_(fileId), enabled_(enabled), identifyAsStandard_(identifyAsStandard)
{
    SetExtensions(extensions, 0);
}

VDGeneralFileType::VDGeneralFileType(const VDGeneralFileType& other) = default;
VDGeneralFileType& VDGeneralFileType::operator=(const VDGeneralFileType& other) = default;
VDGeneralFileType::~VDGeneralFileType() = default;

void VDGeneralFileType::SetExtensions(VDString extensions, char merge)
{
    if (merge == 0) {
        extensions_.SplitString(extensions, ";");
        return;
    }
    VDStringArray added;
    added.SplitString(extensions, ";");
    for (const VDString& extension : added)
        AddExtension(extension);
}

char VDGeneralFileType::AddExtension(VDString extension)
{
    if (extensions_.FindNoCase(extension) >= 0)
        return 0;
    extensions_.AppendItem(extension);
    return 1;
}
