#include "daxlib/ComplexFrequencyPlugin.h"
#include "storage/StorageFileTypes.h"
#include "support/TestFileId.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

#include <set>

// What the complex frequency family does around the calls of its plug-in, which is made up here.

namespace {

/// What the plug-in was told, and what it answers.
struct Plugin
{
    std::string log;
    std::set<int> capabilities = {DaxComplexFrequency::Writable, DaxComplexFrequency::LargeFiles,
                                  DaxComplexFrequency::KeepsMetaData};
    std::int64_t spectra = 3;
    std::int64_t lines = 10;
    LQChannelMapper mapper{nullptr};
};
Plugin* VVPlugin = nullptr;

template <class... Numbers>
int Note(const char* name, Numbers... numbers)
{
    VVPlugin->log += name;
    ((VVPlugin->log += " " + std::to_string(numbers)), ...);
    VVPlugin->log += "; ";
    return 1;
}

}  // namespace

#define TEST_API extern "C" __attribute__((visibility("default")))
TEST_API void* TestCFCreate(const char*) { return VVPlugin; }
TEST_API int TestCFRelease(void*) { return 1; }
TEST_API int TestCFSetId(void*, VDFileId*, char) { return 1; }
TEST_API int TestCFOpen(void*, int mode) { return Note("Open", mode); }
TEST_API int TestCFClose(void*) { return 1; }
TEST_API int TestCFFlush(void*) { return 1; }
TEST_API void TestCFGetLastError(VDString& text) { text = "VARDO"; }
TEST_API int TestCFGetCapability(void*, int capability, char* answer)
{
    *answer = VVPlugin->capabilities.contains(capability);
    return 1;
}
TEST_API int TestCFGetValue(void*, long, std::int64_t, std::int64_t, int key, VDVariant*, VDVariant* value)
{
    if (key == DaxComplexFrequency::NumSpectra || key == DaxComplexFrequency::NumLines)
        value->SetHuge(key == DaxComplexFrequency::NumSpectra ? VVPlugin->spectra : VVPlugin->lines);
    else if (key == DaxComplexFrequency::Complex)
        value->SetBoolean(true);
    else
        value->SetLong(key);
    return 1;
}
TEST_API int TestCFPutValue(void*, long, std::int64_t, std::int64_t, int key, VDVariant*) { return Note("put", key); }
TEST_API DaxComplexFrequency::GetData TestCFGetData;
int TestCFGetData(void*, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, void*)
{
    return Note("get", channel, spectrum, first, count, kind);
}
TEST_API DaxComplexFrequency::PutData TestCFPutData;
int TestCFPutData(void*, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind, const void*)
{
    return Note("put", channel, spectrum, first, count, kind);
}
TEST_API int TestCFGetLineAxisData(void*, std::int64_t first, std::int64_t count, int, void*)
{
    return Note("get lines", first, count);
}
TEST_API int TestCFPutLineAxisData(void*, std::int64_t first, std::int64_t count, int, const void*)
{
    return Note("put lines", first, count);
}
TEST_API int TestCFGetSpectrumAxisData(void*, std::int64_t first, std::int64_t count, int, void*)
{
    return Note("get spectra", first, count);
}
TEST_API int TestCFPutSpectrumAxisData(void*, std::int64_t first, std::int64_t count, int, const void*)
{
    return Note("put spectra", first, count);
}
TEST_API int TestCFSetProgressObject(void*, VDProgressObject*) { return Note("progress"); }
TEST_API int TestCFLoadMetaData(void*, LQChannelMapper** mapper)
{
    *mapper = &VVPlugin->mapper;
    return 1;
}
TEST_API int TestCFAddLegacyMetaData(void*, LQChannelMapper*) { return 1; }
#undef TEST_API

namespace {

class ComplexFrequencyTest : public testing::Test
{
protected:
    ComplexFrequencyTest()
    {
        VVPlugin = &plugin_;
        EXPECT_TRUE(CFAccAddPlugin(StorageFormat::TimeSeriesClass, "TestCF", "daxlib", ""))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        TestAddChannels(id_, {1, 2});
        FIDSetFileId(id_.Get(), DaxStorageFileId, StorageFormat::TimeSeries);
        FIDSetChanUnits(id_.Get(), 1, "kN");
        FIDSetIdentified(id_.Get(), 1);
        FIDSetInfoLoaded(id_.Get(), 1);
        for (const int number : {1, 2})
            plugin_.mapper.SetChannelNumber(number, plugin_.mapper.Append());
    }
    void Open(int mode)
    {
        ASSERT_TRUE(CFAccSetId(Acc(), id_.Get(), mode > 2)) << VFErrorGetText(VFGetBaseLibError()).Str();
        ASSERT_TRUE(CFAccOpen(Acc(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
        plugin_.log.clear();
    }
    VDCFAcc* Acc() const { return acc_.Get(); }
    std::string TakeLog() { return std::exchange(plugin_.log, {}); }

    TestFolder folder_;
    VDFileIdHandle id_ = TestId(folder_.Write("test.z4t", ""));
    Plugin plugin_;
    VDCFAccHandle acc_{CFAccCreate()};
};

}  // namespace

TEST_F(ComplexFrequencyTest, ReadsAreCheckedAgainstWhatWasThereAtTheOpening)
{
    ExpectFailure(CFAccSetType(Acc(), 2), -328009, "", "VDCFAcc::SetType");
    float values[20] = {};
    std::int64_t read = -1;
    ExpectFailure(CFAccGetLineAxisData(Acc(), 1, 1, 1, &read, values), -327993, "", "VDCFAcc::GetData");
    Open(1);
    ExpectFailure(CFAccGetData(Acc(), 2, 1, 1, 1, 3, &read, values), -327995);
    ExpectFailure(CFAccGetData(Acc(), 1, 4, 11, 1, 3, &read, values), -331582, "Spectra index out of range",
                  "VDCFAcc::GetData");
    ExpectFailure(CFAccGetData(Acc(), 1, 3, 11, 1, 3, &read, values), -331584, "Line index out of range");
    ExpectFailure(CFAccGetData(Acc(), 1, 3, 8, 4, 3, nullptr, values), -327686);
    EXPECT_TRUE(CFAccGetData(Acc(), 1, 3, 8, 4, 3, &read, values));
    EXPECT_EQ(read, 3);
    EXPECT_TRUE(CFAccGetData(Acc(), 1, 3, 8, 0, 3, &read, values));
    EXPECT_EQ(read, 0);
    EXPECT_TRUE(CFAccGetSpectrumAxisData(Acc(), 2, 20, 2, &read, values));
    EXPECT_EQ(read, 2);
    EXPECT_EQ(TakeLog(), "get 1 3 8 3 3; get spectra 2 2; ");
    ExpectFailure(CFAccPutData(Acc(), 0, 1, 1, 1, 1, values), -327998);
    // The plug-in is asked for a number, while the checks go on with what they know.
    plugin_.lines = 20;
    EXPECT_EQ(TestValue<CFAccGetNumLines>(Acc()), 20);
    ExpectFailure(CFAccGetLineAxisData(Acc(), 11, 1, 1, &read, values), -331584, "", "VDCFAcc::GetLineAxisData");
    EXPECT_EQ(TestValue<CFAccGetType>(Acc()), DaxComplexFrequency::Type);
    EXPECT_EQ(TestValue<CFAccGetComplex>(Acc()), 1);
    EXPECT_TRUE(CFAccSetProgressObject(Acc(), nullptr));
    EXPECT_EQ(TakeLog(), "progress; ");
}

TEST_F(ComplexFrequencyTest, WritesMakeSpectraAndNoLines)
{
    Open(3);
    const float values[20] = {};
    ExpectFailure(CFAccPutData(Acc(), 0, 1, 1, 1, 1, values), -331583, "No lines defined", "VDCFAcc::PutData");
    EXPECT_TRUE(CFAccSetNumLines(Acc(), 10));
    ExpectFailure(CFAccPutSpectrumAxisData(Acc(), 1, 1, 1, values), -331581, "No spectra defined");
    EXPECT_TRUE(CFAccPutData(Acc(), 1, 5, 4, 7, 3, values));
    EXPECT_TRUE(CFAccPutData(Acc(), 1, 9, 4, 0, 3, values));
    ExpectFailure(CFAccPutData(Acc(), 1, 5, 4, 8, 3, values), -327990, "", "VDCFAcc::PutData");
    ExpectFailure(CFAccPutLineAxisData(Acc(), 10, 2, 2, values), -327990, "", "VDCFAcc::PutData");
    ExpectFailure(CFAccPutSpectrumAxisData(Acc(), 5, 2, 2, values), -327990, "", "VDCFAcc::PutSpectrumAxisData");
    EXPECT_TRUE(CFAccPutSpectrumAxisData(Acc(), 5, 1, 2, values));
    plugin_.capabilities = {DaxComplexFrequency::Writable, DaxComplexFrequency::Extendable};
    EXPECT_TRUE(CFAccPutLineAxisData(Acc(), 10, 2, 2, values));
    ExpectFailure(CFAccPutData(Acc(), 0, 1, 2, 2'000'000'000, 1, values), -328006);
    EXPECT_EQ(TakeLog(), "put 4; put 1 5 4 7 3; put spectra 5 1; put lines 10 2; ");
}

TEST_F(ComplexFrequencyTest, TextsHaveCapabilitiesAndMetaDataTheHeader)
{
    Open(2);
    EXPECT_EQ(TestValue<CFAccGetChanUnits>(Acc(), 1), "kN");
    VDString text;
    ExpectFailure(CFAccGetXTitle(Acc(), 0, &text), -331586, "", "VDCFAcc::GetXTitle");
    ExpectFailure(CFAccSetZTitle(Acc(), 0, ""), -331590, "File format does not support a z axis title",
                  "VDCFAcc::SetZTitle");
    ExpectFailure(CFAccSetZUnits(Acc(), 0, ""), -331591);
    plugin_.capabilities.insert(DaxComplexFrequency::YUnitsTexts);
    EXPECT_TRUE(CFAccSetYUnits(Acc(), 0, "s"));
    EXPECT_EQ(TakeLog(), "put 14; ");

    EXPECT_TRUE(CFAccClose(Acc()));
    FIDSetChanTitle(id_.Get(), 1, "Z+");
    Open(1);
    auto* const mapper = TestValue<CFAccGetMetaData>(Acc());
    std::int64_t lines = 0;
    EXPECT_TRUE(mapper->GetMetaDataSet(LQChannelMapper::ATTRIBUTES, LQChannelMapper::GLOBAL)->GetHuge("NumLines", &lines));
    EXPECT_EQ(lines, 10);
    EXPECT_TRUE(mapper->GetStringMetaDataItem("ChanTitle", &text, 1));
    EXPECT_EQ(text, "Z+");
}
