#include "vdarchive/Z4ValueProperty.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr Z4PropertyType AllTypes[] = {Z4TypeBoolean, Z4TypeUnsChar, Z4TypeUnsShort,  Z4TypeShort, Z4TypeUnsLong,
                                       Z4TypeLong,    Z4TypeUnsHuge, Z4TypeHuge,      Z4TypeFloat, Z4TypeDouble,
                                       Z4TypeString,  Z4TypeText,    Z4TypeDoubleList};

template <class Property>
void ExpectExactRoundTrip(typename Property::Value value)
{
    const Property written("p", value);
    Property read("p");
    ASSERT_TRUE(read.FromString(written.ToString())) << written.ToString().c_str();
    EXPECT_EQ(read.Get(), value);
    EXPECT_EQ(std::signbit(static_cast<double>(read.Get())), std::signbit(static_cast<double>(value)));
}

}  // namespace

TEST(Property, EachTypeStartsUndefinedAndCloneKeepsThat)
{
    for (const Z4PropertyType type : AllTypes) {
        const auto property = Z4Property::Create(type, "item");
        ASSERT_NE(property, nullptr) << std::hex << type;
        EXPECT_EQ(property->GetType(), type);
        EXPECT_FALSE(property->IsDefined());
        EXPECT_EQ(property->ToString(), "Undefined");

        ASSERT_TRUE(property->FromString("1"));
        const auto clone = property->Clone();
        property->SetDefined(false);
        EXPECT_EQ(clone->GetType(), type);
        EXPECT_EQ(clone->GetName(), "item");
        EXPECT_EQ(clone->ToString(), type == Z4TypeBoolean ? "True" : "1");
    }
    EXPECT_EQ(Z4Property::Create(static_cast<Z4PropertyType>(Z4TypeBoolean + 2), "item"), nullptr);
}

TEST(Property, NumbersSurviveTheirText)
{
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.0, -0.0, 0.1, 1e5, 1e15, 123456789012345678.0, 1.0 / 3, Limits::max(), Limits::denorm_min(),
                               -Limits::infinity()})
        ExpectExactRoundTrip<Z4DoubleProperty>(value);
    for (const float value :
         {0.1F, 16777217.0F, std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min()})
        ExpectExactRoundTrip<Z4FloatProperty>(value);
    ExpectExactRoundTrip<Z4HugeProperty>(std::numeric_limits<std::int64_t>::min());
    ExpectExactRoundTrip<Z4UnsHugeProperty>(std::numeric_limits<std::uint64_t>::max());

    Z4FloatProperty small("p", 1);
    EXPECT_TRUE(small.FromString("1e-400") && small.Get() == 0) << "as every reader takes it";

    EXPECT_EQ(Z4DoubleProperty("p", 100000.0).ToString(), "100000");
    EXPECT_EQ(Z4FloatProperty("p", 0.1F).ToString(), "0.1");
    Z4DoubleProperty notANumber("p");
    ASSERT_TRUE(notANumber.FromString(Z4DoubleProperty("p", Limits::quiet_NaN()).ToString()));
    EXPECT_TRUE(std::isnan(notANumber.Get()));
}

TEST(Property, RefusedTextChangesNothing)
{
    const struct
    {
        Z4PropertyType type;
        const char* good;
        const char* shown;
        std::vector<const char*> bad;
    } cases[] = {
        {Z4TypeBoolean, " tRuE ", "True", {"", "2", "yes"}},
        {Z4TypeUnsChar, "255", "255", {"256", "-1", "", "1 2"}},
        {Z4TypeUnsShort, "65535", "65535", {"65536"}},
        {Z4TypeShort, "-32768", "-32768", {"-32769", "0x10"}},
        {Z4TypeUnsLong, "4294967295", "4294967295", {"4294967296"}},
        {Z4TypeLong, " +12 ", "12", {"2147483648", "1.5", "+-1", "+", "12a"}},
        {Z4TypeUnsHuge, "18446744073709551615", "18446744073709551615", {"18446744073709551616"}},
        {Z4TypeHuge, "-9223372036854775808", "-9223372036854775808", {"9223372036854775808"}},
        {Z4TypeFloat, "1e3", "1000", {"1e39", "1,5"}},
        {Z4TypeDouble, "-.5", "-0.5", {"1e400", "", "one"}},
        {Z4TypeDoubleList, "1  2.5\t3\n", "1 2.5 3", {"1 x"}},
    };
    for (const auto& each : cases) {
        const auto property = Z4Property::Create(each.type, "p");
        for (const char* const text : each.bad) {
            EXPECT_FALSE(property->FromString(text)) << text;
            EXPECT_FALSE(property->IsDefined()) << text;
        }
        EXPECT_TRUE(property->FromString(each.good)) << each.good;
        for (const char* const text : each.bad)
            EXPECT_FALSE(property->FromString(text)) << text;
        EXPECT_EQ(property->ToString(), each.shown);
    }
}
