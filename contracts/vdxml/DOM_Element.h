#pragma once

#include "vdxml/DOM_Node.h"

/// A handle on an element.
class VDXML_API DOM_Element : public DOM_Node
{
public:
    DOM_Element() = default;
    /// Null if the node is no element.
    explicit DOM_Element(const DOM_Node& node);

    /// The first child and the next sibling that is an element of this name, or of any if the name is empty; null if there
    /// is none.
    DOM_Element GetFirstElement(const DOMString& name) const;
    DOM_Element GetNextElement(const DOMString& name) const;

    int GetAttributeCount() const;
    /// In no order that matters; null outside the list.
    DOM_Node GetAttributeNode(int index) const;
    bool HasAttribute(const DOMString& name) const;
    /// Empty if there is no such attribute.
    DOMString GetAttribute(const DOMString& name) const;
    /// Adds or replaces. False for a name that XML doesn't allow.
    bool SetAttribute(const DOMString& name, const DOMString& value);
};
