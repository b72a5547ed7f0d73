#include "support/TestFileId.h"

#include "daxlib/VDFileIdPreferences.h"
#include "plugins/StandIn.h"

/// File ids that fetch what they lack through a FileFormat plug-in.
class LazyStep : public testing::Test
{
protected:
    LazyStep() { TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests()); }

    /// An id of a stand-in file that is known by its extension only.
    VDFileIdHandle MakeId(const std::string& script) const
    {
        VDFileIdHandle id = TestId(folder_.Write("a.sta", "STAND " + script + "\n"));
        FIDSetIdentByExtension(id.Get(), 1);
        FIDSetFileId(id.Get(), 77, 0);
        return id;
    }

    TestFolder folder_;
};

TEST_F(LazyStep, IdentifiesAndLoadsOnFirstUse)
{
    VDFileIdHandle id = MakeId("channels=3");
    EXPECT_EQ(0, TestFlag<FIDGetIdentified>(id));
    TestInt<FIDGetOpSys>(id);
    EXPECT_EQ(1, TestFlag<FIDGetIdentified>(id));
    EXPECT_EQ(0, TestFlag<FIDGetInfoLoaded>(id)) << "nobody asked for channels";
    EXPECT_EQ(3, TestInt<FIDGetNumChans>(id));
    EXPECT_EQ(0, TestFlag<FIDGetIdentByExtension>(id));

    VDFileIdHandle quiet = TestId(folder_.Name("a.sta"));
    FIDSetFileId(quiet.Get(), StandIn::FileId, 1);
    EXPECT_EQ(0, TestInt<FIDGetNumChans>(quiet)) << "not allowed to load";
    FIDSetLoadInfoWhenNeeded(quiet.Get());
    EXPECT_EQ(3, TestInt<FIDGetNumChans>(quiet));
}

TEST_F(LazyStep, DoesWhatWasPutOff)
{
    VDFileIdHandle id = MakeId("numbers=3,1,7");
    FIDSortChans(id.Get(), 0);
    FIDSetAllChanSelect(id.Get(), 0);
    TestInt<FIDGetOpSys>(id);
    EXPECT_EQ((std::vector<long>{7, 3, 1}), TestNumbers(id)) << "the first question was not for the channels";
    EXPECT_EQ(0, TestFlag<FIDGetSomeChansSelected>(id));
    FIDSortChans(id.Get(), 1);
    FIDSetChanNumber(id.Get(), 0, 99);
    EXPECT_EQ((std::vector<long>{99, 3, 7}), TestNumbers(id)) << "now there is a list, and it is sorted at once";
}

TEST_F(LazyStep, WaitsOnlyWhereChannelsAreLoaded)
{
    // An id that is filled by hand: there was nothing to select, and nothing is put off for what comes later.
    VDFileIdHandle output = TestId("/d/out.sta");
    FIDSetFileId(output.Get(), StandIn::FileId, 1);
    FIDSetAllChanSelect(output.Get(), 0);
    FIDSortChans(output.Get(), 1);
    TestAddChannels(output, {2, 1});
    FIDSetInfoLoaded(output.Get(), 1);
    EXPECT_EQ((std::vector<long>{2, 1}), TestNumbers(output));
    EXPECT_EQ(1, TestFlag<FIDGetAllChansSelected>(output));

    // A load that somebody asks for is waited for, and a later request counts more.
    const VDFileInfoHandle info(FINFCreate());
    for (const bool selected : {false, true}) {
        VDFileIdHandle id = TestId(folder_.Write("a.sta", "STAND numbers=3,1,7\n"));
        FIDSetFileId(id.Get(), StandIn::FileId, 1);
        FIDSetAllChanSelect(id.Get(), 0);
        FIDSortChans(id.Get(), 1);
        EXPECT_NE(0, FINFLoadInfo(info.Get(), id.Get()));
        FIDSetChanSelect(id.Get(), 2, selected);
        if (selected)
            FIDSortChans(id.Get(), 0);
        EXPECT_EQ((selected ? std::vector<long>{7, 3, 1} : std::vector<long>{1, 3, 7}), TestNumbers(id));
        EXPECT_EQ(selected, TestFlag<FIDGetSomeChansSelected>(id));
    }
}

TEST_F(LazyStep, AFailedStepLeavesTheIdAsItWas)
{
    VDFileIdHandle several = MakeId("tests=2");
    int count = -1;
    for (int attempt = 0; attempt < 2; ++attempt) {
        VFErrorClear();
        EXPECT_EQ(0, FIDGetNumChans(several.Get(), &count));
        ExpectError(-328612, "\nFile: " + folder_.Name("a.sta") + " (sta)", "VDFileId::CheckIdentLoad");
    }
    int fileId = 0;
    FIDGetFileId(several.Get(), &fileId, nullptr);
    EXPECT_EQ(77, fileId);

    VDFileIdHandle broken = MakeId("infofail=1");
    FIDSortChans(broken.Get(), 1);
    EXPECT_EQ(0, FIDGetNumChans(broken.Get(), &count));
    ExpectError(-328689, "Stand-in failure");
    folder_.Write("a.sta", "STAND numbers=2,1\n");
    EXPECT_EQ((std::vector<long>{1, 2}), TestNumbers(broken)) << "the next question tries again";
}

TEST_F(LazyStep, AsksTheFormat)
{
    VDFileIdHandle id = TestId();
    FIDSetFileId(id.Get(), StandIn::FileId, 1);
    for (const auto& [name, extension, whole] :
         {std::tuple("/d/out", "", "/d/out.sta"), {"/d/out", "xyz", "/d/out.xyz"}, {"/d/out.abc", "xyz", "/d/out.abc"}}) {
        EXPECT_NE(0, FIDSetTestname(id.Get(), name, "", extension));
        EXPECT_EQ(whole, TestFilename(id));
    }
    FIDSetVer(id.Get(), 0, 2);
    EXPECT_EQ("Stand-in type StandA Ver 0.2", TestText<FIDGetFileTypeDesc>(id, char(1)));
    EXPECT_EQ("Stand-in type StandA", TestText<FIDGetFileTypeDesc>(id, char(0)));
    VDString accessClass;
    VDString description;
    EXPECT_NE(0, FIDGetAccessInfo(id.Get(), nullptr, &accessClass, &description));
    EXPECT_STREQ(StandIn::ClassId, accessClass);
    EXPECT_STREQ("Time series", description);

    FIDSetFileId(id.Get(), StandIn::ChannelsFileId, 1);
    EXPECT_NE(0, FIDSetTestname(id.Get(), "/d/out", "", ""));
    EXPECT_EQ("/d/out", TestFilename(id));
    EXPECT_EQ(VTNameFormTestPlusChannels, TestInt<FIDGetNameForm>(id));
    FIDSetFileId(id.Get(), 4711, 1);
    EXPECT_EQ(0, FIDSetTestname(id.Get(), "/d/other", "", ""));
    ExpectError(-328692);
    EXPECT_EQ("/d/out", TestFilename(id)) << "a failure before the name is set leaves it";
}

TEST_F(LazyStep, WritesDescriptors)
{
    VDFileIdHandle id = TestId("/data/road.dat");
    FIDSetFileId(id.Get(), StandIn::FileId, StandIn::SubPlain);
    TestAddChannels(id, {10, 1, 2, 3, 7, 9});
    FIDSetChanSelect(id.Get(), 4, 0);
    EXPECT_EQ("/data/road.dat;ats;c1-3,7,9,10", TestDescriptor(id, VTTestDescAll));
    FIDSetRunNumber(id.Get(), 2);
    FIDSetModeNumber(id.Get(), 1, nullptr);
    FIDSetExtraMetadataFilename(id.Get(), "/m/extra.txt");
    FIDSetAssociatedFilename(id.Get(), "** NO NAME **");
    TestGet<VDFileIdPreferences*, FIDGetPreferences>(id, char(1))->SetString("Gain", "2");
    EXPECT_EQ("/data/road.dat;r2;m1;d/m/extra.txt;ats;c1-3,9,10;pGain=2", TestDescriptor(id, VTTestDescSelected));
    FIDSetAllChanSelect(id.Get(), 0);
    FIDSetAssociatedFilename(id.Get(), "/m/b.txt");
    EXPECT_EQ("/data/road.dat;r2;m1;d/m/extra.txt;n/m/b.txt;ats;pGain=2", TestDescriptor(id, VTTestDescRelative));

    VDFileIdHandle hist = TestId("/data/hist.dat");
    FIDSetFileId(hist.Get(), StandIn::HistFileId, 1);
    TestAddChannels(hist, {1, 2, 1});
    FIDSetChanNumber(hist.Get(), 0, 2);
    EXPECT_EQ("/data/hist.dat;r-1;ahs;c2", TestDescriptor(hist, VTTestDescSelected)) << "doubles are told once";

    VDFileIdHandle stem = TestStemId("/data/road", "dat");
    FIDSetFileId(stem.Get(), StandIn::ChannelsFileId, 1);
    EXPECT_EQ("/data/road;xdat;ats", TestDescriptor(stem, VTTestDescSelected));

    VDFileIdHandle unknown = TestId("/data/u.dat");
    TestAddChannels(unknown, {1});
    EXPECT_EQ("/data/u.dat", TestDescriptor(unknown, VTTestDescAll)) << "no file type, no channel field";
    FIDSetFileId(unknown.Get(), 0, 3);
    EXPECT_EQ("/data/u.dat;c1", TestDescriptor(unknown, VTTestDescAll));

    VFErrorClear();
    {
        const VDErrorMute mute;
        EXPECT_EQ("/data/u.dat;c1", TestDescriptor(unknown, VTTestDescAll)) << "whether or not failures are recorded";
    }
    ExpectNoError();

    VDString text;
    EXPECT_EQ(0, FIDGetTestDescriptor(unknown.Get(), 9, &text));
    ExpectReport(-328608, "Invalid Type argument to VDFileId::GetTestDescriptor", "VDFileId::GetTestTitle");
}

TEST_F(LazyStep, DescriptorsOfManyChannelsAndOfTheFormatsOwn)
{
    VDFileIdHandle many = TestId("/data/many.dat");
    FIDSetFileId(many.Get(), StandIn::FileId, 1);
    for (int number = 10001; number > 0; --number)
        TestAddChannels(many, {number});
    EXPECT_EQ("/data/many.dat;ats;c2-10001", TestDescriptor(many, VTTestDescAll)) << "the first 10000 of the list";

    VDFileIdHandle own = MakeId("channels=1 desc=vdindex:7");
    EXPECT_EQ("vdindex:7", TestDescriptor(own, VTTestDescSelected));
    EXPECT_EQ("a", TestDescriptor(own, VTTestDescShortName)) << "short names are the library's own";
    VDFileIdHandle failing = MakeId("channels=1 descfail=1");
    VDString text;
    EXPECT_EQ(0, FIDGetTestDescriptor(failing.Get(), VTTestDescAll, &text));
    ExpectError(-328689, "Stand-in failure");
}
