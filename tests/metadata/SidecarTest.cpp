#include "daxlib/VDMetaDataReader.h"
#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQDataManager.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace {

class Sidecar : public testing::Test
{
protected:
    Sidecar() : id_(TestId(folder_.Name("run1.dat")))
    {
        TestAddChannels(id_, {5, 3});
        EXPECT_NE(FIDSetChanTitle(id_.Get(), 1, "three"), 0);
        EXPECT_NE(FIDSetIdentified(id_.Get(), 1), 0);
        EXPECT_NE(FIDSetInfoLoaded(id_.Get(), 1), 0);
        EXPECT_NE(VMDCreateFilenameFromFileId(id_.Get(), &name_), 0);
    }

    /// Adopts the test's sidecar; null if that fails.
    VDVmdFileHandle Adopt(bool readMode, const std::vector<long>& numbers = {})
    {
        VDVmdFileHandle sidecar(VMDCreate());
        VDArrayWithSort<long> list;
        for (const long number : numbers)
            list.AppendItem(number);
        EXPECT_NE(VMDSetChannelNumberList(sidecar.Get(), list), 0);
        VFErrorClear();
        if (VMDAdoptTestVmd(sidecar.Get(), id_.Get(), readMode) == 0)
            sidecar.Reset();
        return sidecar;
    }

    static LQChannelMapper& Mapper(const VDVmdFileHandle& sidecar)
    {
        LQChannelMapper* mapper = nullptr;
        EXPECT_NE(VMDGetMetaData(sidecar.Get(), &mapper), 0);
        return *mapper;
    }

    /// Writes one item into the global slot and every channel.
    bool Write(std::int32_t value, const std::vector<long>& numbers = {})
    {
        VDVmdFileHandle sidecar = Adopt(false, numbers);
        if (!sidecar)
            return false;
        LQChannelMapper& mapper = Mapper(sidecar);
        for (int index = LQChannelMapper::GLOBAL; index < mapper.GetChannelCount(); ++index)
            mapper.AdoptMetaDataSet("Set", nullptr, index)->PutLong("Item", value);
        return VMDRelease(sidecar.Detach()) != 0;
    }

    /// "number title item, ..." with the global slot's item in front.
    std::string Read()
    {
        const VDVmdFileHandle sidecar = Adopt(true);
        if (!sidecar)
            return "none";
        const LQChannelMapper& mapper = Mapper(sidecar);
        std::string text;
        for (int index = LQChannelMapper::GLOBAL; index < mapper.GetChannelCount(); ++index) {
            std::int32_t value = 0;
            if (index >= 0)
                text += ", " + std::to_string(mapper.NumberFromIndex(index, false)) + " " +
                        mapper.GetChannel(index)->GetTitle().Str() + " ";
            text += mapper.GetLongMetaDataItem("Item", &value, index) ? std::to_string(value) : "-";
        }
        return text;
    }

    TestFolder folder_;
    VDFileIdHandle id_;
    VDString name_;
};

constexpr const char* Empty = "-, 5  -, 3 three -";
constexpr const char* WithOne = "1, 5  1, 3 three 1";

}  // namespace

TEST_F(Sidecar, IsNamedAfterTestAndExtension)
{
    EXPECT_EQ(name_, folder_.Name("run1_dat_s.vmd"));
    VDString name;
    EXPECT_NE(VMDCreateFilenameFromFileId(TestStemId("/data/run1", "dat").Get(), &name), 0);
    EXPECT_EQ(name, "/data/run1_dat.vmd");
    EXPECT_EQ(VMDCreateFilenameFromFileId(nullptr, &name), 0);
    ExpectError(-327682, "", "FIDGetNameForm");
}

TEST_F(Sidecar, ReadingWhereThereIsNoneGivesTheTestsChannelsAndMakesNoFile)
{
    const VDVmdFileHandle sidecar = Adopt(true);
    LQChannelMapper& mapper = Mapper(sidecar);
    EXPECT_EQ(&mapper, &Mapper(sidecar));
    EXPECT_EQ(Read(), Empty);
    EXPECT_NE(VMDFlush(sidecar.Get()), 0);
    EXPECT_FALSE(VDFileSystem::FileExists(name_));

    const VDVmdFileHandle unopened(VMDCreate());
    LQChannelMapper* none = &mapper;
    EXPECT_EQ(VMDGetMetaData(unopened.Get(), &none), 0);
    EXPECT_EQ(none, nullptr);
    ExpectReport(-329781, "Open not called on VMD file", "VDVmdFile::GetMetaData");
    EXPECT_EQ(VMDAdopt(sidecar.Get(), name_, true), 0) << "an object is adopted once";
    ExpectError(-328016);
}

TEST_F(Sidecar, KeepsWhatWasWrittenAndAddsNewChannels)
{
    ASSERT_TRUE(Write(1));
    TestAddChannels(id_, {9});
    EXPECT_NE(FIDSetChanTitle(id_.Get(), 1, "renamed"), 0);
    EXPECT_EQ(Read(), std::string(WithOne) + ", 9  -") << "known channels keep their titles";
    // A title that somebody put into the attributes is not replaced by the channel's own.
    for (int round = 0; round < 2; ++round) {
        const VDVmdFileHandle sidecar = Adopt(false);
        VDString title;
        EXPECT_TRUE(Mapper(sidecar).GetStringMetaDataItem("ChanTitle", &title, 1));
        EXPECT_EQ(title, round == 0 ? "three" : "own");
        Mapper(sidecar).SetStringAttribute("ChanTitle", "own", 1);
    }
}

TEST_F(Sidecar, OnlyANewOneIsRenumberedAndOnlyAsAWhole)
{
    ASSERT_TRUE(Write(1, {3, 5}));
    EXPECT_EQ(Read(), "1, 3  1, 5 three 1") << "the numbers change places";
    ASSERT_TRUE(Write(2, {7, 8}));
    EXPECT_EQ(Read(), "2, 3  2, 5 three 2");
    for (const std::vector<long>& numbers : {std::vector<long>{4, 4}, {4, -1}, {3}, {1, 2, 4}}) {
        VDFileSystem::DelFile(name_);
        ASSERT_TRUE(Write(1, numbers));
        EXPECT_EQ(Read(), WithOne) << "numbers that can't be given leave all as they were";
    }
}

TEST_F(Sidecar, HasOneWriterAndReadersOfWhatIsFlushed)
{
    ASSERT_TRUE(Write(1));
    const VDVmdFileHandle writer = Adopt(false);
    EXPECT_FALSE(Adopt(false));
    ExpectError(VFErrorGetCode(VFGetBaseLibError()), name_.Str());
    Mapper(writer).AdoptMetaDataSet("Set", nullptr, 0)->PutLong("Item", 7);
    EXPECT_EQ(Read(), WithOne);
    EXPECT_NE(VMDFlush(writer.Get()), 0);
    EXPECT_EQ(Read(), "1, 5  7, 3 three 1");
}

TEST_F(Sidecar, AFullDiskIsToldAndLosesNothing)
{
    signal(SIGXFSZ, SIG_IGN);
    for (const bool isThere : {false, true}) {
        if (isThere) {
            ASSERT_TRUE(Write(1));
        }
        VDVmdFileHandle writer = Adopt(false);
        Mapper(writer).AdoptMetaDataSet("Set", nullptr, 0)->PutString("Text", std::string(50'000, 'x').c_str());
        rlimit before = {};
        ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
        const rlimit full = {4096, before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
        VFErrorClear();
        EXPECT_EQ(VMDFlush(writer.Get()), 0);
        EXPECT_EQ(VMDRelease(writer.Detach()), 0);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
        ExpectError(VFErrorGetCode(VFGetBaseLibError()), name_.Str());
        EXPECT_EQ(Read(), isThere ? WithOne : Empty);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.Path()), {}), isThere ? 1 : 0) << "leftovers";
    }
}

TEST_F(Sidecar, WhatIsNoSidecarIsLeftAlone)
{
    const std::string text = folder_.Write("victim", "no storage file");
    const std::string good = folder_.Name("good.vmd");
    ASSERT_TRUE(Write(1));
    std::filesystem::rename(name_.Str(), good);
    const auto expectRefused = [this](bool readable) {
        EXPECT_FALSE(Adopt(false));
        ExpectError(VFErrorGetCode(VFGetBaseLibError()), name_.Str());
        EXPECT_EQ(Read() != "none", readable);
        std::filesystem::remove(name_.Str());
    };
    std::filesystem::create_directory(name_.Str());
    expectRefused(true);
    std::filesystem::copy(text, name_.Str());
    expectRefused(false);
    for (const std::string& end : {text, folder_.Name("nowhere")}) {
        std::filesystem::create_symlink(end, name_.Str());
        expectRefused(end != text);
    }
    std::filesystem::create_symlink(good, name_.Str());
    EXPECT_EQ(Read(), WithOne) << "reading through a link does no harm";
    expectRefused(true);
    // A storage file with data in it.
    LQDataManager& manager = *LQGetDataManager();
    Z4File* const file = manager.GetFileManager()->CreateFile(name_, nullptr);
    ASSERT_TRUE(manager.Close(manager.AdoptTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K), true) &&
                manager.GetFileManager()->CloseFile(file, true));
    const std::string before = TestReadFile(name_.Str());
    EXPECT_FALSE(Adopt(false));
    ExpectError(-329885, "it holds something other than metadata\nFile :" + name_.Str());
    EXPECT_EQ(TestReadFile(name_.Str()), before);
    expectRefused(false);
    EXPECT_EQ(TestReadFile(text), "no storage file");
    EXPECT_FALSE(VDFileSystem::FileExists(folder_.Name("nowhere").c_str()));
}

TEST_F(Sidecar, AKilledWriterLeavesOneVersionWhole)
{
    for (int round = 0; round < 12; ++round) {
        const pid_t writer = fork();
        if (writer == 0)
            for (std::int32_t value = 0;; ++value)
                if (!Write(value))
                    _exit(1);
        usleep(static_cast<useconds_t>(3000 + 2500 * round));
        kill(writer, SIGKILL);
        int status = 0;
        waitpid(writer, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status)) << "the writer failed by itself";
        const std::string read = Read();
        const std::string value = read.substr(0, read.find(','));
        EXPECT_EQ(read, value + ", 5  " + value + ", 3 three " + value);
    }
    EXPECT_NE(Read(), Empty);
}

TEST(MetaDataReader, FetchesThroughTheFamilyOfTheTest)
{
    const TestFolder folder;
    const std::string name = folder.Name("a.z4");
    {
        const VDTsAccHandle acc =
            BindTest(NewTestId(name, DaxStorageFileId, 4, {static_cast<int>(DaxDataType::Float)}).Get(), true);
        LQChannelMapper* mapper = nullptr;
        ASSERT_TRUE(TSAccOpen(acc.Get(), VTTsAccOpenCreate) && TSAccGetMetaData(acc.Get(), &mapper));
        mapper->AdoptMetaDataSet("Set", nullptr, 0)->PutLong("Item", 4);
        ASSERT_TRUE(TSAccClose(acc.Get()));
    }
    VDMetaDataReader reader;
    LQChannelMapper* mapper = nullptr;
    EXPECT_FALSE(reader.GetMetaData(&mapper));
    {
        const VDFileIdHandle id = IdentifyTest(name);
        ASSERT_TRUE(reader.SetFileId(id.Get()));
        EXPECT_FALSE(reader.SetFileId(id.Get())) << "it has a test";
    }
    std::int32_t value = 0;
    {
        VDMetaDataReader copy(reader);
        EXPECT_TRUE(reader.Release() && reader.Release());
        EXPECT_TRUE(copy.GetMetaData(&mapper) && mapper->GetLongMetaDataItem("Item", &value, 0)) << "copies share the test";
        EXPECT_EQ(value, 4);
    }
    EXPECT_FALSE(reader.SetFileId(nullptr));
    ExpectError(-327682);
    EXPECT_FALSE(reader.SetFileId(TestId(folder.Name("missing")).Get()));
}
