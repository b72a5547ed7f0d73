#pragma once

#include "vdbase/VDString.h"

class LQChannelMapper;
class Z4PropertySet;

/// One item of metadata as it stands in XML.
struct XmlItem
{
    VDString name = {};
    VDString type = {};  ///< a type's word in any case, or empty
    VDString value = {};
    bool undefined = false;      ///< it has no value
    bool undefinedText = false;  ///< so a String, too, is undefined, and not empty
};

/// The set of this name in a channel, or in the global slot for the number `LQChannelMapper::GLOBAL`; set and channel are
/// made as needed. Null, recorded, if that can't be.
Z4PropertySet* VFAdoptXmlSet(LQChannelMapper& mapper, const VDString& name, long channelNumber);

/// Adds an item to a set, or gives the one that is there the value. Failures are recorded.
bool VFAddXmlItem(Z4PropertySet& set, const XmlItem& item);
