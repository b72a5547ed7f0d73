#pragma once

#include "vdbase/VDString.h"
#include "vdxml/DOM_Document.h"

#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <utility>

/// The way between handles and the nodes of Xerces that they stand for.
class VDDomAccess
{
public:
    static xercesc::DOMNode* Node(const DOM_Node& handle) { return static_cast<xercesc::DOMNode*>(handle.node_); }
    static xercesc::DOMElement* Element(const DOM_Node& handle) { return static_cast<xercesc::DOMElement*>(Node(handle)); }
    static xercesc::DOMDocument* Document(const DOM_Node& handle)
    {
        return static_cast<xercesc::DOMDocument*>(Node(handle));
    }

    /// A handle on a node of the tree that `tree` is on; null for a null node.
    template <class Handle = DOM_Node>
    static Handle Make(const DOM_Node& tree, xercesc::DOMNode* node)
    {
        Handle handle;
        if (node != nullptr) {
            handle.tree_ = tree.tree_;
            handle.node_ = node;
        }
        return handle;
    }

    /// Takes ownership of a document.
    static DOM_Document Adopt(xercesc::DOMDocument* document)
    {
        DOM_Document handle;
        handle.tree_ =
            std::shared_ptr<void>(document, [](void* tree) { static_cast<xercesc::DOMDocument*>(tree)->release(); });
        handle.node_ = static_cast<xercesc::DOMNode*>(document);
        return handle;
    }

    /// Whether both stand in one tree.
    static bool SameTree(const DOM_Node& left, const DOM_Node& right) { return left.tree_ == right.tree_; }
};

/// Makes Xerces ready, once in the process. It stays so: handles may live until the process ends.
void VFStartXerces();

/// A text of Xerces in UTF-8; empty for null.
VDString VFXercesText(const XMLCh* text);
