#include "daxlib/VFDaxMetaData.h"
#include "support/TestFileId.h"
#include "vdstore/LQChannelMapper.h"

namespace {

/// The values of the set in a slot, in order: "name=value;...".
std::string Info(const LQChannelMapper& mapper, int index)
{
    std::string text;
    const Z4PropertySet* const set = mapper.GetMetaDataSet("InputTestInfo", index);
    for (int i = 0; set != nullptr && i < set->GetSize(); ++i)
        text += set->GetProperty(i)->GetName().Str() + "=" + set->GetProperty(i)->ToString().Str() + ";";
    return text;
}

class InputTestInfo : public testing::Test
{
protected:
    InputTestInfo() : id_(TestStemId(folder_.Name("run_"), "dac"))
    {
        TestAddChannels(id_, {5, 3});
        EXPECT_NE(FIDSetIdentified(id_.Get(), 1), 0);
        EXPECT_NE(FIDSetInfoLoaded(id_.Get(), 1), 0);
        EXPECT_TRUE(mapper_.SetChannelNumber(3, mapper_.Append()));
    }

    TestFolder folder_;
    VDFileIdHandle id_;
    LQChannelMapper mapper_{nullptr};
};

}  // namespace

TEST_F(InputTestInfo, NamesTheTestAndEachChannelsFile)
{
    ASSERT_NE(FIDSetRunNumber(id_.Get(), 4), 0);
    const std::string testName = TestDescriptor(id_, VTTestDescShortName);
    for (int read = 0; read < 2; ++read)
        ASSERT_TRUE(VFDaxAddInputTestInfo(&mapper_, id_.Get()));

    const std::string info = Info(mapper_, LQChannelMapper::GLOBAL);
    EXPECT_EQ(info.find("TestName=" + testName + ";Path=" + folder_.Path() + "/;Extension=dac;"), 0U) << info;
    EXPECT_NE(info.find("OriginalNameForm=1;OriginalNumChans=1;RunNumber=4;"), std::string::npos) << info;
    EXPECT_EQ(mapper_.GetMetaDataItem("OriginalNumChans", LQChannelMapper::GLOBAL)->GetType(), Z4TypeLong);

    const std::string file = TestText<FIDGetChanFilename>(id_, TestInt<FIDGetChanIndex>(id_, 3));
    EXPECT_EQ(Info(mapper_, 0),
              "FilenameWithPath=" + file + ";FilenameNoPath=" + file.substr(folder_.Path().size() + 1) + ";");
}

TEST_F(InputTestInfo, TestInAStoreHasItsReferenceInstead)
{
    ASSERT_NE(FIDSetDataSource(id_.Get(), VTDataSourceStore1), 0);
    ASSERT_NE(FIDSetDataPath(id_.Get(), "path"), 0);
    ASSERT_NE(FIDSetObjectReference(id_.Get(), "object"), 0);
    const std::string testName = TestDescriptor(id_, VTTestDescShortName);
    ASSERT_TRUE(VFDaxAddInputTestInfo(&mapper_, id_.Get()));
    EXPECT_EQ(Info(mapper_, LQChannelMapper::GLOBAL), "TestName=" + testName + ";DataPath=path;ObjectReference=object;");
    EXPECT_EQ(Info(mapper_, 0), "");
}

TEST_F(InputTestInfo, EveryChannelMustBeTheTests)
{
    LQChannelEntry* const entry = mapper_.Append();
    EXPECT_FALSE(VFDaxAddInputTestInfo(&mapper_, id_.Get())) << "a channel without a number";
    // A number that 32 bits would cut down to one that the test has.
    ASSERT_TRUE(mapper_.SetChannelNumber((1L << 32) + 3, entry));
    EXPECT_FALSE(VFDaxAddInputTestInfo(&mapper_, id_.Get()));
    ASSERT_TRUE(mapper_.SetChannelNumber(8, entry));
    EXPECT_FALSE(VFDaxAddInputTestInfo(&mapper_, id_.Get()));
    ExpectError(-328587);
    EXPECT_FALSE(VFDaxAddInputTestInfo(&mapper_, nullptr));
    ExpectError(-327682);
}
