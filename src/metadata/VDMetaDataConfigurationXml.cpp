#include "daxlib/VDMetaDataConfiguration.h"

#include "vdbase/VFError.h"
#include "vdxml/VDUXmlHelper.h"

// The selection as a file.

namespace {

using ItemList = VDArray<std::unique_ptr<VDMetaDataConfigurationItem>>;

namespace Name {
const DOMString Root(u"FileListMetadata");
const DOMString Version(u"Version");
const DOMString Test(u"Test");
const DOMString Channel(u"Channel");
const DOMString Item(u"Item");
const DOMString SetName(u"setName");
const DOMString ItemName(u"itemName");
const DOMString Type(u"type");
}  // namespace Name

/// False if an item lacks an attribute; those before it are in the list then.
bool VFReadItems(const DOM_Element& parent, ItemList& items)
{
    for (DOM_Element element = parent.GetFirstElement(Name::Item); !element.IsNull();
         element = element.GetNextElement(Name::Item)) {
        VDString setName;
        VDString itemName;
        VDString type;
        if (!VDUXmlHelper::GetAttribute(element, Name::SetName, &setName) ||
            !VDUXmlHelper::GetAttribute(element, Name::ItemName, &itemName) ||
            !VDUXmlHelper::GetAttribute(element, Name::Type, &type))
            return false;
        items.AppendItem(std::make_unique<VDMetaDataConfigurationItem>(setName, itemName, type));
    }
    return true;
}

/// False if the text can't be kept as it is.
bool VFSetAttribute(DOM_Element& element, const DOMString& name, const VDString& value)
{
    DOMString text;
    return VDUXmlHelper::VDToDOMString(value, &text) && element.SetAttribute(name, text);
}

bool VFWriteItems(DOM_Document& document, DOM_Element& root, const DOMString& name, const ItemList& items)
{
    DOM_Element parent = document.CreateElement(name);
    if (!root.AppendChild(parent))
        return false;
    for (const auto& item : items) {
        DOM_Element element = document.CreateElement(Name::Item);
        if (!parent.AppendChild(element) || !VFSetAttribute(element, Name::SetName, item->GetSetName()) ||
            !VFSetAttribute(element, Name::ItemName, item->GetItemName()) ||
            !VFSetAttribute(element, Name::Type, item->GetType()))
            return false;
    }
    return true;
}

}  // namespace

char VDMetaDataConfiguration::Read(VDString filename)
{
    const VDErrorMute mute;
    const DOM_Element root = VDUXmlHelper::ParseXmlFromFile(filename).GetDocumentElement();
    if (root.IsNull() || !(root.GetNodeName() == Name::Root))
        return 0;
    Clear();
    VDString version;
    if (!VDUXmlHelper::GetAttribute(root, Name::Version, &version))
        return 0;
    version_ = version;
    for (DOM_Element child = root.GetFirstElement({}); !child.IsNull(); child = child.GetNextElement({})) {
        const DOMString name = child.GetNodeName();
        if ((name == Name::Test && !VFReadItems(child, tests_)) || (name == Name::Channel && !VFReadItems(child, channels_)))
            return 0;
    }
    filename_ = filename;
    return 1;
}

char VDMetaDataConfiguration::Write(VDString filename)
{
    const VDErrorMute mute;
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element root = document.CreateElement(Name::Root);
    if (!VFSetAttribute(root, Name::Version, version_) || !document.AppendChild(root) ||
        !VFWriteItems(document, root, Name::Test, tests_) || !VFWriteItems(document, root, Name::Channel, channels_) ||
        !VDUXmlHelper::SaveNodeTreeToFile(root, filename, true))
        return 0;
    filename_ = filename;
    return 1;
}
