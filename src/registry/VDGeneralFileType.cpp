#include "daxlib/VDGeneralFileType.h"

#include "ExtensionList.h"

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
    const VDStringArray given = VFSplitExtensions(extensions, ";");
    if (merge == 0) {
        extensions_ = given;
        return;
    }
    for (const VDString& extension : given)
        AddExtension(extension);
}

char VDGeneralFileType::AddExtension(VDString extension)
{
    if (extensions_.FindNoCase(extension) >= 0)
        return 0;
    extensions_.AppendItem(extension);
    return 1;
}
