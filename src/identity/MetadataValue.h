#pragma once

#include "vdbase/VDString.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class Z4Property;

/// A keyword of the metadata cache with the type in which its value is wanted, taken to pieces for many channels.
class VDMetadataQuestion
{
public:
    /// @param keyword  "Item", or "Set.Item"; "ExtraDetails.Item" is looked for in "LegacyExtraDetails" first
    /// @param type     "string", "integer" or "real", without regard to case; any other gives no value
    VDMetadataQuestion(const VDString& keyword, const VDString& type);

    /// The value in a slot of the mapper; empty where there is no such item.
    VDVariant Ask(LQChannelMapper& mapper, int slot) const;

private:
    const Z4Property* Find(LQChannelMapper& mapper, int slot) const;

    VDString set_;
    VDString item_;
    bool hasSet_;
    bool triesLegacy_;
    VDVariant (*convert_)(const Z4Property& item);  ///< null for a type that there is not
};
