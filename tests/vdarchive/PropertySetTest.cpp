#include "support/TestSupport.h"
#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdarchive/Z4PropertySet.h"

#include <limits>

namespace {

VDString NameOf(int i)
{
    VDString name;
    name.Format("item%d", i);
    return name;
}

std::string Names(const Z4PropertySet& set)
{
    std::string names;
    for (int i = 0; i < set.GetSize(); ++i)
        names += set.GetProperty(i)->GetName().Str() + " ";
    return names;
}

}  // namespace

TEST(PropertySet, OverwritesATextByAddAndSet)
{
    Z4PropertySet set("s");
    for (const char* const text : {"first", "second"}) {
        set.AddString("Title", text);
        EXPECT_TRUE(set.SetString("Title", text));
    }
    EXPECT_EQ(set.GetSize(), 1);
    EXPECT_EQ(set.GetProperty(0)->ToString(), "second");
    EXPECT_EQ(set.AddDouble("Title", 1.0), nullptr);
    EXPECT_FALSE(set.SetString("title", "x")) << "names are compared exactly";
}

TEST(PropertySet, TypedCallsConvertWithoutLossOrFail)
{
    Z4PropertySet set("s");
    set.AddLong("n", 7);
    double number = 0;
    EXPECT_TRUE(set.GetDouble("n", &number));
    EXPECT_EQ(number, 7.0);
    EXPECT_FALSE(set.SetDouble("n", 2.5)) << "a Long takes no fraction";
    EXPECT_TRUE(set.SetDouble("n", 3.0));
    EXPECT_TRUE(set.SetString("n", "12"));
    std::int32_t whole = 0;
    EXPECT_TRUE(set.GetLong("n", &whole));
    EXPECT_EQ(whole, 12);
    std::uint8_t small = 0;
    set.PutDouble("n", 256);
    EXPECT_EQ(set.GetProperty("n", false)->GetType(), Z4TypeDouble);
    EXPECT_FALSE(set.GetUnsChar("n", &small));

    // By value, whatever their texts look like.
    std::int64_t huge = 0;
    set.PutDouble("n", 1e15);
    EXPECT_TRUE(set.GetHuge("n", &huge) && huge == 1'000'000'000'000'000) << huge;
    for (const double bad : {0.5, 9223372036854775808.0, std::numeric_limits<double>::quiet_NaN()}) {
        set.PutDouble("n", bad);
        EXPECT_FALSE(set.GetHuge("n", &huge)) << bad;
    }
    set.PutDouble("n", -9223372036854775808.0);
    EXPECT_TRUE(set.GetHuge("n", &huge) && huge == std::numeric_limits<std::int64_t>::min()) << huge;
    float single = 1;
    set.PutDouble("n", 1e300);
    EXPECT_FALSE(set.GetFloat("n", &single));
    set.PutDouble("n", -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(set.GetFloat("n", &single) && single == -std::numeric_limits<float>::infinity());
    set.AddFloat("f", 0.1F);
    EXPECT_TRUE(set.GetDouble("f", &number) && number == static_cast<double>(0.1F)) << number;
    set.PutHuge("n", 5);
    EXPECT_TRUE(set.SetDouble("n", 1e18) && set.GetHuge("n", &huge) && huge == 1'000'000'000'000'000'000);

    bool created = false;
    EXPECT_EQ(set.AdoptBoolean("n", &created), nullptr) << "there is one of another type";
    EXPECT_FALSE(created);
    Z4DoubleProperty* const gain = set.AdoptDouble("gain", &created);
    ASSERT_NE(gain, nullptr);
    EXPECT_TRUE(created);
    EXPECT_FALSE(set.GetDouble("gain", &number)) << "it is undefined";
    gain->Set(2.0);
    EXPECT_EQ(set.AdoptDouble("gain", nullptr), gain);
    EXPECT_TRUE(set.GetDouble("gain", &number));
}

TEST(PropertySet, CopyReplacesInPlaceAndKeepsWhatItIsTold)
{
    Z4PropertySet source("source");
    source.AddDouble("b", 2);
    source.AddLong("d", 4)->SetDefined(false);
    Z4PropertySet target("target");
    for (const char* const name : {"a", "b", "c"})
        target.AddString(name, "old");

    EXPECT_TRUE(target.Copy(&source, true));
    EXPECT_EQ(target.GetProperty("b", false)->ToString(), "old");
    EXPECT_TRUE(target.Copy(&source, false));
    EXPECT_EQ(Names(target), "a b c d ");
    EXPECT_EQ(target.GetProperty("b", false)->GetType(), Z4TypeDouble);
    EXPECT_FALSE(target.GetProperty("d", false)->IsDefined());

    Z4Property* const own = target.GetProperty("a", false);
    EXPECT_TRUE(target.Copy(own));
    EXPECT_EQ(target.GetProperty("a", false), own);
    EXPECT_FALSE(target.Copy(static_cast<const Z4Property*>(nullptr)));
}

TEST(PropertySet, AbsentItemsAreReportedOnlyOnRequest)
{
    Z4PropertySet set("Sensor");
    Z4Property* property = set.AddLong("x", 1);
    VFErrorClear();
    EXPECT_FALSE(set.Lookup("Gain", &property, false));
    EXPECT_EQ(property, nullptr);
    ExpectNoError();
    EXPECT_FALSE(set.Exists("Gain", true));
    ExpectErrorText(VDArchiveError::NoProperty, "Property set \"Sensor\" has no property \"Gain\"");
}

// The set changes from a plain list to an indexed one and back on the way.
TEST(PropertySet, KeepsOrderAndFindsNamesAtEverySize)
{
    constexpr int Count = 3000;
    Z4PropertySet set("s");
    for (int i = 0; i < Count; ++i) {
        ASSERT_NE(set.AddLong(NameOf(i), i), nullptr);
        ASSERT_EQ(set.AddLong(NameOf(i / 2), -1), nullptr);
    }
    for (int i = 0; i < Count; i += 7)
        set.Copy(std::make_unique<Z4LongProperty>(NameOf(i), i).get());
    Z4PropertySet other("other");
    for (Z4PropertySet* const each : {&set, &other})
        for (int i = Count; i < 2 * Count; ++i)
            each->AddLong(NameOf(i), i);
    set.RemovePropertiesOf(other);
    for (int i = 0; i < Count; ++i) {
        ASSERT_EQ(set.GetSize(), Count - i);
        ASSERT_EQ(set.GetProperty(0), set.GetProperty(NameOf(i), false));
        ASSERT_EQ(set.GetProperty(NameOf(Count - 1), false), set.GetProperty(Count - i - 1));
        ASSERT_TRUE(set.RemoveProperty(NameOf(i)));
        ASSERT_FALSE(set.Exists(NameOf(i), false));
    }
    EXPECT_EQ(set.GetProperty(0), nullptr);
    EXPECT_FALSE(set.RemoveProperty(NameOf(0)));
}
