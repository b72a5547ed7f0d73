#include "plugins/StandIn.h"
#include "support/TestFileId.h"

// What a test's names mean on disk: those of outputs, and of channels, with size and existence.

TEST(OutputName, FollowsTheSource)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", StandIn::Manifests());
    struct Row
    {
        int form;
        const char* text;
        const char* file;  ///< null: fails with the code
        int code = 0;
        int fileId = StandIn::FileId;  ///< of the target
    };
    const Row rows[] = {
        {VTOutputSameName, "", "/d/road_r02_.dat"},
        {VTOutputSuffix, "_out", "/d/road_r02__out.dat"},
        {VTOutputPrefix, "new", "/d/newroad_r02_.dat"},
        {VTOutputNewFolder, "/e", "/e/road_r02_.dat"},
        {VTOutputNewName, "x", "/d/x.dat"},
        {VTOutputNewExtension, "abc", "/d/road_r02_.abc"},
        {VTOutputNewExtension, "", nullptr, -328591},
        {VTOutputNewExtension, "dat", nullptr, -328591},
        {VTOutputPrefix, "", nullptr, -328596},
        {VTOutputSuffix, "", nullptr, -328592},
        {VTOutputNewFolder, "", nullptr, -328593},
        {VTOutputNewName, "", nullptr, -328602},
        {6, "", nullptr, -328594},
        // The type of another format has its own extension, and one of several files a stem that ends in "_".
        {VTOutputNewExtension, "", "/d/road_r02_.sta", 0, StandIn::MetaFileId},
        {VTOutputSameName, "", "/d/road_r02_", 0, StandIn::ChannelsFileId},
    };
    VDFileIdHandle source = TestId("/d/road.dat");
    ASSERT_TRUE(FIDSetFileId(source.Get(), StandIn::FileId, 1) && FIDSetRunNumber(source.Get(), 2));
    for (const Row& row : rows) {
        VDFileIdHandle target = TestId();
        ASSERT_TRUE(FIDSetFileId(target.Get(), row.fileId, 1));
        const bool made = FIDCreateOutputFromId(target.Get(), source.Get(), 0, row.form, row.text) != 0;
        ASSERT_EQ(made, row.file != nullptr) << row.form << row.text;
        if (made) {
            EXPECT_EQ(TestFilename(target), row.file);
        } else {
            ExpectError(row.code, "", "VDFileId::CreateOutputFromId");
        }
    }
    // What stands behind a dot in a stem tells tests apart, and is no extension.
    source = TestStemId("/d/road.v2", "dat");
    VDFileIdHandle target = TestId();
    ASSERT_TRUE(FIDSetFileId(source.Get(), StandIn::FileId, 1) && FIDSetFileId(target.Get(), StandIn::FileId, 1));
    ASSERT_TRUE(FIDCreateOutputFromId(target.Get(), source.Get(), 0, VTOutputSameName, ""));
    EXPECT_EQ(TestFilename(target), "/d/road.v2.dat");
    EXPECT_TRUE(TestFlag<FIDGetIdentified>(target) && TestFlag<FIDGetInfoLoaded>(target));
}

TEST(OutputName, ChannelsStayInTheirFolder)
{
    VDFileIdHandle id = TestStemId("/d/run.fsf", "fsf");
    TestAddChannels(id, {1});
    ASSERT_TRUE(FIDSetFolderTestManual(id.Get(), 1) && FIDSetOriginalExtension(id.Get(), "raw"));
    VDString name;
    for (const char* title : {"/etc/passwd", "../up", "..", ".", "a/b", "a\x01", "\x7f"}) {
        ASSERT_TRUE(FIDSetChanTitle(id.Get(), 0, title));
        ExpectFailure(FIDGetChanFilename(id.Get(), 0, &name), -327704, "channel 1 leads out", "VDFileId::GetChanFilename");
    }
    ASSERT_TRUE(FIDSetChanTitle(id.Get(), 0, "a..b"));
    EXPECT_EQ(TestText<FIDGetChanFilename>(id, 0), "/d/run.fsf/a..b.raw");
    ASSERT_TRUE(FIDSetOriginalExtension(id.Get(), "/../x"));
    ExpectFailure(FIDGetChanFilename(id.Get(), 0, &name), -327704, "channel 1 leads out");
    id = TestStemId("/d/run", "/../x");
    TestAddChannels(id, {1});
    ExpectFailure(FIDGetChanFilename(id.Get(), 0, &name), -327704, "channel 1 leads out");
}

TEST(OutputName, SizeAndExistenceOfTests)
{
    const TestFolder folder;
    folder.Write("road01.dat", "12345");
    VDFileIdHandle id = TestStemId(folder.Name("road"), "dat");
    std::uint64_t size = 99;
    EXPECT_FALSE(TestFlag<FIDDoesTestExist>(id, char{0}));
    TestAddChannels(id, {1, 2});
    EXPECT_TRUE(TestFlag<FIDDoesTestExist>(id, char{1}));
    ExpectFailure(FIDGetTestFileSize(id.Get(), &size), -328600, "Filename : " + folder.Name("road02.dat"),
                  "VDFileId::GetTestFileSize");
    folder.Write("road02.dat", "678");
    EXPECT_EQ((TestGet<std::uint64_t, FIDGetTestFileSize>(id)), 8U);
    EXPECT_EQ((TestGet<std::uint64_t, FIDGetTestFileSize>(TestId(folder.Name("road01.dat")))), 5U);
    EXPECT_TRUE(TestFlag<FIDDoesTestExist>(TestId(folder.Name("road02.dat")), char{0}));
    EXPECT_FALSE(TestFlag<FIDDoesTestExist>(TestId(folder.Path()), char{0}));
    ASSERT_TRUE(FIDSetAllChanSelect(id.Get(), 0));
    EXPECT_FALSE(TestFlag<FIDDoesTestExist>(id, char{1}));
    ASSERT_TRUE(FIDSetDataSource(id.Get(), 1));
    EXPECT_TRUE(TestFlag<FIDDoesTestExist>(id, char{1}));
}
