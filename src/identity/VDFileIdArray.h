#pragma once

#include "VDSlotIndex.h"
#include "VFGive.h"

#include "daxlib/DaxHandle.h"
#include "daxlib/FIA.h"

#include "vdarchive/Z4SlotList.h"
#include "vdbase/VDCompBase.h"

/// A reference that a list holds on an id, which knows of it.
class VDListedId
{
public:
    VDListedId() = default;
    /// Takes over a reference.
    explicit VDListedId(VDFileIdHandle id);
    VDListedId(VDListedId&& other) noexcept = default;
    VDListedId& operator=(VDListedId&& other) noexcept;
    ~VDListedId() { Detach(); }

    VDFileId* Get() const { return id_.Get(); }
    /// Hands the reference to the caller.
    VDFileIdHandle Detach();

private:
    VDFileIdHandle id_;
};

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
    int Find(VDFileId* id, int* index);
    int Sort(int flags);
    int CreateFromTestSpec(const char* text);
    int FindFromTestSpec(const char* text, VDFileId** id);
    int Serialise(VDIo* io, char reading, std::int64_t* context);

private:
    using Entries = Z4SlotList<VDListedId>;

    bool IsIndex(int index) const { return index >= 0 && index < entries_.GetSize(); }
    /// The entry of this index; null, recorded, if there is none.
    VDFileId* GetEntry(int index) const;
    void Take(VDFileIdHandle id);
    bool ReadEntries(VDIo& io);
    void Replace(Entries entries);
    void SortTests(bool descending);
    /// Index of the first entry that means the same test; -1 if there is none.
    int FindSame(VDFileId* id);
    bool IsSame(int index, VDFileId* id) const;

    Entries entries_;
    /// By full path name, by which equal tests are called; for a list that is searched again and again.
    VDSlotIndex<VDString> paths_;
    std::uint64_t pathsState_ = 0;  ///< the changes of names up to which the index holds
    bool searchedBefore_ = false;   ///< since the last such change
};
