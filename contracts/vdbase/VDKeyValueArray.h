#pragma once

#include "vdbase/VDStringArray.h"

#include <string>
#include <unordered_map>

/// Texts under names, in the order in which the names first came.
class VDBASE_API VDKeyValueArray
{
public:
    /// @param type  0 tells names apart by case, 1 does not
    void SetKeyType(int type);

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
    /// What names that mean the same have in common.
    std::string Fold(const char* key) const;

    VDStringArray keys_;
    VDStringArray values_;
    std::unordered_map<std::string, int> index_;  // by folded key
    bool noCase_ = false;
};
