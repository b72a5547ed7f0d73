#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDString.h"

#include <memory>

class DOM_Element;
class DOM_Node;
class VDKeyValueArray;

/// Named strings that belong to one test. Names are told apart without regard to case and keep the order in which they came.
class DAX_API VDFileIdPreferences
{
public:
    VDFileIdPreferences();
    VDFileIdPreferences(const VDFileIdPreferences& other);
    VDFileIdPreferences& operator=(const VDFileIdPreferences& other);
    virtual ~VDFileIdPreferences();

    void Clear();
    /// Sets the value of the key, or adds the pair.
    void SetString(const char* key, const char* value);
    void SetInt(const char* key, int value);

    int GetCount() const;
    /// By position; empty outside the list.
    VDString GetKeyAt(int index) const;
    VDString GetStringAt(int index) const;

    /// False with -334081 "File id preference keyword not found: " for an unknown key and for one whose value is empty.
    char GetString(const char* key, VDString* value) const;
    /// As `GetString`; a text that is no number counts as not found. `value` is then 0.
    char GetInt(const char* key, int* value) const;

    /// Appends ";pKEY=VALUE" for each pair.
    void AppendToTestDescriptor(VDString& text) const;

    /// Adds a child "Preferences" with an attribute for each pair. XML has no place for a key that is no XML name: that pair is
    /// left out.
    void ToXml(DOM_Element& element) const;
    /// Takes the attributes of such a child, in place of all pairs.
    /// @return false, and nothing changed, if the node is no element
    char FromXml(DOM_Node& node);

private:
    std::unique_ptr<VDKeyValueArray> pairs_;
};
