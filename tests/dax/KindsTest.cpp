#include "DaxProgram.h"
#include "support/TestFileId.h"
#include "support/TestHistogram.h"
#include "support/UffBytes.h"

#include "daxlib/daxlib.h"

namespace {

using Json = nlohmann::json;

class DaxKinds : public testing::Test
{
protected:
    std::string WriteTable() const
    {
        return folder_.Write("damage.csv",
                             "Part,Damage [%],Cycles,When\n"
                             "axle,1.5,9007199254740993,2026-01-02T03:04:05\n"
                             "\"arm, left\",,12,2026-01-03T03:04:05\n"
                             "hub,-0.25,7,2026-01-04T03:04:05\n");
    }

    TestFolder folder_;
    DaxProgram dax_;
};

TEST_F(DaxKinds, TablesAreDescribedReadAndCopied)
{
    const std::string csv = WriteTable();
    const std::string stored = folder_.Name("damage.z4m");
    EXPECT_EQ(dax_.Json({"copy", csv, stored})["rows"], 3);
    const Json channel = dax_.Json({"info", stored})["channels"][0];
    EXPECT_EQ(channel["dataSets"][0]["rows"], 3);
    std::vector<std::string> types;
    for (const Json& column : channel["columns"])
        types.push_back(column["type"]);
    EXPECT_EQ(types, (std::vector<std::string>{"text", "double", "int64", "datetime"}));
    EXPECT_EQ(channel["columns"][1]["units"], "%");
    EXPECT_EQ(channel["columns"][1]["min"], -0.25);
    EXPECT_EQ(channel["columns"][0]["min"], nullptr);

    const std::vector<std::string> lines = Lines(dax_.Run({"read", stored, "--rows", "1-2"}).out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0], "Part,Damage [%],Cycles,When");
    EXPECT_EQ(lines[1], "axle,1.5,9007199254740993,2026-01-02T03:04:05");
    EXPECT_EQ(lines[2], "\"arm, left\",,12,2026-01-03T03:04:05");
    const Json columns = dax_.Json({"read", stored, "--col", "3", "--col", "Damage", "--rows", "2-"})["dataSets"][0]["columns"];
    EXPECT_EQ(columns[0]["values"], Json({12, 7}));
    EXPECT_EQ(columns[1]["values"], Json({nullptr, -0.25}));

    // Back to text, where keywords, titles of data sets and metadata have no place.
    const Json back = dax_.Json({"copy", stored, folder_.Name("back.csv")});
    for (const Json& loss : back["lost"])
        EXPECT_NE(loss["what"], "values") << loss;
    EXPECT_EQ(dax_.Run({"read", folder_.Name("back.csv")}).out, dax_.Run({"read", stored}).out);
}

TEST_F(DaxKinds, RowsAreAppendedWhollyOrNotAtAll)
{
    const std::string stored = folder_.Name("damage.z4m");
    dax_.Json({"copy", WriteTable(), stored});
    const std::string more = folder_.Write("more.csv", "Cycles,Damage [%],Note,Part,When\n8,2,new,beam,2026-02-01T00:00:00\n");
    const Json added = dax_.Json({"append", more, stored});
    EXPECT_EQ(added["total"], 4);
    EXPECT_EQ(added["unusedColumns"], Json({"Note"}));
    EXPECT_EQ(Lines(dax_.Run({"read", stored, "--rows", "4"}).out)[1], "beam,2,8,2026-02-01T00:00:00");
    EXPECT_EQ(dax_.Json({"info", stored})["channels"][0]["columns"][1]["max"], 2.0);

    const struct
    {
        const char* rows;
        int code;
    } refused[] = {
        {"Cycles,Damage [%],Part,When\n1.5,2,beam,2026-02-01T00:00:00\n", -329287},
        {"Cycles,Damage [%],Part\n8,2,beam\n", -900031},
        {"Cycles,Damage [kN],Part,When\n8,2,beam,2026-02-01T00:00:00\n", -900031},
    };
    for (const auto& each : refused) {
        const DaxResult result = dax_.Run({"append", "--json", folder_.Write("bad.csv", each.rows), stored});
        EXPECT_EQ(result.status, 1);
        const std::vector<int> codes = result.Codes();
        EXPECT_NE(std::find(codes.begin(), codes.end(), each.code), codes.end()) << result.err;
        EXPECT_EQ(Lines(dax_.Run({"read", stored}).out).size(), 5U) << each.rows;
    }
    EXPECT_EQ(dax_.Run({"check", stored}).status, 0);
}

TEST_F(DaxKinds, HistogramsAreDescribedReadAndCopied)
{
    const std::string file = folder_.Name("range.z4h");
    {
        const VDFileIdHandle id(FIDCreate());
        int index = 0;
        ASSERT_TRUE(FIDSetFileId(id.Get(), DaxStorageFileId, 6) && FIDSetFilename(id.Get(), VTNameFormFile, file.c_str(), ""));
        ASSERT_TRUE(FIDAddChannel(id.Get(), 3, &index) && FIDSetInfoLoaded(id.Get(), 1));
        const VDDaxHandle<VDHist, VFHistRelease> hist(VFHistCreate());
        const std::int64_t counts[] = {9007199254740993, 2, 0, 4, 5, 6};
        ASSERT_TRUE(VFHistSetFormat(hist.Get(), VTHistFormatHuge) && VFHistSet3D(hist.Get(), 1));
        ASSERT_TRUE(VFHistSetXLimits(hist.Get(), -10, 20, 3));
        const double borders[] = {0, 1, 10};
        ASSERT_TRUE(VFHistSetVariableYBins(hist.Get(), borders, 3) && VFHistSetXTitle(hist.Get(), "Range"));
        ASSERT_TRUE(VFHistSetXYBins_H(hist.Get(), 0, counts, 6));
        const VDHistAccHandle acc(HFAccCreate());
        ASSERT_TRUE(HFAccSetId(acc.Get(), id.Get(), 1) && HFAccOpen(acc.Get(), 3));
        ASSERT_TRUE(HFAccSetChanTitle(acc.Get(), 0, "Axle") && HFAccPutHistogram(acc.Get(), 0, hist.Get()));
        ASSERT_TRUE(HFAccClose(acc.Get()));
    }
    const Json channel = dax_.Json({"info", file})["channels"][0];
    EXPECT_EQ(channel["title"], "Axle");
    EXPECT_EQ(channel["x"]["binSize"], 10.0);
    EXPECT_EQ(channel["y"]["borders"], Json({0.0, 1.0, 10.0}));
    const std::vector<std::string> lines = Lines(dax_.Run({"read", file}).out);
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], "Range from,Range to,y from,y to,Axle");
    EXPECT_EQ(lines[1], "-10,0,0,1,9007199254740993");
    EXPECT_EQ(lines[6], "10,20,1,10,6");
    EXPECT_EQ(dax_.Json({"read", file})["channels"][0]["bins"], Json({{9007199254740993, 2, 0}, {4, 5, 6}}));
    EXPECT_EQ(dax_.Json({"copy", file, folder_.Name("copy.z4h"), "--strict"})["bins"], 6);
    EXPECT_EQ(dax_.Run({"read", folder_.Name("copy.z4h")}).out, dax_.Run({"read", file}).out);
    dax_.ExpectFailure({"copy", file, folder_.Name("copy.z4t")}, -900011);
}

TEST_F(DaxKinds, SpectraAreDescribedReadAndCopied)
{
    UffBytes bytes;
    bytes.function = 4;
    bytes.type = 5;
    bytes.numbers = "  0.00000E+00  2.50000E+00  0.00000E+00";
    bytes.abscissa = 18;
    bytes.data = "  1.00000E+00  2.00000E+00 -3.00000E+00  4.00000E+00  5.00000E+00  6.00000E+00\n"
                 "  7.00000E+00 -8.00000E+00\n";
    const std::string file = folder_.Write("frf.uff", bytes.Make());
    const Json info = dax_.Json({"info", file});
    EXPECT_EQ(info["spectrumTypeName"], "frequency response");
    EXPECT_EQ(info["lines"], 4);
    EXPECT_EQ(info["lineAxis"]["last"], 7.5);

    const std::string stored = folder_.Name("frf.z4c");
    EXPECT_EQ(dax_.Json({"copy", file, stored})["lines"], 4);
    const std::vector<std::string> lines = Lines(dax_.Run({"read", stored, "--lines", "2-6"}).out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[1], "2.5,-3,4");
    EXPECT_EQ(lines[2], "5,5,6");
    const Json spectrum = dax_.Json({"read", stored, "--spectrum", "1"})["channels"][0]["spectra"][0];
    EXPECT_EQ(spectrum["imag"], Json({2, 4, 6, -8}));
    EXPECT_EQ(dax_.Run({"read", stored}).out, dax_.Run({"read", file}).out);
    dax_.ExpectFailure({"read", stored, "--spectrum", "2"}, -900032);
    dax_.ExpectFailure({"read", stored, "--rows", "2"}, -900001);
}

}  // namespace
