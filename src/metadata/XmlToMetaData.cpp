#include "daxlib/VDXmlMetaDataTranslator.h"

#include "XmlItem.h"
#include "XmlMetaDataFormat.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VFNumber.h"
#include "vdstore/LQAttributeNames.h"
#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUXmlHelper.h"

#include <algorithm>
#include <optional>

// The way from XML to metadata.

namespace {

constexpr const char* Routine = "VDXmlMetaDataTranslator::XmlToMetaData";

bool Report(int code)
{
    return VFDaxReportError(code, Routine) != 0;
}

/// Calls `function` for each child element of this name until it gives false.
template <class Function>
bool ForEachChild(const DOM_Element& parent, const DOMString& name, Function function)
{
    for (DOM_Element child = parent.GetFirstElement(name); !child.IsNull(); child = child.GetNextElement(name))
        if (!function(child))
            return false;
    return true;
}

/// Reads one tree into one mapper.
class VDMetaDataXmlReader
{
public:
    VDMetaDataXmlReader(LQChannelMapper& mapper, const VDArrayWithSort<long>& channels)
        : mapper_(mapper), channels_(channels)
    {
    }

    bool Read(const DOM_Element& root)
    {
        return ForEachChild(root, DOMString(), [this](const DOM_Element& element) {
            const DOMString name = element.GetNodeName();
            return name == XmlName::Test ? ReadTest(element) : name != XmlName::Channel || ReadChannel(element);
        });
    }

private:
    bool ReadTest(const DOM_Element& test)
    {
        number_ = LQChannelMapper::GLOBAL;
        title_.reset();
        return ReadSets(test);
    }

    bool ReadChannel(const DOM_Element& channel)
    {
        VDString text;
        if (!VDUXmlHelper::GetAttribute(channel, XmlName::Number, &text))
            return Report(DaxError::XmlNoNumber);
        std::int64_t number = 0;
        const bool isNumber = VFAscToNum(text, &number);
        if (!channels_.IsEmpty()) {
            if (!isNumber)
                return false;
            if (!std::binary_search(channels_.begin(), channels_.end(), static_cast<long>(number)))
                return true;
        }
        number_ = isNumber && number >= 0 ? std::optional<long>(number) : std::nullopt;
        title_.reset();
        if (VDString title; VDUXmlHelper::GetAttribute(channel, XmlName::Title, &title))
            title_ = title;
        return ReadSets(channel);
    }

    bool ReadSets(const DOM_Element& slot)
    {
        return ForEachChild(slot, XmlName::Set, [this](const DOM_Element& set) { return ReadSet(set); });
    }

    bool ReadSet(const DOM_Element& set)
    {
        VDString name;
        if (!VDUXmlHelper::GetAttribute(set, XmlName::Name, &name))
            return Report(DaxError::XmlSetName);
        set_ = nullptr;
        if (!ForEachChild(set, XmlName::Item, [&](const DOM_Element& item) { return ReadItem(item, name); }))
            return false;
        // The title of a channel is one of its attributes.
        if (!title_ || name.CompareNoCase(LQChannelMapper::ATTRIBUTES) != 0)
            return true;
        return AddItem(name, {.name = LQAttribute::ChanTitle, .type = "string", .value = *title_});
    }

    bool ReadItem(const DOM_Element& element, const VDString& set)
    {
        XmlItem item;
        if (!VDUXmlHelper::GetAttribute(element, XmlName::Name, &item.name))
            return Report(DaxError::XmlItemName);
        VDUXmlHelper::GetAttribute(element, XmlName::Type, &item.type);
        item.undefined = !VDUXmlHelper::GetAttribute(element, XmlName::Value, &item.value);
        if (VDString defined; item.undefined && VDUXmlHelper::GetAttribute(element, XmlName::Defined, &defined))
            item.undefinedText = defined.CompareNoCase("False") == 0;
        return AddItem(set, item);
    }

    /// The first item makes the set.
    bool AddItem(const VDString& setName, const XmlItem& item)
    {
        if (!number_)
            return Report(DaxError::XmlNumber);
        if (set_ == nullptr)
            set_ = VFAdoptXmlSet(mapper_, setName, *number_);
        return set_ != nullptr && VFAddXmlItem(*set_, item);
    }

    LQChannelMapper& mapper_;
    const VDArrayWithSort<long>& channels_;  ///< sorted
    // Of the slot that is being read:
    std::optional<long> number_;  ///< none if it can't be a channel's
    std::optional<VDString> title_;
    Z4PropertySet* set_ = nullptr;  ///< null until there is an item
};

bool CheckVersion(const DOM_Element& root)
{
    VDString text;
    double version = 0;
    return (VDUXmlHelper::GetAttribute(root, XmlName::Version, &text) && VFAscToNum(text, &version) &&
            VFRequal(version, 1.0, 1.00001)) ||
           Report(DaxError::XmlVersion);
}

}  // namespace

bool VDXmlMetaDataTranslator::XmlToMetaData(DOM_Element element, LQChannelMapper* mapper, char& found)
{
    return XmlToMetaDataSet(std::move(element), {}, mapper, found);
}

bool VDXmlMetaDataTranslator::XmlToMetaDataSet(DOM_Element element, VDArrayWithSort<long> channels, LQChannelMapper* mapper,
                                               char& found)
{
    found = 0;
    if (mapper == nullptr)
        return Report(DaxError::XmlMapper);
    try {
        channels.Sort();
        DOM_Element root = element;
        if (element.GetNodeName() != XmlName::Root && !VDUXmlHelper::GetSingleElementChild(element, "VardoMetaData", &root))
            return true;
        found = 1;
        return CheckVersion(root) && VDMetaDataXmlReader(*mapper, channels).Read(root);
    } catch (...) {
        return Report(DaxError::XmlRead);
    }
}
