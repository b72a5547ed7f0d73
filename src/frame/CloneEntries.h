#pragma once

#include "vdbase/VDArray.h"

#include <memory>

/// Replaces a list by copies of the elements of another.
template <class Entry>
void VFCloneEntries(VDArray<std::unique_ptr<Entry>>& target, const VDArray<std::unique_ptr<Entry>>& source)
{
    VDArray<std::unique_ptr<Entry>> copies;
    for (const std::unique_ptr<Entry>& entry : source)
        copies.AppendItem(std::make_unique<Entry>(*entry));
    target = std::move(copies);
}
