#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDString.h"

/// A reference to a metadata item: the names of its set and of itself, and a text that says its type. All three are kept as
/// given; nothing checks that there is such an item.
class DAX_API VDMetaDataConfigurationItem
{
public:
    VDMetaDataConfigurationItem();
    VDMetaDataConfigurationItem(VDString setName, VDString itemName, VDString type);
    VDMetaDataConfigurationItem(const VDMetaDataConfigurationItem& other);
    VDMetaDataConfigurationItem& operator=(const VDMetaDataConfigurationItem& other);
    virtual ~VDMetaDataConfigurationItem();

    VDString GetSetName() const { return setName_; }
    VDString GetItemName() const { return itemName_; }
    VDString GetType() const { return type_; }
    void SetSetName(VDString setName) { setName_ = setName; }
    void SetItemName(VDString itemName) { itemName_ = itemName; }
    void SetType(VDString type) { type_ = type; }

private:
    VDString setName_;
    VDString itemName_;
    VDString type_;
};
