#pragma once

#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"

#include "daxlib/MultiColumnPlugin.h"

#include <string>
#include <vector>

constexpr int CsvFileId = 31001;
constexpr int CsvTable = 1;
constexpr int CsvTimeSeries = 2;

/// The plug-in is configured as an installation does it.
class CsvTest : public testing::Test
{
protected:
    CsvTest() { TestWriteFile(TestHomeFolder(), "plugins.d/csv.toml", TestReadFile(CSV_MANIFEST)); }

    /// Sub id of the file's type; 0 if it isn't taken for a table.
    static int SubIdOf(const std::string& filename)
    {
        const VDFileInfoHandle info(FINFCreate());
        const VDFileIdHandle id = TestId(filename);
        VDFileIdArrayHandle tests;
        int fileId = 0;
        int subId = 0;
        return FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) && FIDGetFileId(id.Get(), &fileId, &subId) &&
                       fileId == CsvFileId
                   ? subId
                   : 0;
    }

    /// The id of a file that is to be seen as a table, whatever it is.
    static VDFileIdHandle TableId(const std::string& filename)
    {
        return NewTestId(filename, CsvFileId, CsvTable, {DaxDataType::Double});
    }
    static VDXYAccHandle Bind(const std::string& filename, bool create = false)
    {
        VDXYAccHandle acc(XYAccCreate());
        EXPECT_TRUE(XYAccSetId(acc.Get(), TableId(filename).Get(), create ? 1 : 0)) << Errors();
        return acc;
    }
    static VDXYAccHandle Open(const std::string& filename, int mode = VTXyAccOpenRead)
    {
        VDXYAccHandle acc = Bind(filename, mode >= VTXyAccOpenCreate);
        EXPECT_TRUE(XYAccOpen(acc.Get(), mode)) << Errors();
        return acc;
    }
    static std::string Errors()
    {
        std::string texts;
        for (const VDErrorReport& report : VFErrorGetReports(VFGetBaseLibError()))
            texts += report.text.Str() + "\n";
        return texts;
    }

    /// A line for each column: title, units, type and values, "-" for those that aren't valid.
    static std::string Dump(VDXYAcc* acc)
    {
        std::string text;
        const std::int64_t rows = TestValue<XYAccGetNumRows>(acc, 0, 0);
        for (int column = 0; column < TestValue<XYAccGetNumCols>(acc, 0); ++column) {
            const int type = TestValue<XYAccGetColType>(acc, 0, column);
            text += TestValue<XYAccGetColTitle>(acc, 0, column).Str() + "|" +
                    TestValue<XYAccGetColUnits>(acc, 0, column).Str() + "|" + std::to_string(type) + ":";
            for (std::int64_t row = 1; row <= rows; ++row)
                text += " " + Cell(acc, column, row);
            text += "\n";
        }
        return text;
    }
    static std::string Dump(const std::string& filename) { return Dump(Open(filename).Get()); }
    static std::string Cell(VDXYAcc* acc, int column, std::int64_t row)
    {
        VDVariant value;
        VDString text;
        VDStringArray bits;
        char valid = 0;
        char hasStatus = 0;
        EXPECT_TRUE(XYAccGetStatusElement(acc, 0, 0, column, row, &value, &valid, &hasStatus, &bits)) << Errors();
        EXPECT_TRUE(value.ConvertToString(&text));
        return valid ? text.Str() : "-";
    }

    static void SetFormat(VDXYAcc* acc, const char* name, const char* text)
    {
        VDVariant value(text);
        EXPECT_TRUE(XYAccSetFormatSpecificValue(acc, -1, -1, -1, name, &value)) << Errors();
    }
    static std::string Format(VDXYAcc* acc, const char* name)
    {
        VDVariant value;
        VDString text;
        EXPECT_TRUE(XYAccGetFormatSpecificValue(acc, -1, -1, -1, name, &value));
        value.GetString(&text);
        return text.Str();
    }

    TestFolder folder_;
};
