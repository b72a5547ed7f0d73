#include "MetaXml.h"

#include "ItemTypes.h"
#include "Printable.h"
#include "TestMetaData.h"
#include "ToolError.h"

#include "daxlib/VDXmlMetaDataTranslator.h"
#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUDataBuffer.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

bool VFHasXmlType(const Z4Property& item, int slot)
{
    return item.GetType() != Z4TypeDoubleList && (item.GetType() != Z4TypeText || slot != LQChannelMapper::GLOBAL);
}

/// What goes into XML, with the channels in the same order.
void VFCollect(VDCommandContext& context, const LQChannelMapper& from, LQChannelMapper& to)
{
    for (int slot = LQChannelMapper::GLOBAL; slot < from.GetChannelCount(); ++slot) {
        if (slot >= 0)
            to.SetChannelNumber(from.NumberFromIndex(slot, false), to.Append());
        VFForEachOwnItem(from, slot, [&](const std::string& set, const Z4Property& item) {
            if (VFHasXmlType(item, slot))
                to.AdoptMetaDataSet(set.c_str(), nullptr, slot)->Copy(&item);
            else
                context.Warn({DaxToolError::ItemLeftOut,
                              "XML has no type '" + std::string(VFItemTypeWord(item.GetType())) + "'; left out: " + set + "." +
                                  item.GetName().Str(),
                              "VFMetaDataAsXml"});
        });
    }
}

}  // namespace

std::string VFMetaDataAsXml(VDCommandContext& context, const LQChannelMapper& mapper)
{
    LQChannelMapper collected(nullptr);
    VFCollect(context, mapper, collected);
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element holder = document.CreateElement(VDUXmlHelper::VDToDOMString("MetaData"));
    DOM_Element root;
    VDUDataBuffer text;
    VFCheck(VDXmlMetaDataTranslator().MetaDataToXml(&collected, document, holder));
    VFCheck(VDUXmlHelper::GetSingleElementChild(holder, "VardoMetaData", &root));
    VFCheck(VDUXmlHelper::ConvertNodeTreeToText(root, &text, true));
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + VFEscapeXml(text.View()) + "\n";
}

void VFReadMetaDataXml(const std::string& filename, const std::vector<int>& channels, LQChannelMapper& mapper)
{
    const DOM_Document document = VDUXmlHelper::ParseXmlFromFile(filename.c_str());
    VFCheck(!document.IsNull());
    VDArrayWithSort<long> numbers;
    for (const int channel : channels)
        numbers.AppendItem(channel);
    char found = 0;
    VFCheck(VDXmlMetaDataTranslator().XmlToMetaDataSet(document.GetDocumentElement(), numbers, &mapper, found));
    if (found == 0)
        VFFail(DaxToolError::NoItem, "There are no metadata in this XML: " + filename, "VFReadMetaDataXml");
}
