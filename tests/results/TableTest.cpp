#include "support/TestFileId.h"

#include "daxlib/MultiColumnPlugin.h"
#include "vdstore/LQChannelMapper.h"

#include <cmath>

// Tables in storage files, through the library as a host uses it.

namespace {

constexpr int Types[] = {DaxColumnType::Text, DaxColumnType::Long,   DaxColumnType::Float,    DaxColumnType::Short,
                         DaxColumnType::Huge, DaxColumnType::Double, DaxColumnType::DateTime, DaxColumnType::Enumeration};

/// The plug-in is configured as an installation does it.
class TableTest : public testing::Test
{
protected:
    TableTest() { TestWriteFile(TestHomeFolder(), "plugins.d/results.toml", TestReadFile(RESULTS_MANIFEST)); }

    VDXYAccHandle Open(int mode, int subId = 12) const
    {
        VDFileIdHandle id = TestId(name_);
        if (mode >= VTXyAccOpenCreate) {
            TestAddChannels(id, {3, 8});
            FIDSetChanTitle(id.Get(), 1, "Second");
            FIDSetFileId(id.Get(), DaxStorageFileId, subId);
            FIDSetIdentified(id.Get(), 1);
            FIDSetInfoLoaded(id.Get(), 1);
        } else {
            const VDFileInfoHandle info(FINFCreate());
            VDFileIdArrayHandle tests;
            EXPECT_TRUE(FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) && FIAGetAt(tests.Get(), 0, id.Out()));
        }
        VDXYAccHandle acc(XYAccCreate());
        if (!XYAccSetId(acc.Get(), id.Get(), mode >= VTXyAccOpenCreate) || !XYAccOpen(acc.Get(), mode)) {
            ADD_FAILURE() << VFErrorGetText(VFGetBaseLibError()).Str();
            acc.Reset();
        }
        return acc;
    }

    /// Rows of a column by their numbers.
    static VDVariant Values(int type, long first, long count)
    {
        VDVariant values;
        values.SetBufferSizeAndAllocate(DaxColumnType::BufferType(type), count);
        for (long at = 0; at < count; ++at)
            if (!values.SetDoubleAt(at, static_cast<double>((first + at) * 3 % 20'000)))
                values.SetStringAt(at, ("row " + std::to_string(first + at)).c_str());
        return values;
    }

    TestFolder folder_;
    std::string name_ = folder_.Name("test.z4m");
};

}  // namespace

TEST_F(TableTest, KeepsAllThatATableHas)
{
    {
        const VDXYAccHandle acc = Open(VTXyAccOpenCreate);
        ASSERT_TRUE(acc && XYAccAppendDataSet(acc.Get(), 0) && XYAccAppendDataSet(acc.Get(), 0));
        for (const int type : Types)
            ASSERT_TRUE(type == DaxColumnType::Enumeration ? XYAccAppendCol(acc.Get(), 0, type)
                                                           : XYAccAppendColWithStatus(acc.Get(), 0, type));
        EXPECT_FALSE(XYAccAppendCol(acc.Get(), 0, 3));
        ExpectError(-329287);
        for (long first = 1; first < 9000; first += 3000)
            for (int column = 0; column < 8; ++column) {
                VDVariant values = Values(Types[column], first, 3000);
                ASSERT_TRUE(XYAccPutData(acc.Get(), 0, 0, column, first, &values)) << column;
                ASSERT_TRUE(XYAccPutData(acc.Get(), 0, 1, column, first / 1000 + 1, &values)) << column;
            }
        VDArrayWithSort<long> options;
        VDStringArray texts;
        options.AppendItem(-4);
        texts.AppendItem("four");
        const std::uint16_t words[] = {1, DaxStatusWord::Invalid, 4};
        EXPECT_TRUE(XYAccSetColEnumOptions(acc.Get(), 0, 7, &options, &texts) &&
                    XYAccSetDataSetTitle(acc.Get(), 0, 1, "Cold") && XYAccSetColTitle(acc.Get(), 0, 5, "Force") &&
                    XYAccSetColUnits(acc.Get(), 0, 5, "kN") && XYAccSetColKeyword(acc.Get(), 0, 5, "F") &&
                    XYAccPutStatusWordData(acc.Get(), 0, 0, 5, 2, 3, words) &&
                    XYAccSetStatusWordBitText(acc.Get(), 0, 0, 5, 2, "late"));
        ExpectFailure(XYAccPutStatusWordData(acc.Get(), 0, 0, 7, 2, 3, words), -328996);
        ExpectFailure(XYAccSetStatusWordBitText(acc.Get(), 0, 0, 5, 15, "no"), -329287);
        EXPECT_TRUE(TestValue<XYAccGetMetaData>(acc.Get())->SetStringAttribute("Rig", "4", 1));
        EXPECT_TRUE(XYAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    }
    const VDXYAccHandle acc = Open(VTXyAccOpenRead);
    ASSERT_TRUE(acc);
    EXPECT_EQ(TestValue<XYAccGetChanTitle>(acc.Get(), 1), "Second");
    EXPECT_EQ(TestValue<XYAccGetActualChanNumber>(acc.Get(), 1), 8);
    EXPECT_EQ(TestValue<XYAccGetNumRows>(acc.Get(), 0, 0), 9000);
    EXPECT_EQ(TestValue<XYAccGetNumRows>(acc.Get(), 0, 1), 3006);
    EXPECT_EQ(TestValue<XYAccGetDataSetTitle>(acc.Get(), 0, 1), "Cold");
    EXPECT_EQ(TestValue<XYAccGetColTitle>(acc.Get(), 0, 5) + TestValue<XYAccGetColUnits>(acc.Get(), 0, 5), "ForcekN");
    EXPECT_EQ(TestValue<XYAccGetColKeyword>(acc.Get(), 0, 5), "F");
    for (int column = 0; column < 8; ++column) {
        VDVariant values;
        EXPECT_EQ(TestValue<XYAccGetColType>(acc.Get(), 0, column), Types[column]);
        EXPECT_TRUE(XYAccGetData(acc.Get(), 0, 0, column, 1, 99'999, &values));
        EXPECT_TRUE(values == Values(Types[column], 1, 9000)) << column;
    }
    std::int64_t read = 0;
    char valid[4] = {};
    EXPECT_TRUE(XYAccGetDataValidData(acc.Get(), 0, 0, 5, 2, 4, &read, valid));
    EXPECT_TRUE(valid[0] == 1 && valid[1] == 0 && valid[2] == 1 && valid[3] == 1);
    VDVariant value;
    VDStringArray texts;
    char isValid = 0;
    char has = 0;
    EXPECT_TRUE(XYAccGetStatusElement(acc.Get(), 0, 0, 5, 4, &value, &isValid, &has, &texts) && texts[0] == "late");
    EXPECT_EQ(value, VDVariant(12.0));
    VDArrayWithSort<long> options;
    EXPECT_TRUE(XYAccGetColEnumOptions(acc.Get(), 0, 7, &options, &texts) && options[0] == -4 && texts[0] == "four");
    VDVariant low;
    VDVariant high;
    EXPECT_TRUE(XYAccGetColLimits(acc.Get(), 0, 0, 4, &low, &high) && low == VDVariant(1.0) && high == VDVariant(19'998.0));
    VDString rig;
    EXPECT_TRUE(TestValue<XYAccGetMetaData>(acc.Get())->GetStringMetaDataItem("Rig", &rig, 1) && rig == "4");
}

TEST_F(TableTest, ConvertsNumbersThatKeepTheirValue)
{
    const VDXYAccHandle acc = Open(VTXyAccOpenCreateNew, 7);
    ASSERT_TRUE(acc && XYAccAppendDataSet(acc.Get(), 0));
    struct
    {
        int type;
        double value;
        bool fits;
    } const rows[] = {
        {DaxColumnType::Short, 32767, true},      {DaxColumnType::Short, -32769, false},
        {DaxColumnType::Long, 1.5, false},        {DaxColumnType::Long, -2147483648.0, true},
        {DaxColumnType::Huge, 9.3e18, false},     {DaxColumnType::Huge, -9223372036854775808.0, true},
        {DaxColumnType::Float, 0.5, true},        {DaxColumnType::Float, 0.1, false},
        {DaxColumnType::Float, std::nan(""), true}, {DaxColumnType::Short, std::nan(""), false},
        {DaxColumnType::Text, 1, false},          {DaxColumnType::Double, 0.1, true},
    };
    int column = 0;
    for (const auto& row : rows) {
        ASSERT_TRUE(XYAccAppendCol(acc.Get(), 0, row.type));
        VDVariant value(row.value);
        EXPECT_EQ(XYAccPutDataElement(acc.Get(), 0, 0, column, 2, &value) != 0, row.fits) << row.type << ' ' << row.value;
        if (!row.fits) {
            ExpectError(-329287);
        } else if (XYAccGetDataElement(acc.Get(), 0, 0, column, 2, &value) && !std::isnan(row.value)) {
            EXPECT_EQ(value, VDVariant(row.value));
        }
        ++column;
    }
    const float floats[] = {1, 2, 3};
    EXPECT_TRUE(XYAccPutDataF(acc.Get(), 0, 0, 0, 1, 3, floats));
    std::int64_t read = 0;
    float back[3] = {};
    EXPECT_TRUE(XYAccGetDataF(acc.Get(), 0, 0, 0, 1, 9, &read, back) && read == 3 && back[2] == 3);
}

TEST_F(TableTest, AppendsToAFileThatIsThere)
{
    for (int round = 0; round < 3; ++round) {
        const VDXYAccHandle acc = Open(round == 0 ? VTXyAccOpenCreate : VTXyAccOpenUpdate);
        ASSERT_TRUE(acc);
        if (round == 0) {
            ASSERT_TRUE(XYAccAppendDataSet(acc.Get(), 1) && XYAccAppendCol(acc.Get(), 1, DaxColumnType::Text));
        }
        VDVariant values = Values(DaxColumnType::Text, round * 100, 100);
        EXPECT_TRUE(XYAccPutData(acc.Get(), 1, 0, 0, round * 100 + 1, &values) && XYAccClose(acc.Get()));
    }
    const VDXYAccHandle acc = Open(VTXyAccOpenRead);
    VDVariant values;
    EXPECT_TRUE(XYAccGetData(acc.Get(), 1, 0, 0, 1, 300, &values) && values == Values(DaxColumnType::Text, 0, 300));
}
