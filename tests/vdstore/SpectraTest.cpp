#include "ObjectFaults.h"
#include "support/TestSupport.h"
#include "vdstore/LQDataManager.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <array>
#include <utility>

namespace {

class SpectraTest : public testing::Test
{
protected:
    ~SpectraTest() override { Close(false); }

    LQSpectra* Create()
    {
        file_ = manager_.GetFileManager()->CreateFile(name_.c_str(), nullptr);
        return spectra_ = manager_.AdoptSpectra(file_->GetRoot(), "ComplexFrequency", nullptr, Z4Size::Record32K);
    }
    LQSpectra* Open(bool writable)
    {
        file_ = manager_.GetFileManager()->OpenFile(name_.c_str(), writable);
        return spectra_ = manager_.OpenSpectra(file_->GetRoot(), "ComplexFrequency");
    }
    bool Close(bool save)
    {
        if (file_ == nullptr)
            return true;
        const bool good = spectra_ == nullptr || manager_.Close(std::exchange(spectra_, nullptr), save);
        return manager_.GetFileManager()->CloseFile(std::exchange(file_, nullptr), save) && good;
    }

    LQDataManager& manager_ = *LQGetDataManager();
    TestFolder folder_;
    std::string name_ = folder_.Name("test.z4c");
    Z4File* file_ = nullptr;
    LQSpectra* spectra_ = nullptr;
};

}  // namespace

TEST_F(SpectraTest, EachTypeOfValuesIsGivenInAllThatLoseNothing)
{
    constexpr int Lines = 5'000;  // more than are converted at a time
    LQSpectra* spectra = Create();
    ASSERT_TRUE(spectra->AdjustChannelCount(4) && spectra->SetNumLines(Lines));
    spectra->SetType(4);
    std::vector<double> values(2 * Lines);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<double>(i);
    const std::vector<float> singles(values.begin(), values.end());
    const auto buffer = [&](int type) -> const void* {
        return type % 2 == 0 ? static_cast<const void*>(values.data()) : singles.data();
    };
    for (int type = 1; type <= 4; ++type)
        ASSERT_TRUE(spectra->SetValueType(type - 1, type) && spectra->SetData(2, 0, Lines, type, buffer(type), type - 1));
    ExpectFailure(spectra->SetValueType(0, LQSpectrumDouble), VDStoreError::WrongDataType);
    ExpectFailure(spectra->SetNumLines(7), VDStoreError::OutOfRange);
    const auto tried = [&](int type, int channel) { return spectra->SetData(3, 1, 4'998, type, buffer(type), channel); };
    for (const auto& [type, channel] : {std::pair(2, 0), {3, 0}, {4, 0}, {3, 1}, {4, 1}, {2, 2}, {4, 2}, {0, 3}, {5, 3}})
        ExpectFailure(tried(type, channel), VDStoreError::WrongDataType);
    EXPECT_TRUE(tried(1, 1) && tried(1, 2) && tried(1, 3) && tried(2, 3) && tried(3, 3));
    const std::array axis = {0.5, 1.0, 1.5};
    EXPECT_TRUE(spectra->SetAxis(LQSpectraLines, 0, 3, axis.data()) &&
                spectra->SetAxis(LQSpectraSpectra, 1, 3, axis.data()));
    ExpectFailure(spectra->SetAxis(LQSpectraSpectra, 2, 3, axis.data()), VDStoreError::OutOfRange);
    ASSERT_TRUE(spectra->SetText(LQSpectraZUnits, 3, "g^2/Hz") && Close(true));

    spectra = Open(true);
    ASSERT_NE(spectra, nullptr);
    EXPECT_EQ(spectra->GetType(), 4);
    EXPECT_EQ(spectra->GetNumSpectra(), 4);
    VDString text;
    EXPECT_TRUE(spectra->GetText(LQSpectraZUnits, 3, &text));
    EXPECT_EQ(text, "g^2/Hz");
    std::vector<double> read(2 * Lines, -1);
    std::vector<float> single(2 * Lines, -1);
    // The real values of channel 0 as complex doubles, and the complex doubles as complex floats.
    EXPECT_TRUE(spectra->GetData(2, 0, Lines, LQSpectrumComplexDouble, read.data(), 0));
    EXPECT_EQ(read[2 * 4'999], 4'999);
    EXPECT_EQ(read[2 * 4'999 + 1], 0);
    EXPECT_TRUE(spectra->GetData(2, 0, Lines, LQSpectrumComplexFloat, single.data(), 3) && single == singles);
    ExpectFailure(spectra->GetData(2, 0, 1, LQSpectrumDouble, read.data(), 3), VDStoreError::WrongDataType);
    EXPECT_TRUE(spectra->GetData(3, 0, 3, LQSpectrumComplexFloat, single.data(), 2));
    EXPECT_EQ(std::vector(single.begin(), single.begin() + 6), (std::vector<float>{0, 0, 0, 0, 1, 0}));
    // What was never written is 0: a whole spectrum, one behind the end of the stream, and an axis.
    EXPECT_TRUE(spectra->GetData(1, 0, Lines, LQSpectrumFloat, single.data(), 0));
    EXPECT_EQ(single[Lines - 1], 0);
    EXPECT_TRUE(spectra->GetData(3, 0, 1, LQSpectrumFloat, single.data(), 0));
    EXPECT_EQ(single[0], 0);
    EXPECT_TRUE(spectra->GetAxis(LQSpectraLines, 2, 2, read.data()));
    EXPECT_EQ(read[0], 1.5);
    EXPECT_EQ(read[1], 0);
    ExpectFailure(spectra->GetData(4, 0, 1, LQSpectrumFloat, single.data(), 0), VDStoreError::OutOfRange);
    ExpectFailure(spectra->GetData(0, 4'999, 2, LQSpectrumFloat, single.data(), 0), VDStoreError::OutOfRange);
    ExpectFailure(spectra->SetData(1LL << 41, 0, 1, LQSpectrumFloat, single.data(), 0), VDStoreError::OutOfRange);
    // What is cut off doesn't come back.
    ASSERT_TRUE(spectra->SetNumSpectra(2) && spectra->SetNumSpectra(4) && spectra->RemoveChannel(0));
    EXPECT_TRUE(spectra->GetData(2, 0, 2, LQSpectrumDouble, read.data(), 0) && read[1] == 0);
}

TEST_F(SpectraTest, DescriptionsThatCannotBeAreRefused)
{
    struct Case
    {
        std::int64_t spectra, lines;
        std::uint32_t channels;
        std::uint8_t type;
        std::array<std::int64_t, 3> lengths;
        bool isGood = false;
    };
    const Case cases[] = {
        {2, 3, 1, 4, {24, 16, 96}, true}, {2, 3, 1, 1, {0, 0, 4}, true}, {1LL << 43, 0, 1, 1, {0, 8, 0}, true},
        {-1, 3, 1, 1, {0, 0, 0}},         {2, -3, 1, 1, {0, 0, 0}},      {1LL << 22, (1LL << 20) + 1, 1, 4, {0, 0, 0}},
        {1LL << 62, 4, 1, 4, {0, 0, 0}},  {2, 3, 2, 4, {0, 0, 0}},       {2, 3, 0, 4, {0, 0, 0}},
        {2, 3, 1, 0, {0, 0, 0}},          {2, 3, 1, 5, {0, 0, 0}},       {2, 3, 1, 4, {32, 16, 96}},
        {2, 3, 1, 4, {24, 20, 96}},       {2, 3, 1, 4, {24, 16, 112}},   {2, 3, 1, 4, {24, 16, 88}}};
    for (const Case& tried : cases) {
        SCOPED_TRACE(&tried - cases);
        file_ = manager_.GetFileManager()->CreateFile(name_.c_str(), nullptr);
        Z4Node* const node = file_->GetRoot()->AdoptNode("ComplexFrequency", LQObject::KindSpectra, nullptr);
        for (const std::int64_t length : tried.lengths)
            ASSERT_TRUE(node->AddStream(Z4Size::Record32K)->SetLength(length));
        Z4ByteWriter writer;
        writer.Put(std::int32_t(2));
        writer.Put(std::int32_t(0));
        writer.Put(tried.spectra);
        writer.Put(tried.lines);
        writer.Put(tried.channels);
        writer.Put(tried.type);
        for (int i = 0; i < LQSpectraTexts; ++i)
            writer.PutText("");
        writer.Put(std::uint32_t(0));  // no sets, no channels in the mapper
        writer.Put(std::uint32_t(0));
        node->SetContent(writer.Take());
        ASSERT_TRUE(node->Commit() && Close(true));
        EXPECT_EQ(Open(false) != nullptr, tried.isGood);
        if (!tried.isGood)
            ExpectError(VDStoreError::ContentDamaged);
        Close(false);
    }
}

namespace {

constexpr int FaultLines = 150;

float ValueOf(int version, int spectrum, int line)
{
    return static_cast<float>(version * 10'000 + spectrum * 100 + line);
}

/// Each version has a spectrum more, and has written over the first one; the third is cut to two.
int SpectraOf(int version)
{
    return version == 3 ? 2 : version;
}

bool WriteSpectra(LQObject& object, int before)
{
    auto& spectra = static_cast<LQSpectra&>(object);
    const int version = before + 1;
    bool good = before > 0 || (spectra.AdjustChannelCount(2) && spectra.SetNumLines(FaultLines));
    std::vector<float> values(2 * FaultLines);
    for (const int spectrum : {0, SpectraOf(version) - 1}) {
        for (int line = 0; line < 2 * FaultLines; ++line)
            values[static_cast<std::size_t>(line)] = ValueOf(version, spectrum, line);
        good = good && spectra.SetData(spectrum, 0, FaultLines, LQSpectrumComplexFloat, values.data(), 1);
    }
    const double place = version;
    return good && spectra.SetNumSpectra(SpectraOf(version)) && spectra.SetAxis(LQSpectraSpectra, 0, 1, &place);
}

bool HoldsSpectra(LQObject& object, int version)
{
    auto& spectra = static_cast<LQSpectra&>(object);
    std::vector<float> values(2 * FaultLines);
    double place = -1;
    if (version == 0)
        return spectra.GetChannelCount() == 0 && spectra.GetNumSpectra() == 0;
    bool good =
        spectra.GetNumSpectra() == SpectraOf(version) && spectra.GetAxis(LQSpectraSpectra, 0, 1, &place) && place == version;
    for (const int spectrum : {0, SpectraOf(version) - 1}) {
        good = good && spectra.GetData(spectrum, 0, FaultLines, LQSpectrumComplexFloat, values.data(), 1);
        for (int line = 0; good && line < 2 * FaultLines; ++line)
            good = values[static_cast<std::size_t>(line)] == ValueOf(version, spectrum, line);
    }
    return good;
}

}  // namespace

TEST_F(SpectraTest, SurvivesFaults)
{
    ExpectSurvivesFaults({.adopt = [](LQDataManager& manager, Z4Storage* storage) -> LQObject* {
                              return manager.AdoptSpectra(storage, "ComplexFrequency", nullptr, Z4Size::Record32K);
                          },
                          .write = WriteSpectra,
                          .holds = HoldsSpectra});
}
