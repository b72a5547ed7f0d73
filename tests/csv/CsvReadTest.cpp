#include "CsvTest.h"

#include <cmath>

namespace {

using CsvReadTest = CsvTest;

struct TableCase
{
    const char* name;
    std::string content;
    const char* guess;  ///< separator, decimal sign, header, units, encoding
    const char* dump;
};

const TableCase TableCases[] = {
    {"plain.csv", "a,b\n1,2.5\n-3,1e3\n", "Comma Point Yes No UTF-8", "a||1: 1 -3\nb||6: 2.5 1000\n"},
    {"german.csv", "Zeit;Weg\r\ns;mm\r\n0,5;1,25\r\n1,5;-2\r\n", "Semicolon Comma Yes Line UTF-8",
     "Zeit|s|6: 0.5 1.5\nWeg|mm|6: 1.25 -2\n"},
    {"tab.tsv", "x [m]\ty\r1\t2\r3\t4\r", "Tab Point Yes Brackets UTF-8", "x|m|1: 1 3\ny||1: 2 4\n"},
    {"blank.dat", "# by hand\n  x    y\n 1.0   2 \n 2.0   3\n 3.0   4\n", "Blank Point Yes No UTF-8",
     "x||6: 1 2 3\ny||1: 2 3 4\n"},
    {"bare.txt", "1,2\n3,4\n5,6\n", "Comma Point No No UTF-8", "Column 1||1: 1 3 5\nColumn 2||1: 2 4 6\n"},
    {"one.csv", "value\n1.5\n\n2.5\n\"\"\n", "Tab Point Yes No UTF-8", "value||6: 1.5 2.5 -\n"},
    {"quotes.csv", "n,text\n1,\"a \"\"b\"\",\nc\"\n2, \"d\" \n3,e \"f\"\n4,\"\"\n5,\n", "Comma Point Yes No UTF-8",
     "n||1: 1 2 3 4 5\ntext||0: a \"b\",\nc d e \"f\"  -\n"},
    {"allquoted.csv", "\"a\",\"b\"\n\"1\",\"x\"\n\"2\",\"y\"\n", "Comma Point Yes No UTF-8", "a||1: 1 2\nb||0: x y\n"},
    {"textnumbers.csv", "id,v\n\"007\",1\n\"008\",2\n", "Comma Point Yes No UTF-8", "id||0: 007 008\nv||1: 1 2\n"},
    {"wholes.csv", "l,h,d,t\n2147483647,2147483648,9223372036854775808,1\n-2147483648,-9223372036854775808,1,x\n",
     "Comma Point Yes No UTF-8",
     "l||1: 2147483647 -2147483648\nh||5: 2147483648 -9223372036854775808\nd||6: 9223372036854775808 1\nt||0: 1 x\n"},
    {"times.csv",
     "d,t,b,u\n2024-02-29,12:00:01.5,2024-02-29T12:00Z,29.02.2024\n2024-03-01,13:00,2024-03-01 01:00:00+01:00,x\n",
     "Comma Point Yes No UTF-8",
     "d||7: 2024-02-29 2024-03-01\nt||7: 12:00:01.5 13:00\nb||7: 2024-02-29T12:00Z 2024-03-01 01:00:00+01:00\n"
     "u||0: 29.02.2024 x\n"},
    {"ragged.csv", "a,b,c,\n1,2,3\n4\n,5,,\n", "Comma Point Yes No UTF-8", "a||1: 1 4 -\nb||1: 2 - 5\nc||1: 3 - -\n"},
    {"special.csv", "a,b\nnan,1.5\n-inf,+2\n,1e999\n", "Comma Point Yes No UTF-8", "a||6: nan -inf -\nb||0: 1.5 +2 1e999\n"},
    {"latin.csv", "K\xf6rper;\xb5m\n1;2\n3;4\n", "Semicolon Point Yes No Windows-1252",
     "K\xc3\xb6rper||1: 1 3\n\xc2\xb5m||1: 2 4\n"},
    {"mark.csv", "\xef\xbb\xbfsep=;\n\xc3\xb6;b\n1;x\n", "Semicolon Point Yes No UTF-8 with mark",
     "\xc3\xb6||1: 1\nb||0: x\n"},
    {"title.csv", "Report of a test\n\nTime (s),v\n1,2\n", "Comma Point Yes No UTF-8", "Time (s)||1: 1\nv||1: 2\n"},
    {"header.csv", "a,b\n", "Comma Point Yes No UTF-8", "a||6:\nb||6:\n"},
};

TEST_F(CsvReadTest, TablesAreReadAsTheyAreMeant)
{
    for (const TableCase& test : TableCases) {
        SCOPED_TRACE(test.name);
        const std::string filename = folder_.Write(test.name, test.content);
        EXPECT_NE(SubIdOf(filename), 0);
        const VDXYAccHandle acc = Open(filename);
        EXPECT_EQ(Dump(acc.Get()), test.dump);
        std::string guess = Format(acc.Get(), "Separator");
        for (const char* name : {"DecimalSign", "Header", "Units", "Encoding"})
            guess += " " + Format(acc.Get(), name);
        EXPECT_EQ(guess, test.guess);
        EXPECT_EQ(Format(acc.Get(), "Damage"), "");
    }
}

TEST_F(CsvReadTest, WhatIsNoTableIsLeftAlone)
{
    const std::pair<const char*, std::string> files[] = {
        {"prose.csv", "Dear Sir, or Madam,\nyour letter has come.\nIt was long, dull, and late, so\nwe read on.\n"},
        {"prose.txt", "It was the best of times\nit was the worst of\ntimes, it was\nthe age of wisdom\n"},
        {"words.txt", "one two\nthree four\nfive six\nseven eight\n"},
        {"short.txt", "1,2\n3,4\n"},
        {"uff.csv", "\n    -1\n    58\nName\n 1 2 3\n 4 5 6\n    -1\n"},
        {"uff.dat", "    -1\n    58\n 1 2 3\n 1 2 3\n 4 5 6\n    -1\n"},
        {"famos.dat", "|CF,2,1,1;|CK,1,3,1,1;1,2\n3,4\n5,6\n"},
        {"wave.csv", std::string("RIFF\x24\x00\x00\x00WAVEfmt ", 16) + "1,2\n3,4\n"},
        {"zeros.csv", std::string("1,2\n\0,3\n", 8)},
        {"table.log", "1,2\n3,4\n5,6\n"},
        {"blank.csv", "\n\n  \n"},
    };
    for (const auto& [name, content] : files)
        EXPECT_EQ(SubIdOf(folder_.Write(name, content)), 0) << name;
}

TEST_F(CsvReadTest, AHostKnowsBetter)
{
    const std::string filename = folder_.Write("x.csv", "1;2,5\n3;4,5\n");
    EXPECT_EQ(Dump(filename), "Column 1||1: 1 3\nColumn 2||6: 2.5 4.5\n");
    const VDXYAccHandle acc = Bind(filename);
    SetFormat(acc.Get(), "separator", ",");
    SetFormat(acc.Get(), "Header", "Yes");
    VDVariant wrong("Slash");
    ExpectFailure(XYAccSetFormatSpecificValue(acc.Get(), -1, -1, -1, "Separator", &wrong), -334485,
                  "Separator can't be Slash.");
    EXPECT_TRUE(XYAccOpen(acc.Get(), VTXyAccOpenRead));
    EXPECT_EQ(Dump(acc.Get()), "1;2||0: 3;4\n5||1: 5\n");
    ExpectFailure(XYAccSetFormatSpecificValue(acc.Get(), -1, -1, -1, "Separator", &wrong), -327998);
}

TEST_F(CsvReadTest, DamageIsTold)
{
    struct Case
    {
        std::string content;
        const char* damage;
        const char* dump;
    };
    const Case cases[] = {
        {"a,b\n1,2\n3,4,5\n6,7\n", "1 rows, the first of them row 2, have more cells", "a||1: 1 3 6\nb||1: 2 4 7\n"},
        {std::string("a,b\n1,2\n3,4\n\0\0\0\0", 16), "From byte 12 on, the file holds no text", "a||1: 1 3\nb||1: 2 4\n"},
        {"a,b\n1,2\n3", "The last row is cut off.", "a||1: 1 3\nb||1: 2 -\n"},
        {"a,b\n1,x\n3,\"y\n", "The quotes of the last cell are never closed.", "a||1: 1 3\nb||0: x y\n\n"},
    };
    for (const Case& test : cases) {
        const std::string filename = folder_.Write("damaged.csv", test.content);
        const VDXYAccHandle acc = Open(filename);
        EXPECT_NE(Format(acc.Get(), "Damage").find(test.damage), std::string::npos) << Format(acc.Get(), "Damage");
        EXPECT_EQ(Dump(acc.Get()), test.dump);
        ExpectFailure(XYAccOpen(Bind(filename).Get(), VTXyAccOpenUpdate), -327998, test.damage);
    }
}

TEST_F(CsvReadTest, AnEvenTimeMakesATimeSeries)
{
    struct Case
    {
        std::string content;
        double rate;  ///< 0 for a table
        double first;
    };
    const Case cases[] = {
        {"Time,v\n0,1\n0.1,2\n0.2,3\n", 10.0, 0.0},
        {"x,v\nms,V\n5,1\n5.1,2\n5.2,3\n", 10000.0, 0.005},
        {"t [min],v\n1,1\n2,2\n3,3\n", 1.0 / 60.0, 60.0},
        {"Time,v\n0,1\n0.1,2\n0.20000005,3\n", 10.0 / 1.00000025, 0.0},
        {"Time,v\n0,1\n0.1,2\n0.2000005,3\n", 0.0, 0.0},
        {"Time,v\n0,1\n0.1,2\n,3\n", 0.0, 0.0},
        {"Time,v\n0,1\n0.1,2\n", 0.0, 0.0},
        {"Time,v\n0,a\n0.1,b\n0.2,c\n", 0.0, 0.0},
        {"Time,v\n0,1\n1,2\n2,9007199254740993\n", 0.0, 0.0},
        {"Time [mm],v\n0,1\n1,2\n2,3\n", 0.0, 0.0},
        {"0,1\n1,2\n2,3\n", 0.0, 0.0},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.content);
        const std::string filename = folder_.Write("t.csv", test.content);
        ASSERT_EQ(SubIdOf(filename), test.rate > 0.0 ? CsvTimeSeries : CsvTable);
        if (test.rate == 0.0)
            continue;
        const VDTsAccHandle acc = OpenTest(filename);
        EXPECT_NEAR(TestValue<TSAccGetSampleRate>(acc.Get(), 0), test.rate, 1e-6 * test.rate);
        EXPECT_DOUBLE_EQ(TestValue<TSAccGetBaseTime>(acc.Get(), 0), test.first);
        std::vector<float> values(3);
        EXPECT_TRUE(TSAccGetData(acc.Get(), 0, 1, 3, nullptr, values.data()));
        EXPECT_EQ(values, (std::vector<float>{1, 2, 3}));
    }
    // As a table it is there all the same, and what is none is refused as a time series.
    EXPECT_EQ(Dump(folder_.Write("t.csv", cases[0].content)), "Time||6: 0 0.1 0.2\nv||1: 1 2 3\n");
    const VDTsAccHandle none =
        BindTest(NewTestId(folder_.Write("n.csv", cases[4].content), CsvFileId, CsvTimeSeries, {0}).Get());
    ExpectFailure(TSAccOpen(none.Get(), VTTsAccOpenRead), -328989, "isn't a time that grows evenly");
}

TEST_F(CsvReadTest, ATimeSeriesHasTheColumnsOfNumbers)
{
    const std::string filename = folder_.Write("t.csv", "Time,name,speed,n\ns,,m/s,-\n0,x,1.5,7\n1,y,,8\n2,z,2.5,\n");
    const VDTsAccHandle acc = OpenTest(filename);
    std::vector<double> values(3);
    ASSERT_EQ(TestValue<TSAccGetNumChans>(acc.Get()), 2);
    EXPECT_EQ(TestValue<TSAccGetYTitle>(acc.Get(), 0), "speed");
    EXPECT_EQ(TestValue<TSAccGetYUnits>(acc.Get(), 0), "m/s");
    for (const int channel : {0, 1}) {
        EXPECT_TRUE(TSAccGetDataDoublePrecision(acc.Get(), channel, 1, 3, nullptr, values.data())) << Errors();
        EXPECT_EQ(values[0], channel == 0 ? 1.5 : 7.0);
        EXPECT_TRUE(std::isnan(values[channel == 0 ? 1 : 2]));
    }
}

/// Whatever the order in which cells are asked for, and wherever blocks and the reader's buffer end.
TEST_F(CsvReadTest, LargeTablesAreReadInAnyOrder)
{
    constexpr int rows = 60000;
    std::string content = "n,half,text\n";
    for (int row = 0; row < rows; ++row)
        content += std::to_string(row) + "," + std::to_string(row) + ".5,\"t,\n" + std::string(row % 50, 'x') + "\"\n";
    const VDXYAccHandle acc = Open(folder_.Write("large.csv", content));
    ASSERT_EQ(TestValue<XYAccGetNumRows>(acc.Get(), 0, 0), rows);
    VDVariant values;
    for (const int first : {59000, 1, 30000, 29990, 12345, 59999}) {
        ASSERT_TRUE(XYAccGetData(acc.Get(), 0, 0, 1, first, 1000, &values)) << Errors();
        EXPECT_EQ(values.GetBuffer<double>().front(), first - 0.5);
        EXPECT_EQ(values.GetBuffer<double>().back(), std::min(first + 999, rows) - 0.5);
        EXPECT_EQ(Cell(acc.Get(), 2, first), "t,\n" + std::string(static_cast<std::size_t>((first - 1) % 50), 'x'));
    }
    std::vector<float> all(rows);
    ASSERT_TRUE(XYAccGetDataF(acc.Get(), 0, 0, 0, 1, rows, nullptr, all.data()));
    for (int row = 0; row < rows; ++row)
        ASSERT_EQ(all[static_cast<std::size_t>(row)], static_cast<float>(row));
    VDVariant least;
    VDVariant most;
    EXPECT_TRUE(XYAccGetColLimits(acc.Get(), 0, 0, 1, &least, &most));
    EXPECT_TRUE(least == VDVariant(0.5) && most == VDVariant(rows - 0.5));
    EXPECT_TRUE(XYAccGetColLimits(acc.Get(), 0, 0, 2, &least, &most));
    EXPECT_TRUE(least.IsNull() && most.IsNull());
}

TEST_F(CsvReadTest, VeryManyColumns)
{
    constexpr int columns = 20000;
    std::string content;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < columns; ++column)
            content += (row == 0 ? "c" : "") + std::to_string(row * columns + column) + (column + 1 < columns ? "," : "\n");
    const VDXYAccHandle acc = Open(folder_.Write("wide.csv", content));
    ASSERT_EQ(TestValue<XYAccGetNumCols>(acc.Get(), 0), columns);
    VDVariant values;
    for (int column = 0; column < columns; ++column) {
        ASSERT_TRUE(XYAccGetData(acc.Get(), 0, 0, column, 1, 3, &values));
        ASSERT_EQ(values.GetBuffer<std::int32_t>()[2], 3 * columns + column);
    }
}

}  // namespace
