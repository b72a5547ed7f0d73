#pragma once

#include "vdxml/DOM_Element.h"

/// A handle on a whole XML tree.
class VDXML_API DOM_Document : public DOM_Node
{
public:
    DOM_Document() = default;
    /// Makes an empty tree.
    static DOM_Document CreateDocument();

    /// The root element; null if there is none yet.
    DOM_Element GetDocumentElement() const;
    /// Makes nodes that belong to this tree but have no place in it before `AppendChild` gives them one.
    /// @return null for a name that XML doesn't allow
    DOM_Element CreateElement(const DOMString& name);
    DOM_Node CreateTextNode(const DOMString& text);
};
