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

/// Value of a capability and whether there is one.
std::pair<int, int> Capability(VDFileInfo* info, VDFileId* id, const char* name)
{
    int value = -1;
    char found = 1;
    EXPECT_TRUE(FINFGetCapability(info, id, 1, 2, name, &value, &found));
    return {value, found};
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
    VDStringArray keywords;
    EXPECT_FALSE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    ExpectError(-328681, "Error getting list of FileFormat plug-ins", "VDFileInfo::LoadPlugIns");
    TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests());
    VFReloadPlugInConfiguration();
    EXPECT_FALSE(WalkFileIds(Info()).empty());
}

TEST_F(FormatRegistryTest, PluginThatCannotLoadIsReported)
{
    const std::string missing =
        "Error loading FileFormat plug-in. Missing function.\nFunction name: GetValue  Library name : ";
    const std::string unknown = "Unknown error in FileFormat plugin\nFunction name: ";
    for (const auto& [prefix, code, text] : std::initializer_list<std::tuple<const char*, int, std::string>>{
             {"MissFF", -328683, missing + Library() + "  Description : About"},
             {"BadNameFF", -328696, "Plugin doesn't support GetValue for NameForm\nPlugin description : About"},
             {"BadKeyFF", -328698, "Plugin doesn't support GetValue for FormatKeyword\nPlugin description : About"},
             {"ThrowTypeFF", -328697, unknown + "GetNextSuppType  Plugin Description : About"},
             {"ThrowCapFF", -328697, unknown + "GetNextCap  Plugin Description : About"},
             {"ThrowValueFF", -328697, unknown + "GetValue  Plugin Description : About"}}) {
        EXPECT_FALSE(FINFAddPlugin(prefix, prefix, Library().c_str(), "About"));
        ExpectReport(code, text, "VDFileInfo::LoadPlugIns");
        // The name is taken from then on.
        EXPECT_TRUE(FINFAddPlugin(prefix, "StandFF", Library().c_str(), "About"));
    }
    EXPECT_FALSE(FINFAddPlugin("No library", "StandFF", "/nowhere/none.so", "About"));
    ExpectErrorText(-328682, "Error loading FileFormat plug-in library\nLibrary name : /nowhere/none.so");
}

TEST_F(FormatRegistryTest, BadPluginsDoNotStopTheOthersAndOptionalEntriesMayLack)
{
    Configure({"MissFF", "ThrowTypeFF", "NoProxyFF", "OtherFF", "MessFF"});
    const std::vector<int> fileIds = WalkFileIds(Info());
    EXPECT_NE(std::find(fileIds.begin(), fileIds.end(), StandIn::CyclesFileId), fileIds.end());
    EXPECT_EQ(std::count(fileIds.begin(), fileIds.end(), StandIn::MessFileId), 1) << "a list without an end";
    // NoProxyFF and StandFF have the same types. The second one isn't loaded.
    EXPECT_EQ(std::count(fileIds.begin(), fileIds.end(), StandIn::HistFileId), 1);
    EXPECT_TRUE(Identify(MakeFile("a.sta", "STAND")));
    VDFileIdHandle id = MakeFile("b.sta", "STAND");
    EXPECT_TRUE(Identify(id));
    VDFileId* proxy = nullptr;
    EXPECT_TRUE(FINFGetProxyAccessFileId(id.Get(), &proxy));
    // What went wrong with each is still known, whatever was recorded since.
    std::string warnings;
    for (const VDErrorReport& warning : VFGetConfigurationWarnings())
        warnings += std::to_string(warning.code) + ' ' + warning.text.Str() + '\n';
    for (const char* part :
         {"-328683 Error loading FileFormat plug-in. Missing function.\nFunction name: GetValue",
          "-328697 Unknown error in FileFormat plugin\nFunction name: GetNextSuppType  Plugin Description : Stand-in ThrowTypeFF",
          "-328697 The list that GetNextSupportedType gives has no end\nPlugin Description : Stand-in MessFF",
          "-328697 The list that GetNextCapability gives has no end",
          "-328702 FileFormat plugin did not load correctly: Stand-in StandFF\nPlug-in \"Stand\" declares the type with file ID "
          "29101 and sub ID 1, which plug-in \"NoProxyFF\" (Stand-in NoProxyFF) serves"})
        EXPECT_NE(warnings.find(part), std::string::npos) << part << "\nis not in\n" << warnings;
}

TEST_F(FormatRegistryTest, DisabledAccessPluginsSayWhy)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  StandIn::Manifest("FileFormat", "Stand", "StandFF") +
                      StandIn::Manifest("TimeSeriesFiles", StandIn::MissingClassId, "MissTS") +
                      StandIn::Manifest("TimeSeriesFiles", StandIn::SerialClassId, "StandTS"));
    TestWriteFile(TestHomeFolder(), "plugins.d/off.toml",
                  "[[plugin]]\nfamily = \"TimeSeriesFiles\"\nname = \"" + std::string(StandIn::ClassId) +
                      "\"\ndescription = \"Off\"\nlibrary = \"none\"\nprefix = \"None\"\nskip = true\n");
    const VDErrorMute mute;  // the reason is kept even so
    const auto bind = [&](const char* entry, const char* script) {
        const VDTsAccHandle access(TSAccCreate());
        const VDFileIdHandle id = MakeFile(entry, script);
        EXPECT_TRUE(Identify(id, true));
        VFErrorEnableNew(1);
        EXPECT_FALSE(TSAccSetId(access.Get(), id.Get(), 0));
        VFErrorEnableNew(0);
    };
    bind("a.sta", "STAND subid=4");
    ExpectReport(-327698,
                 "This file IO plugin is currently disabled. It failed to load correctly. Plugin: Stand-in MissTS",
                 "VDTsAcc::SetId");
    const VDArray<VDErrorReport> reports = VFErrorGetReports(VFGetBaseLibError());
    ASSERT_EQ(reports.GetSize(), 2);
    EXPECT_EQ(reports[0].code, -328683);
    EXPECT_GE(reports[0].text.Find("Function name: GetDataDigital64"), 0);
    bind("b.sta", "STAND subid=1");
    ExpectReport(-327698, "This plug-in is switched off in the configuration. Plugin: Off", "VDTsAcc::SetId");
    EXPECT_FALSE(VFErrorCheck(-328683));
}

TEST_F(FormatRegistryTest, FileTypeQuestionsAreAnswered)
{
    VDString text;
    int number = -1;
    char found = 1;
    EXPECT_TRUE(FINFGetAccessClass(Info(), nullptr, StandIn::HistFileId, 1, &number, &text));
    EXPECT_EQ(number, VTFileAccessHistogram);
    EXPECT_EQ(text, "STAND-HIST");
    EXPECT_EQ(TestValue<FINFGetNameForm>(Info(), nullptr, StandIn::ChannelsFileId, 1), VTNameFormTestPlusChannels);

    // An id counts before the numbers.
    const VDFileIdHandle id(FIDCreate());
    FIDSetFileId(id.Get(), StandIn::FileId, StandIn::SubRun);
    EXPECT_EQ(Capability(Info(), id.Get(), "HasRun"), std::pair(1, 1));
    EXPECT_EQ(Capability(Info(), id.Get(), "hasrun"), std::pair(0, 0));
    std::string names;
    for (int index = 0; FINFGetNextCapability(Info(), id.Get(), 0, 0, &index, &text, &number, &found) && found;)
        names += text.Str() + std::to_string(number) + " ";
    EXPECT_EQ(names, "Readable1 Writable1 HasRun1 ");
    int negative = -1;
    EXPECT_EQ(TestValue<FINFGetNextCapability>(Info(), id.Get(), 0, 0, &negative, &text, &number), 0);
    ExpectNoError();

    EXPECT_FALSE(FINFGetNameForm(Info(), nullptr, 1, 2, &number));
    ExpectReport(-328692, "Unknown file ID specified\nFile ID : 1     Sub ID : 2", "VDFileInfo::GetIndexFromFileId");
    VFErrorClear();
    EXPECT_EQ(Capability(Info(), nullptr, "HasRun"), std::pair(0, 0));
    EXPECT_TRUE(VFErrorCheck(-328692));
}

TEST_F(FormatRegistryTest, KeywordsAndDefaultExtensions)
{
    VDStringArray keywords;
    keywords.AppendItem("left over");
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessHistogram, &keywords));
    EXPECT_EQ(Join(keywords), "StandB Z4Histogram TemporaryHistogram ");
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    EXPECT_GE(keywords.Find("StandSerial"), 0);

    int fileId = 0;
    int subId = 0;
    EXPECT_TRUE(FINFGetFileIdFromKeyword(Info(), "STANDC", VTFileAccessAll, &fileId, &subId));
    EXPECT_EQ(fileId, StandIn::ChannelsFileId);
    EXPECT_FALSE(FINFGetFileIdFromKeyword(Info(), "StandC", VTFileAccessHistogram, &fileId, &subId));
    ExpectReport(-328699, "Invalid file format keyword : StandC", "VDFileInfo::GetFileIdFromKeyword");

    VDString extension;
    EXPECT_EQ(TestValue<FINFGetDefaultExtension>(Info(), nullptr, StandIn::FileId, 1, nullptr), "sta");
    EXPECT_EQ(TestValue<FINFGetDefaultExtension>(Info(), nullptr, StandIn::FileId, 1, "hint"), "HINT");
    EXPECT_FALSE(FINFGetDefaultExtension(Info(), nullptr, StandIn::FileId, 1, "bad", &extension));
    ExpectReport(-328695, "Plugin doesn't support GetValue for DefaultExtension\nPlugin description : Stand-in StandFF",
                 "VDFileInfo::GetDefaultExtension");
}

TEST_F(FormatRegistryTest, AccessTypesAreNamed)
{
    TestWriteFile(TestSysFolder(), "LocalAccessTypes.sys", "2345\n2345,two,commas\nx,No number\n 2345,Local\n2345,Later\n");
    Configure({"OtherFF"});
    EXPECT_EQ(AccessName(Info(), VTFileAccessTimeSeries), "Time series");
    EXPECT_EQ(AccessName(Info(), 2345), "Local");
    // No file type has this one.
    EXPECT_EQ(AccessName(Info(), VTFileAccessFEModels, false), "Unknown file type (7)");
    EXPECT_EQ(AccessName(Info(), VTFileAccessAll, false), "Unknown file type (9999)");
    ExpectNoError();
}

TEST_F(FormatRegistryTest, AccessTypeNamesMayBeMissing)
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

TEST_F(FormatRegistryTest, SwitchesFollowPreferencesAndHost)
{
    EXPECT_FALSE(FINFGetIdentifyByExtension());
    EXPECT_FALSE(WalkFileIds(Info()).empty());
    EXPECT_TRUE(FINFGetIdentifyByExtension());
    Prefer("Enable_StandB", false);
    EXPECT_TRUE(FINFSetEnableIdentifyByExtension(0));
    EXPECT_FALSE(FINFGetIdentifyByExtension());

    // A disabled file type is left out of lists, but its keyword is understood.
    const std::vector<int> fileIds = WalkFileIds(Info());
    EXPECT_EQ(std::count(fileIds.begin(), fileIds.end(), StandIn::HistFileId), 0);
    VDStringArray keywords;
    EXPECT_TRUE(FINFGetFileFormatKeywords(Info(), VTFileAccessAll, &keywords));
    EXPECT_LT(keywords.Find("StandB"), 0);
    int fileId = 0;
    int subId = 0;
    EXPECT_TRUE(FINFGetFileIdFromKeyword(Info(), "StandB", VTFileAccessAll, &fileId, &subId));
}

TEST_F(FormatRegistryTest, FolderTestExtensionsFollowThePreferences)
{
    VDArray<VDStringArray> folders;
    VDArray<VDStringArray> files;
    EXPECT_TRUE(FINFGetFolderTestExtensions(&folders, &files));
    VDPreferenceSystem().OverrideStringValue("/FileFormats/Qac/FolderExtensions", "q1,Q2");
    EXPECT_TRUE(FINFGetFolderTestExtensions(&folders, &files));
    ASSERT_EQ(folders.GetSize(), 3);
    ASSERT_EQ(files.GetSize(), 3);
    EXPECT_EQ(Join(folders[1]) + "/ " + Join(files[1]), "sig dsf q1 Q2 / qac ");
    EXPECT_TRUE(TestFlag<FIDGetFolderTest>(TestId("/data/run.q2/c1.QAC")));
    EXPECT_FALSE(TestFlag<FIDGetFolderTest>(TestId("/data/run.q2/c1.raw")));

    EXPECT_FALSE(FINFGetFolderTestExtensions(nullptr, &files));
    EXPECT_FALSE(FINFGetFolderTestExtensions(&folders, nullptr));
    EXPECT_EQ(folders.GetSize(), 3);
}

TEST_F(FormatRegistryTest, ProxyTakesOverTheSelection)
{
    const std::string proxyName = folder_.Write("proxy.sta", "STAND numbers=3,1");
    const VDFileIdHandle id = MakeFile("a.sta", "STAND channels=3 proxy=" + proxyName);
    ASSERT_TRUE(Identify(id, true));
    FIDSetSelected(id.Get(), 1);
    FIDSetAllChanSelect(id.Get(), 0);
    FIDSetChanSelect(id.Get(), 2, 1);
    VFErrorClear();
    VDFileIdHandle proxy;
    ASSERT_TRUE(FINFGetProxyAccessFileId(id.Get(), proxy.Out()));
    ASSERT_TRUE(proxy);
    EXPECT_TRUE(TestFlag<FIDGetSelected>(proxy));
    EXPECT_EQ(TestFlag<FIDGetChanSelected>(proxy, 0), 1);
    EXPECT_EQ(TestFlag<FIDGetChanSelected>(proxy, 1), 0);
    ExpectNoError();

    const VDFileIdHandle without = MakeFile("b.sta", "STAND");
    ASSERT_TRUE(Identify(without));
    VDFileId* given = id.Get();
    EXPECT_TRUE(FINFGetProxyAccessFileId(without.Get(), &given));
    EXPECT_EQ(given, nullptr);
    const VDFileIdHandle failing = MakeFile("c.sta", "STAND proxyfail=1 lasterror=\"No proxy\"");
    ASSERT_TRUE(Identify(failing));
    EXPECT_FALSE(FINFGetProxyAccessFileId(failing.Get(), &given));
    ExpectReport(-328689, "No proxy", "VDFileInfo::GetProxyAccessFileId");
    FIDSetFileId(id.Get(), 1, 1);
    ExpectFailure(FINFGetProxyAccessFileId(id.Get(), &given), -328692);
}
