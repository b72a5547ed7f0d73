#pragma once

#include "VDFileIdChanInfo.h"
#include "VDSlotIndex.h"

#include "vdarchive/Z4SlotList.h"

/// The channels of a test in the test's own order. No operation on one channel walks through the list. It knows whether the
/// numbers rise, as they do in nearly every file, and then does without an index of them.
class VDChannelList
{
public:
    int GetSize() const { return channels_.GetSize(); }
    bool IsEmpty() const { return GetSize() == 0; }
    bool IsIndex(int index) const { return index >= 0 && index < GetSize(); }
    const VDFileIdChanInfo& operator[](int index) const { return channels_[index]; }
    /// For changes to anything that has no setter below.
    VDFileIdChanInfo& Edit(int index) { return channels_[index]; }
    auto begin() const { return channels_.begin(); }
    auto end() const { return channels_.end(); }

    void SetNumber(int index, std::int32_t number);
    void SetTitle(int index, const char* title);
    void Select(int index, bool selected);

    /// First index of the number or of exactly this title; -1 if absent.
    int FindNumber(std::int32_t number) const;
    int FindTitle(const VDString& title) const;

    /// Gives the index of the new channel.
    int Append(VDFileIdChanInfo channel);
    void RemoveAt(int index);
    /// Removes the channels that are selected, or those that aren't; the others keep their order.
    void RemoveAll(bool selected);
    void Clear();

    /// By number. Channels of equal number keep their order.
    void Sort(bool ascending);

    void SelectAll(bool selected);
    int CountSelected() const { return selectedCount_; }

private:
    template <class Key>
    int Find(VDSlotIndex<Key>& index, const Key& key, Key VDFileIdChanInfo::*member) const;
    void DropIndexes() const;

    Z4SlotList<VDFileIdChanInfo> channels_;
    mutable VDSlotIndex<std::int32_t> numbers_;
    mutable VDSlotIndex<VDString> titles_;
    int selectedCount_ = 0;
    bool rising_ = true;  ///< each number is above the one before
};
