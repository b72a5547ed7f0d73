// Tables as text: whatever the file, nothing breaks, and what is read doesn't depend on the order of reading.

#include "FuzzFile.h"

#include "daxlib/daxlib.h"

#include <algorithm>
#include <vector>

namespace {

/// An input of a few bytes may have very many columns.
constexpr int MaxColumns = 64;
constexpr std::int64_t MaxRows = 2000;

void Check(bool kept)
{
    if (!kept)
        std::abort();
}

void AddPlugins()
{
    FINFAddPlugin("CSV", "CsvFF", DAX_CSV, "Tables");
    XYAccAddPlugin("5E0B7C1D-39F2-4B7A-9A53-0C6E4D1F8B27", "CsvXY", DAX_CSV, "Tables");
    TSAccAddPlugin("A3D8F4E6-7B15-4C90-8E2A-61B9D05C73F4", "CsvTS", DAX_CSV, "Tables over time");
}

void ReadColumn(VDXYAcc* acc, int column, std::int64_t rows)
{
    VDVariant all;
    VDVariant one;
    VDVariant element;
    char hasStatus = 0;
    int type = -1;
    std::int64_t got = 0;
    Check(XYAccGetData(acc, 0, 0, column, 1, rows, &all) && XYAccGetColType(acc, 0, column, &type));
    Check(XYAccGetStatusWordEnabled(acc, 0, 0, column, &hasStatus));
    std::vector<char> valid(static_cast<std::size_t>(rows), 1);
    if (hasStatus)
        Check(XYAccGetDataValidData(acc, 0, 0, column, 1, rows, &got, valid.data()) && got == rows);
    for (const std::int64_t row : {rows, std::int64_t(1), rows / 2 + 1}) {
        Check(XYAccGetData(acc, 0, 0, column, row, 1, &one));
        VDString left;
        VDString right;
        double leftNumber = 0.0;
        double rightNumber = 0.0;
        if (DaxColumnType::IsNumeric(type)) {
            Check(all.GetDoubleAt(row - 1, &leftNumber) && one.GetDoubleAt(0, &rightNumber));
            Check(leftNumber == rightNumber || (leftNumber != leftNumber && rightNumber != rightNumber));
        } else {
            Check(all.GetStringAt(row - 1, &left) && one.GetStringAt(0, &right) && left == right);
            Check(valid[static_cast<std::size_t>(row - 1)] != 0 || left.Str().empty());
        }
    }
}

void ReadTable(VDFileId* id)
{
    const VDXYAccHandle acc(XYAccCreate());
    int columns = 0;
    std::int64_t rows = 0;
    if (!XYAccSetId(acc.Get(), id, 0) || !XYAccOpen(acc.Get(), VTXyAccOpenRead))
        return;
    Check(XYAccGetNumCols(acc.Get(), 0, &columns) && columns > 0 && XYAccGetNumRows(acc.Get(), 0, 0, &rows));
    VDVariant value;
    VDVariant least;
    VDVariant most;
    XYAccGetFormatSpecificValue(acc.Get(), -1, -1, -1, DaxFormatValue::Damage, &value);
    for (int column = 0; rows > 0 && column < std::min(columns, MaxColumns); ++column) {
        ReadColumn(acc.Get(), column, std::min(rows, MaxRows));
        Check(XYAccGetColLimits(acc.Get(), 0, 0, column, &least, &most));
    }
}

void ReadTimeSeries(VDFileId* id)
{
    const VDTsAccHandle acc(TSAccCreate());
    std::int64_t points = 0;
    Check(TSAccSetId(acc.Get(), id, 0) && TSAccOpen(acc.Get(), VTTsAccOpenRead));
    Check(TSAccGetNumPoints(acc.Get(), 0, &points) && points > 2);
    std::vector<double> values(static_cast<std::size_t>(std::min(points, MaxRows)));
    Check(TSAccGetDataDoublePrecision(acc.Get(), 0, 1, std::min(points, MaxRows), nullptr, values.data()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".csv");
    static const bool added = (AddPlugins(), true);
    Check(added);
    const VDFileIdHandle id(FIDCreate());
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    int fileId = 0;
    int subId = 0;
    int channel = 0;
    FIDSetFilename(id.Get(), VTNameFormFile, file.Write(FuzzText(data, size)), "");
    if (FINFIdentifyFile(info.Get(), id.Get(), 1, tests.Out()) && FIDGetFileId(id.Get(), &fileId, &subId) && subId == 2)
        ReadTimeSeries(id.Get());
    // A host may take any file for a table.
    const VDFileIdHandle table(FIDCreate());
    FIDSetFilename(table.Get(), VTNameFormFile, file.Write(FuzzText(data, size)), "");
    FIDSetFileId(table.Get(), 31001, 1);
    FIDAddChannel(table.Get(), 1, &channel);
    FIDSetIdentified(table.Get(), 1);
    FIDSetInfoLoaded(table.Get(), 1);
    ReadTable(table.Get());
    return 0;
}
