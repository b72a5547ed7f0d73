#pragma once

#include "vdarchive/Z4Bytes.h"
#include "vdarchive/Z4PropertySet.h"

/// Property sets as bytes. A set is its name, the number of its properties and these; a property is its name, its type, its
/// defined flag and its value, which an undefined one has, too.

VDARCHIVE_API void VFPutPropertySet(Z4ByteWriter& writer, const Z4PropertySet& set);
/// @return null, and the reader failed, if the bytes are no property set
VDARCHIVE_API std::unique_ptr<Z4PropertySet> VFGetPropertySet(Z4ByteReader& reader);
/// The properties of a set whose name was read before.
VDARCHIVE_API bool VFGetProperties(Z4ByteReader& reader, Z4PropertySet& set);
