#include "ObjectFaults.h"
#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdstore/LQDataManager.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

/// A time series in a file of its own; closed with the object.
class Store
{
public:
    explicit Store(const std::string& name) : name_(name) {}
    ~Store() { Close(false); }

    LQTimeSeries* Open(bool writable)
    {
        file_ = manager_.GetFileManager()->OpenFile(name_.c_str(), writable);
        return file_ == nullptr ? nullptr : Keep(manager_.OpenTimeSeries(file_->GetRoot(), "TimeSeries"));
    }
    LQTimeSeries* Create()
    {
        file_ = manager_.GetFileManager()->CreateFile(name_.c_str(), nullptr);
        return Keep(manager_.AdoptTimeSeries(file_->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K));
    }
    bool Flush() { return manager_.Flush(series_); }
    bool Close(bool save)
    {
        if (file_ == nullptr)
            return true;
        const bool good = series_ == nullptr || manager_.Close(series_, save);
        series_ = nullptr;
        return manager_.GetFileManager()->CloseFile(std::exchange(file_, nullptr), save) && good;
    }
    Z4File* File() const { return file_; }

private:
    LQTimeSeries* Keep(LQTimeSeries* series) { return series_ = series; }

    LQDataManager& manager_ = *LQGetDataManager();
    std::string name_;
    Z4File* file_ = nullptr;
    LQTimeSeries* series_ = nullptr;
};

template <class T>
std::vector<T> Ramp(std::size_t count, T first)
{
    std::vector<T> values(count);
    for (T& value : values)
        value = first++;
    return values;
}

/// A file of one channel of each type.
void MakeMixed(Store& store)
{
    LQTimeSeries* const series = store.Create();
    ASSERT_NE(series, nullptr);
    ASSERT_TRUE(series->AdjustChannelCountSinglePrecision(1) && series->AdjustChannelCountDoublePrecision(1) &&
                series->AdjustChannelCountDigital32(1, 1) && series->AdjustChannelCountDigital64(1, 1));
    const auto floats = Ramp<float>(20'000, 1);
    const auto doubles = Ramp<double>(20'000, 0.5);
    const auto words = Ramp<std::uint32_t>(20'000, 0xfffff000);
    const auto longs = Ramp<std::uint64_t>(20'000, 0xfffffffffffff000);
    for (const std::int64_t first : {0, 7'000, 14'000}) {
        const std::int64_t count = std::min<std::int64_t>(7'000, 20'000 - first);
        ASSERT_TRUE(series->SetData(first, count, floats.data() + first, 0));
        ASSERT_TRUE(series->SetDataDoublePrecision(first, count, doubles.data() + first, 1));
        ASSERT_TRUE(series->SetDataDigital32(first, count, words.data() + first, 2));
        ASSERT_TRUE(series->SetDataDigital64(first, count, longs.data() + first, 3));
    }
}

void ExpectMixed(LQTimeSeries& series)
{
    const auto expect = [&series](auto get, int index, auto first) {
        std::vector<decltype(first)> values(20'000);
        std::int64_t count = 0;
        EXPECT_TRUE((series.*get)(0, 20'000, &count, values.data(), index) && values == Ramp(20'000, first)) << index;
    };
    expect(&LQTimeSeries::GetData, 0, 1.0F);
    expect(&LQTimeSeries::GetDataDoublePrecision, series.MapperToDouble(1), 0.5);
    expect(&LQTimeSeries::GetDataDigital32, series.MapperToDigital32(2), std::uint32_t(0xfffff000));
    expect(&LQTimeSeries::GetDataDigital64, series.MapperToDigital64(3), std::uint64_t(0xfffffffffffff000));
}

}  // namespace

TEST(TimeSeries, KeepsEachTypeAndRefusesTheOthers)
{
    const TestFolder folder;
    Store store(folder.Name("mixed.z4t"));
    MakeMixed(store);
    ASSERT_TRUE(store.Close(true));
    LQTimeSeries* const series = store.Open(false);
    ASSERT_NE(series, nullptr);
    ExpectMixed(*series);
    const std::int32_t types[] = {Z4TypeFloat, Z4TypeDouble, LQTypeDigital32, LQTypeDigital64};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(series->GetChannelDataType(i), types[i]);
        EXPECT_EQ(series->GetElementCount(i), 20'000);
    }
    float values[10] = {};
    std::int64_t count = -1;
    EXPECT_TRUE(series->GetData(19'995, 10, &count, values, 0));
    EXPECT_EQ(count, 5);
    EXPECT_EQ(values[4], 20'000.0F);
    EXPECT_TRUE(series->GetData(30'000, 10, &count, values, 0));
    EXPECT_EQ(count, 0);
    series->ResetError();
    ExpectFailure(series->GetData(0, 10, &count, values, 2), VDStoreError::WrongDataType);
    EXPECT_EQ(series->GetError(), VDStoreError::WrongDataType);
    ExpectFailure(series->GetData(0, 10, &count, values, 4), VDStoreError::NoChannelIndex);
    ExpectFailure(series->GetData(-1, 10, &count, values, 0), VDStoreError::OutOfRange);
    ExpectFailure(series->SetData(0, 1, values, 0), VDArchiveError::WrongUse, "open for reading");
}

TEST(TimeSeries, DataOfTheOtherByteOrderAreTurned)
{
    const TestFolder folder;
    const std::string name = folder.Name("mixed.z4t");
    Store store(name);
    MakeMixed(store);
    ASSERT_TRUE(store.File()->SetSubType(11) && store.Close(true));
    folder.Write("mixed.z4t", OfOtherByteOrder(TestReadFile(name)));
    LQTimeSeries* const series = store.Open(false);
    ASSERT_NE(series, nullptr);
    EXPECT_EQ(store.File()->GetSubType(), 11);
    EXPECT_EQ(store.File()->GetOpSys(), 1);
    std::uint32_t word = 0;
    std::uint64_t huge = 0;
    ASSERT_TRUE(series->GetDataDigital32(1, 1, nullptr, &word, 2) && series->GetDataDigital64(1, 1, nullptr, &huge, 3));
    EXPECT_EQ(word, 0x01f0ffffU);
    EXPECT_EQ(huge, 0x01f0ffffffffffffU);
    store.Close(false);
    EXPECT_EQ(store.Open(true), nullptr);
    ExpectError(VDArchiveError::FileOpen, "other byte order");
}

TEST(TimeSeries, FactsStatisticsAndMetadataComeBack)
{
    const TestFolder folder;
    Store store(folder.Name("facts.z4t"));
    LQTimeSeries* series = store.Create();
    ASSERT_TRUE(series->AdjustChannelCountSinglePrecision(2));
    LQChannelMapper* mapper = series->GetMapper();
    ASSERT_TRUE(mapper->SetChannelNumber(7, 0) && mapper->SetChannelNumber(3, 1));
    const float values[] = {1, 5, 2};
    ASSERT_TRUE(series->SetData(0, 3, values, 0));
    ASSERT_TRUE(series->SetSampleRate(0, 200) && series->SetBaseTime(0, 1.5) && series->SetYTitle(0, "Force") &&
                series->SetYUnits(0, "kN") && series->SetChanTitle(0, "Front left") && series->SetXTitle("Time") &&
                series->SetXUnits("s") && series->SetStats(0, 5, 1, 2.5F, 2, 3, 2, 1, 2));
    mapper->AdoptMetaDataSet("Sensor", nullptr, 0)->AddDouble("Gain", 2.5);
    mapper->AdoptMetaDataSet("Sensor", nullptr, 0)->AddHuge("Serial", 12)->SetDefined(false);
    mapper->AdoptMetaDataSet("Test", nullptr, LQChannelMapper::GLOBAL)->AddString("Driver", "M\xc3\xbcller");
    ASSERT_TRUE(store.Close(true));

    series = store.Open(false);
    ASSERT_NE(series, nullptr);
    mapper = series->GetMapper();
    EXPECT_EQ(mapper->IndexFromNumber(3, false), 1);
    EXPECT_EQ(mapper->GetMetaDataSet("Sensor", 0)->GetProperty("Serial", false)->ToString(), "Undefined");
    EXPECT_EQ(mapper->GetMetaDataItem("Driver", LQChannelMapper::GLOBAL)->ToString(), "M\xc3\xbcller");
    float stat = 0;
    EXPECT_TRUE(series->GetStat(0, VTTsFloatStatMin, &stat));
    EXPECT_EQ(stat, 1);
    EXPECT_FALSE(series->GetStat(1, VTTsFloatStatMin, &stat));

    EXPECT_TRUE(series->RefreshMetadata(false, LQObject::ALL_CHANNELS));
    const std::pair<const char*, const char*> attributes[] = {
        {"SampleRate", "200"}, {"BaseTime", "1.5"}, {"NumPoints", "3"},
        {"Max", "5"},          {"PMax", "2"},       {"TimeMax", "1.505"},
        {"YTitle", "Force"},   {"YUnits", "kN"},    {"ChanTitle", "Front left"}};
    for (const auto& [name, value] : attributes)
        EXPECT_EQ(mapper->GetMetaDataSet("Attributes", 0)->GetProperty(name, true)->ToString(), value) << name;
    EXPECT_FALSE(mapper->GetMetaDataSet("Attributes", 1)->Exists("Max", false));
    EXPECT_EQ(mapper->GetMetaDataItem("XUnits", LQChannelMapper::GLOBAL)->ToString(), "s");

    // Statistics of points that aren't there are stored as they are given, but count for nothing when they are read.
    for (const std::int64_t point : {std::numeric_limits<std::int64_t>::min(), std::int64_t(4)}) {
        store.Close(false);
        series = store.Open(true);
        ASSERT_TRUE(series->SetStats(0, 5, 1, 2.5F, 2, 3, 2, point, 2) && store.Close(true));
        series = store.Open(false);
        EXPECT_FALSE(series->GetStat(0, VTTsFloatStatMin, &stat));
        EXPECT_TRUE(series->RefreshMetadata(false, LQObject::ALL_CHANNELS));
    }
}

TEST(TimeSeries, AFlushStaysAndACloseWithoutSavingDropsTheRest)
{
    const TestFolder folder;
    Store store(folder.Name("flush.z4t"));
    MakeMixed(store);
    ASSERT_TRUE(store.Flush());
    ASSERT_TRUE(store.Close(false));
    LQTimeSeries* series = store.Open(true);
    ASSERT_NE(series, nullptr);
    const std::vector<float> zeros(20'000, 0);
    ASSERT_TRUE(series->SetData(5, 20'000, zeros.data(), 0) && series->AdjustElementCount(3, 1) &&
                series->AdjustChannelCountDigital32(0, 1) && series->SetXTitle("lost"));
    EXPECT_EQ(series->GetChannelCount(), 3);
    EXPECT_EQ(LQGetDataManager()->OpenTimeSeries(store.File()->GetRoot(), "TimeSeries"), nullptr) << "it is being written";
    ExpectError(VDArchiveError::WrongUse);
    ASSERT_TRUE(store.Close(false));

    series = store.Open(true);
    ASSERT_NE(series, nullptr);
    ExpectMixed(*series);
    // Channels may go and come in the middle; the others keep their data.
    ASSERT_TRUE(series->AdjustChannelCountDoublePrecision(0) && series->AdjustElementCount(20'010, 0) && store.Flush());
    ASSERT_TRUE(store.Close(true));
    series = store.Open(false);
    ASSERT_NE(series, nullptr);
    float ends[11] = {};
    EXPECT_TRUE(series->GetData(19'999, 11, nullptr, ends, 0));
    EXPECT_EQ(ends[0], 20'000.0F);
    EXPECT_EQ(ends[10], 0);
    std::uint64_t huge = 0;
    EXPECT_TRUE(series->GetDataDigital64(19'999, 1, nullptr, &huge, 2));
    EXPECT_EQ(huge, 0xfffffffffffff000 + 19'999);
    VDStringArray findings;
    EXPECT_TRUE(LQGetDataManager()->GetFileManager()->CheckFile(folder.Name("flush.z4t").c_str(), &findings));
}

TEST(DataManager, KeepsMetadataHostsAndTellsKindsApart)
{
    const TestFolder folder;
    LQDataManager& manager = *LQGetDataManager();
    Z4File* file = manager.GetFileManager()->AdoptFile(folder.Name("a.vmd").c_str(), nullptr, nullptr);
    ASSERT_NE(file, nullptr);
    bool created = false;
    LQMetaDataHost* host = manager.AdoptMetaDataHost(file->GetRoot(), "MetaData", &created);
    ASSERT_NE(host, nullptr);
    EXPECT_TRUE(created);
    EXPECT_EQ(host->GetMapper()->IndexFromNumber(0, false), 0) << "a new host has a channel of number 0";
    ASSERT_TRUE(host->RemoveChannel(0) && host->AdjustChannelCount(2) && host->SetChanTitle("two", 1) &&
                host->RefreshMetadata(false, LQObject::ALL_CHANNELS));
    ASSERT_TRUE(manager.Close(host, true));
    EXPECT_EQ(manager.AdoptTimeSeries(file->GetRoot(), "MetaData", nullptr, Z4Size::Record32K), nullptr);
    ExpectError(VDStoreError::NoObject);
    EXPECT_EQ(manager.OpenTimeSeries(file->GetRoot(), "TimeSeries"), nullptr);
    ExpectError(VDStoreError::NoObject, "\"TimeSeries\"");
    LQFlexTimeSeries* const flex = manager.AdoptFlexTimeSeries(file->GetRoot(), "TimeSeries", nullptr, Z4Size::Record256K);
    const float value = 4;
    ASSERT_TRUE(flex->AdjustChannelCount(2) && flex->SetData(2, 1, &value, 1) && manager.Flush(flex));
    manager.GetFileManager()->CloseFile(file, true);
    EXPECT_FALSE(flex->SetData(0, 1, &value, 0)) << "the file is closed";
    ExpectError(VDArchiveError::WrongUse);
    EXPECT_TRUE(manager.Close(flex, false));

    file = manager.GetFileManager()->OpenFile(folder.Name("a.vmd").c_str(), false);
    host = manager.AdoptMetaDataHost(file->GetRoot(), "MetaData", &created);
    EXPECT_FALSE(created);
    EXPECT_EQ(host->GetMapper()->GetMetaDataItem("ChanTitle", 1)->ToString(), "two");
    EXPECT_EQ(manager.AdoptMetaDataHost(file->GetRoot(), "Other", &created), nullptr);
    LQTimeSeries* const series = manager.OpenTimeSeries(file->GetRoot(), "TimeSeries");
    ASSERT_NE(series, nullptr) << "a flex series is opened like any other";
    EXPECT_EQ(series->GetElementCount(1), 3);
    EXPECT_TRUE(manager.Close(series, false) && manager.Close(host, false));
    EXPECT_TRUE(manager.GetFileManager()->CloseFile(file, false));
}
