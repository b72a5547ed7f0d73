#include "daxlib/VDXmlMetaDataTranslator.h"

#include "XmlMetaDataFormat.h"
#include "frame/VFDaxReport.h"

#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUXmlHelper.h"

#include <array>

// The way from metadata to XML.

namespace {

constexpr const char* Routine = "VDXmlMetaDataTranslator::MetaDataToXml";

bool ReportAttribute(const DOMString& name, const VDString& holder)
{
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::XmlAttributeText), VDUXmlHelper::DOMToVDString(name).c_str());
    if (!holder.IsEmpty())
        text += " - for " + holder;
    return VFDaxReport(DaxError::XmlAttribute, "VDXmlMetaDataTranslator::SetAttributeValue", {.text = text}) != 0;
}

/// Writes one mapper into one tree.
class VDMetaDataXmlWriter
{
public:
    explicit VDMetaDataXmlWriter(DOM_Document& document) : document_(document)
    {
        for (std::size_t i = 0; i < words_.size(); ++i)
            words_[i] = VDUXmlHelper::VDToDOMString(XmlTypeWords[i].word);
    }

    bool Write(LQChannelMapper& mapper, DOM_Element& parent)
    {
        DOM_Element root;
        if (!AddElement(parent, XmlName::Root, &root) || !root.SetAttribute(XmlName::Version, DOMString(u"1.0")) ||
            !WriteSlot(mapper, LQChannelMapper::GLOBAL, root))
            return false;
        for (int index = 0; index < mapper.GetChannelCount(); ++index)
            if (mapper.NumberFromIndex(index, false) >= 0 && !WriteSlot(mapper, index, root))
                return false;
        return true;
    }

private:
    bool AddElement(DOM_Node& parent, const DOMString& name, DOM_Element* element)
    {
        *element = document_.CreateElement(name);
        return parent.AppendChild(*element) || VFDaxReportError(DaxError::XmlWrite, Routine) != 0;
    }

    /// @param holder  what the attribute belongs to, for a report
    bool SetAttributeValue(DOM_Element& element, const DOMString& name, const VDString& value, const VDString& holder = {})
    {
        return (VDUXmlHelper::VDToDOMString(value, &text_) && element.SetAttribute(name, text_)) ||
               ReportAttribute(name, holder);
    }

    /// A slot without sets gets no element.
    bool WriteSlot(LQChannelMapper& mapper, int index, DOM_Element& root)
    {
        const int count = mapper.GetMetaDataSetCount(index);
        if (count == 0)
            return true;
        isChannel_ = index != LQChannelMapper::GLOBAL;
        DOM_Element slot;
        if (!AddElement(root, isChannel_ ? XmlName::Channel : XmlName::Test, &slot) ||
            (isChannel_ && !SetAttributeValue(slot, XmlName::Number, std::to_string(mapper.NumberFromIndex(index, false)))))
            return false;
        for (int i = 0; i < count; ++i) {
            const Z4PropertySet* const set = mapper.GetMetaDataSet(i, index);
            if (set == nullptr || !WriteSet(*set, slot))
                return false;
        }
        return true;
    }

    bool WriteSet(const Z4PropertySet& set, DOM_Element& slot)
    {
        DOM_Element element;
        if (!AddElement(slot, XmlName::Set, &element) || !SetAttributeValue(element, XmlName::Name, set.GetName()))
            return false;
        for (int i = 0; i < set.GetSize(); ++i)
            if (const Z4Property* const item = set.GetProperty(i); item != nullptr && !WriteItem(*item, element))
                return false;
        return true;
    }

    bool WriteItem(const Z4Property& item, DOM_Element& set)
    {
        const DOMString* const word = FindWord(item.GetType());
        if (word == nullptr)
            return VFDaxReport(DaxError::XmlUnsupportedType, Routine, {.appended = " - for " + item.GetName()}) != 0;
        DOM_Element element = document_.CreateElement(XmlName::Item);
        if (!SetAttributeValue(element, XmlName::Name, item.GetName()) || !element.SetAttribute(XmlName::Type, *word))
            return false;
        if (item.IsDefined() && !SetAttributeValue(element, XmlName::Value, item.ToString(), item.GetName()))
            return false;
        if (!item.IsDefined() && word == &words_.back() && !element.SetAttribute(XmlName::Defined, DOMString(u"False")))
            return false;
        return set.AppendChild(element) || VFDaxReportError(DaxError::XmlWrite, Routine) != 0;
    }

    /// Null for a type that XML can't hold. In a channel, and only there, a longer text passes as a String.
    const DOMString* FindWord(Z4PropertyType type) const
    {
        if (isChannel_ && type == Z4TypeText)
            type = Z4TypeString;
        for (std::size_t i = 0; i < words_.size(); ++i)
            if (XmlTypeWords[i].type == type)
                return &words_[i];
        return nullptr;
    }

    DOM_Document& document_;
    std::array<DOMString, std::size(XmlTypeWords)> words_;
    bool isChannel_ = false;
    DOMString text_;  ///< of one attribute; its memory serves them all
};

}  // namespace

bool VDXmlMetaDataTranslator::MetaDataToXml(LQChannelMapper* mapper, DOM_Document& document, DOM_Element& parent)
{
    if (mapper == nullptr)
        return VFDaxReportError(DaxError::XmlMapper, Routine) != 0;
    try {
        return VDMetaDataXmlWriter(document).Write(*mapper, parent);
    } catch (...) {
        return VFDaxReportError(DaxError::XmlWrite, Routine) != 0;
    }
}
