#pragma once

#include "vdbase/VDStringArray.h"

/// The extensions in a text that a user wrote: parts that are empty, and blanks around the others, don't count.
inline VDStringArray VFSplitExtensions(const VDString& text, const char* separator)
{
    VDStringArray parts;
    VDStringArray extensions;
    parts.SplitString(text, separator);
    for (VDString& part : parts) {
        part.TrimLeft();
        part.TrimRight();
        if (!part.IsEmpty())
            extensions.AppendItem(part);
    }
    return extensions;
}
