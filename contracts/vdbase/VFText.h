#pragma once

#include "vdbase/VDString.h"

#include <cstdint>

/// One row of a text table. A table is closed by a row with id 0 and a null text.
struct VDTextRow
{
    std::int32_t id;
    const char* text;
};

/// A catalogue handle.
class VDTextCatalogue;

/// Makes a catalogue over a table, which must outlive it and isn't copied.
/// @param name   of the component whose texts they are
/// @param flags  reserved, 0
/// @return the handle, which `VFTextRelease` ends; null for a null table
VDBASE_API VDTextCatalogue* VFTextCreateEmbedded(const char* name, const VDTextRow* table, int flags);
/// Finds one text. False, and an empty text, for an id that isn't in the table.
VDBASE_API bool VFTextGet(const VDTextCatalogue* catalogue, int id, VDString* text);
VDBASE_API void VFTextRelease(VDTextCatalogue* catalogue);
