#include "CsvTest.h"

#include <filesystem>
#include <limits>

namespace {

class CsvWriteTest : public CsvTest
{
protected:
    struct Column
    {
        int type;
        const char* title;
        const char* units;
    };

    static VDXYAccHandle Create(const std::string& filename, const std::vector<Column>& columns,
                                const std::vector<std::pair<const char*, const char*>>& settings = {})
    {
        VDXYAccHandle acc = Bind(filename, true);
        for (const auto& [name, text] : settings)
            SetFormat(acc.Get(), name, text);
        EXPECT_TRUE(XYAccOpen(acc.Get(), VTXyAccOpenCreate)) << Errors();
        EXPECT_TRUE(XYAccAppendDataSet(acc.Get(), 0)) << Errors();
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const int index = static_cast<int>(column);
            EXPECT_TRUE(XYAccAppendColWithStatus(acc.Get(), 0, columns[column].type)) << Errors();
            EXPECT_TRUE(XYAccSetColTitle(acc.Get(), 0, index, columns[column].title));
            EXPECT_TRUE(XYAccSetColUnits(acc.Get(), 0, index, columns[column].units));
        }
        return acc;
    }
    template <class Value>
    static int Put(VDXYAcc* acc, int column, std::int64_t row, Value value)
    {
        VDVariant variant(value);
        return XYAccPutDataElement(acc, 0, 0, column, row, &variant);
    }
    static int PutWord(VDXYAcc* acc, int column, std::int64_t row, std::uint16_t word)
    {
        return XYAccPutStatusWordData(acc, 0, 0, column, row, 1, &word);
    }
    static std::size_t NumEntries(const std::string& folder)
    {
        const std::filesystem::directory_iterator entries(folder);
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
    /// Two rows of every type, among them what is hard to write; the second row holds values that aren't valid.
    static void PutAll(VDXYAcc* acc)
    {
        EXPECT_TRUE(Put(acc, 0, 1, 0.1) && Put(acc, 0, 2, 3.0));
        EXPECT_TRUE(Put(acc, 1, 1, 0.1F) && PutWord(acc, 1, 2, DaxStatusWord::Invalid));
        EXPECT_TRUE(Put(acc, 2, 1, -5L));
        VDVariant huge = VDVariant::FromHuge(INT64_MAX);
        EXPECT_TRUE(XYAccPutDataElement(acc, 0, 0, 3, 1, &huge) && Put(acc, 3, 2, 1L) &&
                    PutWord(acc, 3, 2, DaxStatusWord::Invalid));
        EXPECT_TRUE(Put(acc, 4, 1, "a;\"b\",\n\xc3\xa4 1") && Put(acc, 4, 2, "007"));
        EXPECT_TRUE(Put(acc, 5, 1, "2024-02-29T12:00:00,5") && Put(acc, 5, 2, ""));
    }
};

const std::vector<std::vector<std::pair<const char*, const char*>>> Dialects = {
    {},
    {{"Separator", ";"}, {"DecimalSign", "Comma"}, {"LineEnd", "CRLF"}},
    {{"Separator", "Tab"}, {"Encoding", "Windows-1252"}, {"LineEnd", "CR"}, {"Comment", "made\nby hand"}},
    {{"Separator", "Blank"}, {"Encoding", "UTF-8 with mark"}, {"Units", "Brackets"}},
};

TEST_F(CsvWriteTest, WhatIsWrittenComesBack)
{
    const std::vector<Column> columns = {{DaxColumnType::Double, "Time", "s"},  {DaxColumnType::Float, "1", "m/s"},
                                         {DaxColumnType::Short, "x [y]", "-"},  {DaxColumnType::Huge, "a,b;c\td \"e\"", "%"},
                                         {DaxColumnType::Text, "\xc3\xa4", ""}, {DaxColumnType::DateTime, "When", ""}};
    for (const auto& settings : Dialects) {
        const std::string filename = folder_.Name("out.csv");
        VDXYAccHandle acc = Create(filename, columns, settings);
        PutAll(acc.Get());
        EXPECT_EQ(Cell(acc.Get(), 4, 1), "a;\"b\",\n\xc3\xa4 1");
        ASSERT_TRUE(XYAccClose(acc.Get())) << Errors();
        const std::string expected =
            "Time|s|6: 0.1 3\n1|m/s|6: 0.1 -\nx [y]|-|1: -5 -\na,b;c\td \"e\"|%|5: 9223372036854775807 -\n"
            "\xc3\xa4||0: a;\"b\",\n\xc3\xa4 1 007\nWhen||7: 2024-02-29T12:00:00,5 -\n";
        EXPECT_NE(SubIdOf(filename), 0);
        const VDXYAccHandle read = Open(filename);
        EXPECT_EQ(Dump(read.Get()), expected) << TestReadFile(filename);
        for (const auto& [name, text] : settings)
            EXPECT_TRUE(Format(read.Get(), name) == text || std::string(text) == ";") << name << Format(read.Get(), name);
        EXPECT_EQ(NumEntries(folder_.Path()), 1U);
    }
}

TEST_F(CsvWriteTest, BytesOfAFile)
{
    const std::string filename = folder_.Name("out.csv");
    VDXYAccHandle acc = Create(filename, {{DaxColumnType::Double, "t", "s"}, {DaxColumnType::Text, "", ""}});
    EXPECT_TRUE(Put(acc.Get(), 0, 1, 1e22) && Put(acc.Get(), 0, 2, -0.0) && Put(acc.Get(), 1, 2, ""));
    EXPECT_TRUE(Put(acc.Get(), 0, 3, std::numeric_limits<double>::quiet_NaN()) && Put(acc.Get(), 1, 3, "#"));
    ASSERT_TRUE(XYAccClose(acc.Get())) << Errors();
    EXPECT_EQ(TestReadFile(filename), "t,Column 2\ns,\n1e+22,\n-0.0,\"\"\nnan,#\n");
}

TEST_F(CsvWriteTest, RowsAreAppended)
{
    const std::string content = "# made by hand\r\nn;x;t\r\n1;1,5;a\r\n2;2,5;b";
    const std::string filename = folder_.Write("x.csv", content);
    VDXYAccHandle acc = Open(filename, VTXyAccOpenUpdate);
    EXPECT_TRUE(Put(acc.Get(), 0, 3, 3L) && Put(acc.Get(), 1, 3, 3.5) && Put(acc.Get(), 2, 4, "d"));
    EXPECT_EQ(Cell(acc.Get(), 1, 2) + Cell(acc.Get(), 1, 3) + Cell(acc.Get(), 1, 4), "2.53.5-");
    ASSERT_TRUE(XYAccFlush(acc.Get())) << Errors();
    EXPECT_EQ(TestReadFile(filename), content + "\r\n3;3,5;\r\n;;d\r\n");
    // What was put since the file was opened may still change, also when it was flushed.
    EXPECT_TRUE(Put(acc.Get(), 2, 3, "c") && Put(acc.Get(), 0, 5, 5L));
    ExpectFailure(Put(acc.Get(), 0, 2, 7L), -334485, "Rows that are in the file already can't be changed");
    ExpectFailure(Put(acc.Get(), 0, 6, 7.5), -334485, "can't hold 7.5");
    ExpectFailure(XYAccAppendCol(acc.Get(), 0, DaxColumnType::Long), -328991);
    ASSERT_TRUE(XYAccClose(acc.Get())) << Errors();
    EXPECT_EQ(TestReadFile(filename), content + "\r\n3;3,5;c\r\n;;d\r\n5;;\r\n");
    // Somebody else's rows are never written over.
    acc = Open(filename, VTXyAccOpenUpdate);
    EXPECT_TRUE(Put(acc.Get(), 0, 6, 6L));
    folder_.Write("x.csv", content + "\r\n9;9;z\r\n");
    ExpectFailure(XYAccClose(acc.Get()), -334485, "Somebody else has changed the file.");
    EXPECT_EQ(TestReadFile(filename), content + "\r\n9;9;z\r\n");
}

TEST_F(CsvWriteTest, ColumnsMayBeWrittenOneAfterAnother)
{
    constexpr std::int64_t rows = 10000;
    const std::string filename = folder_.Write("old.csv", "a,b\n1,2\n");
    VDXYAccHandle acc = Create(filename, {{DaxColumnType::Long, "n", ""}, {DaxColumnType::Float, "x", ""}});
    std::vector<float> values(rows);
    for (std::int64_t row = 0; row < rows; ++row)
        values[static_cast<std::size_t>(row)] = static_cast<float>(row);
    // Nothing of a new file shows before it is whole.
    EXPECT_TRUE(XYAccPutDataF(acc.Get(), 0, 0, 0, 1, rows, values.data())) << Errors();
    EXPECT_EQ(TestReadFile(filename), "a,b\n1,2\n");
    ASSERT_TRUE(XYAccFlush(acc.Get())) << Errors();
    EXPECT_TRUE(XYAccPutDataF(acc.Get(), 0, 0, 1, 1, rows, values.data()));
    ASSERT_TRUE(XYAccClose(acc.Get())) << Errors();
    const VDXYAccHandle read = Open(filename);
    std::vector<float> got(rows);
    for (const int column : {0, 1}) {
        ASSERT_TRUE(XYAccGetDataF(read.Get(), 0, 0, column, 1, rows, nullptr, got.data())) << Errors();
        EXPECT_EQ(got, values);
    }
}

TEST_F(CsvWriteTest, WhatFindsNoRoomIsRefused)
{
    const std::string filename = folder_.Name("out.csv");
    VDXYAccHandle acc = Create(filename, {{DaxColumnType::Long, "n", ""}, {DaxColumnType::Text, "t", ""}},
                               {{"Encoding", "Windows-1252"}, {"Separator", "Blank"}});
    VDXYAcc* const out = acc.Get();
    ExpectFailure(XYAccAppendDataSet(out, 0), -329083, "one data set");
    ExpectFailure(XYAccAppendCol(out, 0, DaxColumnType::Enumeration), -329001);
    ExpectFailure(XYAccAppendColWithStatus(out, 0, DaxColumnType::Enumeration), -333081, "type 15");
    ExpectFailure(XYAccSetColKeyword(out, 0, 0, "key"), -334485, "keywords");
    ExpectFailure(XYAccSetDataSetTitle(out, 0, 0, "title"), -334485, "title");
    ExpectFailure(XYAccSetStatusWordBitText(out, 0, 0, 0, 1, "bit"), -334485, "status bits");
    ExpectFailure(PutWord(out, 0, 1, 1), -334485, "none of its bits");
    ExpectFailure(Put(out, 0, 1, 2147483648.0), -334485, "can't hold");
    ExpectFailure(Put(out, 0, 1, "text"), -333081);
    ExpectFailure(Put(out, 1, 1, 1L), -333081);
    EXPECT_EQ(Format(out, "Unfit"), "");
    ExpectFailure(Put(out, 1, 1, "\xce\xa9"), -334485, "Windows-1252 lacks");
    EXPECT_EQ(Format(out, "Unfit"), "Encoding");
    EXPECT_TRUE(Put(out, 0, 1, 1L));
    EXPECT_EQ(Format(out, "Unfit"), "");
    // Between blanks, a text that isn't there would be an empty one. The file doesn't come to be.
    ExpectFailure(XYAccFlush(out), -334485, "empty text");
    EXPECT_EQ(Format(out, "Unfit"), "Separator");
    XYAccClose(out);
    EXPECT_EQ(NumEntries(folder_.Path()), 0U);
    acc = Bind(filename, true);
    SetFormat(acc.Get(), "DecimalSign", "Comma");
    ExpectFailure(XYAccOpen(acc.Get(), VTXyAccOpenCreate), -334483, "comma");
    acc.Reset(XYAccCreate());
    EXPECT_TRUE(XYAccSetId(acc.Get(), NewTestId(filename, CsvFileId, CsvTable, {0, 0}).Get(), 1));
    ExpectFailure(XYAccOpen(acc.Get(), VTXyAccOpenCreate), -328991, "one channel, not 2");
}

TEST_F(CsvWriteTest, NothingIsLeftWhereNothingCanBeWritten)
{
    const std::string filename = folder_.Path() + "/missing/out.csv";
    VDXYAccHandle acc = Create(filename, {{DaxColumnType::Long, "n", ""}, {DaxColumnType::Long, "m", ""}});
    ExpectFailure(Put(acc.Get(), 0, 1, 1L), -334487, "No such file");
    // A folder in the file's place.
    acc = Create(folder_.Path(), {{DaxColumnType::Long, "n", ""}, {DaxColumnType::Long, "m", ""}});
    ExpectFailure(XYAccClose(acc.Get()), -334485);
    EXPECT_EQ(NumEntries(folder_.Path()), 0U);
}

}  // namespace
