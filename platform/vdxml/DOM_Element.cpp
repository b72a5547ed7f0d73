#include "vdxml/DOM_Element.h"

#include "VDDomAccess.h"

DOM_Element::DOM_Element(const DOM_Node& node) : DOM_Node(node.GetNodeType() == VTDomElement ? node : DOM_Node()) {}

namespace {

xercesc::DOMNode* VFFindElement(xercesc::DOMNode* node, const DOMString& name)
{
    const auto isWanted = [&name](const xercesc::DOMNode& each) {
        return each.getNodeType() == xercesc::DOMNode::ELEMENT_NODE && (name.IsEmpty() || name.Str() == each.getNodeName());
    };
    while (node != nullptr && !isWanted(*node))
        node = node->getNextSibling();
    return node;
}

}  // namespace

DOM_Element DOM_Element::GetFirstElement(const DOMString& name) const
{
    return IsNull() ? DOM_Element()
                    : VDDomAccess::Make<DOM_Element>(*this, VFFindElement(VDDomAccess::Node(*this)->getFirstChild(), name));
}

DOM_Element DOM_Element::GetNextElement(const DOMString& name) const
{
    return IsNull() ? DOM_Element()
                    : VDDomAccess::Make<DOM_Element>(*this, VFFindElement(VDDomAccess::Node(*this)->getNextSibling(), name));
}

int DOM_Element::GetAttributeCount() const
{
    return IsNull() ? 0 : static_cast<int>(VDDomAccess::Element(*this)->getAttributes()->getLength());
}

DOM_Node DOM_Element::GetAttributeNode(int index) const
{
    if (index < 0 || index >= GetAttributeCount())
        return DOM_Node();
    return VDDomAccess::Make(*this, VDDomAccess::Element(*this)->getAttributes()->item(static_cast<XMLSize_t>(index)));
}

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
