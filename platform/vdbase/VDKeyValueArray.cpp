#include "vdbase/VDKeyValueArray.h"

#include <utility>

void VDKeyValueArray::Clear()
{
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
    keys_.AppendItem(std::move(newKey));
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
    return noCase_ ? keys_.FindNoCase(key) : keys_.Find(key);
}
