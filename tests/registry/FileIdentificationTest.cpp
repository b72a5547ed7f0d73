#include "RegistryTest.h"

#include <filesystem>

namespace {

class FileIdentificationTest : public RegistryTest
{
protected:
    /// Identifies a file by its extension; gives the outs as a text of "found", "ignored" and "standard".
    std::string ByExtension(const VDFileIdHandle& id, bool succeeds = true)
    {
        char found = 1;
        char ignored = 1;
        char asStandard = 1;
        EXPECT_EQ(FINFIdentifyFileByExtension(Info(), id.Get(), tests_.Out(), &found, &ignored, &asStandard) != 0, succeeds);
        return std::string(found ? "found " : "") + (ignored ? "ignored " : "") + (asStandard ? "standard " : "");
    }

    static void ExpectPlaceholder(const VDFileIdHandle& id, int fileId, const std::string& title)
    {
        ASSERT_EQ(TestInt<FIDGetNumChans>(id), 1);
        EXPECT_EQ(TestText<FIDGetChanTitle>(id, 0), "No Channels");
        EXPECT_EQ(TestText<FIDGetTestTitle>(id), title);
        EXPECT_EQ(FileIdOf(id), fileId);
        EXPECT_TRUE(TestFlag<FIDGetIdentified>(id));
        EXPECT_TRUE(TestFlag<FIDGetInfoLoaded>(id));
    }

    static void WriteConfiguration() { TestWriteFile(TestSysFolder(), "GeneralFiles.sys", GeneralFilesXml); }
};

}  // namespace

TEST_F(FileIdentificationTest, ClaimedFilesAreIdentifiedAndLoaded)
{
    const VDFileIdHandle id = MakeFile("a.sta", "STAND subid=2 numbers=4,9 units=mm");
    ASSERT_TRUE(Identify(id, true));
    ASSERT_EQ(NumTests(), 1);
    EXPECT_EQ(Test(0).Get(), id.Get());
    EXPECT_EQ(FileIdOf(id), StandIn::FileId);
    EXPECT_FALSE(TestFlag<FIDGetInIdent>(id));
    EXPECT_EQ(TestText<FIDGetChanTitle>(id, 1), "Channel 9");
    EXPECT_EQ(TestText<FIDGetChanUnits>(id, 0), "mm");
    // Known already: the file isn't needed any more, and the array goes on.
    std::filesystem::remove(folder_.Name("a.sta"));
    EXPECT_TRUE(Identify(id, true));
    EXPECT_EQ(NumTests(), 2);

    // One file may hold several tests.
    ASSERT_TRUE(Identify(MakeFile("b.sta", "STAND tests=3 channels=2"), true));
    ASSERT_EQ(NumTests(), 5);
    for (int run = 1; run <= 3; ++run) {
        const VDFileIdHandle test = Test(run + 1);
        EXPECT_EQ(TestInt<FIDGetRunNumber>(test), run);
        EXPECT_TRUE(TestFlag<FIDGetIdentified>(test));
        EXPECT_TRUE(TestFlag<FIDGetInfoLoaded>(test));
    }
}

TEST_F(FileIdentificationTest, UnreadableFilesAreReportedWithTheirName)
{
    folder_.Name("folder.sta/entry");
    folder_.Write("empty.sta", "");
    for (const auto& [entry, code, text] : std::initializer_list<std::tuple<const char*, int, const char*>>{
             {"empty.sta", -328687, "File header is blank, so the file format cannot be determined"},
             {"missing.sta", -328684, "Error opening file to check file format"},
             {"folder.sta", -328684, "Error opening file to check file format"}}) {
        const VDFileIdHandle id = TestId(folder_.Name(entry));
        EXPECT_FALSE(Identify(id));
        ExpectReport(code, std::string(text) + "\nFilename :" + folder_.Name(entry), "VDFileInfo::IdentifyFile");
        EXPECT_FALSE(TestFlag<FIDGetInIdent>(id));
    }
    EXPECT_FALSE(Identify(TestId()));
    EXPECT_TRUE(VFErrorCheck(-328686));
    EXPECT_FALSE(Identify(TestStemId("/nowhere/test", "dat")));
    ExpectErrorText(-328686, "Error retrieving filename from ID object to check file format\n"
                             "Test name :/nowhere/test   Extension :dat");
}

TEST_F(FileIdentificationTest, WithoutAnyConfigurationTheFirstUnknownFileFailsSilently)
{
    const VDFileIdHandle id = MakeFile("a.xyz", "nobody knows this");
    EXPECT_FALSE(Identify(id));
    ExpectNoError();
    ExpectFailure(Identify(id), -328688, "File format not recognised\nFilename :", "VDFileInfo::IdentifyFile");
    EXPECT_EQ(FileIdOf(id), 0);
    EXPECT_EQ(NumTests(), 0);
}

TEST_F(FileIdentificationTest, PluginsThatFailOrThrowPassTheFileOn)
{
    Configure({"LexadeFF"});
    for (const char* how : {"STAND lexade=decline", "STAND throw=1", "STAND throw=int", "STAND fail=1"}) {
        const VDFileIdHandle id = MakeFile("a.sig", how);
        EXPECT_EQ(Identify(id), std::string(how) == "STAND lexade=decline") << how;
        EXPECT_FALSE(TestFlag<FIDGetInIdent>(id));
    }
    EXPECT_TRUE(Identify(MakeFile("b.sta", "STAND recurse=1")));
    EXPECT_TRUE(VFErrorCheck(-328700));
}

TEST_F(FileIdentificationTest, PluginThatDeclinesLeavesNoTrace)
{
    Configure({"MessFF"});
    const VDFileIdHandle id = MakeFile("a.sta", "STAND channels=2");
    FIDSetTestTitle(id.Get(), "mine");
    ASSERT_TRUE(Identify(id, true));
    EXPECT_EQ(NumTests(), 1);
    EXPECT_EQ(TestText<FIDGetTestTitle>(id), "mine");
    EXPECT_EQ(TestInt<FIDGetNumChans>(id), 2);
    EXPECT_EQ(TestText<FIDGetChanFilename>(id, 0), folder_.Name("a.sta"));
    EXPECT_FALSE(TestFlag<FIDIsTemporary>(id));
    WriteConfiguration();
    const VDFileIdHandle unknown = MakeFile("b.xyz", "nobody's");
    EXPECT_FALSE(Identify(unknown));
    EXPECT_EQ(TestText<FIDGetTestTitle>(unknown), "");
    EXPECT_EQ(TestText<FIDGetChanFilename>(unknown, 0), folder_.Name("b.xyz"));
    EXPECT_TRUE(std::filesystem::exists(folder_.Name("b.xyz")));
}

TEST_F(FileIdentificationTest, TheOwnerOfAnExtensionIsAskedFirstWhereverItStands)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  StandIn::Manifests() + StandIn::Manifest("FileFormat", "Sig", "LexadeFF"));
    for (const auto& [entry, content, fileId] :
         std::initializer_list<std::tuple<const char*, const char*, int>>{{"a.SIG", "STAND", StandIn::LexadeFileId},
                                                                          {"b.sig", "STAND lexade=decline", StandIn::FileId},
                                                                          {"c.sta", "STAND", StandIn::FileId}}) {
        const VDFileIdHandle id = MakeFile(entry, content);
        ASSERT_TRUE(Identify(id));
        EXPECT_EQ(FileIdOf(id), fileId) << entry;
    }
}

TEST_F(FileIdentificationTest, ConfiguredTypeGivesAPlaceholder)
{
    WriteConfiguration();
    const VDFileIdHandle id = MakeFile("report.PDF", "nobody reads this");
    ASSERT_TRUE(Identify(id));
    ASSERT_EQ(NumTests(), 1);
    ExpectPlaceholder(Test(0), 28000, "report");
    EXPECT_EQ(FileIdOf(id), 0);
    EXPECT_FALSE(TestFlag<FIDGetIdentified>(id));
    EXPECT_FALSE(Identify(MakeFile("photo.jpg", "of a disabled access type")));
}

TEST_F(FileIdentificationTest, ListsAreIdentifiedAsFarAsAsked)
{
    const VDFileIdArrayHandle ids(FIACreate());
    for (const char* entry : {"a.sta", "bad.sta", "c.sta"})
        FIAAppendItem(ids.Get(), MakeFile(entry, entry[0] == 'b' ? "" : "STAND").Get());
    EXPECT_FALSE(FINFIdentifyFiles(Info(), ids.Get(), 0, 0, tests_.Out()));
    EXPECT_EQ(NumTests(), 1);
    EXPECT_TRUE(FINFIdentifyFiles(Info(), ids.Get(), 0, 1, tests_.Out()));
    EXPECT_EQ(NumTests(), 2);
    ExpectError(-328687);
    EXPECT_FALSE(FINFLoadInfoForFiles(Info(), ids.Get(), 0));
    EXPECT_TRUE(FINFLoadInfoForFiles(Info(), ids.Get(), 1));
    EXPECT_TRUE(TestFlag<FIDGetInfoLoaded>(Test(1)));
}

TEST_F(FileIdentificationTest, LoadInfoFailuresAreReported)
{
    const VDFileIdHandle unknown = MakeFile("u.sta", "STAND");
    EXPECT_FALSE(FINFLoadInfo(Info(), unknown.Get()));
    ExpectError(-328693, "Failed to get file format details\nFilename :", "VDFileInfo::LoadInfo");
    FIDSetFileId(unknown.Get(), 1, 1);
    ExpectFailure(FINFLoadInfo(Info(), unknown.Get()), -328688, "\nFilename :", "VDFileInfo::LoadInfo");

    for (const auto& [content, code, text] : std::initializer_list<std::tuple<const char*, int, const char*>>{
             {"STAND infofail=1 lasterror=\"Bad list\"", -328689, "Bad list"},
             {"STAND infofail=1 lasterror=VARDO record=-4711", -4711, "Recorded by the stand-in"},
             {"STAND infofail=1 lasterror=VARDO", -328697, "Function name: LoadInfo  Plugin Description : Stand-in StandFF"},
             {"STAND infothrow=1", -328697,
              "Unknown error in FileFormat plugin\nFunction name: LoadInfo  Plugin Description : Stand-in StandFF\n"},
             {"STAND infothrow=int", -328697, "Function name: LoadInfo"},
             {"STAND infofail=1 lasterror=throw", -328697, "Function name: GetLastError"}}) {
        const VDFileIdHandle id = MakeFile("a.sta", content);
        ASSERT_TRUE(Identify(id)) << content;
        EXPECT_FALSE(FINFLoadInfo(Info(), id.Get())) << content;
        ExpectError(code, text, code == -4711 ? "" : "VDFileInfo::LoadInfo");
        EXPECT_FALSE(TestFlag<FIDGetInfoLoaded>(id));
    }
}

TEST_F(FileIdentificationTest, PluginWithoutEnabledTypesIsNotAsked)
{
    for (const char* keyword : {"StandA", "StandRun", "StandSerial", "StandMissing", "StandNobody", "StandNoCreate",
                                "StandB", "StandC", "StandSchedule", "StandMetaFile"})
        Prefer(std::string("Enable_") + keyword, false);
    WriteConfiguration();
    const VDFileIdHandle id = MakeFile("a.sta", "STAND");
    ExpectFailure(Identify(id), -328688);
    FIDSetFileId(id.Get(), StandIn::FileId, 1);
    EXPECT_FALSE(FINFLoadInfo(Info(), id.Get()));
    ExpectReport(-328702, "FileFormat plugin did not load correctly: Stand-in StandFF", "VDFileInfo::LoadInfo");
}

TEST_F(FileIdentificationTest, ExtensionAloneDecidesWithoutTheFile)
{
    Prefer("IdentifyByExtension_StandA", true);
    Prefer("Extensions_StandA", "abc,, sta ,");
    Prefer("IdentifyByExtension_StandB", true);
    Prefer("Extensions_StandB", "Sta");
    Prefer("IdentifyByExtension_StandC", true);
    Prefer("IgnoreExtensions", "tmp,sta");
    WriteConfiguration();
    const VDFileIdHandle id = TestId(folder_.Name("not there.Sta"));
    EXPECT_EQ(ByExtension(id), "found ");
    ASSERT_EQ(NumTests(), 2);
    EXPECT_EQ(FileIdOf(Test(0)), StandIn::FileId);
    EXPECT_EQ(FileIdOf(Test(1)), StandIn::HistFileId);
    EXPECT_EQ(TestText<FIDGetTestTitle>(Test(0)), "not there");
    EXPECT_TRUE(TestFlag<FIDGetIdentByExtension>(Test(0)));

    EXPECT_EQ(ByExtension(TestId("/x/a.tmp")), "ignored ");
    EXPECT_EQ(ByExtension(TestId("/x/a.else")), "");
    EXPECT_EQ(ByExtension(TestId("/x/without")), "");
    EXPECT_EQ(ByExtension(TestId("/x/report.doc")), "found standard ");
    ExpectPlaceholder(Test(0), 28000, "report");
    // The configuration is loaded now. Its types count in the first table only as far as they are written in upper case.
    EXPECT_EQ(ByExtension(TestId("/x/report.pdf")), "found ");
    EXPECT_TRUE(FINFSetEnableIdentifyByExtension(0));
    EXPECT_EQ(ByExtension(id), "");
    EXPECT_EQ(NumTests(), 0);
    ExpectNoError();
}

TEST_F(FileIdentificationTest, OnlyIncludedExtensionsAreIdentifiedIfSoWanted)
{
    Prefer("IdentifyUnknownExtensions", false);
    Prefer("IncludeExtensions", "dat");
    WriteConfiguration();
    EXPECT_EQ(ByExtension(TestId("/x/a.DAT")), "");
    EXPECT_EQ(ByExtension(TestId("/x/a.wav")), "ignored ");
    EXPECT_EQ(ByExtension(TestId("/x/a.doc")), "found ignored standard ");
    const VDFileIdHandle identified = MakeFile("a.sta", "STAND");
    ASSERT_TRUE(Identify(identified));
    EXPECT_EQ(ByExtension(identified), "");
    EXPECT_EQ(Test(0).Get(), identified.Get());
    EXPECT_EQ(ByExtension(TestId(), false), "");
    EXPECT_TRUE(VFErrorCheck(-328686));
}

TEST_F(FileIdentificationTest, FileOfAFolderTestGetsItsChannelAtOnce)
{
    Configure({"OtherFF"});
    Prefer("IdentifyByExtension_StandA", true);
    Prefer("Extensions_StandA", "raw");
    Prefer("IdentifyByExtension_StandFolder", true);
    Prefer("Extensions_StandFolder", "dat");
    WriteConfiguration();
    EXPECT_EQ(ByExtension(MakeFile("run.fsf/speed.raw", "STAND units=km/h")), "found ");
    ASSERT_EQ(NumTests(), 1);
    EXPECT_EQ(TestText<FIDGetChanTitle>(Test(0), 0), "speed");
    EXPECT_EQ(TestText<FIDGetChanUnits>(Test(0), 0), "km/h");
    EXPECT_TRUE(TestFlag<FIDGetIdentified>(Test(0)));
    EXPECT_TRUE(TestFlag<FIDGetInfoLoaded>(Test(0)));
    // This format doesn't look at the file, and the other one can't do without.
    EXPECT_EQ(ByExtension(TestId("/nowhere/run.fsf/torque.dat")), "found ");
    EXPECT_EQ(TestText<FIDGetChanTitle>(Test(0), 0), "torque");
    EXPECT_EQ(ByExtension(TestId("/nowhere/run.fsf/torque.raw"), false), "");
    ExpectError(-328684);
}
