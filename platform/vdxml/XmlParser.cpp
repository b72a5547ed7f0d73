#include "XmlParser.h"

#include "VDDomAccess.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFError.h"
#include "vdxml/VDUXmlHelper.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>

#include <new>

namespace {

constexpr XMLSize_t LargestExpansion = 64;
// Xerces writes trees recursively: what can be read must also be safe to write.
constexpr int LargestDepth = 500;

// Why a text wasn't taken.
struct VDXmlRefusal
{
    VDString reason;
};

// Builds a tree and gives up at the first fault.
class VDXmlParser : public xercesc::XercesDOMParser, private xercesc::ErrorHandler, private xercesc::XMLEntityResolver
{
public:
    VDXmlParser()
    {
        setValidationScheme(Val_Never);
        setDoNamespaces(false);
        setDoSchema(false);
        setLoadExternalDTD(false);
        setLoadSchema(false);
        setDisableDefaultEntityResolution(true);
        setCreateEntityReferenceNodes(false);
        limits_.setEntityExpansionLimit(LargestExpansion);
        setSecurityManager(&limits_);
        setErrorHandler(static_cast<xercesc::ErrorHandler*>(this));
        setXMLEntityResolver(static_cast<xercesc::XMLEntityResolver*>(this));
    }

    using xercesc::XercesDOMParser::parse;

    void startElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const XMLCh* const prefix,
                      const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, const XMLSize_t attributeCount,
                      const bool isEmpty, const bool isRoot) override
    {
        if (++depth_ > LargestDepth)
            throw VDXmlRefusal{"its elements nest too deep"};
        XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    }

    void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                    const XMLCh* const prefix) override
    {
        --depth_;
        XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
    }

private:
    using xercesc::XercesDOMParser::error;  // the scanner's own reports go on to the handler below
    void warning(const xercesc::SAXParseException&) override {}
    void error(const xercesc::SAXParseException& fault) override { Refuse(fault); }
    void fatalError(const xercesc::SAXParseException& fault) override { Refuse(fault); }
    void resetErrors() override {}

    [[noreturn]] static void Refuse(const xercesc::SAXParseException& fault)
    {
        VDString place;
        place.Format(" (line %llu, column %llu)", static_cast<unsigned long long>(fault.getLineNumber()),
                     static_cast<unsigned long long>(fault.getColumnNumber()));
        throw VDXmlRefusal{VFXercesText(fault.getMessage()) + place};
    }

    xercesc::InputSource* resolveEntity(xercesc::XMLResourceIdentifier*) override
    {
        throw VDXmlRefusal{"it refers to a text outside of itself"};
    }

    xercesc::SecurityManager limits_;
    int depth_ = 0;
};

}  // namespace

DOM_Document VFParseXmlText(std::string_view text, const char* filename, const char* routine)
{
    VFStartXerces();
    VDString reason;
    try {
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "xml");
        VDXmlParser parser;
        parser.parse(source);
        return VDDomAccess::Adopt(parser.adoptDocument());
    } catch (const VDXmlRefusal& refusal) {
        reason = refusal.reason;
    } catch (const xercesc::XMLException& fault) {
        reason = VFXercesText(fault.getMessage());
    } catch (const xercesc::DOMException& fault) {
        reason = VFXercesText(fault.getMessage());
    } catch (const xercesc::OutOfMemoryException&) {
        reason = "there isn't enough memory";
    } catch (const std::bad_alloc&) {
        reason = "there isn't enough memory";
    }
    VDString report = "The XML text can't be parsed: " + reason;
    if (*filename != '\0')
        report += VDString("\nFile : ") + filename;
    VFErrorSet(VDBaseError::XmlParse, report, routine, 0);
    return {};
}
