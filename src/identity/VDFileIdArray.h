#pragma once

#include "VFGive.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/FIA.h"

#include "vdbase/VDArray.h"
#include "vdbase/VDCompBase.h"

/// An ordered list of tests. The operations that the `FIA` functions forward to have the function's name without the prefix;
/// FIA.h says what each does.
class VDFileIdArray final : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::FileIdArray;
    static constexpr bool GuardedHandle = true;

    VDFileIdArray() : VDCompBase(HandleId) {}

    int Copy(VDFileIdArray* source);
    int GetSize(int* size) const { return VFGive(size, entries_.GetSize()); }
    int Clear();
    int AppendItem(VDFileId* id);
    int Append(VDFileIdArray* source);
    int GetAt(int index, VDFileId** id) const;
    int RemoveAt(int index);
    int SelectAt(int index, char selected);
    int GetSelectAt(int index, char* selected) const;
    int SelectAll(char selected);
    int RemoveSelected(char selected);
    int Find(VDFileId* id, int* index) const;
    int Sort(int flags);

private:
    /// The entry of this index; null, recorded, if there is none.
    VDFileId* GetEntry(int index) const;
    void SortTests(bool descending);

    VDArray<VDFileIdHandle> entries_{10};
};
