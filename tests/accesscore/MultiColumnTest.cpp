#include "daxlib/MultiColumnPlugin.h"
#include "daxlib/VDProgressObject.h"
#include "storage/StorageFileTypes.h"
#include "support/TestFileId.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>
#include <set>

// What the multi-column family does around the calls of its plug-in, which is made up here.

namespace {

using namespace DaxMultiColumn;

/// What the plug-in was told, and what it answers: every cell is its row times 10, plus its column.
struct Plugin
{
    std::string log;
    std::set<int> capabilities = {Writable, Extendable, LargeDataSets, KeepsMetaData, Enumerations};
    std::vector<std::int64_t> rows = {10, 0};
    std::vector<long> types = {DaxColumnType::Double, DaxColumnType::Text, DaxColumnType::Float, DaxColumnType::Long};
    std::vector<const char*> keywords = {"", "cOL_3", "", "Key"};
    VDVariant limits;
    VDVariant options;
    VDVariant status{true};
    bool readFails = false;
    LQChannelMapper mapper{nullptr};
};
Plugin* VVXy = nullptr;

template <class... Numbers>
int NoteXy(const char* name, Numbers... numbers)
{
    VVXy->log += name;
    ((VVXy->log += " " + std::to_string(numbers)), ...);
    VVXy->log += "; ";
    return 1;
}

}  // namespace

#define TEST_API extern "C" __attribute__((visibility("default")))
TEST_API void* TestXYCreate(const char*) { return VVXy; }
TEST_API int TestXYRelease(void*) { return 1; }
TEST_API int TestXYSetId(void*, VDFileId*, char) { return 1; }
TEST_API int TestXYOpen(void*, int mode) { return NoteXy("Open", mode); }
TEST_API int TestXYClose(void*) { return 1; }
TEST_API int TestXYFlush(void*) { return 1; }
TEST_API void TestXYGetLastError(VDString& text) { text = "Made up"; }
TEST_API int TestXYGetCapability(void*, int capability, char* answer)
{
    *answer = VVXy->capabilities.contains(capability);
    return 1;
}
TEST_API DaxMultiColumn::GetValue TestXYGetValue;
int TestXYGetValue(void*, long, long set, long column, int key, VDVariant* input, VDVariant* value)
{
    long bit = 0;
    switch (key) {
    case NumDataSets: value->SetLong(static_cast<long>(VVXy->rows.size())); break;
    case NumCols: value->SetLong(static_cast<long>(VVXy->types.size())); break;
    case NumRows: value->SetHuge(VVXy->rows.at(static_cast<std::size_t>(set))); break;
    case DataSetTitle: *value = VDVariant(set == 0 ? "" : "Second"); break;
    case ColType: value->SetLong(VVXy->types.at(static_cast<std::size_t>(column))); break;
    case ColKeyword: *value = VDVariant(VVXy->keywords.at(static_cast<std::size_t>(column))); break;
    case ColLimits: *value = VVXy->limits; break;
    case EnumOptions: *value = VVXy->options; break;
    case StatusWordEnabled: *value = VVXy->status; break;
    case StatusBitText:
        input->GetLong(&bit);
        *value = VDVariant(("bit " + std::to_string(bit)).c_str());
        break;
    case FormatSpecific: value->AppendItem(*input); break;
    default: break;
    }
    return 1;
}
TEST_API int TestXYPutValue(void*, long channel, long set, long, int key, VDVariant*)
{
    return NoteXy("put", key, channel, set);
}
TEST_API DaxMultiColumn::GetDataF TestXYGetDataF;
int TestXYGetDataF(void*, long, long, long column, std::int64_t first, std::int64_t count, float* values)
{
    for (std::int64_t at = 0; at < count; ++at)
        values[at] = static_cast<float>((first + at) * 10 + column);
    return NoteXy("floats", first, count);
}
TEST_API DaxMultiColumn::PutDataF TestXYPutDataF;
int TestXYPutDataF(void*, long, long, long, std::int64_t first, std::int64_t count, const float*)
{
    return NoteXy("put floats", first, count);
}
TEST_API DaxMultiColumn::GetDataElement TestXYGetDataElement;
int TestXYGetDataElement(void*, long, long, long, std::int64_t row, VDVariant* value)
{
    value->SetLong(static_cast<long>(row));
    return 1;
}
TEST_API int TestXYPutDataElement(void*, long, long, long, std::int64_t row, VDVariant*) { return NoteXy("put element", row); }
TEST_API int TestXYAppendCol(void*, long, int type)
{
    VVXy->types.push_back(type);
    VVXy->keywords.push_back("");
    return NoteXy("column", type);
}
TEST_API int TestXYAppendColWithStatus(void*, long, int type) { return TestXYAppendCol(nullptr, 0, type); }
TEST_API int TestXYAppendDataSet(void*, long)
{
    VVXy->rows.push_back(0);
    return NoteXy("data set");
}
TEST_API int TestXYSetProgressObject(void*, void*) { return 1; }
TEST_API DaxMultiColumn::GetStatusWordBitData TestXYGetStatusWordBitData;
int TestXYGetStatusWordBitData(void*, long, long, long, int bit, std::int64_t first, std::int64_t count, char*)
{
    return NoteXy("bits", bit, first, count);
}
TEST_API DaxMultiColumn::GetStatusWordData TestXYGetStatusWordData;
int TestXYGetStatusWordData(void*, long, long, long, std::int64_t, std::int64_t, std::uint16_t* words)
{
    *words = 0xc005;
    return 1;
}
TEST_API DaxMultiColumn::PutStatusWordData TestXYPutStatusWordData;
int TestXYPutStatusWordData(void*, long, long, long, std::int64_t first, std::int64_t count, const std::uint16_t*)
{
    return NoteXy("put words", first, count);
}
TEST_API DaxMultiColumn::GetDataValidData TestXYGetDataValidData;
int TestXYGetDataValidData(void*, long, long, long, std::int64_t, std::int64_t, char* valid)
{
    *valid = 0;
    return 1;
}
TEST_API DaxMultiColumn::GetData TestXYGetData;
int TestXYGetData(void*, long, long set, long column, std::int64_t first, std::int64_t count, VDVariant* values)
{
    for (std::int64_t at = 0; at < count; ++at)
        values->SetDoubleAt(at, set > 1 ? std::nan("") : static_cast<double>((first + at) * 10 + column));
    return VVXy->readFails ? 0 : NoteXy("get", first, count);
}
TEST_API DaxMultiColumn::PutData TestXYPutData;
int TestXYPutData(void*, long, long, long, std::int64_t first, VDVariant* values)
{
    return NoteXy("put data", first, values->GetBufferSize());
}
TEST_API int TestXYLoadMetaData(void*, LQChannelMapper** mapper)
{
    *mapper = &VVXy->mapper;
    return 1;
}
TEST_API int TestXYAddLegacyMetaData(void*, LQChannelMapper*) { return 1; }
#undef TEST_API

namespace {

struct Cancelling : VDProgressObject
{
    void Start(const char* text, int) override { log += text; }
    void Update(int percent, char* cancel) override { *cancel = percent >= cancelAt; }
    void Check(char*) override {}
    void End() override { log += " end"; }
    std::string log;
    int cancelAt = 50;
};

class MultiColumnTest : public testing::Test
{
protected:
    MultiColumnTest()
    {
        VVXy = &plugin_;
        EXPECT_TRUE(XYAccAddPlugin(StorageFormat::TimeSeriesClass, "TestXY", "daxlib", ""))
            << VFErrorGetText(VFGetBaseLibError()).Str();
        TestAddChannels(id_, {1, 2});
        FIDSetFileId(id_.Get(), DaxStorageFileId, StorageFormat::TimeSeries);
        FIDSetIdentified(id_.Get(), 1);
        FIDSetInfoLoaded(id_.Get(), 1);
        for (const int number : {1, 2})
            plugin_.mapper.SetChannelNumber(number, plugin_.mapper.Append());
    }
    void Open(int mode)
    {
        ASSERT_TRUE(XYAccSetId(Acc(), id_.Get(), mode > 1)) << VFErrorGetText(VFGetBaseLibError()).Str();
        ASSERT_TRUE(XYAccOpen(Acc(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
        plugin_.log.clear();
    }
    VDXYAcc* Acc() const { return acc_.Get(); }
    std::string TakeLog() { return std::exchange(plugin_.log, {}); }
    std::pair<VDVariant, VDVariant> Limits(std::uint32_t set, int column)
    {
        std::pair<VDVariant, VDVariant> limits;
        EXPECT_TRUE(XYAccGetColLimits(Acc(), 0, static_cast<int>(set), column, &limits.first, &limits.second));
        return limits;
    }

    TestFolder folder_;
    VDFileIdHandle id_ = TestId(folder_.Write("test.z4t", ""));
    Plugin plugin_;
    VDXYAccHandle acc_{XYAccCreate()};
};

}  // namespace

TEST_F(MultiColumnTest, HeaderIsReadOnce)
{
    std::int64_t rows = 119;
    ExpectFailure(XYAccGetNumRows(Acc(), 0, 0, &rows), -327993, "", "VDXYAcc::GetNumRows");
    EXPECT_EQ(rows, 0);
    ExpectFailure(XYAccOpen(Acc(), 4), -328005);
    plugin_.keywords = {"", "cOL_3", "", "COL_1"};
    Open(0);
    EXPECT_EQ(TestValue<XYAccGetDataSetTitle>(Acc(), 1, 0), "Dataset 1");
    EXPECT_EQ(TestValue<XYAccGetDataSetTitle>(Acc(), 1, 1), "Second");
    EXPECT_EQ(TestValue<XYAccGetColTitle>(Acc(), 1, 3), "Column 4");
    const char* const keywords[] = {"Col_1_1", "cOL_3", "Col_3_3", "COL_1"};
    for (int column = 0; column < 4; ++column)
        EXPECT_EQ(TestValue<XYAccGetColKeyword>(Acc(), 0, column), keywords[column]);
    int count = 0;
    ExpectFailure(XYAccGetColType(Acc(), 0, 4, &count), -328984, "", "VDXYAcc::GetColType");
    ExpectFailure(XYAccGetNumRows(Acc(), 0, 2, &rows), -328982);
    ExpectFailure(XYAccSetColTitle(Acc(), 0, 0, "x"), -327998);
    std::int64_t sets = 0;
    EXPECT_TRUE(TestValue<XYAccGetMetaData>(Acc())->GetHugeMetaDataItem("NumRowsDataSet1", &sets, 1));
    EXPECT_EQ(sets, 10);
    VDVariant value(5L);
    EXPECT_TRUE(XYAccGetFormatSpecificValue(Acc(), 0, -1, -1, "Name", &value));
    EXPECT_EQ(value, VDVariant(5L));
}

TEST_F(MultiColumnTest, ReadsAreCutToTheRows)
{
    Open(0);
    std::int64_t read = 119;
    float values[20] = {};
    ExpectFailure(XYAccGetDataF(Acc(), 0, 0, 1, 1, 1, &read, values), -328997);
    ExpectFailure(XYAccGetDataF(Acc(), 0, 0, 2, 0, 1, &read, values), -327989, "", "VDXYAcc::GetDataF");
    ExpectFailure(XYAccGetDataF(Acc(), 0, 0, 2, 8, 4, nullptr, values), -327686);
    EXPECT_TRUE(XYAccGetDataF(Acc(), 0, 0, 2, 11, 4, &read, values) && read == 0);
    EXPECT_TRUE(XYAccGetDataF(Acc(), 0, 0, 2, 8, std::numeric_limits<std::int64_t>::max(), &read, values) && read == 3);
    EXPECT_EQ(TakeLog(), "floats 8 3; ");
    EXPECT_TRUE(XYAccGetDataF(Acc(), 0, 0, 3, 9, 2, nullptr, values));
    EXPECT_EQ(values[1], 103);
    VDVariant data;
    EXPECT_TRUE(XYAccGetData(Acc(), 0, 0, 3, 9, std::int64_t(1) << 60, &data));
    EXPECT_EQ(data.GetType(), VTVariantLongBuffer);
    EXPECT_EQ(data.GetBuffer<std::int32_t>()[1], 103);
    EXPECT_TRUE(XYAccGetData(Acc(), 0, 0, 3, 11, 5, &data) && data.GetBufferSize() == 0);
    ExpectFailure(XYAccGetDataElement(Acc(), 0, 0, 1, 11, &data), -327686);
}

TEST_F(MultiColumnTest, WritesGrowTheDataSet)
{
    Open(1);
    const float floats[4] = {};
    VDVariant values;
    EXPECT_TRUE(XYAccPutData(Acc(), 0, 0, 0, 0, &values) && XYAccPutDataF(Acc(), 0, 0, 0, 0, 0, floats));
    values.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, 3);
    EXPECT_TRUE(XYAccPutData(Acc(), 0, 0, 0, 10, &values));
    EXPECT_EQ(TakeLog(), "put data 10 3; put 3 0 0; ");
    EXPECT_EQ(TestValue<XYAccGetNumRows>(Acc(), 0, 0), 12);
    EXPECT_EQ(TestValue<XYAccGetNumRows>(Acc(), 1, 0), 10);
    VDVariant list = VDVariant::FromList({VDVariant(1L)});
    ExpectFailure(XYAccPutData(Acc(), 0, 0, 0, 10, &list), -328993);
    plugin_.capabilities = {Writable, CommonRows, LargeDataSets};
    ExpectFailure(XYAccPutDataF(Acc(), 0, 0, 0, 12, 2, floats), -327990, "", "VDXYAcc::PutDataF");
    EXPECT_TRUE(XYAccSetNumRows(Acc(), 0, 1, 100));
    EXPECT_EQ(TestValue<XYAccGetNumRows>(Acc(), 1, 1), 100);
    EXPECT_TRUE(XYAccSetNumRows(Acc(), 0, 1, 100));
    ExpectFailure(XYAccSetNumRows(Acc(), static_cast<int>(DaxChannel::All), 1, 99), -327990);
    plugin_.capabilities = {Writable, Extendable};
    ExpectFailure(XYAccPutDataElement(Acc(), 0, 0, 0, 2'000'000'001, &list), -328006);
    TakeLog();
    ExpectFailure(XYAccAppendCol(Acc(), 0, DaxColumnType::Enumeration), -329001);
    EXPECT_EQ(TakeLog(), "");
    EXPECT_TRUE(XYAccAppendCol(Acc(), 0, DaxColumnType::Huge) && XYAccAppendDataSet(Acc(), 0));
    EXPECT_EQ(TestValue<XYAccGetColType>(Acc(), 0, 4), DaxColumnType::Huge);
    EXPECT_EQ(TestValue<XYAccGetNumDataSets>(Acc(), 0), 3);
    EXPECT_EQ(TestValue<XYAccGetNumDataSets>(Acc(), 1), 2);
}

TEST_F(MultiColumnTest, LimitsAreKeptUntilAWrite)
{
    plugin_.rows = {10, 0, 3, 100'000};
    plugin_.types[2] = DaxColumnType::Double;
    Open(1);
    EXPECT_EQ(Limits(0, 0), std::pair(VDVariant(10.0), VDVariant(100.0)));
    TakeLog();
    EXPECT_TRUE(Limits(0, 1).first.IsNull() && Limits(1, 0).first.IsNull());
    // Of values that are no numbers there are no limits.
    EXPECT_TRUE(Limits(2, 2).second.IsNull());
    EXPECT_EQ(Limits(DaxDataSet::All, 2), std::pair(VDVariant(12.0), VDVariant(102.0)));
    EXPECT_EQ(TakeLog(), "");
    std::uint16_t word = 0;
    EXPECT_TRUE(XYAccPutStatusWordData(Acc(), 0, 0, 0, 1, 1, &word));
    TakeLog();
    Limits(0, 0);
    EXPECT_EQ(TakeLog(), "");
    const float value = 0;
    EXPECT_TRUE(XYAccPutDataF(Acc(), 0, 0, 0, 1, 1, &value));
    plugin_.readFails = true;
    VDVariant low;
    VDVariant high;
    ExpectFailure(XYAccGetColLimits(Acc(), 0, 0, 0, &low, &high), -328989, "", "VDXYAcc::CalcColLimits");
    EXPECT_TRUE(VFErrorCheck(-328683));
    plugin_.readFails = false;
    Cancelling progress;
    EXPECT_TRUE(XYAccSetProgressObject(Acc(), &progress));
    ExpectFailure(XYAccGetColLimits(Acc(), 0, 0, 0, &low, &high), -328019, "", "VDXYAcc::CalcColLimits");
    progress.cancelAt = 200;
    EXPECT_EQ(Limits(0, 3).second, VDVariant(103.0));
    EXPECT_EQ(progress.log, "Calculating column limits endCalculating column limits end");
    plugin_.capabilities.insert(GivesLimits);
    plugin_.limits = VDVariant::FromList({VDVariant(9.0), VDVariant(1L)});
    EXPECT_EQ(Limits(1, 1), std::pair(VDVariant(1L), VDVariant(9.0)));
    plugin_.limits.AppendItem(VDVariant(1L));
    EXPECT_EQ(Limits(0, 3).second, VDVariant(103.0));
}

TEST_F(MultiColumnTest, StatusWordsAndEnumerations)
{
    Open(1);
    VDVariant value;
    VDStringArray texts;
    char valid = 9;
    char has = 9;
    EXPECT_TRUE(XYAccGetStatusElement(Acc(), 0, 0, 0, 3, &value, &valid, &has, &texts));
    EXPECT_TRUE(valid == 0 && has == 1 && texts.GetSize() == 3 && texts[1] == "bit 2" && texts[2] == "bit 14");
    std::int64_t read = 119;
    char flags[4] = {};
    EXPECT_TRUE(XYAccGetStatusWordBitData(Acc(), 0, 0, 0, 5, 11, 4, &read, flags) && read == 0);
    EXPECT_TRUE(XYAccGetStatusWordBitData(Acc(), 0, 0, 0, 5, 9, 4, &read, flags) && read == 2);
    EXPECT_EQ(TakeLog(), "bits 5 9 2; ");
    plugin_.status.SetBoolean(false);
    EXPECT_TRUE(XYAccGetStatusElement(Acc(), 0, 0, 0, 3, &value, &valid, &has, &texts));
    EXPECT_TRUE(valid == 1 && has == 0 && texts.GetSize() == 3);
    ExpectFailure(XYAccGetDataValidData(Acc(), 0, 0, 0, 1, 1, &read, flags), -328996);
    plugin_.status.SetLong(1);
    ExpectFailure(XYAccGetStatusWordEnabled(Acc(), 0, 0, 0, &has), -328012, "", "VDXYAcc::GetStatusWordEnabled");

    VDArrayWithSort<long> values;
    VDVariant numbers;
    VDVariant names;
    numbers.SetBufferSizeAndAllocate(VTVariantLongBuffer, 2);
    names.SetBufferSizeAndAllocate(VTVariantStringBuffer, 2);
    numbers.SetLongAt(1, -7);
    plugin_.options = VDVariant::FromList({numbers, names});
    EXPECT_TRUE(XYAccGetColEnumOptions(Acc(), 0, 3, &values, &texts) && values[1] == -7 && texts.GetSize() == 2);
    names.SetBufferSizeAndAllocate(VTVariantStringBuffer, 1);
    plugin_.options = VDVariant::FromList({numbers, names});
    ExpectFailure(XYAccGetColEnumOptions(Acc(), 0, 3, &values, &texts), -329002, "", "VDXYAcc::GetColEnumOptions");
}
