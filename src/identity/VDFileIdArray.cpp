#include "VDFileIdArray.h"

#include "VDFileId.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFSort.h"

#include <algorithm>
#include <tuple>
#include <utility>
#include <vector>

namespace {

/// What a test is sorted by.
struct VDSortKey
{
    VDString baseName;
    std::int32_t run;
    std::int32_t burst;
    std::int32_t mode;
    int position;
};

int CompareKeys(const VDSortKey& left, const VDSortKey& right)
{
    if (const int order = left.baseName.CompareNoCase(right.baseName); order != 0)
        return order;
    const auto leftNumbers = std::tie(left.run, left.burst, left.mode);
    const auto rightNumbers = std::tie(right.run, right.burst, right.mode);
    return leftNumbers < rightNumbers ? -1 : rightNumbers < leftNumbers ? 1 : 0;
}

}  // namespace

int VDFileIdArray::Copy(VDFileIdArray* source)
{
    return Clear() != 0 ? Append(source) : 0;
}

int VDFileIdArray::Clear()
{
    // The array is empty before the first id goes, so that no failure leaves an entry that is released twice.
    VDArray<VDFileIdHandle> entries = std::exchange(entries_, VDArray<VDFileIdHandle>(10));
    for (VDFileIdHandle& entry : entries)
        if (FIDRelease(entry.Detach()) == 0)
            return 0;
    return 1;
}

int VDFileIdArray::AppendItem(VDFileId* id)
{
    if (FIDAddRef(id) == 0)
        return 0;
    entries_.AppendItem(VDFileIdHandle(id));
    return 1;
}

int VDFileIdArray::Append(VDFileIdArray* source)
{
    // The size is taken first, as an array may be appended to itself.
    const int size = source->entries_.GetSize();
    for (int index = 0; index < size; ++index) {
        VDFileIdHandle copy(FIDCreate());
        if (!copy)
            return 0;
        copy.Get()->Assign(*source->entries_[index].Get());
        entries_.AppendItem(std::move(copy));
    }
    return 1;
}

int VDFileIdArray::GetAt(int index, VDFileId** id) const
{
    VDFileId* const entry = GetEntry(index);
    if (entry == nullptr || VFGive(id, entry) == 0)
        return 0;
    return FIDAddRef(entry) != 0;
}

int VDFileIdArray::RemoveAt(int index)
{
    if (GetEntry(index) == nullptr)
        return 0;
    const VDFileIdHandle entry = std::move(entries_[index]);
    return entries_.RemoveAt(index);
}

int VDFileIdArray::SelectAt(int index, char selected)
{
    VDFileId* const entry = GetEntry(index);
    return entry != nullptr ? entry->SetSelected(selected) : 0;
}

int VDFileIdArray::GetSelectAt(int index, char* selected) const
{
    const VDFileId* const entry = GetEntry(index);
    return entry != nullptr ? entry->GetSelected(selected) : 0;
}

int VDFileIdArray::SelectAll(char selected)
{
    for (const VDFileIdHandle& entry : entries_)
        entry.Get()->SetSelected(selected);
    return 1;
}

int VDFileIdArray::RemoveSelected(char selected)
{
    const auto kept = std::remove_if(entries_.begin(), entries_.end(), [selected](const VDFileIdHandle& entry) {
        return entry.Get()->GetRecord().selected == (selected != 0);
    });
    entries_.SetSize(static_cast<int>(kept - entries_.begin()));
    return 1;
}

int VDFileIdArray::Find(VDFileId* id, int* index) const
{
    const auto found = std::find_if(entries_.begin(), entries_.end(), [id](const VDFileIdHandle& entry) {
        char same = 0;
        return entry.Get()->CompareTestNames(id, &same) != 0 && same != 0;
    });
    return VFGive(index, found != entries_.end() ? static_cast<int>(found - entries_.begin()) : -1);
}

int VDFileIdArray::Sort(int flags)
{
    if ((flags & VTFileIdArraySortTests) != 0)
        SortTests((flags & VTFileIdArraySortTestsDescending) != 0);
    if ((flags & VTFileIdArraySortChannels) != 0)
        for (const VDFileIdHandle& entry : entries_)
            entry.Get()->SortChans((flags & VTFileIdArraySortChannelsDescending) == 0);
    return 1;
}

VDFileId* VDFileIdArray::GetEntry(int index) const
{
    if (entries_.IsIndex(index))
        return entries_[index].Get();
    VDString detail;
    detail.Format(" (%d)", index);
    VFDaxReport(DaxError::IndexOutOfRange, "VDFileIdArray::GetAt", {.appended = detail});
    return nullptr;
}

void VDFileIdArray::SortTests(bool descending)
{
    std::vector<VDSortKey> keys;
    keys.reserve(static_cast<std::size_t>(entries_.GetSize()));
    for (const VDFileIdHandle& entry : entries_) {
        const VDFileIdRecord& record = entry.Get()->GetRecord();
        const VDString baseName = VDFileSystem::GetBaseFileName(record.filename);
        keys.push_back({baseName, record.run, record.burst, record.mode, static_cast<int>(keys.size())});
    }
    VFQuickSort(keys.data(), keys.size(), [descending](const VDSortKey& left, const VDSortKey& right) {
        const int order = CompareKeys(left, right);
        if (order == 0)
            return left.position - right.position;
        return descending ? -order : order;
    });
    VDArray<VDFileIdHandle> sorted(10);
    sorted.Reserve(entries_.GetSize());
    for (const VDSortKey& key : keys)
        sorted.AppendItem(std::move(entries_[key.position]));
    entries_ = std::move(sorted);
}
