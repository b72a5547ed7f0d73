#include "daxlib/VDMetaDataConfiguration.h"

#include "frame/CloneEntries.h"

// The selection in memory: both lists have the same operations.

namespace {

constexpr const char* VVFirstVersion = "1.0";

using ItemList = VDArray<std::unique_ptr<VDMetaDataConfigurationItem>>;

VDString VFGetKey(const VDMetaDataConfigurationItem& item)
{
    return item.GetSetName() + "." + item.GetItemName();
}

VDString VFGetType(const VDMetaDataConfigurationItem& item)
{
    return item.GetType();
}

char VFGetTexts(const ItemList& items, int index, VDString* setName, VDString* itemName, VDString* type)
{
    if (!items.IsIndex(index) || setName == nullptr || itemName == nullptr || type == nullptr)
        return 0;
    *setName = items[index]->GetSetName();
    *itemName = items[index]->GetItemName();
    *type = items[index]->GetType();
    return 1;
}

char VFUpdate(ItemList& items, int index, const VDMetaDataConfigurationItem& content)
{
    if (!items.IsIndex(index))
        return 0;
    *items[index] = content;
    return 1;
}

char VFDelete(ItemList& items, const VDString& key)
{
    const int dot = key.Find('.');
    if (dot < 0)
        return 0;
    const VDString setName = key.Left(dot);
    const VDString itemName = key.Mid(dot + 1);
    for (int index = 0; index < items.GetSize(); ++index)
        if (items[index]->GetSetName() == setName && items[index]->GetItemName() == itemName)
            return items.RemoveAt(index);
    return 0;
}

/// @param text  gives the text of one item
char VFList(const ItemList& items, VDStringArray* texts, VDString (*text)(const VDMetaDataConfigurationItem&))
{
    if (texts == nullptr)
        return 0;
    texts->Clear();
    for (const auto& item : items)
        texts->AppendItem(text(*item));
    return 1;
}

}  // namespace

VDMetaDataConfiguration::VDMetaDataConfiguration() : version_(VVFirstVersion) {}

VDMetaDataConfiguration::VDMetaDataConfiguration(const VDMetaDataConfiguration& other)
    : filename_(other.filename_), version_(other.version_)
{
    VFCloneEntries(tests_, other.tests_);
    VFCloneEntries(channels_, other.channels_);
}

VDMetaDataConfiguration& VDMetaDataConfiguration::operator=(const VDMetaDataConfiguration& other)
{
    if (this != &other) {
        filename_ = other.filename_;
        version_ = other.version_;
        VFCloneEntries(tests_, other.tests_);
        VFCloneEntries(channels_, other.channels_);
    }
    return *this;
}

VDMetaDataConfiguration::~VDMetaDataConfiguration() = default;

void VDMetaDataConfiguration::Clear()
{
    ClearTests();
    ClearChannels();
    filename_.Empty();
    version_ = VVFirstVersion;
}

void VDMetaDataConfiguration::ClearTests()
{
    tests_.Clear();
}

VDMetaDataConfigurationItem* VDMetaDataConfiguration::GetTest(int index) const
{
    return tests_[index].get();
}

char VDMetaDataConfiguration::GetTest(int index, VDString* setName, VDString* itemName, VDString* type) const
{
    return VFGetTexts(tests_, index, setName, itemName, type);
}

void VDMetaDataConfiguration::AddTest(VDString setName, VDString itemName, VDString type)
{
    tests_.AppendItem(std::make_unique<VDMetaDataConfigurationItem>(setName, itemName, type));
}

char VDMetaDataConfiguration::UpdateTest(int index, VDString setName, VDString itemName, VDString type)
{
    return VFUpdate(tests_, index, {setName, itemName, type});
}

char VDMetaDataConfiguration::DeleteTest(int index)
{
    return tests_.RemoveAt(index);
}

char VDMetaDataConfiguration::DeleteTest(VDString key)
{
    return VFDelete(tests_, key);
}

char VDMetaDataConfiguration::GetTestKeys(VDStringArray* keys) const
{
    return VFList(tests_, keys, VFGetKey);
}

char VDMetaDataConfiguration::GetTestKeyTypes(VDStringArray* types) const
{
    return VFList(tests_, types, VFGetType);
}

void VDMetaDataConfiguration::ClearChannels()
{
    channels_.Clear();
}

VDMetaDataConfigurationItem* VDMetaDataConfiguration::GetChannel(int index) const
{
    return channels_[index].get();
}

char VDMetaDataConfiguration::GetChannel(int index, VDString* setName, VDString* itemName, VDString* type) const
{
    return VFGetTexts(channels_, index, setName, itemName, type);
}

void VDMetaDataConfiguration::AddChannel(VDString setName, VDString itemName, VDString type)
{
    channels_.AppendItem(std::make_unique<VDMetaDataConfigurationItem>(setName, itemName, type));
}

char VDMetaDataConfiguration::UpdateChannel(int index, VDString setName, VDString itemName, VDString type)
{
    return VFUpdate(channels_, index, {setName, itemName, type});
}

char VDMetaDataConfiguration::DeleteChannel(int index)
{
    return channels_.RemoveAt(index);
}

char VDMetaDataConfiguration::DeleteChannel(VDString key)
{
    return VFDelete(channels_, key);
}

char VDMetaDataConfiguration::GetChannelKeys(VDStringArray* keys) const
{
    return VFList(channels_, keys, VFGetKey);
}

char VDMetaDataConfiguration::GetChannelKeyTypes(VDStringArray* types) const
{
    return VFList(channels_, types, VFGetType);
}
