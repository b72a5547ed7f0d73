#include "vdbase/VDKeyValueArray.h"

#include <utility>

void VDKeyValueArray::SetKeyType(int type)
{
    noCase_ = type == 1;
    index_.clear();
    for (int i = 0; i < keys_.GetSize(); ++i)
        index_.emplace(Fold(keys_[i]), i);
}

void VDKeyValueArray::Clear()
{
    index_.clear();
    keys_.Clear();
    values_.Clear();
}

void VDKeyValueArray::Set(const char* key, const char* value)
{
    const int index = IndexOf(key);
    if (index >= 0) {
        values_[index] = value;
        return;
    }
    // Both are copied before either list grows: they may belong to one of them.
    VDString newKey(key);
    VDString newValue(value);
    index_.emplace(Fold(newKey), keys_.AppendItem(newKey));
    values_.AppendItem(std::move(newValue));
}

bool VDKeyValueArray::Get(const char* key, VDString* value) const
{
    const int index = IndexOf(key);
    *value = GetValueAt(index);
    return index >= 0;
}

int VDKeyValueArray::IndexOf(const char* key) const
{
    const auto found = index_.find(Fold(key));
    return found != index_.end() ? found->second : -1;
}

std::string VDKeyValueArray::Fold(const char* key) const
{
    VDString folded(key);
    if (noCase_)
        folded.MakeLower();
    return folded.Str();
}
