#include "support/TestFileId.h"

#include "daxlib/VDFileIdPreferences.h"
#include "vdbase/VDIo.h"

#include <random>

// XML and binary forms of file ids and lists of them.

namespace {

/// An id with values of all kinds in every member that a stored form knows.
VDFileIdHandle MadeUpId(unsigned seed)
{
    std::mt19937 random(seed);
    const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
    const auto text = [&]() -> std::string {
        const char* const texts[] = {"", "Speed", "a\"b&c<d>'", " two  blanks ", "Motor \xc3\xb6l;r2|x", "line\nend\ttab"};
        return texts[number(0, 5)];
    };
    VDFileIdHandle id =
        number(0, 1) != 0 ? TestId("/data/" + text() + "/road.dat") : TestStemId("/data/road" + text(), "d;t");
    VDFileId* const it = id.Get();
    EXPECT_TRUE(FIDSetFileId(it, number(1, 3), number(-2, 2)) && FIDSetVer(it, number(0, 9), number(0, 9)));
    EXPECT_TRUE(FIDSetRunNumber(it, number(-1, 3)) && FIDSetBurstNumber(it, number(-1, 3)));
    EXPECT_TRUE(FIDSetModeNumber(it, number(-1, 3), text().c_str()) && FIDSetTestTitle(it, text().c_str()));
    EXPECT_TRUE(FIDSetExtraMetadataFilename(it, text().c_str()) && FIDSetAssociatedFilename(it, text().c_str()));
    EXPECT_TRUE(FIDSetShowChannels(it, number(0, 1) != 0) && FIDSetSelected(it, number(0, 1) != 0));
    EXPECT_TRUE(FIDSetNumChanDigits(it, number(1, 10)) && FIDSetDataSource(it, number(0, 3)));
    EXPECT_TRUE(FIDSetDataPath(it, text().c_str()) && FIDSetObjectReference(it, text().c_str()));
    for (int index = 0; index < number(0, 4); ++index) {
        TestAddChannels(id, {number(-5, 2000000000)});
        EXPECT_TRUE(FIDSetChanTitle(it, 0, text().c_str()) && FIDSetChanUnits(it, 0, text().c_str()));
        EXPECT_TRUE(FIDSetChanSelect(it, 0, number(0, 1) != 0));
    }
    EXPECT_TRUE(FIDSetIdentified(it, 0));
    return id;
}

std::string Xml(const VDFileIdHandle& id)
{
    return TestText<FIDToXml>(id);
}

VDFileIdHandle FromXml(const std::string& xml)
{
    VDFileIdHandle id = TestId();
    const VDString text(xml);
    return FIDFromXml(id.Get(), &text) ? std::move(id) : VDFileIdHandle();
}

std::string Replaced(std::string text, const std::string& from, const std::string& to)
{
    EXPECT_NE(text.find(from), std::string::npos) << from;
    return text.replace(text.find(from), from.size(), to);
}

}  // namespace

TEST(Persistence, WhatIsWrittenReadsBack)
{
    const TestFolder folder;
    VDIo io(folder.Name("ids").c_str());
    ASSERT_TRUE(io.Open(VTOpenCreate));
    const VDFileIdArrayHandle ids(FIACreate());
    std::vector<std::string> plain;  // what the binary form holds, too
    for (unsigned seed = 0; seed < 200; ++seed) {
        const VDFileIdHandle id = MadeUpId(seed);
        plain.push_back(Xml(id));
        ASSERT_TRUE(FIAAppendItem(ids.Get(), id.Get()));
        ASSERT_TRUE(FIDSetIdentified(id.Get(), seed % 2) && FIDSetOriginalExtension(id.Get(), "sig"));
        if (int count = 0; FIDGetNumChans(id.Get(), &count) && count > 0) {
            ASSERT_TRUE(FIDSetChanType(id.Get(), 0, static_cast<int>(seed)) && FIDSetFileChanNumber(id.Get(), 0, 7));
        }
        VDFileIdPreferences* preferences = nullptr;
        ASSERT_TRUE(FIDGetPreferences(id.Get(), seed % 3 == 0, &preferences));
        if (preferences != nullptr)
            preferences->SetString("Gain", "2 \"<");
        const VDFileIdHandle copy = FromXml(Xml(id));
        ASSERT_TRUE(copy);
        EXPECT_EQ(Xml(copy), Xml(id));
        EXPECT_TRUE((TestGet<char, FIDCompareTestNames>(copy, id.Get())));
    }
    std::int64_t first = -1;
    std::int64_t second = -1;
    ASSERT_TRUE(FIASerialise(ids.Get(), &io, 0, &first) && FIASerialise(ids.Get(), &io, 0, &second));
    ASSERT_TRUE(io.SetCurPos(0));
    const VDFileIdArrayHandle read(FIACreate());
    std::int64_t position = -1;
    ASSERT_TRUE(FIASerialise(read.Get(), &io, 1, &position) && position == first);
    EXPECT_EQ(io.GetCurPos(), second);
    for (int index = 0; index < 200; ++index) {
        VDFileIdHandle copy;
        ASSERT_TRUE(FIAGetAt(read.Get(), index, copy.Out()));
        EXPECT_EQ(Xml(copy), plain[static_cast<std::size_t>(index)]);
    }
}

TEST(Persistence, XmlOfAnotherShapeIsRefused)
{
    VDFileIdHandle id = TestStemId("/data/road", "dat");
    TestAddChannels(id, {3});
    const std::string xml = Xml(id);
    ASSERT_TRUE(FromXml(Replaced(xml, "<Chan", "<!-- a --><Other/>text<Chan")));
    ASSERT_TRUE(FromXml(Replaced(Replaced(xml, "version=\"2\"", "version=\"1\""), "associatedFilename=\"\"", "")));
    EXPECT_FALSE(FromXml(Replaced(xml, "version=\"2\"", "version=\"3\"")));
    ExpectReport(-328617, "Invalid XML format for file ID. ", "VDFileId::FromXml");
    EXPECT_TRUE(VFErrorCheck(-328618));
    for (const auto& [from, to] :
         std::vector<std::pair<std::string, std::string>>{{"associatedFilename=\"\"", ""},
                                                          {"fileNum=\"-1\"", ""},
                                                          {"run=\"-1\"", "run=\"x\""},
                                                          {"selected=\"False\"", "selected=\"no\""},
                                                          {"chanDigits=\"2\"", "chanDigits=\"2000000000\""},
                                                          {"nameForm=\"1\"", "nameForm=\"7\""},
                                                          {"dataSource=\"0\"", "dataSource=\"4\""},
                                                          {"</FileId>", ""}})
        ExpectFailure(FromXml(Replaced(xml, from, to)), -328617, "Invalid XML format", "VDFileId::FromXml");
    // A name that XML can't hold doesn't come back as another one.
    VDString text;
    for (const char* name : {"/data/\xe4.dat", "/data/\x01.dat"})
        ExpectFailure(FIDToXml(TestId(name).Get(), &text), -331501, " - filename");
}

TEST(Persistence, BinaryObjectsThatAreCutOrForeignFail)
{
    const TestFolder folder;
    const std::string name = folder.Name("ids");
    const VDFileIdArrayHandle ids(FIACreate());
    VDIo io(name.c_str());
    ASSERT_TRUE(io.Open(VTOpenCreate) && FIAAppendItem(ids.Get(), MadeUpId(1).Get()));
    ASSERT_TRUE(FIASerialise(ids.Get(), &io, 0, nullptr) && io.Close());
    const std::string bytes = TestReadFile(name);
    const auto read = [&](const std::string& content) {
        VDIo file(folder.Write("changed", content).c_str());
        return file.Open(VTOpenRead) && FIASerialise(ids.Get(), &file, 1, nullptr);
    };
    ASSERT_TRUE(read(bytes));
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(read(bytes.substr(0, length))) << length;
    ExpectFailure(read(std::string(bytes).replace(4, 1, "\x53")), -327684, "", "VDFileId::Serialise");
    EXPECT_TRUE(read(std::string(bytes).replace(8, 1, "\x02")));
    ExpectError(-327685, "Invalid object version", "VDFileId::Serialise");
    // No count and no length of a file is believed: each of them set to its largest.
    for (std::size_t at = 0; at + 4 <= bytes.size(); ++at)
        read(std::string(bytes).replace(at, 4, "\xff\xff\xff\x7f"));
    EXPECT_FALSE(read(std::string(bytes).replace(24, 4, "\xff\xff\xff\x7f")));
}
