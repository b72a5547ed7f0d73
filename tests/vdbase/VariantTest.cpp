#include "support/TestSupport.h"

#include "vdbase/VDVariant.h"

#include <cmath>
#include <limits>

TEST(Variant, GettersTakeTheirOwnTypeOnly)
{
    const VDVariant variant(5L);
    EXPECT_EQ(variant.GetType(), 5);
    std::int64_t huge = -1;
    double number = -1;
    long value = 0;
    EXPECT_FALSE(variant.GetHuge(&huge));
    EXPECT_FALSE(variant.GetDouble(&number));
    EXPECT_EQ(huge, -1);
    EXPECT_EQ(number, -1);
    EXPECT_TRUE(variant.GetLong(&value));
    EXPECT_EQ(value, 5);

    EXPECT_TRUE(VDVariant::FromHuge(6).GetHuge(&huge));
    EXPECT_FALSE(VDVariant::FromHuge(6).GetLong(&value));
    EXPECT_EQ(VDVariant("text").GetType(), 10);
    EXPECT_EQ(VDVariant().GetType(), VTVariantNull);

    VDVariant pointer;
    pointer.SetNamedPointer("owner", &huge);
    VDString name;
    void* address = nullptr;
    EXPECT_FALSE(pointer.GetPointer(&address));
    EXPECT_TRUE(pointer.GetNamedPointer(&name, &address));
    EXPECT_EQ(name, "owner");
    EXPECT_EQ(address, &huge);
    pointer.Clear();
    EXPECT_TRUE(pointer.IsNull());
}

TEST(Variant, ConvertsToNumberAndText)
{
    double number = 0;
    VDString text;
    EXPECT_TRUE(VDVariant(true).ConvertToDouble(&number));
    EXPECT_EQ(number, 1);
    EXPECT_FALSE(VDVariant("1").ConvertToDouble(&number));
    EXPECT_TRUE(VDVariant(0.1F).ConvertToString(&text));
    EXPECT_EQ(text, "0.1");
    EXPECT_TRUE(VDVariant(false).ConvertToString(&text));
    EXPECT_EQ(text, "False");
    EXPECT_TRUE(VDVariant::FromHuge(std::numeric_limits<std::int64_t>::min()).ConvertToString(&text));
    EXPECT_EQ(text, "-9223372036854775808");
    EXPECT_FALSE(VDVariant().ConvertToString(&text));
}

TEST(Variant, ListsNestAndCopyDeeply)
{
    VDVariant list(3.0);
    list.AppendItem(VDVariant(1L));
    list.AppendItem(list);
    EXPECT_EQ(list.GetType(), VTVariantList);
    EXPECT_EQ(list.GetNumItems(), 2);
    EXPECT_EQ(list[1].GetNumItems(), 1);
    EXPECT_TRUE(list[2].IsNull());
    EXPECT_TRUE(list[-1].IsNull());
    const VDVariant copy = list;
    list.AppendItem(VDVariant("more"));
    EXPECT_EQ(copy.GetNumItems(), 2);
    EXPECT_FALSE(copy == list);
    EXPECT_TRUE(copy[0] == VDVariant(1.0));
    EXPECT_TRUE(VDVariant(7L)[0].IsNull());
}

TEST(Variant, ComparesExactlyAcrossTypes)
{
    const std::int64_t large = (std::int64_t{1} << 53) + 1;
    EXPECT_TRUE(VDVariant::FromHuge(large) > VDVariant(static_cast<double>(large)));
    EXPECT_FALSE(VDVariant::FromHuge(large) == VDVariant(static_cast<double>(large)));
    EXPECT_TRUE(VDVariant::FromHuge(3) == VDVariant(3L));
    EXPECT_TRUE(VDVariant("b") > VDVariant("a"));
    EXPECT_FALSE(VDVariant("b") > VDVariant(1L));
    EXPECT_FALSE(VDVariant(true) == VDVariant(1L));
    EXPECT_FALSE(VDVariant(std::nan("")) > VDVariant(1L));
}

TEST(Variant, BuffersConvertWithoutLosingWhatTheyCannotHold)
{
    VDVariant buffer;
    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantShortBuffer, 3));
    EXPECT_EQ(buffer.GetType(), 16);
    EXPECT_EQ(buffer.GetBufferSize(), 3);
    EXPECT_TRUE(buffer.SetDoubleAt(0, -2.6));
    EXPECT_TRUE(buffer.SetLongAt(1, 32767));
    EXPECT_FALSE(buffer.SetLongAt(2, 32768));
    EXPECT_FALSE(buffer.SetDoubleAt(2, 32767.5));
    EXPECT_FALSE(buffer.SetDoubleAt(2, std::nan("")));
    EXPECT_FALSE(buffer.SetDoubleAt(3, 0));
    EXPECT_FALSE(buffer.SetDoubleAt(-1, 0));
    long value = 0;
    EXPECT_TRUE(buffer.GetLongAt(0, &value));
    EXPECT_EQ(value, -3);
    float number = 1;
    EXPECT_TRUE(buffer.GetFloatAt(2, &number));
    EXPECT_EQ(number, 0);

    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantHugeBuffer, 1));
    EXPECT_FALSE(buffer.SetDoubleAt(0, 9223372036854775808.0));
    EXPECT_TRUE(buffer.SetDoubleAt(0, -9223372036854775808.0));

    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, 1));
    EXPECT_FALSE(buffer.GetLongAt(0, &value));

    VDString text;
    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantStringBuffer, 2));
    EXPECT_TRUE(buffer.SetStringAt(1, "on"));
    EXPECT_TRUE(buffer.GetStringAt(1, &text));
    EXPECT_EQ(text, "on");
    EXPECT_FALSE(buffer.GetStringAt(2, &text));
    EXPECT_FALSE(buffer.GetFloatAt(0, &number));
    EXPECT_EQ(VDVariant("text").GetBufferSize(), 0);
}

TEST(Variant, AnImpossibleBufferLeavesNull)
{
    const std::int64_t impossible[] = {-1, std::int64_t{1} << 60, std::numeric_limits<std::int64_t>::max()};
    for (const std::int64_t count : impossible) {
        VDVariant buffer(1L);
        EXPECT_FALSE(buffer.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, count));
        EXPECT_TRUE(buffer.IsNull());
        EXPECT_EQ(buffer.GetBufferSize(), 0);
    }
    VDVariant buffer(1L);
    EXPECT_FALSE(buffer.SetBufferSizeAndAllocate(VTVariantLong, 1));
    EXPECT_TRUE(buffer.IsNull());
}
