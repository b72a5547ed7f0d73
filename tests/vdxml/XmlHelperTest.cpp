#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdxml/VDUXmlHelper.h"

#include <filesystem>

using namespace std::string_literals;

namespace {

std::string Name(const DOM_Node& node)
{
    return VDUXmlHelper::DOMToVDString(node.GetNodeName()).Str();
}

DOMString Dom(const char* text)
{
    return VDUXmlHelper::VDToDOMString(text);
}

std::string Text(const DOM_Node& node)
{
    VDUDataBuffer buffer;
    EXPECT_TRUE(VDUXmlHelper::ConvertNodeTreeToText(node, &buffer, false));
    return std::string(buffer.View());
}

// The value of an attribute, "none" without it.
std::string Attribute(const DOM_Element& element, const char* name)
{
    VDString value("old");
    const bool found = VDUXmlHelper::GetAttribute(element, name, &value);
    EXPECT_TRUE(found || value.IsEmpty());
    return found ? value.Str() : "none";
}

}  // namespace

TEST(XmlHelper, ReadsAndWalksATree)
{
    const TestFolder folder;
    const std::string file = folder.Write(
        "GeneralFiles.sys", "<?xml version='1.0' encoding='ISO-8859-1'?>\n<GeneralFiles Version='1.0'><!-- note -->\n"
                            " <AccessType Id='1000' Name='Gr\xF6\xDFt' Enabled=''/>text<Other/><Last/></GeneralFiles>");
    DOM_Element last;
    {
        const DOM_Document document = VDUXmlHelper::ParseXmlFromFile(file.c_str());
        const DOM_Element root = document.GetDocumentElement();
        EXPECT_EQ(Name(root), "GeneralFiles");
        EXPECT_EQ(root.GetParentNode(), document);
        DOM_Element first;
        ASSERT_TRUE(VDUXmlHelper::GetSingleElementChild(root, "AccessType", &first));
        EXPECT_EQ(Attribute(first, "Name"), "Gr\xC3\xB6\xC3\x9Ft");
        EXPECT_EQ(Attribute(first, "Enabled"), "");
        EXPECT_EQ(Attribute(first, "id"), "none");
        EXPECT_FALSE(VDUXmlHelper::GetSingleElementChild(root, "Missing", &last));
        EXPECT_TRUE(DOM_Element(first.GetNextSibling()).IsNull()) << "a text is no element";
        last = DOM_Element(first.GetNextSibling().GetNextSibling().GetNextSibling());
    }
    // The tree lives on behind a handle on one of its nodes.
    EXPECT_EQ(Name(last), "Last");
    EXPECT_TRUE(last.GetNextSibling().IsNull());
    EXPECT_EQ(DOM_Node().GetNodeType(), VTDomNone);
    EXPECT_TRUE(DOM_Document().GetDocumentElement().GetFirstChild().IsNull());
    ExpectNoError();
}

TEST(XmlHelper, FaultsAreToldWithTheirPlace)
{
    const TestFolder folder;
    const std::string file = folder.Write("bad.xml", "<a>\n  <b></c>\n</a>");
    EXPECT_TRUE(VDUXmlHelper::ParseXmlFromFile(file.c_str()).IsNull());
    ExpectError(VDBaseError::XmlParse, "(line 2, column ", "VDUXmlHelper::ParseXmlFromFile");
    ExpectError(VDBaseError::XmlParse, "\nFile : " + file);
    EXPECT_TRUE(VDUXmlHelper::ParseXmlFromFile(folder.Name("none.xml").c_str()).IsNull());
    ExpectError(VDBaseError::FileOpen, "none.xml");
    for (const std::string& text :
         {""s, "no xml"s, "<a/><b/>"s, "<a x='1' x='2'/>"s, "<a>\x01</a>"s, "<a>\xFF</a>"s, "<a>\0</a>"s}) {
        VFErrorClear();
        EXPECT_TRUE(VDUXmlHelper::ParseXml(text.data(), static_cast<int>(text.size())).IsNull()) << text;
        ExpectError(VDBaseError::XmlParse, "The XML text can't be parsed: ", "VDUXmlHelper::ParseXml");
    }
    EXPECT_FALSE(VDUXmlHelper::ParseXml("<a/>garbage", 4).IsNull());
}

TEST(XmlHelper, NothingOutsideIsReadAndExpansionEnds)
{
    const TestFolder folder;
    const std::string secret = folder.Write("secret.txt", "secret");
    const std::string dtd = folder.Write("outside.dtd", "<!ENTITY x 'from outside'>");
    for (const std::string& text :
         {"<!DOCTYPE a [<!ENTITY x SYSTEM '" + secret + "'>]><a>&x;</a>",
          "<!DOCTYPE a [<!ENTITY % x SYSTEM '" + dtd + "'>%x;]><a>&x;</a>", "<!DOCTYPE a SYSTEM '" + dtd + "'><a>&x;</a>"}) {
        VFErrorClear();
        const DOM_Document document = VDUXmlHelper::ParseXml(text.c_str());
        // Without the text from outside the reference may only stay unresolved.
        if (document.IsNull())
            ExpectError(VDBaseError::XmlParse);
        else
            EXPECT_EQ(Text(document.GetDocumentElement()), "<a/>") << text;
    }
    EXPECT_FALSE(VDUXmlHelper::ParseXml(("<!DOCTYPE a SYSTEM '" + dtd + "'><a/>").c_str()).IsNull());

    std::string bomb = "<!DOCTYPE a [<!ENTITY e0 'boom'>";
    for (int level = 1; level < 10; ++level) {
        bomb += "<!ENTITY e" + std::to_string(level) + " '";
        for (int copy = 0; copy < 10; ++copy)
            bomb += "&e" + std::to_string(level - 1) + ';';
        bomb += "'>";
    }
    for (const char* use : {"]><a>&e9;</a>", "]><a b='&e9;'/>"})
        EXPECT_TRUE(VDUXmlHelper::ParseXml((bomb + use).c_str()).IsNull()) << use;
    EXPECT_EQ(Text(VDUXmlHelper::ParseXml("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;&e;</a>").GetDocumentElement()), "<a>xx</a>");
}

// Texts whose tree, or the time for it, is out of proportion to them.
TEST(XmlHelper, TimeAndMemoryStayInProportionToTheText)
{
    // The pattern many times over, with the number of the copy for each "#".
    const auto many = [](int copies, const std::string& pattern) {
        std::string text;
        for (int copy = 0; copy < copies; ++copy)
            for (const char each : pattern)
                text += each == '#' ? std::to_string(copy) : std::string(1, each);
        return text;
    };
    const std::string large(100'000, 'x');
    using Row = std::pair<std::string, const char*>;
    for (const auto& [text, reason] :
         {Row(many(100'000, "<a>"), "nest too deep"), Row("<a " + many(2'000, "b#='' ") + "/>", "too many attributes"),
          Row("<a>" + many(10'000, "<b#/>") + "</a>", "elements have too many names"),
          Row("<a>" + many(10'000, "<b c#=''/>") + "</a>", "attributes have too many names"),
          Row("<!DOCTYPE a [" + many(2'000, "<!ENTITY e# 'x'>") + "]><a/>", "declares too much"),
          Row("<!DOCTYPE a [" + many(2'000, "<!ATTLIST e# b CDATA 'x'>") + "]><a/>", "declares too much"),
          Row("<!DOCTYPE a [" + many(2'000, "<!NOTATION e# SYSTEM 'x'>") + "]><a/>", "declares too much"),
          Row("<!DOCTYPE a [<!ENTITY e '" + large + "'>]><a>&e;&e;&e;</a>", "grows too much"),
          Row("<!DOCTYPE a [<!ATTLIST b c CDATA '" + large + "'>]><a><b/><b/><b/></a>", "grows too much")}) {
        VFErrorClear();
        EXPECT_TRUE(VDUXmlHelper::ParseXml(text.c_str()).IsNull()) << reason;
        ExpectError(VDBaseError::XmlParse, reason);
    }
    EXPECT_FALSE(
        VDUXmlHelper::ParseXml(("<a>" + many(20'000, "<b c='&lt;'>" + large.substr(0, 20) + "</b>") + "</a>").c_str())
            .IsNull());
}

TEST(XmlHelper, WritesWhatItReads)
{
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element root = document.CreateElement(Dom("Root"));
    ASSERT_TRUE(document.AppendChild(root));
    EXPECT_FALSE(document.AppendChild(document.CreateElement(Dom("Second"))));
    EXPECT_TRUE(document.CreateElement(Dom("1 name")).IsNull());
    EXPECT_FALSE(root.SetAttribute(Dom("<"), Dom("x")));
    const char* const units = "m/s\xC2\xB2 \"<&'>\t\n\xF0\x9F\x98\x80";
    EXPECT_TRUE(root.SetAttribute(Dom("units"), Dom(units)));
    EXPECT_TRUE(root.AppendChild(document.CreateTextNode(Dom("a<b"))));
    EXPECT_FALSE(root.AppendChild(DOM_Document::CreateDocument().CreateElement(Dom("x")))) << "of another tree";

    const TestFolder folder;
    const std::string file = folder.Write("out.xml", "old");
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    ASSERT_TRUE(VDUXmlHelper::SaveNodeTreeToFile(root, file.c_str(), true));
    EXPECT_TRUE(TestReadFile(file).starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root units=\""))
        << TestReadFile(file);
    const DOM_Element again = VDUXmlHelper::ParseXmlFromFile(file.c_str()).GetDocumentElement();
    EXPECT_EQ(Attribute(again, "units"), units);
    EXPECT_EQ(VDUXmlHelper::DOMToVDString(again.GetFirstChild().GetNodeValue()).Str(), "a<b");

    EXPECT_EQ(std::filesystem::status(file).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);

    EXPECT_FALSE(VDUXmlHelper::SaveNodeTreeToFile(root, folder.Name("no/such/").c_str(), true));
    ExpectError(VDBaseError::FileWrite, "no/such/");
    EXPECT_FALSE(VDUXmlHelper::SaveNodeTreeToFile(DOM_Node(), file.c_str(), true));
    ExpectError(VDBaseError::XmlWrite, "there is no tree");
    EXPECT_FALSE(TestReadFile(file).empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2) << "nothing is left beside";
}

TEST(XmlHelper, TextsAlwaysMakeReadableXml)
{
    using Row = std::pair<const char*, std::string>;
    for (const auto& [in, out] :
         {Row("\xB0K", "\xC2\xB0K"), Row("\x01", "\xEF\xBF\xBD"), Row("\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"),
          Row("\xC0\x80", "\xC3\x80\xC2\x80"), Row("\xE2\x82", "\xC3\xA2\xC2\x82"), Row(nullptr, ""),
          Row("\xF0\x9D\x84\x9E", "\xF0\x9D\x84\x9E"), Row("\xEF\xBF\xBF", "\xEF\xBF\xBD")}) {
        DOM_Document document = DOM_Document::CreateDocument();
        DOM_Element root = document.CreateElement(Dom("a"));
        document.AppendChild(root);
        root.SetAttribute(Dom("b"), Dom(in));
        EXPECT_EQ(Attribute(root, "b"), out);
        EXPECT_EQ(Attribute(VDUXmlHelper::ParseXml(Text(document).c_str()).GetDocumentElement(), "b"), out);
    }
    EXPECT_EQ(VDUXmlHelper::DOMToVDString(DOMString(std::u16string(1, char16_t{0xD800}))).Str(), "\xEF\xBF\xBD");
}
