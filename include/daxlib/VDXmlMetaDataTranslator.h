#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDArray.h"
#include "vdxml/DOM_Document.h"

class LQChannelMapper;

/// Metadata as XML, and back:
///
///     <VardoMetaData version="1.0">
///       <MetaDataTest>                                the global slot
///         <Set name="ExtraDetails">
///           <Item name="Vehicle" type="String" value="A 4711"/>
///       ...
///       <MetaDataChannel number="3" title="...">      the title is read, and never written
///         <Set name="Sensor">
///           <Item name="Gain" type="Double" value="0.5"/>
///           <Item name="Offset" type="Long"/>         an undefined item has no value
///
/// The words for types are Boolean, UnsChar, UnsShort, Short, UnsLong, Long, UnsHuge, Huge, Float, Double and String, read
/// without regard to case. A word that is missing is found from the value: a whole number is a Huge, any other number a
/// Double, the rest a String. A longer text (`Z4TypeText`) of a channel is written as a String; other types can't be
/// written. A String without a value is an empty text; one that is undefined says so by `defined="False"`. Values come back
/// as they were, bit by bit; bytes that are no UTF-8 come back as the Latin 1 characters that they are taken for.
///
/// All members give true on success, and otherwise record why. Nothing is rolled back. A translator has no state.
class DAX_API VDXmlMetaDataTranslator
{
public:
    /// Appends an element "VardoMetaData" to `parent`, an element of `document`. Slots without sets and channels without a
    /// number are left out. -331503 for an item of a type that can't be written, -331501 for a text with characters that XML
    /// can't hold.
    bool MetaDataToXml(LQChannelMapper* mapper, DOM_Document& document, DOM_Element& parent);
    /// Adds what stands in XML to a mapper: sets, items and channels are made as needed. An item that is there takes the
    /// value and keeps its type.
    /// @param element  a "VardoMetaData", or an element with one as a child
    /// @param found    whether there was one; that there is none is no failure
    bool XmlToMetaData(DOM_Element element, LQChannelMapper* mapper, char& found);
    /// The same for some channels only, and the global slot.
    /// @param channels  numbers of the channels to take; an empty list takes all
    bool XmlToMetaDataSet(DOM_Element element, VDArrayWithSort<long> channels, LQChannelMapper* mapper, char& found);
};
