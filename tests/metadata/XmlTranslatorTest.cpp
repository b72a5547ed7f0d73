#include "daxlib/VDXmlMetaDataTranslator.h"
#include "daxlib/VFDaxMetaData.h"
#include "metadata/MetaDataDump.h"
#include "support/TestFileId.h"
#include "vdstore/LQDataManager.h"
#include "vdxml/VDUXmlHelper.h"

#include <bit>
#include <limits>
#include <locale>

namespace {

constexpr int Global = LQChannelMapper::GLOBAL;
constexpr const char* Reader = "VDXmlMetaDataTranslator::XmlToMetaData";
constexpr const char* Adder = "VDXmlMetaDataTranslator::AddSetToMapper";
constexpr const char* Writer = "VDXmlMetaDataTranslator::MetaDataToXml";

DOM_Element Parse(const std::string& text)
{
    const DOM_Document document = VDUXmlHelper::ParseXml(text.c_str());
    EXPECT_FALSE(document.IsNull()) << text;
    return document.GetDocumentElement();
}

std::string InRoot(const std::string& content)
{
    return "<VardoMetaData version=\"1.0\">" + content + "</VardoMetaData>";
}

std::string InSet(const std::string& items, const std::string& set = "S")
{
    return "<Set name=\"" + set + "\">" + items + "</Set>";
}

std::string InTest(const std::string& items)
{
    return "<MetaDataTest>" + InSet(items) + "</MetaDataTest>";
}

bool Read(const std::string& content, LQChannelMapper& mapper, const std::vector<long>& channels = {})
{
    VDArrayWithSort<long> list;
    for (const long number : channels)
        list.AppendItem(number);
    char found = 0;
    VFErrorClear();
    return VDXmlMetaDataTranslator().XmlToMetaDataSet(Parse(InRoot(content)), list, &mapper, found) && found != 0;
}

/// The XML of a mapper's metadata; empty if it can't be written.
std::string Write(LQChannelMapper& mapper)
{
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element parent = document.CreateElement(VDUXmlHelper::VDToDOMString("Parent"));
    VDUDataBuffer text;
    VFErrorClear();
    const bool good = VDXmlMetaDataTranslator().MetaDataToXml(&mapper, document, parent) &&
                      VDUXmlHelper::ConvertNodeTreeToText(parent.GetFirstChild(), &text);
    return good ? std::string(text.View()) : std::string();
}

/// A set of every type that XML has, with values that are easily lost.
void AddEverything(Z4PropertySet& set)
{
    using Double = std::numeric_limits<double>;
    using Float = std::numeric_limits<float>;
    const double doubles[] = {0.0,
                              -0.0,
                              1.0 / 3,
                              Double::max(),
                              Double::denorm_min(),
                              -Double::infinity(),
                              Double::quiet_NaN(),
                              std::bit_cast<double>(0x7ff80000deadbeefULL),
                              std::bit_cast<double>(0xfff0000000000001ULL)};
    const float floats[] = {-0.0F, 0.1F, Float::denorm_min(), Float::infinity(), std::bit_cast<float>(0x7fc12345U)};
    const char* const texts[] = {"", " a  b ", "\xC2\xB5m/m <&\"'>\t\r\n\xF0\x9F\x98\x80", "1e5", "Undefined"};
    int number = 0;
    const auto name = [&number] { return "n" + std::to_string(++number); };
    for (const double value : doubles)
        set.AddDouble(name().c_str(), value);
    for (const float value : floats)
        set.AddFloat(name().c_str(), value);
    for (const char* const value : texts)
        set.AddString(name().c_str(), value);
    set.AddHuge(name().c_str(), std::numeric_limits<std::int64_t>::min());
    set.AddUnsHuge(name().c_str(), std::numeric_limits<std::uint64_t>::max());
    set.AddLong(name().c_str(), std::numeric_limits<std::int32_t>::min());
    set.AddUnsLong(name().c_str(), std::numeric_limits<std::uint32_t>::max());
    set.AddShort(name().c_str(), -32768);
    set.AddUnsShort(name().c_str(), 65535);
    set.AddUnsChar(name().c_str(), 255);
    set.AddBoolean(name().c_str(), true);
    for (const auto type : {Z4TypeBoolean, Z4TypeUnsChar, Z4TypeHuge, Z4TypeFloat, Z4TypeDouble, Z4TypeString})
        set.AddProperty(Z4Property::Create(type, name().c_str()));
}

/// Numbers of a host whose language writes 1.234,5.
class CommaNumbers : public std::numpunct<char>
{
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// A number as its bits, which tell NaNs and zeros apart.
template <class Property>
std::uint64_t BitsOf(const Z4Property& property)
{
    using Value = typename Property::Value;
    using Bits = std::conditional_t<sizeof(Value) == 8, std::uint64_t, std::uint32_t>;
    return std::bit_cast<Bits>(static_cast<const Property&>(property).Get());
}

void ExpectSame(const Z4PropertySet& left, const Z4PropertySet& right)
{
    ASSERT_EQ(left.GetSize(), right.GetSize());
    for (int i = 0; i < left.GetSize(); ++i) {
        const Z4Property& before = *left.GetProperty(i);
        const Z4Property& after = *right.GetProperty(i);
        EXPECT_EQ(before.GetName(), after.GetName());
        ASSERT_EQ(before.GetType(), after.GetType()) << before.GetName().Str();
        EXPECT_EQ(before.IsDefined(), after.IsDefined()) << before.GetName().Str();
        EXPECT_EQ(before.ToString(), after.ToString());
        if (before.GetType() == Z4TypeDouble && before.IsDefined()) {
            EXPECT_EQ(BitsOf<Z4DoubleProperty>(before), BitsOf<Z4DoubleProperty>(after)) << before.ToString().Str();
        }
        if (before.GetType() == Z4TypeFloat && before.IsDefined()) {
            EXPECT_EQ(BitsOf<Z4FloatProperty>(before), BitsOf<Z4FloatProperty>(after)) << before.ToString().Str();
        }
    }
}

}  // namespace

TEST(XmlTranslator, EveryValueComesBackFromXmlAndFromASidecar)
{
    LQChannelMapper mapper(nullptr);
    mapper.SetChannelNumber(7, mapper.Append());
    for (const int index : {Global, 0})
        AddEverything(*mapper.AdoptMetaDataSet("All", nullptr, index));
    std::locale::global(std::locale(std::locale(), new CommaNumbers));
    LQChannelMapper back(nullptr);
    char found = 0;
    ASSERT_TRUE(VDXmlMetaDataTranslator().XmlToMetaData(Parse(Write(mapper)), &back, found));
    for (const int index : {Global, 0})
        ExpectSame(*mapper.GetMetaDataSet("All", index), *back.GetMetaDataSet("All", index));
    EXPECT_EQ(back.NumberFromIndex(0, false), 7);
    const TestFolder folder;
    VDVmdFileHandle sidecar(VMDCreate());
    LQChannelMapper* kept = nullptr;
    const VDString name = folder.Name("a.vmd").c_str();
    ASSERT_TRUE(VMDAdopt(sidecar.Get(), name, false) && VMDGetMetaData(sidecar.Get(), &kept) &&
                VFDaxCopyMetaData(&mapper, kept, VTMetaDataCopyAddChannels) && VMDRelease(sidecar.Detach()));
    sidecar.Reset(VMDCreate());
    ASSERT_TRUE(VMDAdopt(sidecar.Get(), name, true) && VMDGetMetaData(sidecar.Get(), &kept));
    for (const int index : {Global, 0})
        ExpectSame(*mapper.GetMetaDataSet("All", index), *kept->GetMetaDataSet("All", index));
}

TEST(XmlTranslator, WritesTheDocumentedForm)
{
    LQChannelMapper mapper(nullptr);
    EXPECT_EQ(Write(mapper), "<VardoMetaData version=\"1.0\"/>");
    mapper.SetChannelNumber(3, mapper.Append());
    mapper.SetChanTitle("title", 0);
    mapper.SetChannelNumber(4, mapper.Append());
    mapper.Append();
    mapper.AdoptMetaDataSet("Unnumbered", nullptr, 2);
    mapper.AdoptMetaDataSet("S", nullptr, Global)->AddUnsShort("a", 5);
    Z4PropertySet& set = *mapper.AdoptMetaDataSet("S", nullptr, 0);
    set.AddDouble("d", 0)->SetDefined(false);
    set.AddProperty(std::make_unique<Z4TextProperty>("t", "long"));
    EXPECT_EQ(Write(mapper),
              InRoot("<MetaDataTest>" + InSet("<Item name=\"a\" type=\"UnsShort\" value=\"5\"/>") +
                     "</MetaDataTest><MetaDataChannel number=\"3\">" +
                     InSet("<Item name=\"d\" type=\"Double\"/><Item name=\"t\" type=\"String\" value=\"long\"/>") +
                     "</MetaDataChannel>"));

    mapper.AdoptMetaDataSet("S", nullptr, Global)->AddProperty(std::make_unique<Z4TextProperty>("t", "long"));
    EXPECT_EQ(Write(mapper), "");
    ExpectReport(-331503, "Unsupported Type in Meta Data - for t", Writer);
    mapper.AdoptMetaDataSet("S", nullptr, Global)->PutString("t", "bell\a");
    EXPECT_EQ(Write(mapper), "");
    ExpectReport(-331501, "XML Attribute error. Name: value. - for t", "VDXmlMetaDataTranslator::SetAttributeValue");
    DOM_Document document;
    DOM_Element parent;
    EXPECT_FALSE(VDXmlMetaDataTranslator().MetaDataToXml(&mapper, document, parent));
    ExpectReport(-331504, "Meta Data to XML translation error", Writer);
    EXPECT_FALSE(VDXmlMetaDataTranslator().MetaDataToXml(nullptr, document, parent));
    ExpectError(-331488, "", Writer);
}

TEST(XmlTranslator, ReadsTypesFromWordsAndValues)
{
    LQChannelMapper mapper(nullptr);
    ASSERT_TRUE(Read("<Other/><MetaDataTest><Other/>" +
                         InSet("<Item name=\"a\" type=\"dOuBlE\" value=\" 1 \"/><Item name=\"b\" value=\"7\"/>"
                               "<Item name=\"c\" value=\"7.5\"/><Item name=\"d\" value=\"7 V\"/><Item name=\"e\"/>"
                               "<Item name=\"f\" type=\"Double\" value=\"\"/><Item name=\"g\" type=\"string\"/>"
                               "<Item name=\"h\" type=\"String\" defined=\"False\"/>") +
                         "</MetaDataTest>",
                     mapper));
    EXPECT_EQ(DumpMetaData(mapper, Global, true),
              "S(a:70=1 b:6e=7 c:70=7.5 d:71=7 V e:71= f:70=Undefined g:71= h:71=Undefined)");

    mapper.Clear();
    mapper.AdoptMetaDataSet("S", nullptr, Global)->AddLong("x", 1);
    ASSERT_TRUE(Read(InTest("<Item name=\"x\" type=\"Double\" value=\"2\"/>"), mapper));
    EXPECT_EQ(DumpMetaData(mapper, Global, true), "S(x:6c=2)") << "an item keeps its type";
    EXPECT_FALSE(Read(InTest("<Item name=\"x\" type=\"Double\" value=\"2.5\"/>"), mapper));
    ExpectReport(-331499, "Invalid Double value - 2.5", Adder);
    EXPECT_EQ(DumpMetaData(mapper, Global, true), "S(x:6c=2)");
    EXPECT_FALSE(Read(InTest("<Item name=\"x\" type=\"String\" value=\"v\"/>"), mapper));
    ExpectReport(-331486, "Invalid Item Value in Metadata XML - v", Adder);
}

TEST(XmlTranslator, ChannelsAreMadeSelectedAndTitled)
{
    const std::string item = "<Item name=\"x\" type=\"Long\" value=\"2\"/>";
    const std::string channels = "<MetaDataChannel number=\"9\" title=\"nine\">" + InSet(item, "attributes") + InSet(item) +
                                 "</MetaDataChannel><MetaDataChannel number=\" 3\" title=\"lost\">" + InSet(item) +
                                 "</MetaDataChannel><MetaDataChannel number=\"-4\"/>";
    LQChannelMapper mapper(nullptr);
    ASSERT_TRUE(Read(channels, mapper));
    EXPECT_EQ(mapper.GetChannelCount(), 2);
    EXPECT_EQ(DumpMetaData(mapper, mapper.IndexFromNumber(9, false), true),
              "attributes(x:6c=2 ChanTitle:71=nine) S(x:6c=2)");
    EXPECT_EQ(DumpMetaData(mapper, mapper.IndexFromNumber(3, false), true), "S(x:6c=2)");
    mapper.Clear();
    ASSERT_TRUE(Read(channels, mapper, {8, 3}));
    EXPECT_EQ(mapper.GetChannelCount(), 1);
    EXPECT_EQ(mapper.NumberFromIndex(0, false), 3);
    EXPECT_FALSE(Read("<MetaDataChannel number=\"x\"/>", mapper, {3}));
    ExpectNoError();
}

TEST(XmlTranslator, FaultsHaveTheirCodes)
{
    struct Row
    {
        std::string content;
        int code;
        const char* text;
        const char* routine = Reader;
    };
    const auto typed = [](const std::string& type, const std::string& value) {
        return InTest("<Item name=\"x\" type=\"" + type + "\" value=\"" + value + "\"/>");
    };
    const auto channel = [](const std::string& number) {
        return "<MetaDataChannel number=\"" + number + "\">" + InSet("<Item name=\"x\"/>") + "</MetaDataChannel>";
    };
    const std::string digits(10'000, '9');
    for (const Row& row : {
             Row{"<MetaDataTest><Set/></MetaDataTest>", -331483, "Invalid Set Name in Metadata XML"},
             {InTest("<Item/>"), -331484, "Invalid Item Name in Metadata XML"},
             {"<MetaDataChannel/>", -331487, "Missing Channel number in Metadata XML"},
             {channel("-1"), -331489, "Invalid Channel number in Metadata XML"},
             {channel(digits), -331489, "Invalid Channel number in Metadata XML"},
             {typed("Boolean", "yes"), -331490, "Invalid Boolean value - yes", Adder},
             {typed("UnsChar", "256"), -331491, "Invalid UnsChar value - 256", Adder},
             {typed("UnsShort", "-1"), -331492, "Invalid UnsShort value - -1", Adder},
             {typed("Short", "32768"), -331493, "Invalid Short value - 32768", Adder},
             {typed("UnsLong", "4294967296"), -331494, "Invalid UnsLong value - 4294967296", Adder},
             {typed("Long", "0x10"), -331495, "Invalid Long value - 0x10", Adder},
             {typed("UnsHuge", "18446744073709551616"), -331496, "Invalid UnsHuge value - 18446744073709551616", Adder},
             {typed("Huge", "1.0"), -331497, "Invalid Huge value - 1.0", Adder},
             {typed("Float", "1e39"), -331498, "Invalid Float value - 1e39", Adder},
             {typed("Double", "1,5"), -331499, "Invalid Double value - 1,5", Adder},
             {typed("Quad", "1"), -331502, "Invalid Type in XML - Quad", Adder},
         }) {
        LQChannelMapper mapper(nullptr);
        EXPECT_FALSE(Read(row.content, mapper)) << row.text;
        ExpectReport(row.code, row.text, row.routine);
    }
    const auto readRoot = [](const std::string& text, char* found) {
        LQChannelMapper mapper(nullptr);
        return VDXmlMetaDataTranslator().XmlToMetaData(Parse(text), &mapper, *found);
    };
    char found = 1;
    for (const char* const version : {"1", "1.000", " 1.0 "})
        EXPECT_TRUE(readRoot("<a><b/><VardoMetaData version='" + std::string(version) + "'/></a>", &found) && found != 0);
    for (const char* const attribute : {"", "version='2'", "version='one'"}) {
        EXPECT_FALSE(readRoot("<VardoMetaData " + std::string(attribute) + "/>", &found));
        ExpectReport(-331482, "Invalid version in Metadata XML", Reader);
    }
    VFErrorClear();
    EXPECT_TRUE(readRoot("<a><b><VardoMetaData/></b></a>", &found)) << "not a child";
    EXPECT_EQ(found, 0);
    ExpectNoError();
    EXPECT_FALSE(VDXmlMetaDataTranslator().XmlToMetaData(DOM_Element(), nullptr, found));
    ExpectReport(-331488, "Invalid Channel Mapper.", Reader);
}

TEST(ExtraMetadata, SiteAddsAndTestsOwnFileReplaces)
{
    const auto file = [](const std::string& value) {
        return InRoot(
            "<MetaDataTest>" +
            InSet("<Item name=\"" + value + "\" value=\"" + value + "\"/><Item name=\"x\" value=\"" + value + "\"/>") +
            "</MetaDataTest><MetaDataChannel number=\"9\">" + InSet("<Item name=\"y\"/>") + "</MetaDataChannel>");
    };
    const TestFolder folder;
    const VDFileIdHandle id = TestId(folder.Name("run.dat"));
    const auto items = [&id](bool skipDefinitions) {
        LQChannelMapper mapper(nullptr);
        mapper.AdoptMetaDataSet("S", nullptr, Global)->AddString("x", "test");
        EXPECT_TRUE(VFDaxAddExtraMetadata(id.Get(), skipDefinitions, &mapper));
        EXPECT_EQ(mapper.GetChannelCount(), 0);
        return DumpMetaData(mapper, Global, true);
    };
    EXPECT_EQ(items(false), "S(x:71=test)");
    ASSERT_EQ(chdir(folder.Path().c_str()), 0);
    folder.Write("_definitions.xml", file("here"));
    EXPECT_EQ(items(false), "S(x:71=test here:71=here)");
    TestWriteFile(TestHomeFolder(), "_definitions.xml", file("home"));
    EXPECT_EQ(items(false), "S(x:71=test home:71=home)");
    EXPECT_EQ(items(true), "S(x:71=test)");
    const std::string own = folder.Write("own.xml", file("own"));
    ASSERT_NE(FIDSetExtraMetadataFilename(id.Get(), own.c_str()), 0);
    EXPECT_EQ(items(false), "S(home:71=home own:71=own x:71=own)");

    LQChannelMapper mapper(nullptr);
    EXPECT_FALSE(VFDaxAddExtraMetadata(nullptr, true, &mapper));
    ExpectError(-327682);
    ASSERT_NE(FIDSetExtraMetadataFilename(id.Get(), folder.Name("missing.xml").c_str()), 0);
    EXPECT_FALSE(VFDaxAddExtraMetadata(id.Get(), true, &mapper));
    TestWriteFile(TestHomeFolder(), "_definitions.xml", "<VardoMetaData version='3'/>");
    EXPECT_FALSE(VFDaxAddExtraMetadata(id.Get(), false, &mapper));
    ExpectError(-331482);
}
