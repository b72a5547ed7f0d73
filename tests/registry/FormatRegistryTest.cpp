#include "RegistryTest.h"

#include "vdbase/VFPlugIn.h"

#include <algorithm>

namespace {

using FormatRegistryTest = RegistryTest;

std::string Library()
{
    return TestPluginFolder() + "/libstandin.so";
}

std::vector<int> WalkFileIds(VDFileInfo* info)
{
    std::vector<int> fileIds;
    int fileId = 0;
    int subId = 0;
    char more = 0;
    for (int index = 0; FINFGetNextFileType(info, &index, &fileId, &subId, &more) && more;)
        fileIds.push_back(fileId);
    return fileIds;
}

std::string AccessName(VDFileInfo* info, int accessType, bool known = true)
{
    VDString name;
    EXPECT_EQ(FINFGetAccessDescription(info, accessType, &name) != 0, known) << accessType;
    return name.Str();
}

std::string Join(const VDStringArray& texts)
{
    std::string all;
    for (const VDString& text : texts)
        all += text.Str() + " ";
    return all;
}

}  // namespace

TEST_F(FormatRegistryTest, BrokenManifestFailsUntilItIsMended)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", "[[plugin\n");
    int index = 0;
    int number = 0;
    char more = 0;
    EXPECT_FALSE(FINFGetNextFileType(Info(), &index, &number, &number, &more));
    ExpectError(-328681, "Error getting list of FileFormat plug-ins", "VDFileInfo::LoadPlugIns");
    TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests());
    VFReloadPlugInConfiguration();
    EXPECT_FALSE(WalkFileIds(Info()).empty());
}

TEST_F(FormatRegistryTest, PluginThatCannotLoadIsReported)
{
    struct Case
    {
        const char* prefix;
        int code;
        const char* text;
    };
    const std::string missing =
        "Error loading FileFormat plug-in. Missing function.\nFunction name: GetValue  Library name : " + Library() +
        "  Description : About";
    for (const auto& [prefix, code, text] : {
             Case{"MissFF", -328683, missing.c_str()},
             Case{"BadNameFF", -328696, "Plugin doesn't support GetValue for NameForm\nPlugin description : About"},
             Case{"BadKeyFF", -328698, "Plugin doesn't support GetValue for FormatKeyword\nPlugin description : About"},
             Case{"ThrowTypeFF", -328697,
                  "Unknown error in FileFormat plugin\nFunction name: GetNextSuppType  Plugin Description : About"},
             Case{"ThrowCapFF", -328697,
                  "Unknown error in FileFormat plugin\nFunction name: GetNextCap  Plugin Description : About"},
             Case{"ThrowValueFF", -328697,
                  "Unknown error in FileFormat plugin\nFunction name: GetValue  Plugin Description : About"},
         }) {
        EXPECT_FALSE(FINFAddPlugin(prefix, prefix, Library().c_str(), "About"));
        ExpectErrorText(code, text);
        ExpectError(code, "", "VDFileInfo::LoadPlugIns");
        // The name is taken from then on.
        EXPECT_TRUE(FINFAddPlugin(prefix, "StandFF", Library().c_str(), "About"));
    }
    EXPECT_FALSE(FINFAddPlugin("No library", "StandFF", "/nowhere/none.so", "About"));
    ExpectErrorText(-328682, "Error loading FileFormat plug-in library\nLibrary name : /nowhere/none.so");
}

TEST_F(FormatRegistryTest, BadPluginsDoNotStopTheOthersAndOptionalEntriesMayLack)
{
    Configure({"MissFF", "ThrowTypeFF", "NoProxyFF", "OtherFF"});
    const std::vector<int> fileIds = WalkFileIds(Info());
    EXPECT_NE(std::find(fileIds.begin(), fileIds.end(), StandIn::CyclesFileId), fileIds.end());
    // NoProxyFF and StandFF have the same types.
    EXPECT_EQ(std::count(fileIds.begin(), fileIds.end(), StandIn::HistFileId), 2);
}

TEST_F(FormatRegistryTest, FileTypeQuestionsAreAnswered)
{
    VDString text;
    int number = -1;
    char found = 1;
    EXPECT_TRUE(FINFGetAccessClass(Info(), nullptr, StandIn::HistFileId, 1, &number, &text));
    EXPECT_EQ(number, VTFileAccessHistogram);
    EXPECT_EQ(text, "STAND-HIST");
    EXPECT_TRUE(FINFGetFileDescription(Info(), nullptr, StandIn::HistFileId, 1, &text));
    EXPECT_EQ(text, "Stand-in type StandB");
    EXPECT_TRUE(FINFGetFileFormatKeyword(Info(), nullptr, StandIn::FileId, StandIn::SubRun, &text));
    EXPECT_EQ(text, "StandRun");
    EXPECT_TRUE(FINFGetNameForm(Info(), nullptr, StandIn::ChannelsFileId, 1, &number));
    EXPECT_EQ(number, VTNameFormTestPlusChannels);

    // An id counts before the numbers.
    const IdHandle id(FIDCreate());
    FIDSetFileId(id.get(), StandIn::FileId, StandIn::SubRun);
    EXPECT_TRUE(FINFGetCapability(Info(), id.get(), 1, 1, "HasRun", &number, &found));
    EXPECT_EQ(number, 1);
    EXPECT_EQ(found, 1);
    EXPECT_TRUE(FINFGetCapability(Info(), id.get(), 1, 1, "hasrun", &number, &found));
    EXPECT_EQ(number, 0);
    EXPECT_EQ(found, 0);
    std::string names;
    for (int index = 0; FINFGetNextCapability(Info(), id.get(), 0, 0, &index, &text, &number, &found) && found;)
        names += text.Str() + std::to_string(number) + " ";
    EXPECT_EQ(names, "Readable1 Writable1 HasRun1 ");
    int negative = -1;
    EXPECT_TRUE(FINFGetNextCapability(Info(), id.get(), 0, 0, &negative, &text, &number, &found));
    EXPECT_EQ(found, 0);
    ExpectNoError();

    EXPECT_FALSE(FINFGetNameForm(Info(), nullptr, 1, 2, &number));
    ExpectErrorText(-328692, "Unknown file ID specified\nFile ID : 1     Sub ID : 2");
    ExpectError(-328692, "", "VDFileInfo::GetIndexFromFileId");
    VFErrorClear();
    number = 5;
    EXPECT_TRUE(FINFGetCapability(Info(), nullptr, 1, 2, "HasRun", &number, &found));
    EXPECT_EQ(number, 0);
    EXPECT_EQ(found, 0);
    EXPECT_TRUE(VFErrorCheck(-328692));
}

TEST_F(FormatRegistryTest, KeywordsAndDefaultExtensions)
{
    VDStringArray keywords;
    keywords.AppendItem("left over");
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessHistogram, &keywords));
    EXPECT_EQ(Join(keywords), "StandB Z4Histogram ");
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    EXPECT_GE(keywords.Find("StandSerial"), 0);

    int fileId = 0;
    int subId = 0;
    EXPECT_TRUE(FINFGetFileIdFromKeyword(Info(), "STANDC", VTFileAccessAll, &fileId, &subId));
    EXPECT_EQ(fileId, StandIn::ChannelsFileId);
    EXPECT_FALSE(FINFGetFileIdFromKeyword(Info(), "StandC", VTFileAccessHistogram, &fileId, &subId));
    ExpectErrorText(-328699, "Invalid file format keyword : StandC");
    ExpectError(-328699, "", "VDFileInfo::GetFileIdFromKeyword");

    VDString extension;
    EXPECT_TRUE(FINFGetDefaultExtension(Info(), nullptr, StandIn::FileId, 1, nullptr, &extension));
    EXPECT_EQ(extension, "sta");
    EXPECT_TRUE(FINFGetDefaultExtension(Info(), nullptr, StandIn::FileId, 1, "hint", &extension));
    EXPECT_EQ(extension, "HINT");
    EXPECT_FALSE(FINFGetDefaultExtension(Info(), nullptr, StandIn::FileId, 1, "bad", &extension));
    ExpectErrorText(-328695, "Plugin doesn't support GetValue for DefaultExtension\nPlugin description : Stand-in StandFF");
    ExpectError(-328695, "", "VDFileInfo::GetDefaultExtension");
}

TEST_F(FormatRegistryTest, AccessTypesAreNamed)
{
    TestWriteFile(TestSysFolder(), "LocalAccessTypes.sys", "2345\n2345,two,commas\nx,No number\n 2345,Local\n2345,Later\n");
    Configure({"OtherFF"});
    EXPECT_EQ(AccessName(Info(), VTFileAccessTimeSeries), "Time series");
    EXPECT_EQ(AccessName(Info(), VTFileAccessCycles), "Cycles");
    EXPECT_EQ(AccessName(Info(), 2345), "Local");
    // No file type has this one.
    EXPECT_EQ(AccessName(Info(), VTFileAccessFEModels, false), "Unknown file type (7)");
    EXPECT_EQ(AccessName(Info(), VTFileAccessAll, false), "Unknown file type (9999)");
    ExpectNoError();
}

TEST_F(FormatRegistryTest, AccessTypeNamesMayBeMissingOrEmpty)
{
    Configure({"OtherFF"});
    EXPECT_EQ(AccessName(Info(), 2345), "Unknown file type");
    ExpectNoError();
}

TEST_F(FormatRegistryTest, ConfigurationLoadedBeforeNamesAccessTypes)
{
    TestWriteFile(TestHomeFolder(), "GeneralFiles_custom.sys",
                  R"(<GeneralFiles Version="1"><AccessType Id="2345" Name=""/></GeneralFiles>)");
    TestWriteFile(TestSysFolder(), "LocalAccessTypes.sys", "2345,Not asked\n");
    Configure({"OtherFF"});
    VDArray<VTFileAccessType> types;
    EXPECT_TRUE(FINFGetValidAccessTypes(&types));
    EXPECT_EQ(AccessName(Info(), 2345), "Unknown file type (2345)");
}

TEST_F(FormatRegistryTest, ValidAccessTypesWithoutConfiguration)
{
    VDArray<VTFileAccessType> types;
    EXPECT_FALSE(FINFGetValidAccessTypes(&types));
    ExpectNoError();
    EXPECT_TRUE(FINFGetValidAccessTypes(&types));
    const std::vector<int> values(types.begin(), types.end());
    EXPECT_EQ(values, (std::vector<int>{1, 2, 4, 5, 6, 7}));
}

TEST_F(FormatRegistryTest, ConfiguredTypesJoinTheTables)
{
    TestWriteFile(TestSysFolder(), "GeneralFiles.sys", GeneralFilesXml);
    TestWriteFile(TestHomeFolder(), "GeneralFiles_custom.sys",
                  R"(<GeneralFiles Version="1"><AccessType Id="1001" Name="Pictures" Enabled="True"/></GeneralFiles>)");
    EXPECT_EQ(AccessName(Info(), 1000, false), "Unknown file type (1000)");
    VDArray<VTFileAccessType> types;
    EXPECT_TRUE(FINFGetValidAccessTypes(&types));
    ASSERT_EQ(types.GetSize(), 8);
    EXPECT_EQ(types[6], 1000);
    EXPECT_EQ(types[7], 1001);
    EXPECT_EQ(AccessName(Info(), 1000), "Documents");
    VDStringArray keywords;
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    EXPECT_GE(keywords.Find("Report"), 0);
    EXPECT_GE(keywords.Find("Photo"), 0);
    EXPECT_LT(keywords.Find("Draft"), 0);
    VDString text = "x";
    int number = -1;
    EXPECT_TRUE(FINFGetAccessClass(Info(), nullptr, 28000, 0, &number, &text));
    EXPECT_EQ(number, 1000);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_FALSE(FINFGetDefaultExtension(Info(), nullptr, 28000, 0, nullptr, &text));
    ExpectErrorText(-328702, "FileFormat plugin did not load correctly: Documents");
}

TEST_F(FormatRegistryTest, DisabledFileTypesAreLeftOut)
{
    Prefer("Enable_StandA", false);
    int fileId = 0;
    int subId = 0;
    VDStringArray keywords;
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    EXPECT_LT(keywords.Find("StandA"), 0);
    EXPECT_TRUE(FINFGetFileIdFromKeyword(Info(), "StandA", VTFileAccessAll, &fileId, &subId));
}

TEST_F(FormatRegistryTest, MasterSwitchFollowsPreferencesAndHost)
{
    EXPECT_FALSE(FINFGetIdentifyByExtension());
    EXPECT_FALSE(WalkFileIds(Info()).empty());
    EXPECT_TRUE(FINFGetIdentifyByExtension());
    Prefer("Enable_StandB", false);
    EXPECT_TRUE(FINFSetEnableIdentifyByExtension(0));
    EXPECT_FALSE(FINFGetIdentifyByExtension());
    const std::vector<int> fileIds = WalkFileIds(Info());
    EXPECT_EQ(std::count(fileIds.begin(), fileIds.end(), StandIn::HistFileId), 0);
}

TEST_F(FormatRegistryTest, FolderTestExtensionsFollowThePreferences)
{
    VDArray<VDStringArray> folders;
    VDArray<VDStringArray> files;
    EXPECT_TRUE(FINFGetFolderTestExtensions(&folders, &files));
    ASSERT_EQ(folders.GetSize(), 3);
    ASSERT_EQ(files.GetSize(), 3);
    EXPECT_EQ(Join(folders[0]) + "/ " + Join(files[0]), "mes mas ess / sig ");
    EXPECT_EQ(Join(folders[2]) + "/ " + Join(files[2]), "fsf / raw dat ");
    VDPreferenceSystem().OverrideStringValue("/FileFormats/Qac/FolderExtensions", "q1,Q2");
    EXPECT_TRUE(FINFGetFolderTestExtensions(&folders, &files));
    EXPECT_EQ(Join(folders[1]) + "/ " + Join(files[1]), "sig dsf q1 Q2 / qac ");
    EXPECT_TRUE(Flag(MakeId("/data/run.q2/c1.QAC"), FIDGetFolderTest));
    EXPECT_FALSE(Flag(MakeId("/data/run.q2/c1.raw"), FIDGetFolderTest));

    EXPECT_FALSE(FINFGetFolderTestExtensions(&folders, nullptr));
    EXPECT_EQ(folders.GetSize(), 3);
    EXPECT_FALSE(FINFGetFolderTestExtensions(nullptr, &files));
    EXPECT_EQ(files.GetSize(), 3);
}

TEST_F(FormatRegistryTest, ProxyTakesOverTheSelection)
{
    const std::string proxyName = folder_.Write("proxy.sta", "STAND numbers=3,1");
    const IdHandle id = MakeFile("a.sta", "STAND channels=3 proxy=" + proxyName);
    ASSERT_TRUE(Identify(id, true));
    FIDSetSelected(id.get(), 1);
    FIDSetAllChanSelect(id.get(), 0);
    FIDSetChanSelect(id.get(), 2, 1);
    VFErrorClear();
    VDFileId* given = nullptr;
    ASSERT_TRUE(FINFGetProxyAccessFileId(id.get(), &given));
    const IdHandle proxy(given);
    ASSERT_NE(given, nullptr);
    EXPECT_TRUE(Flag(proxy, FIDGetSelected));
    char third = 0;
    char first = 1;
    EXPECT_TRUE(FIDGetChanSelected(given, 0, &third) && FIDGetChanSelected(given, 1, &first));
    EXPECT_EQ(third, 1);
    EXPECT_EQ(first, 0);
    ExpectNoError();

    const IdHandle without = MakeFile("b.sta", "STAND");
    ASSERT_TRUE(Identify(without));
    given = id.get();
    EXPECT_TRUE(FINFGetProxyAccessFileId(without.get(), &given));
    EXPECT_EQ(given, nullptr);
    const IdHandle failing = MakeFile("c.sta", "STAND proxyfail=1 lasterror=\"No proxy\"");
    ASSERT_TRUE(Identify(failing));
    EXPECT_FALSE(FINFGetProxyAccessFileId(failing.get(), &given));
    ExpectErrorText(-328689, "No proxy");
    ExpectError(-328689, "", "VDFileInfo::GetProxyAccessFileId");
    FIDSetFileId(id.get(), 1, 1);
    EXPECT_FALSE(FINFGetProxyAccessFileId(id.get(), &given));
    ExpectError(-328692);
}
