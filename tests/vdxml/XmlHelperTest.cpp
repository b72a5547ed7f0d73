#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdxml/VDUXmlHelper.h"

#include <filesystem>

namespace {

std::string Name(const DOM_Node& node)
{
    return VDUXmlHelper::DOMToVDString(node.GetNodeName()).Str();
}

DOMString Dom(const char* text)
{
    return VDUXmlHelper::VDToDOMString(text);
}

std::string Text(const DOM_Node& node, bool indent = false)
{
    VDUDataBuffer buffer;
    EXPECT_TRUE(VDUXmlHelper::ConvertNodeTreeToText(node, &buffer, indent));
    return std::string(buffer.View());
}

}  // namespace

TEST(XmlHelper, ReadsAndWalksATree)
{
    const TestFolder folder;
    const std::string file = folder.Write(
        "GeneralFiles.sys", "<?xml version='1.0' encoding='ISO-8859-1'?>\n<GeneralFiles Version='1.0'><!-- note -->\n"
                            " <AccessType Id='1000' Name='Gr\xF6\xDF"
                            "e' Enabled=''/>text<Other/><AccessType Id='1001'/></GeneralFiles>");
    DOM_Element second;
    {
        const DOM_Document document = VDUXmlHelper::ParseXmlFromFile(file.c_str());
        const DOM_Element root = document.GetDocumentElement();
        EXPECT_EQ(Name(root), "GeneralFiles");
        EXPECT_EQ(root.GetParentNode(), document);
        DOM_Element first;
        ASSERT_TRUE(VDUXmlHelper::GetSingleElementChild(root, "AccessType", &first));
        VDString value;
        EXPECT_TRUE(VDUXmlHelper::GetAttribute(first, "Name", &value));
        EXPECT_EQ(value.Str(), "Gr\xC3\xB6\xC3\x9F"
                               "e");
        EXPECT_TRUE(VDUXmlHelper::GetAttribute(first, "Enabled", &value));
        EXPECT_FALSE(VDUXmlHelper::GetAttribute(first, "id", &value));
        EXPECT_TRUE(value.IsEmpty());
        EXPECT_FALSE(VDUXmlHelper::GetSingleElementChild(root, "Missing", &second));
        EXPECT_TRUE(DOM_Element(first.GetNextSibling()).IsNull()) << "a text is no element";
        EXPECT_EQ(Name(first.GetNextSibling().GetNextSibling()), "Other");
        second = DOM_Element(first.GetNextSibling().GetNextSibling().GetNextSibling());
    }
    // The tree lives on behind a handle on one of its nodes.
    EXPECT_EQ(VDUXmlHelper::DOMToVDString(second.GetAttribute(Dom("Id"))).Str(), "1001");
    EXPECT_TRUE(second.GetNextSibling().IsNull());
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
         {std::string(), std::string("no xml"), std::string("<a/><b/>"), std::string("<a x='1' x='2'/>"),
          std::string("<a>\x01</a>"), std::string("<a>\xFF</a>"), std::string("<a>\0</a>", 8)}) {
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
    EXPECT_TRUE(VDUXmlHelper::ParseXml((bomb + "]><a>&e9;</a>").c_str()).IsNull());
    EXPECT_TRUE(VDUXmlHelper::ParseXml((bomb + "]><a b='&e9;'/>").c_str()).IsNull());
    EXPECT_EQ(Text(VDUXmlHelper::ParseXml("<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;&e;</a>").GetDocumentElement()), "<a>xx</a>");

    std::string deep;
    for (int level = 0; level < 100000; ++level)
        deep += "<a>";
    EXPECT_TRUE(VDUXmlHelper::ParseXml(deep.c_str()).IsNull());
    ExpectError(VDBaseError::XmlParse, "nest too deep");
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
    ASSERT_TRUE(VDUXmlHelper::SaveNodeTreeToFile(root, file.c_str(), true));
    EXPECT_TRUE(TestReadFile(file).starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root units=\""))
        << TestReadFile(file);
    VDString value;
    const DOM_Document again = VDUXmlHelper::ParseXmlFromFile(file.c_str());
    ASSERT_TRUE(VDUXmlHelper::GetAttribute(again.GetDocumentElement(), "units", &value));
    EXPECT_EQ(value.Str(), units);
    EXPECT_EQ(VDUXmlHelper::DOMToVDString(again.GetDocumentElement().GetFirstChild().GetNodeValue()).Str(), "a<b");

    EXPECT_FALSE(VDUXmlHelper::SaveNodeTreeToFile(root, folder.Name("no/such/").c_str(), true));
    EXPECT_FALSE(VDUXmlHelper::SaveNodeTreeToFile(DOM_Node(), file.c_str(), true));
    ExpectError(VDBaseError::XmlWrite, "there is no tree");
    EXPECT_FALSE(TestReadFile(file).empty());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path()), {}), 2) << "nothing is left beside";
}

TEST(XmlHelper, TextsAlwaysMakeReadableXml)
{
    const struct
    {
        const char *in, *out;
    } rows[] = {{"\xB0"
                 "C",
                 "\xC2\xB0"
                 "C"},
                {"\x01", "\xEF\xBF\xBD"},
                {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},
                {"\xC0\x80", "\xC3\x80\xC2\x80"},
                {"\xE2\x82", "\xC3\xA2\xC2\x82"},
                {"\xF0\x9D\x84\x9E", "\xF0\x9D\x84\x9E"},
                {"\xEF\xBF\xBF", "\xEF\xBF\xBD"},
                {nullptr, ""}};
    for (const auto& row : rows) {
        EXPECT_EQ(VDUXmlHelper::DOMToVDString(Dom(row.in)).Str(), row.out);
        DOM_Document document = DOM_Document::CreateDocument();
        DOM_Element root = document.CreateElement(Dom("a"));
        document.AppendChild(root);
        root.SetAttribute(Dom("b"), Dom(row.in));
        const std::string text = Text(document);
        VDString value;
        EXPECT_TRUE(VDUXmlHelper::GetAttribute(VDUXmlHelper::ParseXml(text.c_str()).GetDocumentElement(), "b", &value));
        EXPECT_EQ(value.Str(), row.out);
    }
    EXPECT_EQ(VDUXmlHelper::DOMToVDString(DOMString(std::u16string(1, char16_t{0xD800}))).Str(), "\xEF\xBF\xBD");
}
