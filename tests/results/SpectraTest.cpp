#include "support/TestFileId.h"

#include "daxlib/VDMetaDataReader.h"
#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

// Spectra in storage files, through the library as a host uses it.

namespace {

constexpr int Create = 3;

class SpectraTest : public testing::Test
{
protected:
    SpectraTest() { TestWriteFile(TestHomeFolder(), "plugins.d/results.toml", TestReadFile(RESULTS_MANIFEST)); }

    VDCFAccHandle Open(int mode, int subId = 10)
    {
        VDCFAccHandle acc(CFAccCreate());
        if (mode == Create) {
            id_ = TestId(name_);
            TestAddChannels(id_, {3, 8});
            FIDSetFileId(id_.Get(), DaxStorageFileId, subId);
            FIDSetIdentified(id_.Get(), 1);
            FIDSetInfoLoaded(id_.Get(), 1);
        } else {
            const VDFileInfoHandle info(FINFCreate());
            VDFileIdArrayHandle tests;
            EXPECT_TRUE(FINFIdentifyFile(info.Get(), TestId(name_).Get(), 1, tests.Out()) &&
                        FIAGetAt(tests.Get(), 0, id_.Out()))
                << VFErrorGetText(VFGetBaseLibError()).Str();
        }
        EXPECT_TRUE(CFAccSetId(acc.Get(), id_.Get(), mode == Create) && CFAccOpen(acc.Get(), mode))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }

    TestFolder folder_;
    std::string name_ = folder_.Name("test.z4c");
    VDFileIdHandle id_;
};

}  // namespace

TEST_F(SpectraTest, KeepsAllThatAWaterfallHas)
{
    constexpr int Lines = 3'000;
    std::vector<float> values(2 * Lines);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<float>(i);
    const double axis[] = {10, 12.5, 15};
    VDCFAccHandle acc = Open(Create);
    ExpectFailure(CFAccPutData(acc.Get(), 0, 1, 1, 1, DaxSpectrumKind::Float, values.data()), -331583);
    ASSERT_TRUE(CFAccSetType(acc.Get(), DaxSpectrumType::FrequencyResponse) && CFAccSetSubType(acc.Get(), -7) &&
                CFAccSetNumLines(acc.Get(), Lines) && CFAccSetZUnits(acc.Get(), 1, "g/N") &&
                CFAccSetChanTitle(acc.Get(), 1, "1:+Z") && CFAccSetChanUnits(acc.Get(), 1, "g"));
    for (int spectrum = 1; spectrum <= 3; ++spectrum)
        ASSERT_TRUE(CFAccPutData(acc.Get(), 0, spectrum, 1, Lines, DaxSpectrumKind::ComplexFloat, values.data()));
    // Doubles come first to a channel that its id takes for one of floats.
    ASSERT_TRUE(CFAccPutData(acc.Get(), 1, 2, 5, 2, DaxSpectrumKind::Double, axis));
    ASSERT_TRUE(CFAccPutLineAxisData(acc.Get(), 2, 2, DaxSpectrumKind::Double, axis) &&
                CFAccPutSpectrumAxisData(acc.Get(), 1, 3, DaxSpectrumKind::Double, axis));
    TestValue<CFAccGetMetaData>(acc.Get())->AdoptMetaDataSet("Test", nullptr, 1)->AddString("Driver", "Jo");
    ExpectFailure(CFAccSetNumLines(acc.Get(), 7), -66565);
    ExpectFailure(CFAccPutData(acc.Get(), 0, 1, Lines, 2, DaxSpectrumKind::ComplexFloat, values.data()), -327990);
    EXPECT_FALSE(CFAccPutData(acc.Get(), 0, 0, 1, 1, DaxSpectrumKind::ComplexFloat, values.data()));
    EXPECT_FALSE(CFAccPutData(acc.Get(), 0, 1, 1, 1, DaxSpectrumKind::ComplexDouble, axis)) << "would lose digits";
    ASSERT_TRUE(CFAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();

    acc = Open(2);
    EXPECT_EQ(TestNumbers(id_), (std::vector<long>{3, 8}));
    EXPECT_EQ((TestText<FIDGetChanUnits>(id_, 1)), "g");
    EXPECT_EQ((TestInt<FIDGetChanType>(id_, 1)), DaxDataType::Double);
    EXPECT_EQ(TestValue<CFAccGetSubType>(acc.Get()), -7);
    EXPECT_EQ(TestValue<CFAccGetNumSpectra>(acc.Get()), 3);
    EXPECT_EQ(TestValue<CFAccGetComplex>(acc.Get()), 1);
    EXPECT_EQ(TestValue<CFAccGetZUnits>(acc.Get(), 1), "g/N");
    std::vector<double> read(2 * Lines);
    EXPECT_TRUE(CFAccGetData(acc.Get(), 0, 3, 1, Lines, DaxSpectrumKind::ComplexDouble, nullptr, read.data()));
    EXPECT_TRUE(std::equal(read.begin(), read.end(), values.begin()));
    EXPECT_TRUE(CFAccGetData(acc.Get(), 1, 2, 5, 2, DaxSpectrumKind::ComplexDouble, nullptr, read.data()));
    EXPECT_EQ(std::vector(read.begin(), read.begin() + 4), (std::vector<double>{10, 0, 12.5, 0}));
    float places[3] = {};
    EXPECT_TRUE(CFAccGetLineAxisData(acc.Get(), 1, 3, DaxSpectrumKind::Float, nullptr, places) && places[2] == 12.5F);
    ExpectFailure(CFAccGetSpectrumAxisData(acc.Get(), 1, 3, DaxSpectrumKind::ComplexFloat, nullptr, places), -329287);
    // More of it in the same file.
    EXPECT_TRUE(CFAccPutData(acc.Get(), 0, 4, 1, Lines, DaxSpectrumKind::ComplexFloat, values.data()) && CFAccClose(acc.Get()));

    VDMetaDataReader reader;
    LQChannelMapper* mapper = nullptr;
    VDString text;
    ASSERT_TRUE(reader.SetFileId(id_.Get()) && reader.GetMetaData(&mapper)) << VFErrorGetText(VFGetBaseLibError()).Str();
    EXPECT_TRUE(mapper->GetStringMetaDataItem("Driver", &text, 1));
    std::int64_t spectra = 0;
    EXPECT_TRUE(mapper->GetHugeMetaDataItem("NumSpectra", &spectra, LQChannelMapper::GLOBAL));
    EXPECT_EQ(spectra, 4);
}

TEST_F(SpectraTest, TemporaryOnesAndRealOnes)
{
    VDCFAccHandle acc = Open(Create, 16);
    const double value = 2.5;
    double read = 0;
    EXPECT_TRUE(CFAccSetComplex(acc.Get(), 0) && CFAccSetNumLines(acc.Get(), 1) &&
                CFAccPutData(acc.Get(), 0, 1, 1, 1, DaxSpectrumKind::Double, &value));
    const double pair[] = {1, 2};
    EXPECT_FALSE(CFAccPutData(acc.Get(), 1, 1, 1, 1, DaxSpectrumKind::ComplexDouble, pair));
    EXPECT_TRUE(CFAccFlush(acc.Get()) && CFAccGetData(acc.Get(), 0, 1, 1, 1, DaxSpectrumKind::Double, nullptr, &read));
    EXPECT_EQ(read, 2.5);
}
