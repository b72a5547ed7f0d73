#include "vdstore/LQChannelMapper.h"

#include "vdbase/VFError.h"
#include "vdstore/VDStoreErrorCodes.h"

namespace {

void ReportMissing(int code, const char* what, long value, const char* routine)
{
    VDString text;
    text.Format("There is no numbered channel of this %s: %ld", what, value);
    VFErrorSet(code, text, routine, 0);
}

std::string_view NameView(const char* name)
{
    return name == nullptr ? std::string_view() : std::string_view(name);
}

}  // namespace

LQChannelMapper::LQChannelMapper(LQObject* owner) : owner_(owner), global_(std::make_unique<LQChannelEntry>()) {}

LQChannelMapper::~LQChannelMapper() = default;

void LQChannelMapper::Clear()
{
    numbers_.clear();
    channels_.Clear();
    global_->sets_.Clear();
}

LQChannelEntry* LQChannelMapper::Append()
{
    auto entry = std::make_unique<LQChannelEntry>();
    LQChannelEntry* const added = entry.get();
    added->list_ = &channels_;
    added->slot_ = channels_.Append(std::move(entry));
    return added;
}

bool LQChannelMapper::RemoveChannel(int index)
{
    LQChannelEntry* const entry = GetChannel(index);
    if (entry == nullptr)
        return false;
    numbers_.erase(entry->number_);
    channels_.Remove(entry->slot_, [](const auto& moved, std::size_t slot) { moved->slot_ = slot; });
    return true;
}

LQChannelEntry* LQChannelMapper::GetChannel(int index) const
{
    return index >= 0 && index < GetChannelCount() ? channels_[index].get() : nullptr;
}

LQChannelEntry* LQChannelMapper::GetSlot(int index) const
{
    return index == GLOBAL ? global_.get() : GetChannel(index);
}

bool LQChannelMapper::IsChannel(const LQChannelEntry* entry) const
{
    return entry != nullptr && entry->list_ == &channels_;
}

int LQChannelMapper::IndexFromNumber(long number, bool report) const
{
    const auto found = numbers_.find(number);
    if (found != numbers_.end())
        return found->second->GetIndex();
    if (report)
        ReportMissing(VDStoreError::NoChannelNumber, "number", number, "LQChannelMapper::IndexFromNumber");
    return -1;
}

long LQChannelMapper::NumberFromIndex(int index, bool report) const
{
    const LQChannelEntry* const entry = GetChannel(index);
    const long number = entry == nullptr ? -1 : entry->number_;
    if (number < 0 && report)
        ReportMissing(VDStoreError::NoChannelIndex, "index", index, "LQChannelMapper::NumberFromIndex");
    return number;
}

bool LQChannelMapper::SetChannelNumber(long number, int index)
{
    return SetChannelNumber(number, GetChannel(index));
}

bool LQChannelMapper::SetChannelNumber(long number, LQChannelEntry* entry)
{
    if (number < 0 || !IsChannel(entry))
        return false;
    const auto [found, isNew] = numbers_.try_emplace(number, entry);
    if (!isNew)
        return found->second == entry;
    numbers_.erase(entry->number_);
    entry->number_ = number;
    return true;
}

bool LQChannelMapper::GetChannelNumber(long& number, int index) const
{
    return GetChannelNumber(number, GetChannel(index));
}

bool LQChannelMapper::GetChannelNumber(long& number, const LQChannelEntry* entry) const
{
    if (!IsChannel(entry))
        return false;
    number = entry->number_;
    return true;
}

bool LQChannelMapper::SetChanTitle(const char* title, int index)
{
    return SetChanTitle(title, GetChannel(index));
}

bool LQChannelMapper::SetChanTitle(const char* title, LQChannelEntry* entry)
{
    if (!IsChannel(entry))
        return false;
    entry->title_ = title;
    return true;
}

bool LQChannelMapper::GetChanTitle(VDString& title, int index) const
{
    const LQChannelEntry* const entry = GetChannel(index);
    if (entry == nullptr)
        return false;
    title = entry->title_;
    return true;
}

int LQChannelMapper::GetMetaDataSetCount(int index) const
{
    const LQChannelEntry* const slot = GetSlot(index);
    return slot == nullptr ? 0 : slot->sets_.GetSize();
}

Z4PropertySet* LQChannelMapper::GetMetaDataSet(int set, int index) const
{
    const LQChannelEntry* const slot = GetSlot(index);
    return slot == nullptr ? nullptr : slot->sets_.At(set);
}

Z4PropertySet* LQChannelMapper::GetMetaDataSet(const char* name, int index) const
{
    const LQChannelEntry* const slot = GetSlot(index);
    return slot == nullptr ? nullptr : slot->sets_.Find(NameView(name));
}

Z4PropertySet* LQChannelMapper::AdoptMetaDataSet(const char* name, bool* created, int index)
{
    if (created != nullptr)
        *created = false;
    LQChannelEntry* const slot = GetSlot(index);
    if (slot == nullptr)
        return nullptr;
    if (Z4PropertySet* const present = slot->sets_.Find(NameView(name)))
        return present;
    if (created != nullptr)
        *created = true;
    return slot->sets_.Append(std::make_unique<Z4PropertySet>(name));
}

bool LQChannelMapper::DeleteMetaDataSet(const char* name, int index)
{
    LQChannelEntry* const slot = GetSlot(index);
    return slot != nullptr && slot->sets_.Remove(NameView(name));
}
