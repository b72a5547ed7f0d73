#pragma once

#include "vdbase/VDString.h"

class LQChannelMapper;

/// One item of metadata as it stands in XML.
struct XmlItem
{
    VDString name = {};
    VDString type = {};  ///< a type's word in any case, or empty
    VDString value = {};
    bool undefined = false;      ///< it has no value
    bool undefinedText = false;  ///< so a String, too, is undefined, and not empty
};

/// Adds an item to a set of a mapper, or gives the one that is there the value; set and channel are made as needed.
/// Failures are recorded.
/// @param channelNumber  or `LQChannelMapper::GLOBAL`
bool VFAddXmlItem(LQChannelMapper& mapper, const VDString& setName, const XmlItem& item, long channelNumber);
