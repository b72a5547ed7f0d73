#include "RegistryTest.h"

#include <sys/stat.h>
#include <unistd.h>

namespace {

class FileIdentificationTest : public RegistryTest
{
protected:
    /// Identifies a file by its extension; gives the outs as a text of "found", "ignored" and "standard".
    std::string ByExtension(const IdHandle& id, bool succeeds = true)
    {
        VDFileIdArray* tests = nullptr;
        char found = 1;
        char ignored = 1;
        char asStandard = 1;
        EXPECT_EQ(FINFIdentifyFileByExtension(Info(), id.get(), &tests, &found, &ignored, &asStandard) != 0, succeeds);
        tests_.reset(tests);
        return std::string(found ? "found " : "") + (ignored ? "ignored " : "") + (asStandard ? "standard " : "");
    }

    static void ExpectPlaceholder(const IdHandle& id, int fileId, const std::string& title)
    {
        int count = 0;
        EXPECT_TRUE(FIDGetNumChans(id.get(), &count));
        ASSERT_EQ(count, 1);
        EXPECT_EQ(Text(id, FIDGetChanTitle, 0), "No Channels");
        EXPECT_EQ(Text(id, FIDGetTestTitle), title);
        EXPECT_EQ(FileIdOf(id), fileId);
        EXPECT_TRUE(Flag(id, FIDGetIdentified));
        EXPECT_TRUE(Flag(id, FIDGetInfoLoaded));
    }

    static void WriteConfiguration() { TestWriteFile(TestSysFolder(), "GeneralFiles.sys", GeneralFilesXml); }
};

}  // namespace

TEST_F(FileIdentificationTest, ClaimedFileIsIdentifiedAndLoaded)
{
    const IdHandle id = MakeFile("a.sta", "STAND subid=2 numbers=4,9 units=mm");
    ASSERT_TRUE(Identify(id, true));
    ASSERT_EQ(NumTests(), 1);
    EXPECT_EQ(Test(0).get(), id.get());
    EXPECT_EQ(FileIdOf(id), StandIn::FileId);
    EXPECT_TRUE(Flag(id, FIDGetIdentified));
    EXPECT_TRUE(Flag(id, FIDGetInfoLoaded));
    EXPECT_FALSE(Flag(id, FIDGetInIdent));
    EXPECT_EQ(Text(id, FIDGetChanTitle, 1), "Channel 9");
    EXPECT_EQ(Text(id, FIDGetChanUnits, 0), "mm");
    // Known already: the file isn't needed any more, and the array goes on.
    unlink(folder_.Name("a.sta").c_str());
    EXPECT_TRUE(Identify(id, true));
    EXPECT_EQ(NumTests(), 2);
}

TEST_F(FileIdentificationTest, OneFileMayHoldSeveralTests)
{
    const IdHandle id = MakeFile("a.sta", "STAND tests=3 channels=2");
    ASSERT_TRUE(Identify(id, true));
    ASSERT_EQ(NumTests(), 3);
    for (int index = 0; index < 3; ++index) {
        const IdHandle test = Test(index);
        int run = 0;
        EXPECT_TRUE(FIDGetRunNumber(test.get(), &run));
        EXPECT_EQ(run, index + 1);
        EXPECT_TRUE(Flag(test, FIDGetIdentified));
        EXPECT_TRUE(Flag(test, FIDGetInfoLoaded));
    }
}

TEST_F(FileIdentificationTest, UnreadableFilesAreReportedWithTheirName)
{
    folder_.Name("folder.sta/entry");
    struct Case
    {
        const char* entry;
        int code;
        const char* text;
    };
    folder_.Write("empty.sta", "");
    for (const auto& [entry, code, text] : {
             Case{"empty.sta", -328687, "File header is blank, so the file format cannot be determined"},
             Case{"missing.sta", -328684, "Error opening file to check file format"},
             Case{"folder.sta", -328684, "Error opening file to check file format"},
         }) {
        const IdHandle id = MakeId(folder_.Name(entry));
        EXPECT_FALSE(Identify(id));
        ExpectErrorText(code, std::string(text) + "\nFilename :" + folder_.Name(entry));
        ExpectError(code, "", "VDFileInfo::IdentifyFile");
        EXPECT_FALSE(Flag(id, FIDGetInIdent));
    }
    EXPECT_FALSE(Identify(IdHandle(FIDCreate())));
    EXPECT_TRUE(VFErrorCheck(-328686) || VFErrorCheck(-328691));
}

TEST_F(FileIdentificationTest, NameOfATestOfSeveralFilesIsReported)
{
    const IdHandle id(FIDCreate());
    FIDSetFilename(id.get(), VTNameFormTestPlusChannels, "/nowhere/test", "dat");
    EXPECT_FALSE(Identify(id));
    ExpectErrorText(-328686, "Error retrieving filename from ID object to check file format\n"
                             "Test name :/nowhere/test   Extension :dat");
}

TEST_F(FileIdentificationTest, UnknownFileIsRefusedEachTime)
{
    WriteConfiguration();
    const IdHandle id = MakeFile("a.xyz", "nobody knows this");
    for (int attempt = 0; attempt < 2; ++attempt) {
        VFErrorClear();
        EXPECT_FALSE(Identify(id));
        ExpectError(-328688, "File format not recognised\nFilename :", "VDFileInfo::IdentifyFile");
        EXPECT_EQ(FileIdOf(id), 0);
        EXPECT_EQ(NumTests(), 0);
    }
}

TEST_F(FileIdentificationTest, WithoutAnyConfigurationTheFirstUnknownFileFailsSilently)
{
    const IdHandle id = MakeFile("a.xyz", "nobody knows this");
    EXPECT_FALSE(Identify(id));
    ExpectNoError();
    EXPECT_FALSE(Identify(id));
    ExpectError(-328688);
}

TEST_F(FileIdentificationTest, PluginsThatFailOrThrowPassTheFileOn)
{
    Configure({"LexadeFF"});
    for (const char* how : {"STAND lexade=decline", "STAND throw=1", "STAND throw=int", "STAND fail=1"}) {
        const IdHandle id = MakeFile("a.sig", how);
        EXPECT_EQ(Identify(id), std::string(how) == "STAND lexade=decline") << how;
        EXPECT_FALSE(Flag(id, FIDGetInIdent));
    }
    const IdHandle id = MakeFile("b.sta", "STAND recurse=1");
    EXPECT_TRUE(Identify(id));
    EXPECT_TRUE(VFErrorCheck(-328700));
}

TEST_F(FileIdentificationTest, TheOwnerOfAnExtensionIsAskedFirstWhereverItStands)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  StandIn::Manifests() + StandIn::Manifest("FileFormat", "Sig", "LexadeFF"));
    const IdHandle owned = MakeFile("a.SIG", "STAND");
    ASSERT_TRUE(Identify(owned));
    EXPECT_EQ(FileIdOf(owned), StandIn::LexadeFileId);
    const IdHandle wrapped = MakeFile("b.sig", "STAND lexade=decline");
    ASSERT_TRUE(Identify(wrapped));
    EXPECT_EQ(FileIdOf(wrapped), StandIn::FileId);
    const IdHandle other = MakeFile("c.sta", "STAND");
    ASSERT_TRUE(Identify(other));
    EXPECT_EQ(FileIdOf(other), StandIn::FileId);
}

TEST_F(FileIdentificationTest, ConfiguredTypeGivesAPlaceholder)
{
    WriteConfiguration();
    const IdHandle id = MakeFile("report.PDF", "nobody reads this");
    ASSERT_TRUE(Identify(id));
    ASSERT_EQ(NumTests(), 1);
    ExpectPlaceholder(Test(0), 28000, "report");
    EXPECT_EQ(FileIdOf(id), 0);
    EXPECT_FALSE(Flag(id, FIDGetIdentified));
    EXPECT_FALSE(Identify(MakeFile("photo.jpg", "of a disabled access type")));
}

TEST_F(FileIdentificationTest, ListsAreIdentifiedAsFarAsAsked)
{
    const ArrayHandle ids(FIACreate());
    for (const char* entry : {"a.sta", "bad.sta", "c.sta"})
        FIAAppendItem(ids.get(), MakeFile(entry, entry[0] == 'b' ? "" : "STAND").get());
    VDFileIdArray* tests = nullptr;
    EXPECT_FALSE(FINFIdentifyFiles(Info(), ids.get(), 0, 0, &tests));
    tests_.reset(tests);
    EXPECT_EQ(NumTests(), 1);
    tests = nullptr;
    EXPECT_TRUE(FINFIdentifyFiles(Info(), ids.get(), 0, 1, &tests));
    tests_.reset(tests);
    EXPECT_EQ(NumTests(), 2);
    ExpectError(-328687);
    EXPECT_FALSE(FINFLoadInfoForFiles(Info(), ids.get(), 0));
    EXPECT_TRUE(FINFLoadInfoForFiles(Info(), ids.get(), 1));
    EXPECT_TRUE(Flag(Test(1), FIDGetInfoLoaded));
}

TEST_F(FileIdentificationTest, LoadInfoFailuresAreReported)
{
    const IdHandle unidentified = MakeFile("u.sta", "STAND");
    EXPECT_FALSE(FINFLoadInfo(Info(), unidentified.get()));
    ExpectError(-328693, "Failed to get file format details\nFilename :", "VDFileInfo::LoadInfo");

    const IdHandle unknown = MakeFile("v.sta", "STAND");
    FIDSetFileId(unknown.get(), 1, 1);
    EXPECT_FALSE(FINFLoadInfo(Info(), unknown.get()));
    ExpectError(-328688, "\nFilename :", "VDFileInfo::LoadInfo");

    struct Case
    {
        const char* content;
        int code;
        const char* text;
    };
    for (const auto& [content, code, text] : {
             Case{"STAND infofail=1 lasterror=\"Bad list\"", -328689, "Bad list"},
             Case{"STAND infofail=1 lasterror=VARDO record=-4711", -4711, "Recorded by the stand-in"},
             Case{"STAND infothrow=1", -328697,
                  "Unknown error in FileFormat plugin\nFunction name: LoadInfo  Plugin Description : Stand-in StandFF\n"},
             Case{"STAND infothrow=int", -328697, "Function name: LoadInfo"},
             Case{"STAND infofail=1 lasterror=throw", -328697, "Function name: GetLastError"},
         }) {
        const IdHandle id = MakeFile("a.sta", content);
        ASSERT_TRUE(Identify(id)) << content;
        EXPECT_FALSE(FINFLoadInfo(Info(), id.get())) << content;
        ExpectError(code, text, code == -4711 ? "" : "VDFileInfo::LoadInfo");
        EXPECT_FALSE(Flag(id, FIDGetInfoLoaded));
    }
}

TEST_F(FileIdentificationTest, PluginWithoutEnabledTypesIsNotAsked)
{
    for (const char* keyword : {"StandA", "StandRun", "StandSerial", "StandMissing", "StandNobody", "StandNoCreate",
                                "StandB", "StandC", "StandSchedule"})
        Prefer(std::string("Enable_") + keyword, false);
    WriteConfiguration();
    const IdHandle id = MakeFile("a.sta", "STAND");
    EXPECT_FALSE(Identify(id));
    ExpectError(-328688);
    FIDSetFileId(id.get(), StandIn::FileId, 1);
    EXPECT_FALSE(FINFLoadInfo(Info(), id.get()));
    ExpectErrorText(-328702, "FileFormat plugin did not load correctly: Stand-in StandFF");
    ExpectError(-328702, "", "VDFileInfo::LoadInfo");
}

TEST_F(FileIdentificationTest, ExtensionAloneDecidesWithoutTheFile)
{
    Prefer("IdentifyByExtension_StandA", true);
    Prefer("Extensions_StandA", "abc,sta");
    Prefer("IdentifyByExtension_StandB", true);
    Prefer("Extensions_StandB", "Sta");
    Prefer("IdentifyByExtension_StandC", true);
    Prefer("IgnoreExtensions", "tmp,sta");
    WriteConfiguration();
    const IdHandle id = MakeId(folder_.Name("not there.Sta"));
    EXPECT_EQ(ByExtension(id), "found ");
    ASSERT_EQ(NumTests(), 2);
    EXPECT_EQ(FileIdOf(Test(0)), StandIn::FileId);
    EXPECT_EQ(FileIdOf(Test(1)), StandIn::HistFileId);
    EXPECT_EQ(Text(Test(0), FIDGetTestTitle), "not there");
    EXPECT_FALSE(Flag(Test(0), FIDGetIdentified));
    EXPECT_TRUE(Flag(Test(0), FIDGetIdentByExtension));

    EXPECT_EQ(ByExtension(MakeId("/x/a.tmp")), "ignored ");
    EXPECT_EQ(ByExtension(MakeId("/x/a.else")), "");
    EXPECT_EQ(ByExtension(MakeId("/x/report.doc")), "found standard ");
    ExpectPlaceholder(Test(0), 28000, "report");
    // The configuration is loaded now. Its types count in the first table only as far as they are written in upper case.
    EXPECT_EQ(ByExtension(MakeId("/x/report.pdf")), "found ");
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
    EXPECT_EQ(ByExtension(MakeId("/x/a.DAT")), "");
    EXPECT_EQ(ByExtension(MakeId("/x/a.wav")), "ignored ");
    EXPECT_EQ(ByExtension(MakeId("/x/a.doc")), "found ignored standard ");
    const IdHandle identified = MakeFile("a.sta", "STAND");
    ASSERT_TRUE(Identify(identified));
    EXPECT_EQ(ByExtension(identified), "");
    EXPECT_EQ(Test(0).get(), identified.get());
    EXPECT_EQ(ByExtension(IdHandle(FIDCreate()), false), "");
    EXPECT_TRUE(VFErrorCheck(-328686) || VFErrorCheck(-328691));
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
    EXPECT_EQ(Text(Test(0), FIDGetChanTitle, 0), "speed");
    EXPECT_EQ(Text(Test(0), FIDGetChanUnits, 0), "km/h");
    EXPECT_TRUE(Flag(Test(0), FIDGetIdentified));
    EXPECT_TRUE(Flag(Test(0), FIDGetInfoLoaded));
    // This format doesn't look at the file, and the other one can't do without.
    EXPECT_EQ(ByExtension(MakeId("/nowhere/run.fsf/torque.dat")), "found ");
    EXPECT_EQ(Text(Test(0), FIDGetChanTitle, 0), "torque");
    EXPECT_EQ(ByExtension(MakeId("/nowhere/run.fsf/torque.raw"), false), "");
    ExpectError(-328684);
}
