#include "daxlib/VFDaxMetaData.h"
#include "metadata/MetaDataDump.h"
#include "support/TestSupport.h"

namespace {

constexpr int Global = LQChannelMapper::GLOBAL;
constexpr const char* SelectedSetsRoutine = "VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2";

int AddChannel(LQChannelMapper& mapper, long number)
{
    LQChannelEntry* const entry = mapper.Append();
    EXPECT_TRUE(mapper.SetChannelNumber(number, entry));
    return entry->GetIndex();
}

void Put(LQChannelMapper& mapper, int index, const char* set, const char* item, const char* value)
{
    mapper.AdoptMetaDataSet(set, nullptr, index)->PutString(item, value);
}

/// A source with channels 3 and 7; the global slot and channel 3 hold one set of every kind.
class MetaDataCopy : public testing::Test
{
protected:
    MetaDataCopy()
    {
        for (const long number : {3L, 7L})
            AddChannel(source_, number);
        for (const int index : {Global, 0}) {
            Put(source_, index, "Attributes", "ChanTitle", "t");
            Put(source_, index, "InputTestInfo", "TestName", "n");
            Put(source_, index, "LegacyExtraDetails", "Gain", "new");
            Put(source_, index, "PropertyOverrides", "p", "1");
            Put(source_, index, "__own", "p", "1");
            Put(source_, index, "Sensor", "__x", "1");
        }
        Put(source_, 1, "Sensor", "Gain", "7");
        AddChannel(target_, 7);
        Put(target_, Global, "ExtraDetails", "Gain", "old");
    }

    std::string Selected(int sourceIndex, std::initializer_list<const char*> names, bool check,
                         VTMetaDataCopyMode mode = VTMetaDataCopyMatching)
    {
        VDStringArray sets;
        for (const char* const name : names)
            sets.AppendItem(name);
        LQChannelMapper target(nullptr);
        AddChannel(target, 3);
        selectedResult_ = VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(
            &source_, sourceIndex, &target, sourceIndex, mode, false, false, true, check, sets);
        return DumpMetaData(target, sourceIndex);
    }

    LQChannelMapper source_{nullptr};
    LQChannelMapper target_{nullptr};
    bool selectedResult_ = false;
};

}  // namespace

TEST_F(MetaDataCopy, PairsChannelsByNumberAndKeepsWhatIsThere)
{
    ASSERT_TRUE(VFDaxCopyMetaData(&source_, &target_, VTMetaDataCopyMatching));
    EXPECT_EQ(DumpMetaData(target_, Global),
              "ExtraDetails(Gain=old) InputTestInfo(TestName=n) PropertyOverrides(p=1) __own(p=1) Sensor(__x=1)");
    EXPECT_EQ(target_.GetChannelCount(), 1);
    EXPECT_EQ(DumpMetaData(target_, 0), "Sensor(Gain=7)");

    ASSERT_TRUE(VFDaxCopyMetaDataOverwrite(&source_, &target_, VTMetaDataCopyMatching, true));
    EXPECT_EQ(target_.GetMetaDataSet("ExtraDetails", Global)->GetProperty("Gain", false)->ToString(), "new");
}

TEST_F(MetaDataCopy, PublicModeLeavesOutPrivateSetsAndItems)
{
    ASSERT_TRUE(VFDaxCopyMetaDataOverwriteAttributesTestInfo(&source_, &target_, VTMetaDataCopyPublic, true, false, false));
    EXPECT_EQ(DumpMetaData(target_, Global), "ExtraDetails(Gain=new) Sensor()");
}

TEST_F(MetaDataCopy, AddChannelsMakesUntitledOnes)
{
    ASSERT_TRUE(
        VFDaxCopyMetaDataOverwriteAttributesTestInfo(&source_, &target_, VTMetaDataCopyAddChannels, false, false, false));
    EXPECT_EQ(target_.IndexFromNumber(3, false), 1);
    EXPECT_EQ(DumpMetaData(target_, 1), "ExtraDetails(Gain=new) PropertyOverrides(p=1) __own(p=1) Sensor(__x=1)");
    EXPECT_TRUE(target_.GetChannel(1)->GetTitle().IsEmpty());

    source_.Append();
    EXPECT_FALSE(VFDaxCopyMetaData(&source_, &target_, VTMetaDataCopyAddChannels)) << "a channel without a number";
    EXPECT_EQ(target_.GetChannelCount(), 2);
    EXPECT_TRUE(VFDaxCopyMetaData(&source_, &target_, VTMetaDataCopyMatching));
}

TEST_F(MetaDataCopy, AttributesGoByFlagAndByMode)
{
    const auto hasAttributes = [this](int index) { return target_.GetMetaDataSet("Attributes", index) != nullptr; };
    ASSERT_TRUE(VFDaxCopySingleMetaData(&source_, Global, &target_, Global, VTMetaDataCopyWithAttributes));
    EXPECT_FALSE(hasAttributes(Global)) << "the mode alone takes only a channel's";
    ASSERT_TRUE(VFDaxCopySingleMetaData(&source_, 0, &target_, 0, VTMetaDataCopyMatching));
    EXPECT_FALSE(hasAttributes(0));
    ASSERT_TRUE(VFDaxCopySingleMetaData(&source_, 0, &target_, 0, VTMetaDataCopyWithAttributes));
    EXPECT_TRUE(hasAttributes(0));
    ASSERT_TRUE(VFDaxCopyMetaData(&source_, &target_, VTMetaDataCopyWithAttributes));
    EXPECT_TRUE(hasAttributes(Global));
    target_.Clear();
    ASSERT_TRUE(
        VFDaxCopySingleMetaDataOverwriteAttributes(&source_, Global, &target_, 4, VTMetaDataCopyMatching, false, true));
    EXPECT_TRUE(hasAttributes(Global)) << "a negative source goes to the global slot, whatever the target index";
}

TEST_F(MetaDataCopy, SingleCopyNeedsItsTargetSlot)
{
    EXPECT_FALSE(VFDaxCopySingleMetaData(&source_, 0, &target_, 4, VTMetaDataCopyMatching));
    EXPECT_FALSE(VFDaxCopySingleMetaData(&source_, 0, nullptr, 0, VTMetaDataCopyMatching));
    ASSERT_TRUE(VFDaxCopySingleMetaDataOverwrite(&source_, 1, &target_, -7, VTMetaDataCopyMatching, true));
    EXPECT_EQ(DumpMetaData(target_, Global), "ExtraDetails(Gain=old) Sensor(Gain=7)");
    ASSERT_TRUE(VFDaxCopySingleMetaDataOverwriteAttributesTestInfo(&source_, 0, &source_, 0, VTMetaDataCopyMatching, true,
                                                                   true, true));
    EXPECT_EQ(source_.GetMetaDataSet("ExtraDetails", 0)->GetSize(), 1) << "a slot copied onto itself";
    ExpectNoError();
}

TEST_F(MetaDataCopy, SelectedSetsTakeTheRulesOfTheRest)
{
    EXPECT_EQ(
        Selected(0, {"LegacyExtraDetails", "InputTestInfo", "Attributes", "Sensor"}, false, VTMetaDataCopyWithAttributes),
        "InputTestInfo(TestName=n) ExtraDetails(Gain=new) Sensor(__x=1)");
    EXPECT_EQ(Selected(0, {"PropertyOverrides", "__own", "Sensor"}, true, VTMetaDataCopyPublic), "Sensor()");
    EXPECT_EQ(Selected(Global, {"Sensor", "missing"}, false), "Sensor(__x=1)");
    EXPECT_TRUE(selectedResult_);
    EXPECT_EQ(Selected(0, {"Sensor ", "sensor"}, true), "") << "found by the check, but not selected";
    EXPECT_TRUE(selectedResult_);
    ExpectNoError();
}

TEST_F(MetaDataCopy, SelectedSetsCheckEveryNameBeforeTheFirstCopy)
{
    EXPECT_EQ(Selected(0, {"Sensor", "missing", " other"}, true), "");
    EXPECT_FALSE(selectedResult_);
    ExpectErrorText(-327700,
                    "The user-defined set of meta-data set-names has following entry(s) unmatched in the meta-data:  "
                    "missing;  other;  ");
    ExpectError(-327700, "", SelectedSetsRoutine);

    Selected(0, {}, true);
    EXPECT_FALSE(selectedResult_);
    ExpectErrorText(-327699, "Set of MetaData Set names has zero length ");

    VDStringArray sets;
    sets.AppendItem("Sensor");
    EXPECT_FALSE(VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets2(
        &source_, 0, &target_, 9, VTMetaDataCopyMatching, false, false, true, true, sets));
    ExpectErrorText(-327701, "Low-level property-set adoption error ");
    ExpectError(-327701, "", SelectedSetsRoutine);

    VFErrorClear();
    EXPECT_FALSE(VFDaxCopySingleMetaDataOverwriteAttributesTestInfoSelectedSets(
        &source_, 0, &target_, 9, VTMetaDataCopyMatching, false, false, true, sets));
    Selected(0, {}, false);
    EXPECT_FALSE(selectedResult_);
    ExpectNoError();
}

TEST_F(MetaDataCopy, MergeLeavesAttributesAndMovesOverwrittenItems)
{
    Put(target_, 0, "Sensor", "Gain", "old");
    Put(target_, 0, "Sensor", "Unit", "V");
    ASSERT_TRUE(VFDaxMergeMetadata(&target_, &source_, false));
    EXPECT_EQ(DumpMetaData(target_, 0), "Sensor(Gain=old Unit=V)");
    ASSERT_TRUE(VFDaxMergeMetadata(&target_, &source_, true));
    EXPECT_EQ(DumpMetaData(target_, 0), "Sensor(Unit=V Gain=7)");
    EXPECT_EQ(target_.GetChannelCount(), 1);
    EXPECT_EQ(DumpMetaData(target_, Global), "ExtraDetails(Gain=old) InputTestInfo(TestName=n) LegacyExtraDetails(Gain=new) "
                                             "PropertyOverrides(p=1) __own(p=1) Sensor(__x=1)");
    source_.Append();
    EXPECT_FALSE(VFDaxMergeMetadata(&target_, &source_, true)) << "a channel without a number";
}

TEST_F(MetaDataCopy, CloneKeepsIndexesTypesAndOrder)
{
    source_.Append();
    Put(source_, 2, "Sensor", "lost", "1");
    source_.SetChanTitle("title", 0);
    source_.GetMetaDataSet("Sensor", 1)->AddHuge("n", 1)->SetDefined(false);
    const std::unique_ptr<LQChannelMapper> clone(VFDaxCloneMapper(&source_));
    ASSERT_NE(clone, nullptr);
    for (const int index : {Global, 0, 1})
        EXPECT_EQ(DumpMetaData(*clone, index), DumpMetaData(source_, index));
    EXPECT_EQ(clone->GetMetaDataSet("Sensor", 1)->GetProperty("n", false)->GetType(), Z4TypeHuge);
    EXPECT_EQ(clone->NumberFromIndex(1, false), 7);
    EXPECT_EQ(clone->GetChannel(0)->GetTitle(), "title");
    EXPECT_EQ(clone->GetChannelCount(), 3);
    EXPECT_EQ(DumpMetaData(*clone, 2), "");
    EXPECT_EQ(VFDaxCloneMapper(nullptr), nullptr);
}
