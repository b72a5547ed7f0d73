#pragma once

#include "daxlib/DaxHandle.h"

/// Does something with each id of an array from a position on, in order. Ids that are appended meanwhile are left out.
/// @param carryOn  passes over failures, so that the walk succeeds whatever failed
/// @param action   takes an id; false for a failure, which otherwise ends the walk
template <class Action>
bool VFWalkFileIds(VDFileIdArray* ids, int first, bool carryOn, Action&& action)
{
    int size = 0;
    if (!FIAGetSize(ids, &size))
        return false;
    for (int index = first; index < size; ++index) {
        VDFileIdHandle id;
        if ((!FIAGetAt(ids, index, id.Out()) || !action(id.Get())) && !carryOn)
            return false;
    }
    return true;
}
