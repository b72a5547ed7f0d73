#pragma once

#include "vdxml/DOMString.h"
#include "vdxml/VDXmlApi.h"

#include <memory>

class DOM_Document;

/// What a node is.
enum VTDomNodeType : int {
    VTDomNone = 0,  ///< a null handle
    VTDomElement = 1,
    VTDomAttribute = 2,
    VTDomText = 3,
    VTDomCData = 4,
    VTDomInstruction = 7,
    VTDomComment = 8,
    VTDomDocument = 9,
    VTDomDocumentType = 10,
};

/// A handle on a node of an XML tree. Handles are values: copies stand for the same node, and the tree lives as long as
/// there is a handle on any of its nodes. A null handle answers every question with "nothing". One thread uses a tree at a
/// time.
class VDXML_API DOM_Node
{
public:
    DOM_Node() = default;

    bool IsNull() const noexcept { return node_ == nullptr; }
    VTDomNodeType GetNodeType() const;
    /// The tag of an element, with its prefix; "#text", "#document" and the like for nodes without one.
    DOMString GetNodeName() const;
    /// The text of an attribute, text or comment; empty for an element.
    DOMString GetNodeValue() const;

    /// Null where there is none.
    DOM_Node GetParentNode() const;
    DOM_Node GetFirstChild() const;
    DOM_Node GetNextSibling() const;
    /// The tree that the node belongs to, wherever in it, or whether it has no place yet.
    DOM_Document GetOwnerDocument() const;

    /// Puts a node of the same tree behind the last child; a node that stands elsewhere in the tree is moved.
    /// @return false if the tree can't hold it there; it is then as it was
    bool AppendChild(const DOM_Node& child);

    friend bool operator==(const DOM_Node& left, const DOM_Node& right) noexcept { return left.node_ == right.node_; }

protected:
    friend class VDDomAccess;

    std::shared_ptr<void> tree_;  ///< keeps the document alive
    void* node_ = nullptr;
};
