#include "daxlib/VDMetaDataConfigurationItem.h"

VDMetaDataConfigurationItem::VDMetaDataConfigurationItem() = default;

VDMetaDataConfigurationItem::VDMetaDataConfigurationItem(VDString setName, VDString itemName, VDString type)
    : setName_(setName), itemName_(itemName), type_(type)
{
}

VDMetaDataConfigurationItem::VDMetaDataConfigurationItem(const VDMetaDataConfigurationItem& other) = default;
VDMetaDataConfigurationItem& VDMetaDataConfigurationItem::operator=(const VDMetaDataConfigurationItem& other) = default;
VDMetaDataConfigurationItem::~VDMetaDataConfigurationItem() = default;
