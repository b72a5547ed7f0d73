#include "vdxml/DOM_Node.h"

#include "VDDomAccess.h"

namespace {

DOMString VFText(const XMLCh* text)
{
    return text == nullptr ? DOMString() : DOMString(std::u16string(text));
}

}  // namespace

VTDomNodeType DOM_Node::GetNodeType() const
{
    return IsNull() ? VTDomNone : static_cast<VTDomNodeType>(VDDomAccess::Node(*this)->getNodeType());
}

DOMString DOM_Node::GetNodeName() const
{
    return IsNull() ? DOMString() : VFText(VDDomAccess::Node(*this)->getNodeName());
}

DOMString DOM_Node::GetNodeValue() const
{
    return IsNull() ? DOMString() : VFText(VDDomAccess::Node(*this)->getNodeValue());
}

DOM_Node DOM_Node::GetParentNode() const
{
    return IsNull() ? DOM_Node() : VDDomAccess::Make(*this, VDDomAccess::Node(*this)->getParentNode());
}

DOM_Node DOM_Node::GetFirstChild() const
{
    return IsNull() ? DOM_Node() : VDDomAccess::Make(*this, VDDomAccess::Node(*this)->getFirstChild());
}

DOM_Node DOM_Node::GetNextSibling() const
{
    return IsNull() ? DOM_Node() : VDDomAccess::Make(*this, VDDomAccess::Node(*this)->getNextSibling());
}

DOM_Document DOM_Node::GetOwnerDocument() const
{
    if (GetNodeType() == VTDomDocument)
        return VDDomAccess::Make<DOM_Document>(*this, VDDomAccess::Node(*this));
    return IsNull() ? DOM_Document() : VDDomAccess::Make<DOM_Document>(*this, VDDomAccess::Node(*this)->getOwnerDocument());
}

bool DOM_Node::AppendChild(const DOM_Node& child)
{
    if (IsNull() || child.IsNull() || !VDDomAccess::SameTree(*this, child))
        return false;
    try {
        VDDomAccess::Node(*this)->appendChild(VDDomAccess::Node(child));
        return true;
    } catch (const xercesc::DOMException&) {
        return false;
    }
}
