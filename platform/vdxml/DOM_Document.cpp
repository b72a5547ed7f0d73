#include "vdxml/DOM_Document.h"

#include "VDDomAccess.h"

DOM_Document DOM_Document::CreateDocument()
{
    VFStartXerces();
    return VDDomAccess::Adopt(xercesc::DOMImplementation::getImplementation()->createDocument());
}

DOM_Element DOM_Document::GetDocumentElement() const
{
    return IsNull() ? DOM_Element()
                    : VDDomAccess::Make<DOM_Element>(*this, VDDomAccess::Document(*this)->getDocumentElement());
}

DOM_Element DOM_Document::CreateElement(const DOMString& name)
{
    if (IsNull())
        return {};
    try {
        return VDDomAccess::Make<DOM_Element>(*this, VDDomAccess::Document(*this)->createElement(name.GetText()));
    } catch (const xercesc::DOMException&) {
        return {};
    }
}

DOM_Node DOM_Document::CreateTextNode(const DOMString& text)
{
    return IsNull() ? DOM_Node() : VDDomAccess::Make(*this, VDDomAccess::Document(*this)->createTextNode(text.GetText()));
}
