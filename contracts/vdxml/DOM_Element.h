#pragma once

#include "vdxml/DOM_Node.h"

/// A handle on an element.
class VDXML_API DOM_Element : public DOM_Node
{
public:
    DOM_Element() = default;
    /// Null if the node is no element.
    explicit DOM_Element(const DOM_Node& node);

    bool HasAttribute(const DOMString& name) const;
    /// Empty if there is no such attribute.
    DOMString GetAttribute(const DOMString& name) const;
    /// Adds or replaces. False for a name that XML doesn't allow.
    bool SetAttribute(const DOMString& name, const DOMString& value);
};
