// Reads the input as XML with metadata in it. What comes out must go to XML and come back as it was; of an input that is
// refused half-way it must go there. (A set that got no item then doesn't come back: the first item makes a set.)

#include "FuzzFile.h"

#include "daxlib/VDXmlMetaDataTranslator.h"
#include "vdstore/LQChannelMapper.h"
#include "vdxml/VDUXmlHelper.h"

namespace {

bool Read(std::string_view text, LQChannelMapper& mapper)
{
    char found = 0;
    const DOM_Document document = VDUXmlHelper::ParseXml(text.data(), static_cast<int>(text.size()));
    return VDXmlMetaDataTranslator().XmlToMetaData(document.GetDocumentElement(), &mapper, found) && found != 0;
}

/// Empty if a text of the metadata holds characters that XML can't.
std::string Write(LQChannelMapper& mapper)
{
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element parent = document.CreateElement(VDUXmlHelper::VDToDOMString("MetaData"));
    VDUDataBuffer text;
    if (!VDXmlMetaDataTranslator().MetaDataToXml(&mapper, document, parent))
        return {};
    if (!VDUXmlHelper::ConvertNodeTreeToText(parent.GetFirstChild(), &text))
        std::abort();
    return std::string(text.View());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    LQChannelMapper mapper(nullptr);
    const bool whole = Read(FuzzText(data, size), mapper);
    const std::string text = Write(mapper);
    LQChannelMapper again(nullptr);
    if (whole && !text.empty() && (!Read(text, again) || Write(again) != text))
        std::abort();
    return 0;
}
