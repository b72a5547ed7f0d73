#include "UffTest.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>
#include <limits>

namespace {

/// Sub ids of the forms.
constexpr int BinaryTimes = 1;
constexpr int TextTimes = 2;
constexpr int BinarySpectra = 3;
constexpr int TextSpectra = 4;

}  // namespace

TEST_F(UffTest, TimeSeriesComeBackAsTheyWerePut)
{
    for (const int subId : {BinaryTimes, TextTimes}) {
        const std::string name = folder_.Name("out" + std::to_string(subId) + ".uff");
        const VDFileIdHandle id = NewTestId(name, UffFileId, subId, {DaxDataType::Float, DaxDataType::Double});
        std::vector<float> floats(50'001);
        for (std::size_t i = 0; i < floats.size(); ++i)
            floats[i] = std::sin(static_cast<float>(i)) / 3;
        const Values doubles = {1.5, -1e300, 0.1};
        {
            const VDTsAccHandle acc = OpenTimes(id.Get(), VTTsAccOpenCreate);
            EXPECT_TRUE(TSAccSetSampleRate(acc.Get(), 0, 44100) && TSAccSetBaseTime(acc.Get(), 1, -1.0 / 3) &&
                        TSAccSetChanTitle(acc.Get(), 0,
                                          " R\xc3\xa4"
                                          "der\nvorn") &&
                        TSAccSetYUnits(acc.Get(), 0, "m/s\xc2\xb2"));
            auto* const mapper = TestValue<TSAccGetMetaData>(acc.Get());
            mapper->AdoptMetaDataSet("Dataset58", nullptr, 0)->AddLong("ResponseNode", 412);
            mapper->AdoptMetaDataSet("Dataset58", nullptr, 0)->AddString("ID2", "Bench 3");
            EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 20'001, 30'001, floats.data() + 20'000) &&
                        TSAccPutDataDoublePrecision(acc.Get(), 1, 1, 3, doubles.data()) && TSAccFlush(acc.Get()))
                << VFErrorGetText(VFGetBaseLibError()).Str();
            EXPECT_EQ(Identify(name).size(), 1U) << "a flush leaves a whole file";
            EXPECT_TRUE(TSAccPutData(acc.Get(), 0, 1, 20'000, floats.data()));
            // What a form has no room for is refused at once.
            const double fine = std::nextafter(0.1, 1.0);
            EXPECT_EQ(TSAccPutDataDoublePrecision(acc.Get(), 1, 4, 1, &fine), subId == BinaryTimes ? 1 : 0);
            EXPECT_TRUE(TSAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        }
        const auto tests = Identify(name);
        ASSERT_EQ(tests.size(), 1U);
        const VDTsAccHandle acc = OpenTimes(tests[0].Get());
        std::vector<float> read(floats.size());
        EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 50'001, nullptr, read.data()) && read == floats);
        EXPECT_EQ((TestInt<FIDGetChanType>(tests[0], 0)), DaxDataType::Float);
        EXPECT_EQ(Points(acc.Get(), 0)[7], static_cast<double>(floats[7])) << "floats, however they are written";
        const Values back = Points(acc.Get(), 1);
        EXPECT_EQ(Values(back.begin(), back.begin() + 3), doubles);
        EXPECT_EQ(back.size(), subId == BinaryTimes ? 4U : 3U);
        EXPECT_EQ(TestValue<TSAccGetSampleRate>(acc.Get(), 0), 44100);
        EXPECT_EQ(TestValue<TSAccGetBaseTime>(acc.Get(), 1), -1.0 / 3);
        EXPECT_EQ(TestValue<TSAccGetChanTitle>(acc.Get(), 0), "R\xc3\xa4" "der vorn");
        EXPECT_EQ(TestValue<TSAccGetYUnits>(acc.Get(), 0), "m/s\xc2\xb2");
        EXPECT_EQ(FormatText(acc.Get(), "Form"), subId == BinaryTimes ? "58b" : "58");
        // The header, and not the library's sidecar, tells of the node.
        VDFileSystem::DelFile((folder_.Name("out" + std::to_string(subId)) + ".vmd").c_str());
        const auto* set = TestValue<TSAccGetMetaData>(acc.Get())->GetMetaDataSet("Dataset58", 0);
        EXPECT_EQ(set->GetProperty("ResponseNode", true)->ToString(), "412");
        EXPECT_EQ(set->GetProperty("ID2", true)->ToString(), "Bench 3");
        EXPECT_FALSE(TSAccOpen(BindTest(tests[0].Get()).Get(), VTTsAccOpenUpdate));
    }
}

TEST_F(UffTest, SpectraComeBackAsTheyWerePut)
{
    struct Case
    {
        int subId;
        bool isComplex;
        Values axis;
        std::size_t tests = 1;  ///< that the file has; none if it can't be written
    };
    const Case cases[] = {{BinarySpectra, true, {0.1, 0.2, 0.30000000000000004}}, {BinarySpectra, false, {1, 2, 1.0 / 3}, 2},
                          {TextSpectra, true, {10, 10.1, 10.2}}, {TextSpectra, false, {0.5, 2, 400}, 2},
                          {TextSpectra, true, {1, 2, 3.00001234}, 0}};
    for (const Case& tried : cases) {
        SCOPED_TRACE(&tried - cases);
        const std::string name = folder_.Name("out" + std::to_string(&tried - cases) + ".uff");
        const VDFileIdHandle id = NewTestId(name, UffFileId, tried.subId, {DaxDataType::Float, DaxDataType::Double});
        const Values values = {0.25, tried.isComplex ? -2.0 : 0, 3, tried.isComplex ? 1e-3 : 0, 5, 0};
        VDCFAccHandle acc = OpenSpectra(id.Get(), 3);
        EXPECT_TRUE(CFAccSetType(acc.Get(), DaxSpectrumType::CrossSpectrum) && CFAccSetComplex(acc.Get(), tried.isComplex) &&
                    CFAccSetNumLines(acc.Get(), 3) && CFAccSetZUnits(acc.Get(), 1, "g/N"));
        EXPECT_FALSE(CFAccSetNumSpectra(acc.Get(), 2));
        EXPECT_TRUE(CFAccPutLineAxisData(acc.Get(), 1, 3, DaxSpectrumKind::Double, tried.axis.data()));
        const Values real = {values[0], values[2], values[4]};
        for (const int channel : {0, 1})
            EXPECT_TRUE(CFAccPutData(acc.Get(), channel, 1, 1, 3,
                                     tried.isComplex ? DaxSpectrumKind::ComplexDouble : DaxSpectrumKind::Double,
                                     tried.isComplex ? values.data() : real.data()))
                << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_EQ(CFAccClose(acc.Get()) != 0, tried.tests > 0) << VFErrorGetText(VFGetBaseLibError()).Str();
        const auto tests = VDFileSystem::FileExists(name.c_str()) ? Identify(name) : std::vector<VDFileIdHandle>();
        ASSERT_EQ(tests.size(), tried.tests);
        if (tests.empty())
            continue;
        acc = OpenSpectra(tests[0].Get());
        EXPECT_EQ(Axis(acc.Get()), tried.axis);
        EXPECT_EQ(Lines(acc.Get(), 0), values);
        EXPECT_EQ(TestValue<CFAccGetComplex>(acc.Get()), tried.isComplex ? 1 : 0);
        EXPECT_EQ(TestValue<CFAccGetType>(acc.Get()), DaxSpectrumType::CrossSpectrum);
    }
}
