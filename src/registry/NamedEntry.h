#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

#include <memory>

/// How the configured types tell whether an entry is there already.
template <class Entry>
struct VDNamedEntry
{
    Entry* entry = nullptr;  ///< the one of the same name and id
    bool conflict = false;   ///< one of the two is taken, but not together with the other
};

/// Looks for a name, without regard to case, and an id. The first entry that has either decides.
template <auto GetName, auto GetId, class Entry>
VDNamedEntry<Entry> VFFindNamedEntry(const VDArray<std::unique_ptr<Entry>>& entries, const VDString& name, int id)
{
    for (const std::unique_ptr<Entry>& entry : entries) {
        const bool sameName = ((*entry).*GetName)().CompareNoCase(name) == 0;
        const bool sameId = ((*entry).*GetId)() == id;
        if (sameName && sameId)
            return {entry.get(), false};
        if (sameName || sameId)
            return {nullptr, true};
    }
    return {};
}
