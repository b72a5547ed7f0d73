#include "VDChannelList.h"

#include <algorithm>
#include <vector>

void VDChannelList::SetNumber(int index, std::int32_t number)
{
    VDFileIdChanInfo& channel = channels_[index];
    const std::size_t slot = channels_.SlotOf(index);
    numbers_.Remove(channel.number, slot);
    numbers_.Enter(number, slot);
    channel.number = number;
    rising_ = rising_ && (index == 0 || channels_[index - 1].number < number) &&
              (index + 1 == GetSize() || number < channels_[index + 1].number);
}

void VDChannelList::SetTitle(int index, const char* title)
{
    VDFileIdChanInfo& channel = channels_[index];
    const std::size_t slot = channels_.SlotOf(index);
    titles_.Remove(channel.title, slot);
    channel.title = title;
    titles_.Enter(channel.title, slot);
}

void VDChannelList::Select(int index, bool selected)
{
    VDFileIdChanInfo& channel = channels_[index];
    selectedCount_ += static_cast<int>(selected) - static_cast<int>(channel.selected);
    channel.selected = selected;
}

int VDChannelList::FindNumber(std::int32_t number) const
{
    if (!rising_)
        return Find(numbers_, number, &VDFileIdChanInfo::number);
    int first = 0;
    for (int count = GetSize(); count > 0;) {
        const int half = count / 2;
        const bool isBelow = channels_[first + half].number < number;
        first += isBelow ? half + 1 : 0;
        count = isBelow ? count - half - 1 : half;
    }
    return first < GetSize() && channels_[first].number == number ? first : -1;
}

int VDChannelList::FindTitle(const VDString& title) const
{
    return Find(titles_, title, &VDFileIdChanInfo::title);
}

int VDChannelList::Append(VDFileIdChanInfo channel)
{
    const int index = GetSize();
    rising_ = rising_ && (index == 0 || channels_[index - 1].number < channel.number);
    selectedCount_ += static_cast<int>(channel.selected);
    const std::size_t slot = channels_.Append(std::move(channel));
    numbers_.Enter(channels_.InSlot(slot).number, slot);
    titles_.Enter(channels_.InSlot(slot).title, slot);
    return index;
}

void VDChannelList::RemoveAt(int index)
{
    const VDFileIdChanInfo& channel = channels_[index];
    const std::size_t slot = channels_.SlotOf(index);
    numbers_.Remove(channel.number, slot);
    titles_.Remove(channel.title, slot);
    selectedCount_ -= static_cast<int>(channel.selected);
    channels_.Remove(slot, [this](const VDFileIdChanInfo&, std::size_t) { DropIndexes(); });
}

void VDChannelList::RemoveAll(bool selected)
{
    VDChannelList kept;
    for (VDFileIdChanInfo& channel : channels_)
        if (channel.selected != selected)
            kept.Append(std::move(channel));
    *this = std::move(kept);
}

void VDChannelList::Clear()
{
    *this = VDChannelList();
}

void VDChannelList::Sort(bool ascending)
{
    if (ascending && rising_)
        return;
    std::vector<VDFileIdChanInfo*> order;
    order.reserve(static_cast<std::size_t>(GetSize()));
    for (VDFileIdChanInfo& channel : channels_)
        order.push_back(&channel);
    std::stable_sort(order.begin(), order.end(), [ascending](const VDFileIdChanInfo* left, const VDFileIdChanInfo* right) {
        return ascending ? left->number < right->number : right->number < left->number;
    });
    VDChannelList sorted;
    sorted.channels_.Reserve(order.size());
    for (VDFileIdChanInfo* channel : order)
        sorted.Append(std::move(*channel));
    *this = std::move(sorted);
}

void VDChannelList::SelectAll(bool selected)
{
    for (VDFileIdChanInfo& channel : channels_)
        channel.selected = selected;
    selectedCount_ = selected ? GetSize() : 0;
}

template <class Key>
int VDChannelList::Find(VDSlotIndex<Key>& index, const Key& key, Key VDFileIdChanInfo::*member) const
{
    const std::size_t slot = index.Find(key, [this, member](VDSlotIndex<Key>& made) {
        for (int i = 0; i < GetSize(); ++i)
            made.Enter(channels_[i].*member, channels_.SlotOf(i));
    });
    return slot != VDSlotIndex<Key>::None ? channels_.IndexOf(slot) : -1;
}

void VDChannelList::DropIndexes() const
{
    numbers_.Drop();
    titles_.Drop();
}
