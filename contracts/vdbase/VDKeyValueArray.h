#pragma once

#include "vdbase/VDStringArray.h"

/// Texts under names, in the order in which the names first came.
class VDBASE_API VDKeyValueArray
{
public:
    /// @param type  0 tells names apart by case, 1 does not
    void SetKeyType(int type) { noCase_ = type == 1; }

    void Clear();
    int GetSize() const { return keys_.GetSize(); }
    /// Sets the value of the key, or appends the pair.
    void Set(const char* key, const char* value);
    /// False, and `value` empty, if there is no such key.
    bool Get(const char* key, VDString* value) const;
    /// Empty outside the list.
    const VDString& GetKeyAt(int index) const { return keys_[index]; }
    const VDString& GetValueAt(int index) const { return values_[index]; }

private:
    int IndexOf(const char* key) const;

    VDStringArray keys_;
    VDStringArray values_;
    bool noCase_ = false;
};
