#include "daxlib/VFDaxResultsTable.h"
#include "support/TestSupport.h"

#include "vdbase/VDCompBase.h"
#include "vdbase/VFCycArr.h"
#include "vdstore/LQDataManager.h"

namespace {

class CycleArrayTest : public testing::Test
{
protected:
    CycleArrayTest()
    {
        LQDataManager& manager = *LQGetDataManager();
        file_ = manager.GetFileManager()->CreateFile(folder_.Name("t.z4m").c_str(), nullptr);
        table_ = manager.AdoptResultsTable(file_->GetRoot(), "Table", nullptr, Z4Size::Record32K);
    }
    ~CycleArrayTest() override
    {
        VFCycArrRelease(array_);
        LQGetDataManager()->Close(table_, false);
        LQGetDataManager()->GetFileManager()->CloseFile(file_, false);
    }
    void AddColumn(int type, const char* keyword) { EXPECT_TRUE(VFCycArrAppendCol(array_, type, "T", "U", keyword)); }
    /// Rows of a column are its index times 100, plus the row.
    void Fill(int rows)
    {
        int columns = 0;
        EXPECT_TRUE(VFCycArrSetSize(array_, rows) && VFCycArrGetNumCols(array_, &columns));
        for (int column = 0; column < columns; ++column) {
            void* values = nullptr;
            int size = 0;
            int type = 0;
            EXPECT_TRUE(VFCycArrGetArrayPtr(array_, column, &values, &size) && VFCycArrGetColType(array_, column, &type));
            for (int row = 0; row < rows; ++row)
                if (type == VTCycArrDouble)
                    static_cast<double*>(values)[row] = column * 100 + row;
                else if (type == VTCycArrLong)
                    static_cast<std::int32_t*>(values)[row] = column * 100 + row;
        }
    }
    bool Copy(int count) { return VFDaxCopyCycArrDataToMultiColumn(array_, count, table_, 0) != 0; }

    TestFolder folder_;
    Z4File* file_ = nullptr;
    LQResultsTable* table_ = nullptr;
    VDCycArr* array_ = VFCycArrCreate();
};

}  // namespace

TEST_F(CycleArrayTest, RowsGoBehindThoseThatAreThere)
{
    EXPECT_TRUE(VFDaxSetupMultiColumnFromCycleArray(array_, table_));
    EXPECT_TRUE(table_->GetColumnCount() == 0 && Copy(5));
    for (const int type : {VTCycArrLong, VTCycArrFloat, VTCycArrShort, VTCycArrHuge, VTCycArrDouble})
        AddColumn(type, std::to_string(type).c_str());
    EXPECT_TRUE(VFDaxSetupMultiColumnFromCycleArray(array_, table_));
    const int types[] = {4204, 4207, 4200, 4206, 4208};
    for (int column = 0; column < 5; ++column)
        EXPECT_EQ(table_->GetColumn(column, -1)->GetDataType(0) & 0xffff, types[column]);
    Fill(5);
    EXPECT_TRUE(Copy(-1) && Copy(0) && Copy(5));
    EXPECT_EQ(table_->GetRowCount(0, 0), 10);
    double rows[10] = {};
    EXPECT_TRUE(table_->GetDoubleArrayChannel(4, 0)->GetArray(0, 10, rows));
    EXPECT_TRUE(rows[4] == 404 && rows[5] == 400 && rows[9] == 404);
}

TEST_F(CycleArrayTest, ColumnsGoByTheirKeywords)
{
    AddColumn(VTCycArrDouble, "A");
    AddColumn(VTCycArrLong, "B");
    AddColumn(VTCycArrByte, "C");
    Fill(3);
    EXPECT_TRUE(table_->AddLongColumn("", "", "B", 0) && table_->AddDoubleColumn("", "", "A", 0) && Copy(3));
    double value = 0;
    EXPECT_TRUE(table_->GetDoubleArrayChannel(1, 0)->GetArray(2, 1, &value) && value == 2);
    // What is to the left of a column that fails has its rows.
    EXPECT_TRUE(table_->AddColumn(Z4TypeDouble, "", "", "C", false));
    ExpectFailure(Copy(3), -327693, "", "VFDaxCopyCycArrDataToMultiColumn");
    EXPECT_EQ(table_->GetRowCount(0, 0), 6);
    EXPECT_TRUE(table_->AdjustChannelCount(0) && table_->AddColumn(LQTypeDateTime, "", "", "A", false));
    ExpectFailure(Copy(3), -327694);
    EXPECT_TRUE(table_->AdjustChannelCount(0) && table_->AddLongColumn("", "", "D", 0));
    ExpectFailure(Copy(3), -327692);
    VDCompBase foreign(1);
    EXPECT_FALSE(VFDaxSetupMultiColumnFromCycleArray(&foreign, table_) ||
                 VFDaxSetupMultiColumnFromCycleArray(nullptr, table_) ||
                 VFDaxCopyCycArrDataToMultiColumn(array_, 3, nullptr, 0));
    EXPECT_FALSE(VFCycArrSetSize(array_, -1) || VFCycArrAppendCol(array_, 0, "", "", ""));
}
