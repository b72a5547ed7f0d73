#include "support/TestFileId.h"

#include "daxlib/VDChanSep.h"
#include "daxlib/VDFileIdPreferences.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VDPreferenceSystem.h"
#include "vdxml/VDUXmlHelper.h"

#include <algorithm>
#include <cstdlib>
#include <random>

namespace {

constexpr int Storage = DaxStorageFileId;
constexpr int TemporarySubId = 13;

bool Exists(const std::string& filename)
{
    return VDFileSystem::FileExists(filename.c_str());
}

VDFileIdHandle TemporaryId(const std::string& filename)
{
    VDFileIdHandle id = TestId(filename);
    FIDSetFileId(id.Get(), Storage, TemporarySubId);
    return id;
}

}  // namespace

TEST(FileId, NewAndClearedIdsDifferInTwoValues)
{
    VDFileIdHandle id = TestId();
    EXPECT_EQ(101, TestInt<FIDGetOpSys>(id));
    for (const auto set : {FIDSetIdentByExtension, FIDSetInIdent, FIDSetIdentified, FIDSetInfoLoaded})
        set(id.Get(), 1);
    FIDSetRunNumber(id.Get(), 3);
    TestAddChannels(id, {1});
    EXPECT_EQ(0, TestFlag<FIDGetIdentByExtension>(id)) << "identified and loaded";
    EXPECT_NE(0, FIDClear(id.Get()));
    EXPECT_EQ(1, TestFlag<FIDGetIdentByExtension>(id));
    EXPECT_EQ(1, TestFlag<FIDGetLoadInfoWhenNeeded>(id));
    EXPECT_EQ(1, TestFlag<FIDGetInIdent>(id));
    EXPECT_EQ(-1, TestInt<FIDGetRunNumber>(id));
    FIDSetIdentByExtension(id.Get(), 0);
    EXPECT_EQ(0, TestInt<FIDGetOpSys>(id));
    EXPECT_EQ(0, TestInt<FIDGetNumChans>(id));
}

TEST(FileId, SetFilenameMakesDiskNamesAbsolute)
{
    const std::string folder = VDFileSystem::GetCurDirectory().Str();
    VDFileIdHandle id = TestId("a.dat");
    VDString extension;
    EXPECT_EQ(folder + "/a.dat", TestFilename(id, &extension));
    EXPECT_STREQ("dat", extension);

    for (const char* const name : {"/data/road", "/data/road.dat"}) {
        FIDSetFilename(id.Get(), VTNameFormFile, name, "dat");
        EXPECT_EQ("/data/road.dat", TestFilename(id)) << "the extension goes behind the name once";
    }

    FIDSetFilename(id.Get(), VTNameFormTestPlusChannels, "road", "dat");
    EXPECT_EQ(folder + "/road", TestFilename(id, &extension));
    EXPECT_STREQ("dat", extension);

    FIDSetDataSource(id.Get(), VTDataSourceStore1);
    FIDSetFilename(id.Get(), VTNameFormFile, "x.mes/a.sig", "");
    EXPECT_EQ("x.mes/a.sig", TestFilename(id, &extension));
    EXPECT_STREQ("", extension);
}

TEST(FileId, FailedSetFilenameLeavesNoName)
{
    VDFileIdHandle id = TestStemId("/data/road", "dat");
    EXPECT_EQ(0, FIDSetFilename(id.Get(), 2, "/data/x.dat", ""));
    ExpectReport(-328582, "Invalid NameForm argument", "VDFileId::SetFilename");
    VDString extension = "x";
    EXPECT_EQ("", TestFilename(id, &extension));
    EXPECT_STREQ("", extension);
    EXPECT_EQ(0, FIDSetFilename(id.Get(), 0, "", "dat"));
    ExpectErrorText(-328583, "Blank Filename argument");
    EXPECT_EQ(0, FIDSetFilename(id.Get(), 0, nullptr, nullptr));
}

TEST(FileId, FolderTestsAreKnownByExtensions)
{
    const std::vector<std::pair<const char*, int>> cases = {
        {"/d/run.mes/speed.sig", 1}, {"/d/RUN.MES/speed.SIG", 1}, {"/d/run.mes/speed.dat", 0}, {"/d/run.mes", 1},
        {"/d/run.xyz/a.mes", 0},     {"/d/run.fsf/a.raw", 1},     {"/d/run.fsf/noext", 0},     {"/a.sig", 1}};
    VDFileIdHandle id = TestId();
    for (const auto& [name, expected] : cases) {
        FIDSetFilename(id.Get(), VTNameFormFile, name, "");
        EXPECT_EQ(expected, TestFlag<FIDGetFolderTest>(id)) << name;
    }
    FIDSetFolderTestManual(id.Get(), 0);
    EXPECT_EQ(VTNameFormFile, TestInt<FIDGetNameForm>(id));
    FIDSetFolderTest(id.Get());
    EXPECT_EQ(1, TestFlag<FIDGetFolderTest>(id));
    FIDSetFolderTestManual(id.Get(), 1);
    EXPECT_EQ(VTNameFormTestPlusChannels, TestInt<FIDGetNameForm>(id));
    EXPECT_EQ(0, FIDGetOriginalExtension(id.Get(), nullptr));
    ExpectNoError();
}

TEST(FileId, RefusesValuesOutOfRange)
{
    VDFileIdHandle id = TestId("/data/road.dat");
    EXPECT_EQ(0, FIDSetOpSys(id.Get(), 0));
    ExpectReport(-328584, "Invalid operating system code\nFile stem :/data/road.dat", "VDFileId::SetOpSys");
    EXPECT_EQ(0, FIDSetNumChanDigits(id.Get(), 11));
    ExpectErrorText(-328607, "Invalid argument to VDFileId::SetNumChanDigits");
    EXPECT_EQ(2, TestInt<FIDGetNumChanDigits>(id));
    EXPECT_EQ(0, FIDSetDataSource(id.Get(), -1));
    ExpectErrorText(-328610, "Invalid argument to VDFileId::SetDataSource");
    FIDSetFileId(id.Get(), 0, 7);
    EXPECT_EQ(0, FIDSetTestname(id.Get(), "x", "", ""));
    ExpectError(-328601, "Must call SetFileId before SetTestname", "VDFileId::SetTestname");

    EXPECT_EQ(0, FIDGetChanIndex(id.Get(), 9, nullptr));
    ExpectErrorText(-328587, "Channel 9 is not available in this fileset\nFile stem :/data/road.dat");
    TestAddChannels(id, {5});
    EXPECT_EQ(0, FIDSetChanTitle(id.Get(), -1, "x"));
    ExpectReport(-328595, "Index out of range \nFile stem :/data/road.dat", "VDFileId::SetChanTitle");
    VDString text;
    EXPECT_EQ(0, FIDGetChanUnits(id.Get(), 1, &text));
    ExpectError(-328595, "", "VDFileId::GetChanUnits");
    EXPECT_EQ(0, FIDRemoveChan(id.Get(), 1));
    ExpectError(-328595, "", "VDFileId::RemoveChan");
}

TEST(FileId, ChannelListsTakeCleanTitlesAndKeepWhatFailuresLeave)
{
    VDFileIdHandle id = TestId();
    TestAddChannels(id, {3, 1, 7, 3});
    FIDSetChanNumber(id.Get(), 1, 7);
    FIDSortChans(id.Get(), 0);
    EXPECT_EQ((std::vector<long>{7, 7, 3}), TestNumbers(id));
    int index = -1;
    for (int round = 0; round < 2; ++round) {
        const VDString title = "Speed\r\n";
        EXPECT_NE(0, FIDAddChannelByTitle(id.Get(), &title, &index));
        EXPECT_EQ(3, index);
    }
    EXPECT_EQ("Speed  ", TestText<FIDGetChanTitle>(id, 3));
    const VDString other = "Other";
    EXPECT_EQ(0, FIDAddChannel(id.Get(), 50, nullptr));
    EXPECT_EQ(0, FIDAddChannelByTitle(id.Get(), &other, nullptr));
    EXPECT_EQ(4, TestInt<FIDGetNumChans>(id)) << "a failure adds nothing";
    FIDSetInfoLoaded(id.Get(), 1);
    FIDRemoveAllChans(id.Get());
    EXPECT_EQ(0, TestFlag<FIDGetInfoLoaded>(id));
}

TEST(FileId, ChannelListsKeepTheirOrderThroughAnyChanges)
{
    struct Channel
    {
        int number;
        std::string title;
        bool selected;
    };
    std::mt19937 random(1);
    const auto below = [&random](std::size_t limit) { return static_cast<int>(random() % limit); };
    VDFileIdHandle id = TestId();
    std::vector<Channel> expected;
    const auto find = [&](auto member, const auto& value) {
        return static_cast<int>(std::ranges::find(expected, value, member) - expected.begin());
    };
    for (int step = 0; step < 4000; ++step) {
        const int count = static_cast<int>(expected.size());
        const int at = below(expected.size() + 1);
        const int number = below(60);
        const std::string title = "T" + std::to_string(below(60));
        int index = -1;
        switch (const int action = below(step % 500 < 250 ? 6 : 12)) {
        case 0:
        case 1:
            FIDAddChannel(id.Get(), number, &index);
            EXPECT_EQ(find(&Channel::number, number), index);
            if (index == count)
                expected.push_back({number, "", true});
            break;
        case 2:
        case 3: {
            const VDString text(title);
            FIDAddChannelByTitle(id.Get(), &text, &index);
            EXPECT_EQ(find(&Channel::title, title), index);
            if (index == count)
                expected.push_back({count + 1, title, true});
            break;
        }
        default:
            if (at == count)
                break;
            Channel& channel = expected[static_cast<std::size_t>(at)];
            if (action == 4) {
                FIDSetChanNumber(id.Get(), at, channel.number = number);
                FIDSetChanSelect(id.Get(), at, channel.selected = number % 5 != 0);
            } else if (action == 5) {
                FIDSetChanTitle(id.Get(), at, (channel.title = title).c_str());
            } else {
                FIDRemoveChan(id.Get(), at);
                expected.erase(expected.begin() + at);
            }
        }
        if (step % 97 == 0) {
            FIDSortChans(id.Get(), 1);
            std::ranges::stable_sort(expected, {}, &Channel::number);
        }
        if (step % 201 == 200) {
            FIDRemoveAllSelectedChans(id.Get(), 0);
            std::erase_if(expected, [](const Channel& each) { return !each.selected; });
        }
        ASSERT_EQ(static_cast<int>(expected.size()), TestInt<FIDGetNumChans>(id)) << step;
        EXPECT_EQ(std::ranges::any_of(expected, &Channel::selected), TestFlag<FIDGetSomeChansSelected>(id));
        EXPECT_EQ(std::ranges::all_of(expected, &Channel::selected), TestFlag<FIDGetAllChansSelected>(id));
        if (step % 10 > 0)
            continue;
        const std::vector<long> numbers = TestNumbers(id);
        for (int i = 0; i < static_cast<int>(expected.size()); ++i) {
            const Channel& channel = expected[static_cast<std::size_t>(i)];
            ASSERT_EQ(channel.number, numbers[static_cast<std::size_t>(i)]) << step;
            ASSERT_EQ(channel.title, TestText<FIDGetChanTitle>(id, i)) << step;
            ASSERT_EQ(find(&Channel::number, channel.number), TestInt<FIDGetChanIndex>(id, channel.number)) << step;
        }
    }
}

TEST(FileId, SelectionTextIsBounded)
{
    VDFileIdHandle id = TestId();
    EXPECT_EQ("None", TestText<FIDGetChanSelText>(id, 100));
    TestAddChannels(id, {10, 9, 7, 4, 3, 2, 1, 20, 30});
    EXPECT_EQ("All", TestText<FIDGetChanSelText>(id, 0));
    for (const int index : {3, 7})
        FIDSetChanSelect(id.Get(), index, 0);
    EXPECT_EQ("1-3,7,9,10,30", TestText<FIDGetChanSelText>(id, 13));
    EXPECT_EQ("7 Selected", TestText<FIDGetChanSelText>(id, 12));
    EXPECT_EQ("7 Selected", TestText<FIDGetChanSelText>(id, -100));
    EXPECT_EQ("1-3,7,9,10,30", TestText<FIDGetChanSelText>(id, 0x7fffffff));
}

TEST(FileId, ChannelFilenames)
{
    VDFileIdHandle id = TestId();
    VDString name;
    EXPECT_EQ(0, FIDGetChanFilename(id.Get(), 0, &name));
    ExpectError(-328597, "Filename has not been set in file ID object", "VDFileId::GetChanFilename");
    FIDSetFilename(id.Get(), VTNameFormFile, "/d/a.dat", "");
    EXPECT_EQ("/d/a.dat", TestText<FIDGetChanFilename>(id, 99));

    FIDSetFilename(id.Get(), VTNameFormTestPlusChannels, "/d/road", "dat");
    EXPECT_EQ(0, FIDGetChanFilename(id.Get(), 0, &name));
    ExpectError(-328598, "No channels configured in file id object");
    TestAddChannels(id, {7, 123});
    EXPECT_EQ("/d/road07.dat", TestText<FIDGetChanFilename>(id, 0));
    EXPECT_EQ("/d/road123.dat", TestText<FIDGetChanFilename>(id, 1));
    EXPECT_EQ(0, FIDGetChanFilename(id.Get(), 2, &name));
    ExpectError(-328595, "", "VDFileId::GetChanNumber");

    // A folder test names its files after the channels.
    FIDSetFolderTestManual(id.Get(), 1);
    FIDSetOriginalExtension(id.Get(), "qac");
    EXPECT_EQ("/d/road/Channel_7.qac", TestText<FIDGetChanFilename>(id, 0));
    FIDSetChanTitle(id.Get(), 0, "Speed");
    EXPECT_EQ("/d/road/Speed.qac", TestText<FIDGetChanFilename>(id, 0));
    FIDSetChanFilename(id.Get(), 0, "Speed_2");
    EXPECT_EQ("/d/road/Speed_2.qac", TestText<FIDGetChanFilename>(id, 0));
}

TEST(FileId, FolderTestsFindTheExtensionOfTheirFiles)
{
    const TestFolder folder;
    folder.Write("run.fsf/Speed.raw", "x");
    VDFileIdHandle id = TestStemId(folder.Name("run.fsf"), "fsf");
    FIDSetFolderTestManual(id.Get(), 1);
    TestAddChannels(id, {1});
    FIDSetChanTitle(id.Get(), 0, "Speed");
    FIDSetFileId(id.Get(), 2400, 1);
    EXPECT_EQ(folder.Name("run.fsf/Speed.raw"), TestText<FIDGetChanFilename>(id, 0));
    EXPECT_EQ("raw", TestText<FIDGetOriginalExtension>(id));
    FIDSetOriginalExtension(id.Get(), "");
    FIDSetFileId(id.Get(), 2200, 1);
    EXPECT_EQ(folder.Name("run.fsf/Speed.sig"), TestText<FIDGetChanFilename>(id, 0));
}

TEST(FileId, ComparesNames)
{
    VDFileIdHandle left = TestId("/d/a.dat");
    VDFileIdHandle right = TestId("/d/../d/a.dat");
    FIDSetRunNumber(left.Get(), 1);
    FIDSetRunNumber(right.Get(), 2);
    const auto same = [&] {
        char result = 0;
        EXPECT_NE(0, FIDCompareTestNames(left.Get(), right.Get(), &result));
        return result != 0;
    };
    EXPECT_TRUE(same()) << "runs count only where both are identified";
    FIDSetFileId(left.Get(), Storage, 4);
    FIDSetFileId(right.Get(), Storage, 11);
    EXPECT_FALSE(same());
    FIDSetRunNumber(right.Get(), 1);
    EXPECT_TRUE(same()) << "sub ids of one family";
    FIDSetFileId(right.Get(), Storage, 7);
    EXPECT_FALSE(same());
    FIDSetFileId(right.Get(), Storage, 4);
    for (const auto& id : {left.Get(), right.Get()})
        FIDSetDataSource(id, VTDataSourceStore2);
    FIDSetObjectReference(left.Get(), "x");
    EXPECT_FALSE(same());
    for (const auto& id : {left.Get(), right.Get()})
        FIDSetDataSource(id, VTDataSourceStore3);
    EXPECT_TRUE(same()) << "only stores 1 and 2 have object references";
}

TEST(FileId, CopyMasks)
{
    VDFileIdHandle source = TestId("/d/a.dat");
    FIDSetFileId(source.Get(), 500, 2);
    FIDSetVer(source.Get(), 3, 4);
    FIDSetOpSys(source.Get(), 1);
    FIDSetTestTitle(source.Get(), "Title");
    FIDSetRunNumber(source.Get(), 5);
    FIDSetBurstNumber(source.Get(), 6);
    FIDSetModeNumber(source.Get(), 7, "Idle");
    FIDSetInfoLoaded(source.Get(), 1);
    TestAddChannels(source, {1, 2, 3});
    FIDSetChanSelect(source.Get(), 1, 0);
    EXPECT_EQ(nullptr, (TestGet<VDFileIdPreferences*, FIDGetPreferences>(source, char(0))));
    TestGet<VDFileIdPreferences*, FIDGetPreferences>(source, char(1))->SetInt("Gain", 2);

    VDFileIdHandle target = TestId("/d/b.dat");
    TestAddChannels(target, {9});
    EXPECT_NE(0, FIDCopy(target.Get(), source.Get(), 0));
    EXPECT_EQ("/d/b.dat", TestFilename(target));
    EXPECT_EQ((std::vector<long>{1, 3}), TestNumbers(target));
    EXPECT_EQ(0, TestFlag<FIDGetIdentified>(target));
    EXPECT_EQ(1, TestFlag<FIDGetInfoLoaded>(target));
    int number = -9;
    FIDGetFileId(target.Get(), &number, nullptr);
    EXPECT_EQ(0, number);
    FIDGetVer(target.Get(), nullptr, &number);
    EXPECT_EQ(4, number);
    EXPECT_EQ(1, TestInt<FIDGetOpSys>(target));
    EXPECT_EQ("Title", TestText<FIDGetTestTitle>(target));
    EXPECT_EQ(-1, TestInt<FIDGetRunNumber>(target));
    EXPECT_EQ(6, TestInt<FIDGetBurstNumber>(target));
    VDString modeTitle = "?";
    FIDGetModeNumber(target.Get(), &number, &modeTitle);
    EXPECT_EQ(-1, number);
    EXPECT_STREQ("", modeTitle);
    auto* preferences = TestGet<VDFileIdPreferences*, FIDGetPreferences>(target, char(0));
    ASSERT_NE(nullptr, preferences);
    EXPECT_NE(0, preferences->GetInt("gain", &number));
    EXPECT_EQ(2, number);

    EXPECT_NE(0, FIDCopy(target.Get(), source.Get(), ~0U));
    EXPECT_EQ("/d/a.dat", TestFilename(target));
    EXPECT_EQ((std::vector<long>{1, 2, 3}), TestNumbers(target));
    EXPECT_EQ(1, TestFlag<FIDGetIdentified>(target));
    EXPECT_EQ(5, TestInt<FIDGetRunNumber>(target));

    EXPECT_NE(0, FIDCopy(target.Get(), source.Get(), ~0U & ~(VTFileIdCopyChannels | VTFileIdCopySelectedChannels)));
    EXPECT_EQ(0, TestFlag<FIDGetInfoLoaded>(target));
    EXPECT_EQ((std::vector<long>{1, 2, 3}), TestNumbers(target)) << "the target's own stay";
    EXPECT_NE(0, FIDCopy(target.Get(), target.Get(), 0));
    EXPECT_EQ(3, TestInt<FIDGetNumChans>(target));
}

TEST(FileId, SharesTheHostsObject)
{
    struct Host : VDCompBase
    {
        explicit Host(bool* gone) : VDCompBase(1), gone_(gone) {}
        ~Host() override { *gone_ = true; }
        bool* gone_;
    };
    bool gone = false;
    auto* host = new Host(&gone);
    VDFileIdHandle id = TestId();
    EXPECT_NE(0, FIDSetExtraDataObject(id.Get(), host));
    host->Release();
    EXPECT_NE(0, FIDSetExtraDataObject(id.Get(), host)) << "the id's own reference alone keeps it";
    EXPECT_FALSE(gone);
    VDFileIdHandle copy = TestId();
    FIDCopy(copy.Get(), id.Get(), VTFileIdCopyExtraData);
    id.Reset();
    auto* given = TestGet<VDCompBase*, FIDGetExtraDataObject>(copy);
    EXPECT_EQ(host, given);
    FIDClear(copy.Get());
    EXPECT_FALSE(gone);
    EXPECT_EQ(nullptr, (TestGet<VDCompBase*, FIDGetExtraDataObject>(copy)));
    EXPECT_EQ(0, given->Release());
    delete given;
    EXPECT_TRUE(gone);
}

TEST(FileId, DeletesAllFilesOfATest)
{
    const TestFolder folder;
    const std::string sidecar = folder.Write("road_dat_s.vmd", "x");
    VDFileIdHandle file = TestId(folder.Write("road.dat", "x"));
    EXPECT_NE(0, FIDDeleteTest(file.Get()));
    EXPECT_FALSE(Exists(sidecar) || Exists(folder.Name("road.dat")));
    EXPECT_EQ(0, FIDDeleteTest(file.Get()));
    ExpectErrorText(-328603, "Error deleting test : ");

    VDFileIdHandle stem = TestStemId(folder.Name("road"), "dat");
    TestAddChannels(stem, {1, 2, 3});
    const std::vector<std::string> files = {folder.Write("road02.dat", "x"), folder.Write("road03.dat", "x"),
                                            folder.Write("road_dat.vmd", "x")};
    EXPECT_EQ(0, FIDDeleteTest(stem.Get()));
    ExpectErrorText(-328603, "Error deleting test : " + folder.Name("road") + " (dat)");
    for (const std::string& name : files)
        EXPECT_FALSE(Exists(name)) << name;
    EXPECT_EQ(3, TestInt<FIDGetNumChans>(stem));

    FIDSetDataSource(stem.Get(), VTDataSourceStore1);
    EXPECT_EQ(0, FIDDeleteTest(stem.Get()));
    ExpectErrorText(-328611, "Non disk-based data sources cannot be deleted.");
}

TEST(FileId, LastIdOfATemporaryTestDeletesItsFiles)
{
    const TestFolder folder;
    const std::string name = folder.Write("t.dat", "x");
    VDFileIdHandle id = TemporaryId(name);
    EXPECT_EQ(1, TestFlag<FIDIsTemporary>(id));
    VDFileIdHandle copy = TestId();
    FIDCopy(copy.Get(), id.Get(), ~0U);
    VDFileIdArrayHandle array(FIACreate());
    FIAAppendItem(array.Get(), copy.Get());
    VDFileIdArrayHandle arrayCopy(FIACreate());
    FIACopy(arrayCopy.Get(), array.Get());
    id.Reset();
    copy.Reset();
    array.Reset();
    EXPECT_TRUE(Exists(name)) << "the copied array still has an id of its own";
    arrayCopy.Reset();
    EXPECT_FALSE(Exists(name));
}

TEST(FileId, ATemporaryTestIsLeftUnderItsOwnName)
{
    const TestFolder folder;
    VDFileIdHandle plain = TestId(folder.Write("plain.dat", "x"));
    VDFileIdHandle target = TemporaryId(folder.Write("copied.dat", "x"));
    FIDCopy(target.Get(), plain.Get(), ~0U);
    EXPECT_FALSE(Exists(folder.Name("copied.dat")));

    VDFileIdHandle cleared = TemporaryId(folder.Write("cleared.dat", "x"));
    FIDClear(cleared.Get());
    EXPECT_FALSE(Exists(folder.Name("cleared.dat")));

    VDFileIdHandle marked = TemporaryId(folder.Write("marked.dat", "x"));
    FIDSetFileId(marked.Get(), Storage, 4);
    EXPECT_TRUE(Exists(folder.Name("marked.dat"))) << "another type leaves the share alone";
    FIDSetFileId(marked.Get(), Storage, 16);
    EXPECT_FALSE(Exists(folder.Name("marked.dat"))) << "marking it again starts a new test";

    VDFileIdHandle shared = TemporaryId(folder.Write("shared.dat", "x"));
    VDFileIdHandle second = TestId();
    for (int round = 0; round < 2; ++round)
        FIDCopy(second.Get(), shared.Get(), ~0U);
    second.Reset();
    EXPECT_TRUE(Exists(folder.Name("shared.dat")));
    VFErrorClear();
    target.Reset();
    cleared.Reset();
    marked.Reset();
    ExpectNoError();
    EXPECT_TRUE(Exists(folder.Name("plain.dat")));
}

TEST(FileId, OnlyTheTemporaryTestItselfIsDeleted)
{
    const TestFolder folder;
    const auto finish = [&](const VDFileIdHandle& temporary, bool typeFirst, std::uint32_t mask) {
        VDFileIdHandle output = TestId();
        FIDCopy(output.Get(), temporary.Get(), mask);
        if (typeFirst)
            FIDSetFileId(output.Get(), Storage, 4);
        FIDSetFilename(output.Get(), VTNameFormFile, folder.Write("final.dat", "x").c_str(), "");
        if (!typeFirst)
            FIDSetFileId(output.Get(), Storage, 4);
        return output;
    };
    for (const bool typeFirst : {false, true})
        for (const std::uint32_t mask : {0U, ~0U})
            for (const bool outputFirst : {false, true}) {
                // The type is often known before the name.
                VDFileIdHandle temporary = TestId();
                FIDSetFileId(temporary.Get(), Storage, TemporarySubId);
                FIDSetFilename(temporary.Get(), VTNameFormFile, folder.Write("t.dat", "x").c_str(), "");
                VDFileIdHandle output = finish(temporary, typeFirst, mask);
                (outputFirst ? output : temporary).Reset();
                (outputFirst ? temporary : output).Reset();
                EXPECT_FALSE(Exists(folder.Name("t.dat")));
                EXPECT_TRUE(Exists(folder.Name("final.dat")));
            }

    // A name that was given up is nobody's to delete; a test without a name takes that of a copy.
    VDFileIdHandle renamed = TemporaryId(folder.Write("others.dat", "x"));
    FIDSetFilename(renamed.Get(), VTNameFormFile, folder.Write("own.dat", "x").c_str(), "");
    renamed.Reset();
    EXPECT_TRUE(Exists(folder.Name("others.dat")) && !Exists(folder.Name("own.dat")));
    VDFileIdHandle unnamed = TestId();
    FIDSetFileId(unnamed.Get(), Storage, TemporarySubId);
    VDFileIdHandle named = TestId();
    FIDCopy(named.Get(), unnamed.Get(), ~0U);
    FIDSetFilename(named.Get(), VTNameFormFile, folder.Write("named.dat", "x").c_str(), "");
    named.Reset();
    unnamed.Reset();
    EXPECT_FALSE(Exists(folder.Name("named.dat")));

    // Whoever looks at a file, by its extension or as a plug-in, does not own it.
    VDPreferenceSystem preferences;
    preferences.OverrideBooleanValue("/FileFormats/Extensions/IdentifyByExtension_TemporaryTimeSeries", true);
    preferences.OverrideStringValue("/FileFormats/Extensions/Extensions_TemporaryTimeSeries", "y4t");
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdHandle looked = TestId(folder.Write("seen.y4t", "x"));
    VDFileIdArrayHandle tests;
    char found = 0;
    char ignored = 0;
    EXPECT_NE(0, FINFIdentifyFileByExtension(info.Get(), looked.Get(), tests.Out(), &found, &ignored, nullptr));
    EXPECT_EQ(1, found);
    VDFileIdHandle seen;
    EXPECT_NE(0, FIAGetAt(tests.Get(), 0, seen.Out()));
    EXPECT_EQ(1, TestFlag<FIDIsTemporary>(seen));
    EXPECT_EQ(0, TestFlag<FIDGetIdentified>(seen));
    FIDCopy(looked.Get(), seen.Get(), ~0U);
    seen.Reset();
    tests.Reset();
    FIDSetInIdent(looked.Get(), 1);
    FIDSetFileId(looked.Get(), Storage, TemporarySubId);
    looked.Reset();
    EXPECT_TRUE(Exists(folder.Name("seen.y4t")));
}

TEST(FileIdDeathTest, LeftTemporaryIdsAreTracedAtExit)
{
    const auto leave = [](int subId) {
        setenv("DAX_TRACE", "1", 1);
        static VDFileId* const left = FIDCreate();
        FIDSetFileId(left, Storage, subId);
        std::exit(0);
    };
    const char* const line = "^ERROR: VVAllTemporaryFileIds is not empty at app exit in VDFileId in daxlib\n$";
    EXPECT_EXIT(leave(TemporarySubId), testing::ExitedWithCode(0), line);
    EXPECT_EXIT(leave(4), testing::ExitedWithCode(0), "^$");
}

TEST(FileId, Preferences)
{
    VDFileIdPreferences preferences;
    preferences.SetString("Gain", "two");
    preferences.SetInt("Offset", -3);
    preferences.SetString("gain", "");
    EXPECT_STREQ("", preferences.GetKeyAt(2));
    VDString text = "x";
    EXPECT_EQ(0, preferences.GetString("Gain", &text));
    ExpectReport(-334081, "File id preference keyword not found: Gain", "VDFileIdPreferences::GetString");
    int number = 5;
    EXPECT_TRUE(preferences.GetInt("None", &number) == 0 && number == 0);
    ExpectError(-334081, "None", "VDFileIdPreferences::GetInt");
    const VDFileIdPreferences copy = preferences;
    preferences.Clear();
    VDString descriptor = "a";
    copy.AppendToTestDescriptor(descriptor);
    EXPECT_STREQ("a;pGain=;pOffset=-3", descriptor);

    preferences.SetString("Text", "a \"b\" <c>");
    preferences.SetString("no name", "x");
    DOM_Document document = DOM_Document::CreateDocument();
    DOM_Element root = document.CreateElement(VDUXmlHelper::VDToDOMString("Id"));
    EXPECT_TRUE(document.AppendChild(root));
    preferences.ToXml(root);
    DOM_Element child = root.GetFirstElement(VDUXmlHelper::VDToDOMString("Preferences"));
    VDFileIdPreferences read = copy;
    EXPECT_NE(0, read.FromXml(child));
    EXPECT_EQ(1, read.GetCount()) << "what was there is gone, and a key that is no name of XML has no place";
    EXPECT_NE(0, read.GetString("text", &text));
    EXPECT_STREQ("a \"b\" <c>", text);
    DOM_Node none;
    EXPECT_EQ(0, read.FromXml(none));
    EXPECT_EQ(1, read.GetCount());
}
