#pragma once

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/VDStoreApi.h"

/// One channel of a `LQChannelMapper`, or its global slot: a number, a title and an ordered list of metadata sets. The
/// mapper owns it and alone changes it.
class VDSTORE_API LQChannelEntry
{
public:
    LQChannelEntry() = default;
    LQChannelEntry(const LQChannelEntry&) = delete;
    LQChannelEntry& operator=(const LQChannelEntry&) = delete;

    /// Place in the mapper; `LQChannelMapper::GLOBAL` for the global slot.
    int GetIndex() const { return list_ == nullptr ? -1 : list_->IndexOf(slot_); }
    /// Negative while unset, and always for the global slot.
    long GetNumber() const { return number_; }
    const VDString& GetTitle() const { return title_; }

private:
    friend class LQChannelMapper;

    const Z4SlotList<std::unique_ptr<LQChannelEntry>>* list_ = nullptr;  // null for the global slot
    std::size_t slot_ = 0;
    long number_ = -1;
    VDString title_;
    Z4NamedList<Z4PropertySet> sets_;
};
