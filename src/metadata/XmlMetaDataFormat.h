#pragma once

#include "frame/DaxErrorCodes.h"

#include "vdarchive/Z4Property.h"
#include "vdxml/DOMString.h"

/// The words of the XML form of metadata.

namespace XmlName {
inline const DOMString Root(u"VardoMetaData");
inline const DOMString Test(u"MetaDataTest");
inline const DOMString Channel(u"MetaDataChannel");
inline const DOMString Set(u"Set");
inline const DOMString Item(u"Item");
inline const DOMString Version(u"version");
inline const DOMString Number(u"number");
inline const DOMString Title(u"title");
inline const DOMString Name(u"name");
inline const DOMString Type(u"type");
inline const DOMString Value(u"value");
/// Only on a String that has no value: without it, that would be an empty text.
inline const DOMString Defined(u"defined");
}  // namespace XmlName

/// A property type that XML can hold.
struct XmlTypeWord
{
    const char* word;
    Z4PropertyType type;
    int badValue;  ///< code for a text that is no value of the type
};

inline constexpr XmlTypeWord XmlTypeWords[] = {
    {"Boolean", Z4TypeBoolean, DaxError::XmlBoolean},    {"UnsChar", Z4TypeUnsChar, DaxError::XmlUnsChar},
    {"UnsShort", Z4TypeUnsShort, DaxError::XmlUnsShort}, {"Short", Z4TypeShort, DaxError::XmlShort},
    {"UnsLong", Z4TypeUnsLong, DaxError::XmlUnsLong},    {"Long", Z4TypeLong, DaxError::XmlLong},
    {"UnsHuge", Z4TypeUnsHuge, DaxError::XmlUnsHuge},    {"Huge", Z4TypeHuge, DaxError::XmlHuge},
    {"Float", Z4TypeFloat, DaxError::XmlFloat},          {"Double", Z4TypeDouble, DaxError::XmlDouble},
    {"String", Z4TypeString, DaxError::XmlItemValue},
};
