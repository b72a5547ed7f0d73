#include "XmlItem.h"

#include "XmlMetaDataFormat.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VFNumber.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>

namespace {

constexpr const char* Routine = "VDXmlMetaDataTranslator::AddSetToMapper";

bool ReportText(int code, const VDString& text)
{
    return VFDaxReport(code, Routine, {.appended = " - " + text}) != 0;
}

/// The type that an item without a word has by its value.
Z4PropertyType TypeOf(const VDString& value)
{
    std::int64_t whole = 0;
    double number = 0;
    return VFAscToNum(value, &whole) ? Z4TypeHuge : VFAscToNum(value, &number) ? Z4TypeDouble : Z4TypeString;
}

/// Gives the item of this name the value. One that is not there is added with the type; one that is keeps its own.
/// @param badValue  code for a text that the item refuses
bool PutItem(Z4PropertySet& set, const XmlItem& item, Z4PropertyType type, bool undefined, int badValue)
{
    Z4Property* property = set.GetProperty(item.name, false);
    if (property == nullptr)
        property = set.AddProperty(Z4Property::Create(type, item.name));
    if (undefined) {
        property->SetDefined(false);
        return true;
    }
    return property->FromString(item.value) || ReportText(badValue, item.value);
}

}  // namespace

Z4PropertySet* VFAdoptXmlSet(LQChannelMapper& mapper, const VDString& name, long channelNumber)
{
    int index = LQChannelMapper::GLOBAL;
    if (channelNumber != LQChannelMapper::GLOBAL) {
        index = mapper.IndexFromNumber(channelNumber, false);
        if (index < 0 && mapper.SetChannelNumber(channelNumber, mapper.Append()))
            index = mapper.IndexFromNumber(channelNumber, false);
        if (index < 0) {
            VFDaxReportError(DaxError::XmlChannel, Routine);
            return nullptr;
        }
    }
    return mapper.AdoptMetaDataSet(name, nullptr, index);
}

bool VFAddXmlItem(Z4PropertySet& set, const XmlItem& item)
{
    if (item.type.IsEmpty())
        return PutItem(set, item, TypeOf(item.value), item.undefinedText, DaxError::XmlItemValue);
    const auto* const word =
        std::find_if(std::begin(XmlTypeWords), std::end(XmlTypeWords),
                     [&item](const XmlTypeWord& each) { return item.type.CompareNoCase(each.word) == 0; });
    if (word == std::end(XmlTypeWords))
        return ReportText(DaxError::XmlType, item.type);
    // An empty value is one for a text only.
    const bool undefined = word->type == Z4TypeString ? item.undefinedText : item.undefined || item.value.IsEmpty();
    return PutItem(set, item, word->type, undefined, word->badValue);
}
