#include "support/TestSupport.h"

#include "vdbase/VDTime.h"
#include "vdbase/VFNumber.h"

#include <array>
#include <cmath>
#include <limits>

TEST(Number, ReadsWholeTextsOnly)
{
    int number = 77;
    for (const char* bad : {"", " ", "+", "-", "+-1", "++1", "1 2", "1x", "0x10", "2147483648", "1.0"})
        EXPECT_FALSE(VFAscToNum(bad, &number)) << bad;
    EXPECT_FALSE(VFAscToNum(nullptr, &number));
    EXPECT_EQ(number, 77);
    EXPECT_TRUE(VFAscToNum(" \t+12\r\n", &number));
    EXPECT_EQ(number, 12);
    EXPECT_TRUE(VFAscToNum("-2147483648", &number));
    EXPECT_EQ(number, std::numeric_limits<int>::min());
    std::int64_t large = 0;
    EXPECT_TRUE(VFAscToNum("9223372036854775807", &large));
    EXPECT_EQ(large, std::numeric_limits<std::int64_t>::max());
    EXPECT_FALSE(VFAscToNum("9223372036854775808", &large));
}

TEST(Number, ReadsDoublesToTheirLimits)
{
    double number = 77;
    for (const char* bad :
         {"", ".", "e5", "1e", "1e+", "0x1p3", "1,5", "1e400", "-1e400", "+-inf", "1e99999999999999999999", "123456789e305"})
        EXPECT_FALSE(VFAscToNum(bad, &number)) << bad;
    EXPECT_EQ(number, 77);
    for (const char* tiny : {"1e-400", "-0.001e-350", "+1e-99999999999999999999", "1234567e-340"}) {
        number = 77;
        EXPECT_TRUE(VFAscToNum(tiny, &number)) << tiny;
        EXPECT_EQ(number, 0) << tiny;
    }
    EXPECT_TRUE(VFAscToNum("4.9e-324", &number));
    EXPECT_EQ(number, std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(VFAscToNum(" +1.5e+3 ", &number));
    EXPECT_EQ(number, 1500);
    EXPECT_TRUE(VFAscToNum("-Inf", &number));
    EXPECT_EQ(number, -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(VFAscToNum("NaN", &number));
    EXPECT_TRUE(std::isnan(number));
}

TEST(Number, ReadsBooleans)
{
    bool flag = false;
    EXPECT_TRUE(VFAscToBoolean("TRUE", &flag));
    EXPECT_TRUE(flag);
    EXPECT_FALSE(VFAscToBoolean("1", &flag));
    EXPECT_FALSE(VFAscToBoolean("", &flag));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(VFAscToBoolean("false", &flag));
    EXPECT_FALSE(flag);
}

TEST(Number, WritesWholeNumbers)
{
    const std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(VFFormat64(lowest, 10, 0), "-9223372036854775808");
    EXPECT_EQ(VFFormat64(lowest, 2, 0).GetLength(), 65);
    EXPECT_EQ(VFFormat64(-255, 16, 5), "-00ff");
    EXPECT_EQ(VFFormat64(1234, 10, 3), "1234");
    EXPECT_EQ(VFFormat64(0, 10, 2), "00");
    EXPECT_EQ(VFFormat64(5, 1, 0), "");
    EXPECT_EQ(VFFormat64(5, 37, 0), "");
}

TEST(Number, WritesDoubles)
{
    struct Row
    {
        double value;
        int digits, minExponent, maxExponent, trailingZeros, maxLength;
        const char* text;
    };
    const double infinity = std::numeric_limits<double>::infinity();
    const Row rows[] = {
        {0, 6, -3, 4, 0, 40, "0"},
        {-0.0, 6, -3, 4, 0, 40, "0"},
        {0, 3, -3, 4, 1, 40, "0.00"},
        {0.1, 17, -3, 4, 0, 40, "0.10000000000000001"},
        {0.1, 10, -3, 4, 0, 40, "0.1"},
        {0.1, 4, -3, 4, 1, 40, "0.1000"},
        {0.001, 6, -3, 4, 0, 40, "0.001"},
        {0.0009999, 6, -3, 4, 0, 40, "9.999e-04"},
        {0.00099999999, 6, -3, 4, 0, 40, "0.001"},  // the rounded exponent counts
        {12345.678, 8, -3, 4, 0, 40, "12345.678"},
        {99999.9999, 6, -3, 4, 0, 40, "1e+05"},
        {-123456, 3, -10, 10, 0, 40, "-123000"},
        {-123456, 3, -3, 4, 1, 40, "-1.23e+05"},
        {1e100, 3, -3, 4, 0, 40, "1e+100"},
        {3.14159265, 9, -3, 4, 0, 5, "3.142"},
        {9.9996, 9, -3, 4, 0, 5, "10"},
        {123.456, 9, -3, 4, 0, 3, "123"},
        {-3.14159e-7, 6, -3, 4, 0, 8, "-3.1e-07"},
        {1e20, 6, -3, 30, 0, 10, "1e+20"},
        {12345, 6, -3, 5, 0, 3, "12345"},  // nothing shorter
        {3.5, 0, -3, 4, 0, 0, "4"},
        {1.0 / 3, 99, -3, 4, 0, 0, "0.33333333333333331"},
        {infinity, 6, -3, 4, 0, 2, "inf"},
        {-infinity, 6, -3, 4, 0, 40, "-inf"},
        {std::nan(""), 6, -3, 4, 0, 40, "nan"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(VFFormatDouble(row.value, row.digits, row.minExponent, row.maxExponent, row.trailingZeros, row.maxLength),
                  row.text);
}

TEST(Number, ComparesByRatio)
{
    EXPECT_TRUE(VFRequal(1000, 1001, 1.001));
    EXPECT_FALSE(VFRequal(1001.1, 1000, 1.001));
    EXPECT_TRUE(VFRequal(-1000, -1000.5, 1.001));
    EXPECT_FALSE(VFRequal(1, -1, 1.001));
    EXPECT_FALSE(VFRequal(0, 1e-300, 1.001));
    EXPECT_TRUE(VFRequal(0, -0.0, 1.001));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(VFRequal(infinity, infinity, 1.001));
    EXPECT_FALSE(VFRequal(infinity, 1.7e308, 1.1));
    EXPECT_FALSE(VFRequal(std::nan(""), std::nan(""), 1.001));
}

TEST(Number, Squeezes)
{
    const auto squeezed = [](const char* text, int mode) {
        VDString result(text);
        VFSqueeze(&result, mode);
        return result.Str();
    };
    EXPECT_EQ(squeezed(" \ta  b \t", 1), " \ta  b");
    EXPECT_EQ(squeezed(" \ta  b \t", 2), "a  b \t");
    EXPECT_EQ(squeezed(" \ta  b \t", 3), "a  b");
    EXPECT_EQ(squeezed("a\r\n", 3), "a\r\n");
    EXPECT_EQ(squeezed("\r\n a\t\r\n b\nc \n", 8), "a b c");
    EXPECT_EQ(squeezed(" \t\n ", 8), "");
    EXPECT_EQ(squeezed(" x ", 0), " x ");
}

TEST(Number, SortableTextsFollowTheNumbers)
{
    const char* const ascending[] = {"Chan",
                                     "Chan 0",
                                     "Chan 1",
                                     "Chan 02",
                                     "Chan 9a",
                                     "Chan 9b",
                                     "Chan 10",
                                     "Chan 99",
                                     "Chan 0100",
                                     "Chan 99999999",
                                     "Chan 100000000",
                                     "Chan 999999999999999999",
                                     "Chan 1000000000000000000000000000000",
                                     "Chan A"};
    VDString previous;
    for (const char* text : ascending) {
        const VDString key = VFMakeNumericallySortableString(text);
        EXPECT_LT(previous.Compare(key), 0) << text;
        previous = key;
    }
    EXPECT_EQ(VFMakeNumericallySortableString("a7"), VFMakeNumericallySortableString("a007"));
}

TEST(Time, TakesRealDatesOnly)
{
    VDTime time;
    EXPECT_EQ(time.ToIsoText(), "");
    EXPECT_TRUE(time.LoadVDTIME(2000, 2, 29, 23, 59, 59, 999));
    for (const auto& bad :
         {std::array{1900, 2, 29, 0, 0, 0, 0}, std::array{2001, 4, 31, 0, 0, 0, 0}, std::array{0, 1, 1, 0, 0, 0, 0},
          std::array{2001, 13, 1, 0, 0, 0, 0}, std::array{2001, 257, 1, 0, 0, 0, 0}, std::array{2001, 1, 1, 24, 0, 0, 0},
          std::array{2001, 1, 1, 0, 60, 0, 0}, std::array{2001, 1, 1, 0, 0, 60, 0}, std::array{2001, 1, 1, 0, 0, 0, 1000}})
        EXPECT_FALSE(time.LoadVDTIME(bad[0], bad[1], bad[2], bad[3], bad[4], bad[5], bad[6]));
    EXPECT_EQ(time.ToIsoText(), "2000-02-29T23:59:59.999");

    VDTimecode code;
    code.SetVDTime(time);
    EXPECT_EQ(code.GetUTCTimeInMicroSeconds(), 951868799999000);
    EXPECT_TRUE(time.LoadVDTIME(1969, 12, 31, 23, 59, 59, 999));
    code.SetVDTime(time);
    EXPECT_EQ(code.GetUTCTimeInMicroSeconds(), -1000);
}
