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
    VDListedId* entry;
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

VDListedId::VDListedId(VDFileIdHandle id) : id_(std::move(id))
{
    id_.Get()->CountListing(1);
}

VDListedId& VDListedId::operator=(VDListedId&& other) noexcept
{
    Detach();
    id_ = std::move(other.id_);
    return *this;
}

VDFileIdHandle VDListedId::Detach()
{
    if (id_)
        id_.Get()->CountListing(-1);
    return std::move(id_);
}

int VDFileIdArray::Copy(VDFileIdArray* source)
{
    return Clear() != 0 ? Append(source) : 0;
}

int VDFileIdArray::Clear()
{
    // The array is empty before the first id goes, so that no failure leaves an entry that is released twice.
    Entries entries = std::exchange(entries_, {});
    paths_.Drop();
    for (VDListedId& entry : entries)
        if (FIDRelease(entry.Detach().Detach()) == 0)
            return 0;
    return 1;
}

int VDFileIdArray::AppendItem(VDFileId* id)
{
    if (FIDAddRef(id) == 0)
        return 0;
    Take(VDFileIdHandle(id));
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
        Take(std::move(copy));
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
    const std::size_t slot = entries_.SlotOf(index);
    const VDFileIdHandle entry = entries_.InSlot(slot).Detach();
    paths_.Remove(entry.Get()->GetRecord().fullPathName, slot);
    entries_.Remove(slot, [this](const VDListedId&, std::size_t) { paths_.Drop(); });
    return 1;
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
    for (const VDListedId& entry : entries_)
        entry.Get()->SetSelected(selected);
    return 1;
}

int VDFileIdArray::RemoveSelected(char selected)
{
    Entries kept;
    Entries removed;
    for (VDListedId& entry : entries_)
        (entry.Get()->GetRecord().selected == (selected != 0) ? removed : kept).Append(std::move(entry));
    Replace(std::move(kept));
    return 1;
}

int VDFileIdArray::Find(VDFileId* id, int* index)
{
    return VFGive(index, FindSame(id));
}

int VDFileIdArray::Sort(int flags)
{
    if ((flags & VTFileIdArraySortTests) != 0)
        SortTests((flags & VTFileIdArraySortTestsDescending) != 0);
    if ((flags & VTFileIdArraySortChannels) != 0)
        for (const VDListedId& entry : entries_)
            entry.Get()->SortChans((flags & VTFileIdArraySortChannelsDescending) == 0);
    return 1;
}

VDFileId* VDFileIdArray::GetEntry(int index) const
{
    if (IsIndex(index))
        return entries_[index].Get();
    VDString detail;
    detail.Format(" (%d)", index);
    VFDaxReport(DaxError::IndexOutOfRange, "VDFileIdArray::GetAt", {.appended = detail});
    return nullptr;
}

void VDFileIdArray::Take(VDFileIdHandle id)
{
    const VDFileId* const entry = id.Get();
    paths_.Enter(entry->GetRecord().fullPathName, entries_.Append(VDListedId(std::move(id))));
}

void VDFileIdArray::Replace(Entries entries)
{
    paths_.Drop();
    entries_ = std::move(entries);
}

void VDFileIdArray::SortTests(bool descending)
{
    std::vector<VDSortKey> keys;
    keys.reserve(static_cast<std::size_t>(entries_.GetSize()));
    for (VDListedId& entry : entries_) {
        const VDFileIdRecord& record = entry.Get()->GetRecord();
        const VDString baseName = VDFileSystem::GetBaseFileName(record.filename);
        keys.push_back({baseName, record.run, record.burst, record.mode, static_cast<int>(keys.size()), &entry});
    }
    const auto compare = [descending](const VDSortKey& left, const VDSortKey& right) {
        const int order = CompareKeys(left, right);
        if (order == 0)
            return left.position - right.position;
        return descending ? -order : order;
    };
    // Lists of folders mostly come in order.
    if (std::is_sorted(keys.begin(), keys.end(), [&](const auto& left, const auto& right) { return compare(left, right) < 0; }))
        return;
    VFQuickSort(keys.data(), keys.size(), compare);
    Entries sorted;
    sorted.Reserve(keys.size());
    for (const VDSortKey& key : keys)
        sorted.Append(std::move(*key.entry));
    Replace(std::move(sorted));
}

int VDFileIdArray::FindSame(VDFileId* id)
{
    if (const std::uint64_t state = VDFileId::GetListedNameChanges(); pathsState_ != state) {
        pathsState_ = state;
        paths_.Drop();
        searchedBefore_ = false;
    }
    // An index costs as much as some searches.
    if (!std::exchange(searchedBefore_, true)) {
        for (int index = 0; index < entries_.GetSize(); ++index)
            if (IsSame(index, id))
                return index;
        return -1;
    }
    const VDString& path = id->GetRecord().fullPathName;
    std::size_t slot = paths_.Find(path, [this](VDSlotIndex<VDString>& made) {
        for (int index = 0; index < entries_.GetSize(); ++index)
            made.Enter(entries_[index].Get()->GetRecord().fullPathName, entries_.SlotOf(index));
    });
    for (; slot != VDSlotIndex<VDString>::None; slot = paths_.FindNext(path, slot + 1))
        if (const int index = entries_.IndexOf(slot); IsSame(index, id))
            return index;
    return -1;
}

bool VDFileIdArray::IsSame(int index, VDFileId* id) const
{
    char same = 0;
    return entries_[index].Get()->CompareTestNames(id, &same) != 0 && same != 0;
}
