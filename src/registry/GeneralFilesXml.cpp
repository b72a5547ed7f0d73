// The reading of the configuration files.

#include "daxlib/DaxTypes.h"
#include "daxlib/VDGeneralFiles.h"

#include "vdbase/VFError.h"
#include "vdbase/VFNumber.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

constexpr int VVFirstFileId = 28000;
constexpr int VVLastFileId = 28999;

bool VFHasName(const DOM_Node& node, const char* name)
{
    return VDUXmlHelper::DOMToVDString(node.GetNodeName()) == name;
}

template <class Number>
bool VFGetNumber(const DOM_Element& element, const char* name, Number* number)
{
    VDString text;
    return VDUXmlHelper::GetAttribute(element, name, &text) && VFAscToNum(text, number);
}

char VFGetFlag(const DOM_Element& element, const char* name)
{
    VDString text;
    return VDUXmlHelper::GetAttribute(element, name, &text) && text.CompareNoCase("True") == 0;
}

/// Merges the child elements of this name, until one can't be.
template <class Merge>
bool VFMergeChildren(const DOM_Element& parent, const char* name, Merge&& merge)
{
    for (DOM_Node node = parent.GetFirstChild(); !node.IsNull(); node = node.GetNextSibling())
        if (node.GetNodeType() == VTDomElement && VFHasName(node, name) && !merge(DOM_Element(node)))
            return false;
    return true;
}

bool VFMergeFileType(VDGeneralFileAccessType& accessType, const DOM_Element& element)
{
    VDString keyword;
    VDString extensions;
    int fileId = 0;
    if (!VDUXmlHelper::GetAttribute(element, "Keyword", &keyword) || !VFGetNumber(element, "FileId", &fileId))
        return false;
    if (fileId < VVFirstFileId || fileId > VVLastFileId)
        return true;
    if (!VDUXmlHelper::GetAttribute(element, "Extensions", &extensions))
        return false;
    accessType.AddFileType(keyword, fileId, extensions, VFGetFlag(element, "Enabled"),
                           VFGetFlag(element, "IdentifyAsStandard"));
    return true;
}

bool VFMergeAccessType(VDGeneralFiles& files, const DOM_Element& element)
{
    int id = 0;
    VDString name;
    if (!VFGetNumber(element, "Id", &id))
        return false;
    if (id < VTFileAccessFirstConfigured || id > VTFileAccessLastConfigured)
        return true;
    if (!VDUXmlHelper::GetAttribute(element, "Name", &name))
        return false;
    VDGeneralFileAccessType* accessType = files.AddAccessType(id, name, VFGetFlag(element, "Enabled"));
    return accessType == nullptr || VFMergeChildren(element, "FileType", [&](const DOM_Element& child) {
               return VFMergeFileType(*accessType, child);
           });
}

}  // namespace

char VDGeneralFiles::MergeConfigurationFile(VDString path)
{
    // Most of these files need not be there, so nothing about them is an error.
    const VDErrorMute mute;
    const DOM_Element root = VDUXmlHelper::ParseXmlFromFile(path).GetDocumentElement();
    if (root.IsNull() || !VFHasName(root, "GeneralFiles") || !VFGetNumber(root, "Version", &version_))
        return 0;
    return VFMergeChildren(root, "AccessType", [this](const DOM_Element& child) { return VFMergeAccessType(*this, child); });
}
