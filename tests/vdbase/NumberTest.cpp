#include "support/TestSupport.h"

#include "vdbase/VDTime.h"
#include "vdbase/VFNumber.h"

#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

// What a reader makes of a text; nothing if it refuses, which must leave the caller's value alone.
template <class T>
std::optional<T> Read(bool (*reader)(const char*, T*), const char* text)
{
    T value = 77;
    if (reader(text, &value))
        return value;
    EXPECT_EQ(value, T(77)) << text;
    return std::nullopt;
}

}  // namespace

TEST(Number, ReadsWholeTextsOnly)
{
    for (const char* bad : {"", " ", "+", "-", "+-1", "++1", "1 2", "1x", "0x10", "2147483648", "1.0"})
        EXPECT_FALSE(Read<int>(VFAscToNum, bad)) << bad;
    EXPECT_FALSE(Read<int>(VFAscToNum, nullptr));
    EXPECT_EQ(Read<int>(VFAscToNum, " \t+12\r\n"), 12);
    EXPECT_EQ(Read<int>(VFAscToNum, "-2147483648"), std::numeric_limits<int>::min());
    EXPECT_EQ(Read<std::int64_t>(VFAscToNum, "9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_FALSE(Read<std::int64_t>(VFAscToNum, "9223372036854775808"));

    for (const char* bad : {"", "0x", "-1", "12G", "123456789", "1 2"})
        EXPECT_FALSE(Read(VFHexToNum, bad)) << bad;
    EXPECT_FALSE(Read(VFHexToNum, nullptr));
    EXPECT_EQ(Read(VFHexToNum, " fF "), 255);
    EXPECT_EQ(Read(VFHexToNum, "0xFFFFFFFF"), -1);

    EXPECT_EQ(Read(VFAscToBoolean, "TRUE"), true);
    EXPECT_EQ(Read(VFAscToBoolean, "false"), false);
    EXPECT_FALSE(Read(VFAscToBoolean, "1").has_value());
    EXPECT_FALSE(Read(VFAscToBoolean, "").has_value());
}

TEST(Number, ReadsDoublesToTheirLimits)
{
    const auto read = [](const char* text) { return Read<double>(VFAscToNum, text); };
    for (const char* bad :
         {"", ".", "e5", "1e", "1e+", "0x1p3", "1,5", "1e400", "-1e400", "+-inf", "1e99999999999999999999", "123456789e305"})
        EXPECT_FALSE(read(bad)) << bad;
    for (const char* tiny : {"1e-400", "-0.001e-350", "+1e-99999999999999999999", "1234567e-340"})
        EXPECT_EQ(read(tiny), 0) << tiny;
    EXPECT_EQ(read("4.9e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(read(" +1.5e+3 "), 1500);
    EXPECT_EQ(read("-Inf"), -Infinity);
    EXPECT_TRUE(std::isnan(read("NaN").value_or(0)));
}

TEST(Number, WritesWholeNumbers)
{
    const std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(VFFormat64(lowest, 10, 0), "-9223372036854775808");
    EXPECT_EQ(VFFormat64(lowest, 2, 0).GetLength(), 65);
    EXPECT_EQ(VFFormat64(-255, 16, 5), "-00ff");
    EXPECT_EQ(VFFormat64(1234, 10, 3), "1234");
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
    const Row rows[] = {
        {-0.0, 6, -3, 4, 0, 40, "0"},
        {0.1, 4, -3, 4, 1, 40, "0.1000"},
        {0.0009999, 6, -3, 4, 0, 40, "9.999e-04"},
        {0.00099999999, 6, -3, 4, 0, 40, "0.001"},  // the rounded exponent counts
        {99999.9999, 6, -3, 4, 0, 40, "1e+05"},
        {-123456, 3, -10, 10, 0, 40, "-123000"},
        {-123456, 3, -3, 4, 1, 40, "-1.23e+05"},
        {9.9996, 9, -3, 4, 0, 5, "10"},
        {-3.14159e-7, 6, -3, 4, 0, 8, "-3.1e-07"},
        {1e20, 6, -3, 30, 0, 10, "1e+20"},
        {12345, 6, -3, 5, 0, 3, "12345"},  // nothing shorter
        {3.5, 0, -3, 4, 0, 0, "4"},
        {1.0 / 3, 99, -3, 4, 0, 0, "0.33333333333333331"},
        {Infinity, 6, -3, 4, 0, 2, "inf"},
        {-Infinity, 6, -3, 4, 0, 40, "-inf"},
        {std::nan(""), 6, -3, 4, 0, 40, "nan"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(VFFormatDouble(row.value, row.digits, row.minExponent, row.maxExponent, row.trailingZeros, row.maxLength),
                  row.text);
}

TEST(Number, ComparesByRatio)
{
    using Pair = std::pair<double, double>;
    for (const auto& [left, right] : {Pair(1000, 1001), Pair(-1000, -1000.5), Pair(0, -0.0), Pair(Infinity, Infinity)})
        EXPECT_TRUE(VFRequal(left, right, 1.001)) << left;
    for (const auto& [left, right] :
         {Pair(1001.1, 1000), Pair(1, -1), Pair(0, 1e-300), Pair(Infinity, 1.7e308), Pair(std::nan(""), std::nan(""))})
        EXPECT_FALSE(VFRequal(left, right, 1.001)) << left;
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
    EXPECT_EQ(squeezed("a\r\n", 3), "a\r\n");
    EXPECT_EQ(squeezed("\r\n a\t\r\n b\nc \n", 8), "a b c");
    EXPECT_EQ(squeezed(" \t\n ", 8), "");
}

TEST(Number, SortableTextsFollowTheNumbers)
{
    VDString previous;
    for (const char* text :
         {"Chan", "Chan 0", "Chan 1", "Chan 02", "Chan 9a", "Chan 9b", "Chan 10", "Chan 99", "Chan 0100", "Chan 99999999",
          "Chan 100000000", "Chan 999999999999999999", "Chan 1000000000000000000000000000000", "Chan A"}) {
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
    using Fields = std::array<int, 7>;
    for (const auto& [year, month, day, hour, minute, second, millisecond] :
         {Fields{1900, 2, 29}, Fields{2001, 4, 31}, Fields{0, 1, 1}, Fields{2001, 13, 1}, Fields{2001, 257, 1},
          Fields{2001, 1, 1, 24}, Fields{2001, 1, 1, 0, 60}, Fields{2001, 1, 1, 0, 0, 60},
          Fields{2001, 1, 1, 0, 0, 0, 1000}})
        EXPECT_FALSE(time.LoadVDTIME(year, month, day, hour, minute, second, millisecond)) << year << '-' << month;
    EXPECT_EQ(time.ToIsoText(), "2000-02-29T23:59:59.999");

    VDTimecode code;
    code.SetVDTime(time);
    EXPECT_EQ(code.GetUTCTimeInMicroSeconds(), 951868799999000);
    EXPECT_TRUE(time.LoadVDTIME(1969, 12, 31, 23, 59, 59, 999));
    code.SetVDTime(time);
    EXPECT_EQ(code.GetUTCTimeInMicroSeconds(), -1000);
}
