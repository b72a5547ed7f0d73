#pragma once

#include "vdbase/VDString.h"
#include "vdxml/DOM_Document.h"
#include "vdxml/VDUDataBuffer.h"

/// Reading and writing of XML trees. Nothing outside the text itself is ever read: a document type that lies elsewhere is
/// passed over, with the entities that it alone declares, and any other external entity is an error. Time and memory stay in
/// proportion to the text: entities are expanded at most 64 times and with default values add at most 64 KiB, elements nest
/// at most 500 deep and have at most 1,000 attributes, elements and attributes have at most some 5,000 names, and a document
/// type declares at most 1,000 entities, attributes and notations. Failures are recorded (`VDBaseError`).
class VDXML_API VDUXmlHelper
{
public:
    /// @return null, recorded with file, line and column, if the file can't be read or parsed
    static DOM_Document ParseXmlFromFile(const char* filename);
    /// @param text    in UTF-8 unless its declaration names another encoding
    /// @param length  in bytes; -1 for a text that a zero byte closes
    /// @return null, recorded with line and column, if it can't be parsed
    static DOM_Document ParseXml(const char* text, int length = -1);

    /// False, and an empty value, if the element has no such attribute.
    static bool GetAttribute(const DOM_Element& element, const char* name, VDString* value);
    static bool GetAttribute(const DOM_Element& element, const DOMString& name, VDString* value);
    /// The first child element of this name. False, and a null handle, if there is none.
    static bool GetSingleElementChild(const DOM_Node& parent, const char* name, DOM_Element* child);

    /// Replaces the buffer's content by the text of a node and all below it, in UTF-8 and without a declaration.
    /// @param indent  breaks lines and indents
    static bool ConvertNodeTreeToText(const DOM_Node& node, VDUDataBuffer* buffer, bool indent = false);
    /// Writes the same behind a declaration. The file appears under its name when it is whole; until then one of that name
    /// stays as it is.
    static bool SaveNodeTreeToFile(const DOM_Node& node, const char* filename, bool indent);

    /// From UTF-8. A byte that is no UTF-8 counts as a character of Latin 1; a character that XML doesn't allow becomes the
    /// replacement character, so that every tree can be written and read again.
    static DOMString VDToDOMString(const char* text);
    /// The same; false if a character had to be replaced.
    static bool VDToDOMString(const char* text, DOMString* result);
    /// To UTF-8. Half of a surrogate pair becomes the replacement character.
    static VDString DOMToVDString(const DOMString& text);
};
