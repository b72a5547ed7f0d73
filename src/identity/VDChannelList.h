#pragma once

#include "VDFileIdChanInfo.h"

#include "vdbase/VDArray.h"

/// The channels of a test in the test's own order. It knows whether the numbers rise, as they do in nearly every file; a
/// channel of a given number is then found, and the next one added, without a walk through the list.
class VDChannelList
{
public:
    int GetSize() const { return channels_.GetSize(); }
    bool IsEmpty() const { return channels_.IsEmpty(); }
    bool IsIndex(int index) const { return channels_.IsIndex(index); }
    const VDFileIdChanInfo& operator[](int index) const { return channels_[index]; }
    /// For changes to anything but the number.
    VDFileIdChanInfo& Edit(int index) { return channels_[index]; }
    auto begin() const { return channels_.begin(); }
    auto end() const { return channels_.end(); }

    void SetNumber(int index, std::int32_t number);

    /// First index of the number or of exactly this title; -1 if absent.
    int FindNumber(std::int32_t number) const;
    int FindTitle(const VDString& title) const;

    /// Gives the index of the new channel.
    int Append(VDFileIdChanInfo channel);
    void RemoveAt(int index) { channels_.RemoveAt(index); }
    /// Removes the channels that are selected, or those that aren't; the others keep their order.
    void RemoveAll(bool selected);
    void Clear();

    /// By number. Channels of equal number keep their order.
    void Sort(bool ascending);

    void SelectAll(bool selected);
    int CountSelected() const;

private:
    void UpdateRising();

    VDArrayWithSort<VDFileIdChanInfo> channels_{10};
    bool rising_ = true;  ///< each number is above the one before
};
