#include "support/TestSupport.h"

#include "daxlib/VDMetaDataConfiguration.h"

namespace {

using Configuration = VDMetaDataConfiguration;

/// One of the two lists with its operations, which are alike.
struct List
{
    const char* name;
    void (Configuration::*clear)();
    int (Configuration::*count)() const;
    VDMetaDataConfigurationItem* (Configuration::*get)(int) const;
    char (Configuration::*getTexts)(int, VDString*, VDString*, VDString*) const;
    void (Configuration::*add)(VDString, VDString, VDString);
    char (Configuration::*update)(int, VDString, VDString, VDString);
    char (Configuration::*deleteAt)(int);
    char (Configuration::*deleteKey)(VDString);
    char (Configuration::*keys)(VDStringArray*) const;
    char (Configuration::*types)(VDStringArray*) const;
};

#define LIST(One)                                                                                                        \
    {#One, &Configuration::Clear##One##s, &Configuration::GetNum##One##s, &Configuration::Get##One,                      \
     &Configuration::Get##One, &Configuration::Add##One, &Configuration::Update##One, &Configuration::Delete##One,       \
     &Configuration::Delete##One, &Configuration::Get##One##Keys, &Configuration::Get##One##KeyTypes}
const List VVLists[] = {LIST(Test), LIST(Channel)};
#undef LIST

/// "set.item:type ..." of one list.
std::string Content(const Configuration& configuration, const List& list)
{
    VDStringArray keys;
    VDStringArray types;
    keys.AppendItem("left over");
    EXPECT_TRUE((configuration.*list.keys)(&keys) && (configuration.*list.types)(&types));
    std::string all;
    for (int index = 0; index < keys.GetSize(); ++index)
        all += keys[index].Str() + ':' + types[index].Str() + ' ';
    return all;
}

std::string Tests(const Configuration& configuration)
{
    return Content(configuration, VVLists[0]);
}

std::string Channels(const Configuration& configuration)
{
    return Content(configuration, VVLists[1]);
}

std::string Item(const std::string& set, const std::string& item, const std::string& type)
{
    return "<Item setName='" + set + "' itemName='" + item + "' type='" + type + "'/>";
}

}  // namespace

TEST(MetaDataConfiguration, ListsAreKeptInOrder)
{
    for (const List& list : VVLists) {
        SCOPED_TRACE(list.name);
        Configuration configuration;
        const auto add = [&](const char* set, const char* item) { (configuration.*list.add)(set, item, "T"); };
        add("A.B", "C");
        add("A", "B.C");
        add("A", "b.C");
        add("A", "B.C");
        EXPECT_EQ((configuration.*list.count)(), 4) << "there may be two of a kind";
        EXPECT_TRUE((configuration.*list.update)(3, "", "last", "U"));
        EXPECT_FALSE((configuration.*list.update)(4, "", "", ""));
        EXPECT_EQ(Content(configuration, list), "A.B.C:T A.B.C:T A.b.C:T .last:U ");
        // What is before the first dot is the set, whatever the first item is called.
        EXPECT_TRUE((configuration.*list.deleteKey)("A.B.C"));
        EXPECT_EQ((configuration.*list.get)(0)->GetSetName(), "A.B");
        EXPECT_FALSE((configuration.*list.deleteKey)("A.B.C"));
        EXPECT_FALSE((configuration.*list.deleteKey)("last"));
        EXPECT_TRUE((configuration.*list.deleteKey)(".last"));
        EXPECT_FALSE((configuration.*list.deleteAt)(2) || (configuration.*list.deleteAt)(-1));
        EXPECT_TRUE((configuration.*list.deleteAt)(0));
        EXPECT_EQ(Content(configuration, list), "A.b.C:T ");

        VDString set = "s", item = "i", type = "t";
        EXPECT_FALSE((configuration.*list.getTexts)(0, &set, nullptr, &type));
        EXPECT_FALSE((configuration.*list.getTexts)(1, &set, &item, &type));
        EXPECT_EQ(set + item + type, "sit");
        EXPECT_TRUE((configuration.*list.getTexts)(0, &set, &item, &type));
        EXPECT_EQ(set + "/" + item + "/" + type, "A/b.C/T");
        EXPECT_EQ((configuration.*list.get)(-1), nullptr);
        EXPECT_FALSE((configuration.*list.keys)(nullptr) || (configuration.*list.types)(nullptr));
        (configuration.*list.clear)();
        EXPECT_EQ(Content(configuration, list), "");
    }
}

TEST(MetaDataConfiguration, WhatIsWrittenIsReadAgain)
{
    const TestFolder folder;
    const VDString filename = folder.Name("a.xml").c_str();
    Configuration configuration;
    EXPECT_TRUE(configuration.Write(filename));
    EXPECT_EQ(TestReadFile(filename.Str()).substr(TestReadFile(filename.Str()).find("<FileList")),
              "<FileListMetadata Version=\"1.0\">\n  <Test/>\n  <Channel/>\n</FileListMetadata>");
    configuration.AddTest("Set \xc3\xa4", "<&\"'> \n\t", "");
    configuration.AddChannel("c", "d", "Double");
    configuration.AddChannel("e", "f", "any");
    EXPECT_TRUE(configuration.Write(filename));
    Configuration read;
    read.AddTest("gone", "gone", "");
    EXPECT_TRUE(read.Read(filename));
    EXPECT_EQ(Tests(read), "Set \xc3\xa4.<&\"'> \n\t: ");
    EXPECT_EQ(Channels(read), "c.d:Double e.f:any ");
    EXPECT_EQ(read.GetFilename(), filename);

    // A copy goes its own way.
    Configuration copy(read);
    EXPECT_TRUE(copy.DeleteChannel(0));
    copy.GetTest(0)->SetType("changed");
    EXPECT_EQ(Channels(read), "c.d:Double e.f:any ");
    EXPECT_EQ(read.GetTest(0)->GetType(), "");
    read = copy;
    read = static_cast<const Configuration&>(read);
    EXPECT_EQ(Channels(read), "e.f:any ");
    EXPECT_EQ(read.GetFilename(), filename);
    read.Clear();
    EXPECT_TRUE(read.GetFilename().IsEmpty());

    // What can't be written stays as it was, and so does the file.
    EXPECT_FALSE(copy.Write("/nowhere/there/a.xml"));
    copy.AddTest("a\x01", "b", "c");
    EXPECT_FALSE(copy.Write(filename));
    EXPECT_EQ(copy.GetFilename(), filename);
    EXPECT_TRUE(read.Read(filename));
    ExpectNoError();
}

TEST(MetaDataConfiguration, FilesAreReadAsFarAsTheyAreRight)
{
    const TestFolder folder;
    const std::string a = Item("s", "a", "1"), b = Item("s", "b", "2"), c = Item("s", "c", "3");
    struct
    {
        std::string content;
        bool succeeds;
        const char* version;
        const char* tests;
        const char* channels;
    } const rows[] = {
        {"no XML", false, "1.0", "old.old: ", ""},
        {"<filelistmetadata Version='1'/>", false, "1.0", "old.old: ", ""},
        {"<FileListMetadata><Test>" + a + "</Test></FileListMetadata>", false, "1.0", "", ""},
        {"<FileListMetadata Version=''/>", true, "", "", ""},
        {"<FileListMetadata Version='7.3'>text<Test>" + a + "<!-- x -->text<Other>" + c + "</Other>" + b + "</Test>" + c +
             "<Channel>" + c + "</Channel><test>" + c + "</test><Test>" + b + c + "</Test><Channel>" + a +
             "</Channel></FileListMetadata>",
         true, "7.3", "s.a:1 s.b:2 s.b:2 s.c:3 ", "s.c:3 s.a:1 "},
        {"<FileListMetadata Version='2'><Channel>" + c + "</Channel><Test>" + a + b +
             "<Item setName='s' itemName='x'/></Test><Channel>" + a + "</Channel></FileListMetadata>",
         false, "2", "s.a:1 s.b:2 ", "s.c:3 "},
    };
    for (const auto& row : rows) {
        Configuration configuration;
        configuration.AddTest("old", "old", "");
        const std::string filename = folder.Write("a.xml", row.content);
        EXPECT_EQ(configuration.Read(filename.c_str()) != 0, row.succeeds) << row.content;
        EXPECT_EQ(configuration.GetVersion(), row.version) << row.content;
        EXPECT_EQ(Tests(configuration), row.tests) << row.content;
        EXPECT_EQ(Channels(configuration), row.channels) << row.content;
        EXPECT_EQ(configuration.GetFilename().Str(), row.succeeds ? filename : "") << row.content;
        EXPECT_TRUE(configuration.Write(filename.c_str()));
        EXPECT_NE(TestReadFile(filename).find("Version=\"" + std::string(row.version) + '"'), std::string::npos);
    }
    EXPECT_FALSE(Configuration().Read("/nowhere/a.xml"));
    ExpectNoError();
}
