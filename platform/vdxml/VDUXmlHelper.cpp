#include "vdxml/VDUXmlHelper.h"

#include "ReplaceFile.h"
#include "VDDomAccess.h"
#include "XmlParser.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VDIo.h"
#include "vdbase/VFError.h"

#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <string>
#include <string_view>

namespace {

// Trees take many times the size of their text.
constexpr std::int64_t LargestFile = 256 << 20;
constexpr std::string_view Declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

template <class T>
struct VDReleaser
{
    void operator()(T* object) const { object->release(); }
};
template <class T>
using VDReleased = std::unique_ptr<T, VDReleaser<T>>;

// Lets a serialiser give up at the first fault.
class VDStopAtFault : public xercesc::DOMErrorHandler
{
public:
    bool handleError(const xercesc::DOMError& fault) override
    {
        reason_ = VFXercesText(fault.getMessage());
        return false;
    }
    const VDString& GetReason() const { return reason_; }

private:
    VDString reason_;
};

bool VFReportWrite(const VDString& reason)
{
    return VFErrorSet(VDBaseError::XmlWrite, "The XML text can't be formed: " + reason,
                      "VDUXmlHelper::ConvertNodeTreeToText", 0) != 0;
}

}  // namespace

void VFStartXerces()
{
    [[maybe_unused]] static const bool started = (xercesc::XMLPlatformUtils::Initialize(), true);
}

DOM_Document VDUXmlHelper::ParseXmlFromFile(const char* filename)
{
    constexpr const char* Routine = "VDUXmlHelper::ParseXmlFromFile";
    VDIo io(filename);
    const std::int64_t size = io.Open(VTOpenRead) ? io.GetFileSize() : -1;
    if (size < 0)
        return {};
    if (size > LargestFile) {
        VFErrorSet(VDBaseError::XmlParse, VDString("The XML text can't be parsed: it is too large\nFile : ") + filename,
                   Routine, 0);
        return {};
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    if (!io.ReadAtCur(size, text.data(), nullptr))
        return {};
    return VFParseXmlText(text, filename, Routine);
}

DOM_Document VDUXmlHelper::ParseXml(const char* text, int length)
{
    const char* const start = text == nullptr ? "" : text;
    const std::string_view whole =
        length < 0 || text == nullptr ? std::string_view(start) : std::string_view(start, static_cast<std::size_t>(length));
    return VFParseXmlText(whole, "", "VDUXmlHelper::ParseXml");
}

bool VDUXmlHelper::GetAttribute(const DOM_Element& element, const char* name, VDString* value)
{
    return GetAttribute(element, VDToDOMString(name), value);
}

bool VDUXmlHelper::GetAttribute(const DOM_Element& element, const DOMString& name, VDString* value)
{
    const xercesc::DOMAttr* const attribute =
        element.IsNull() ? nullptr : VDDomAccess::Element(element)->getAttributeNode(name.GetText());
    *value = attribute != nullptr ? VFXercesText(attribute->getValue()) : VDString();
    return attribute != nullptr;
}

bool VDUXmlHelper::GetSingleElementChild(const DOM_Node& parent, const char* name, DOM_Element* child)
{
    const DOMString wanted = VDToDOMString(name);
    for (DOM_Node node = parent.GetFirstChild(); !node.IsNull(); node = node.GetNextSibling())
        if (node.GetNodeType() == VTDomElement && node.GetNodeName() == wanted) {
            *child = DOM_Element(node);
            return true;
        }
    *child = DOM_Element();
    return false;
}

bool VDUXmlHelper::ConvertNodeTreeToText(const DOM_Node& node, VDUDataBuffer* buffer, bool indent)
{
    buffer->Clear();
    if (node.IsNull())
        return VFReportWrite("there is no tree");
    VDStopAtFault faults;
    try {
        xercesc::DOMImplementation* const maker = xercesc::DOMImplementation::getImplementation();
        xercesc::MemBufFormatTarget target;
        const VDReleased<xercesc::DOMLSOutput> output(maker->createLSOutput());
        output->setByteStream(&target);
        output->setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
        const VDReleased<xercesc::DOMLSSerializer> writer(maker->createLSSerializer());
        writer->setNewLine(u"\n");
        xercesc::DOMConfiguration* const settings = writer->getDomConfig();
        settings->setParameter(xercesc::XMLUni::fgDOMErrorHandler, static_cast<xercesc::DOMErrorHandler*>(&faults));
        settings->setParameter(xercesc::XMLUni::fgDOMXMLDeclaration, false);
        settings->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, indent);
        settings->setParameter(xercesc::XMLUni::fgDOMWRTXercesPrettyPrint, false);  // no blank lines between elements
        if (!writer->write(VDDomAccess::Node(node), output.get()))
            return VFReportWrite(faults.GetReason());
        std::string_view text(reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen());
        if (indent && text.starts_with('\n'))
            text.remove_prefix(1);
        buffer->Append(text.data(), text.size());
        return true;
    } catch (const xercesc::XMLException& fault) {
        return VFReportWrite(VFXercesText(fault.getMessage()));
    } catch (const xercesc::DOMException& fault) {
        return VFReportWrite(VFXercesText(fault.getMessage()));
    }
}

bool VDUXmlHelper::SaveNodeTreeToFile(const DOM_Node& node, const char* filename, bool indent)
{
    VDUDataBuffer content;
    if (!ConvertNodeTreeToText(node, &content, indent))
        return false;
    return VFReplaceFile(filename, {Declaration, content.View()});
}
