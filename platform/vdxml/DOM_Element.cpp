#include "vdxml/DOM_Element.h"

#include "VDDomAccess.h"

DOM_Element::DOM_Element(const DOM_Node& node) : DOM_Node(node.GetNodeType() == VTDomElement ? node : DOM_Node()) {}

bool DOM_Element::HasAttribute(const DOMString& name) const
{
    return !IsNull() && VDDomAccess::Element(*this)->hasAttribute(name.GetText());
}

DOMString DOM_Element::GetAttribute(const DOMString& name) const
{
    return IsNull() ? DOMString() : DOMString(std::u16string(VDDomAccess::Element(*this)->getAttribute(name.GetText())));
}

bool DOM_Element::SetAttribute(const DOMString& name, const DOMString& value)
{
    if (IsNull())
        return false;
    try {
        VDDomAccess::Element(*this)->setAttribute(name.GetText(), value.GetText());
        return true;
    } catch (const xercesc::DOMException&) {
        return false;
    }
}
