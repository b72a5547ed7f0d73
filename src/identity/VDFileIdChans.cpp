#include "VDFileId.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDSelArrayTemplate.h"

#include <algorithm>
#include <limits>

int VDFileId::AddChannel(int number, int* index)
{
    if (index == nullptr)
        return 0;
    SettlePending();
    int found = record_.channels.FindNumber(number);
    if (found < 0) {
        DropMetadataValues();
        found = record_.channels.Append({.number = number});
    }
    return VFGive(index, found);
}

int VDFileId::AddChannelByTitle(const VDString* title, int* index)
{
    if (title == nullptr || index == nullptr)
        return 0;
    SettlePending();
    int found = record_.channels.FindTitle(*title);
    if (found < 0) {
        DropMetadataValues();
        found = record_.channels.Append({.number = record_.channels.GetSize() + 1, .title = *title});
    }
    return VFGive(index, found);
}

int VDFileId::GetNumChans(int* count)
{
    return CheckIdentLoad(true) != 0 ? VFGive(count, record_.channels.GetSize()) : 0;
}

int VDFileId::GetChanIndex(int number, int* index)
{
    if (CheckIdentLoad(true) == 0)
        return 0;
    const int found = record_.channels.FindNumber(number);
    if (found < 0) {
        VDString text;
        text.FormatRuntime(VFDaxText(DaxError::ChannelNotAvailable), number);
        return ReportWithStem(DaxError::ChannelNotAvailable, __func__, text);
    }
    return VFGive(index, found);
}

int VDFileId::GetChanNumber(int index, int* number)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    return channel != nullptr ? VFGive(number, channel->number) : 0;
}

int VDFileId::SetChanNumber(int index, int number)
{
    if (EditChannel(index, __func__) == nullptr)
        return 0;
    record_.channels.SetNumber(index, number);
    return 1;
}

int VDFileId::GetFileChanNumber(int index, int* number)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    return channel != nullptr ? VFGive(number, channel->fileChanNumber) : 0;
}

int VDFileId::SetFileChanNumber(int index, int number)
{
    VDFileIdChanInfo* const channel = EditChannel(index, __func__);
    return channel != nullptr ? VFGive(&channel->fileChanNumber, number) : 0;
}

int VDFileId::GetChanType(int index, int* type)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    return channel != nullptr ? VFGive(type, channel->type) : 0;
}

int VDFileId::SetChanType(int index, int type)
{
    VDFileIdChanInfo* const channel = EditChannel(index, __func__);
    return channel != nullptr ? VFGive(&channel->type, type) : 0;
}

int VDFileId::GetChanSelected(int index, char* selected)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    return channel != nullptr ? VFGive(selected, channel->selected) : 0;
}

int VDFileId::SetChanSelect(int index, char selected)
{
    if (EditChannel(index, __func__) == nullptr)
        return 0;
    record_.channels.Select(index, selected != 0);
    return 1;
}

int VDFileId::GetChanTitle(int index, VDString* title)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    if (channel == nullptr || VFGive(title, channel->title) == 0)
        return 0;
    title->Replace('\r', ' ');
    title->Replace('\n', ' ');
    return 1;
}

int VDFileId::SetChanTitle(int index, const char* title)
{
    if (EditChannel(index, __func__) == nullptr)
        return 0;
    record_.channels.SetTitle(index, title);
    return 1;
}

int VDFileId::GetChanUnits(int index, VDString* units)
{
    const VDFileIdChanInfo* const channel = LoadChannel(index, __func__);
    return channel != nullptr ? VFGive(units, channel->units) : 0;
}

int VDFileId::SetChanUnits(int index, const char* units)
{
    VDFileIdChanInfo* const channel = EditChannel(index, __func__);
    return channel != nullptr ? VFGive(&channel->units, units) : 0;
}

int VDFileId::SetChanFilename(int index, const char* filename)
{
    VDFileIdChanInfo* const channel = EditChannel(index, __func__);
    return channel != nullptr ? VFGive(&channel->filename, filename) : 0;
}

int VDFileId::SetAllChanSelect(char selected)
{
    if (IsChannelListToCome()) {
        record_.pending.select = true;
        record_.pending.selectValue = selected != 0;
    } else {
        SettlePending();
        record_.channels.SelectAll(selected != 0);
    }
    return 1;
}

int VDFileId::GetSomeChansSelected(char* some)
{
    return CheckIdentLoad(true) != 0 ? VFGive(some, record_.channels.CountSelected() > 0) : 0;
}

int VDFileId::GetAllChansSelected(char* all)
{
    if (CheckIdentLoad(true) == 0)
        return 0;
    return VFGive(all, record_.channels.CountSelected() == record_.channels.GetSize());
}

int VDFileId::GetChans(VDArrayWithSort<long>* numbers)
{
    if (numbers == nullptr || CheckIdentLoad(true) == 0)
        return 0;
    numbers->SetSize(0);
    numbers->Reserve(record_.channels.GetSize());
    for (const VDFileIdChanInfo& channel : record_.channels)
        numbers->AppendItem(channel.number);
    return 1;
}

int VDFileId::GetSelectedChanList(VDArrayWithSort<long>* numbers)
{
    if (numbers == nullptr || CheckIdentLoad(true) == 0)
        return 0;
    numbers->SetSize(0);
    for (const VDFileIdChanInfo& channel : record_.channels)
        if (channel.selected)
            numbers->AppendItem(channel.number);
    return 1;
}

int VDFileId::GetChanSelText(int maxLength, VDString* text)
{
    if (CheckIdentLoad(true) == 0)
        return 0;
    const int count = record_.channels.CountSelected();
    if (count == 0)
        return VFGive(text, VFDaxText(DaxText::None));
    if (count == record_.channels.GetSize())
        return VFGive(text, VFDaxText(DaxText::All));

    // A little more than asked for, so that a text that is cut off shows by its length.
    const int limit = std::min(maxLength, std::numeric_limits<int>::max() - 10) + 10;
    VDSelArrayTemplate<long> numbers(count, limit);
    for (const VDFileIdChanInfo& channel : record_.channels)
        if (channel.selected)
            numbers.Add(channel.number);
    numbers.Sort();
    VDString list = numbers.GetRangeText();
    if (list.GetLength() > maxLength)
        list.Format("%d %s", count, VFDaxText(DaxText::Selected).c_str());
    return VFGive(text, list);
}

int VDFileId::SortChans(char ascending)
{
    if (IsChannelListToCome()) {
        record_.pending.sort = true;
        record_.pending.sortAscending = ascending != 0;
    } else {
        SettlePending();
        DropMetadataValues();
        record_.channels.Sort(ascending != 0);
    }
    return 1;
}

int VDFileId::RemoveChan(int index)
{
    if (EditChannel(index, __func__) == nullptr)
        return 0;
    DropMetadataValues();
    record_.channels.RemoveAt(index);
    return 1;
}

int VDFileId::ClearAllChans()
{
    return SetInfoLoaded(0);
}

int VDFileId::RemoveAllSelectedChans(char selected)
{
    if (!record_.channels.IsEmpty())
        SettlePending();
    DropMetadataValues();
    record_.channels.RemoveAll(selected != 0);
    return 1;
}
