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
#include <xercesc/util/XMLString.hpp>

#include <bitset>
#include <functional>
#include <new>
#include <random>
#include <string_view>

namespace {

constexpr XMLSize_t LargestExpansion = 64;
// Xerces writes trees recursively: what can be read must also be safe to write.
constexpr int LargestDepth = 500;
// Xerces' look-ups of names take longer with each name that there is. No format of ours comes near these.
constexpr XMLSize_t LargestNames = 5'000;
constexpr XMLSize_t LargestAttributes = 1'000;
constexpr XMLSize_t LargestDeclarations = 1'000;
// A tree may hold more characters than its text has bytes only by as much as this.
constexpr XMLSize_t LargestGrowth = 64 << 10;

// Why a text wasn't taken.
struct VDXmlRefusal
{
    VDString reason;
};

// Builds a tree and gives up at the first fault.
class VDXmlParser : public xercesc::XercesDOMParser, private xercesc::ErrorHandler, private xercesc::XMLEntityResolver
{
public:
    explicit VDXmlParser(std::size_t textSize) : room_(textSize + LargestGrowth)
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
        if (attributeCount > LargestAttributes)
            throw VDXmlRefusal{"an element has too many attributes"};
        if (declaration.getId() > LargestNames)
            throw VDXmlRefusal{"its elements have too many names"};
        for (XMLSize_t i = 0; i < attributeCount; ++i)
            CountAttribute(*attributes.elementAt(i));
        XercesDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    }

    void endElement(const xercesc::XMLElementDecl& declaration, const unsigned int uriId, const bool isRoot,
                    const XMLCh* const prefix) override
    {
        --depth_;
        XercesDOMParser::endElement(declaration, uriId, isRoot, prefix);
    }

    void docCharacters(const XMLCh* const text, const XMLSize_t length, const bool isCData) override
    {
        if (hasDocumentType_)
            TakeRoom(length);
        XercesDOMParser::docCharacters(text, length, isCData);
    }

    void doctypeDecl(const xercesc::DTDElementDecl& root, const XMLCh* const publicId, const XMLCh* const systemId,
                     const bool hasInternal, const bool hasExternal) override
    {
        hasDocumentType_ = true;
        XercesDOMParser::doctypeDecl(root, publicId, systemId, hasInternal, hasExternal);
    }

    void entityDecl(const xercesc::DTDEntityDecl& declaration, const bool isParameter, const bool isIgnored) override
    {
        CountDeclaration();
        XercesDOMParser::entityDecl(declaration, isParameter, isIgnored);
    }

    void attDef(const xercesc::DTDElementDecl& element, const xercesc::DTDAttDef& attribute, const bool isIgnored) override
    {
        CountDeclaration();
        XercesDOMParser::attDef(element, attribute, isIgnored);
    }

    void notationDecl(const xercesc::XMLNotationDecl& notation, const bool isIgnored) override
    {
        CountDeclaration();
        XercesDOMParser::notationDecl(notation, isIgnored);
    }

private:
    /// Entities and default values make more of a text than it is; how much more has an end.
    void TakeRoom(XMLSize_t characters)
    {
        if (characters > room_)
            throw VDXmlRefusal{"it grows too much when its entities are expanded"};
        room_ -= characters;
    }

    void CountDeclaration()
    {
        if (++declarations_ > LargestDeclarations)
            throw VDXmlRefusal{"it declares too much"};
    }

    void CountAttribute(const xercesc::XMLAttr& attribute)
    {
        const std::u16string_view name = attribute.getQName();
        if (hasDocumentType_)
            TakeRoom(name.size() + xercesc::XMLString::stringLen(attribute.getValue()));
        // A name counts by its place in a table; chance makes sure that nobody can choose names of one place.
        const std::size_t place = ((std::hash<std::u16string_view>()(name) ^ chance_) * 0x9E3779B97F4A7C15U) >> 48;
        if (!attributeNames_[place] && ++attributeNameCount_ > LargestNames)
            throw VDXmlRefusal{"its attributes have too many names"};
        attributeNames_[place] = true;
    }

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
    bool hasDocumentType_ = false;
    XMLSize_t room_;  ///< for characters still to come, behind a document type
    XMLSize_t declarations_ = 0;
    std::bitset<65'536> attributeNames_;
    XMLSize_t attributeNameCount_ = 0;
    const std::size_t chance_ = std::random_device()();
};

}  // namespace

DOM_Document VFParseXmlText(std::string_view text, const char* filename, const char* routine)
{
    VFStartXerces();
    VDString reason;
    try {
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(), "xml");
        VDXmlParser parser(text.size());
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
