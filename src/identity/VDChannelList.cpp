#include "VDChannelList.h"

#include <algorithm>

namespace {

bool IsNumberLess(const VDFileIdChanInfo& left, const VDFileIdChanInfo& right)
{
    return left.number < right.number;
}

}  // namespace

void VDChannelList::SetNumber(int index, std::int32_t number)
{
    channels_[index].number = number;
    rising_ = rising_ && (index == 0 || channels_[index - 1].number < number) &&
              (index + 1 == GetSize() || number < channels_[index + 1].number);
}

int VDChannelList::FindNumber(std::int32_t number) const
{
    const auto hasNumber = [number](const VDFileIdChanInfo& channel) { return channel.number == number; };
    const auto isBelow = [](const VDFileIdChanInfo& channel, std::int32_t value) { return channel.number < value; };
    const auto found = rising_ ? std::lower_bound(begin(), end(), number, isBelow) : std::find_if(begin(), end(), hasNumber);
    return found != end() && found->number == number ? static_cast<int>(found - begin()) : -1;
}

int VDChannelList::FindTitle(const VDString& title) const
{
    const auto found =
        std::find_if(begin(), end(), [&title](const VDFileIdChanInfo& channel) { return channel.title == title; });
    return found != end() ? static_cast<int>(found - begin()) : -1;
}

int VDChannelList::Append(VDFileIdChanInfo channel)
{
    rising_ = rising_ && (IsEmpty() || channels_[GetSize() - 1].number < channel.number);
    return channels_.AppendItem(std::move(channel));
}

void VDChannelList::RemoveAll(bool selected)
{
    const auto kept = std::remove_if(channels_.begin(), channels_.end(),
                                     [selected](const VDFileIdChanInfo& channel) { return channel.selected == selected; });
    channels_.SetSize(static_cast<int>(kept - channels_.begin()));
    UpdateRising();
}

void VDChannelList::Clear()
{
    channels_.Clear();
    rising_ = true;
}

void VDChannelList::Sort(bool ascending)
{
    if (ascending && rising_)
        return;
    if (ascending)
        std::stable_sort(channels_.begin(), channels_.end(), IsNumberLess);
    else
        std::stable_sort(
            channels_.begin(), channels_.end(),
            [](const VDFileIdChanInfo& left, const VDFileIdChanInfo& right) { return IsNumberLess(right, left); });
    UpdateRising();
}

void VDChannelList::SelectAll(bool selected)
{
    for (VDFileIdChanInfo& channel : channels_)
        channel.selected = selected;
}

int VDChannelList::CountSelected() const
{
    return static_cast<int>(std::count_if(begin(), end(), [](const VDFileIdChanInfo& channel) { return channel.selected; }));
}

void VDChannelList::UpdateRising()
{
    const auto isNotRising = [](const VDFileIdChanInfo& left, const VDFileIdChanInfo& right) {
        return !IsNumberLess(left, right);
    };
    rising_ = std::adjacent_find(begin(), end(), isNotRising) == end();
}
