#include "support/TestSupport.h"

#include "vdbase/VDVariant.h"

#include <cmath>
#include <limits>

namespace {

constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();

}  // namespace

TEST(Variant, GettersTakeTheirOwnTypeOnly)
{
    const VDVariant six = VDVariant::FromHuge(6);
    std::int64_t huge = -1;
    double number = -1;
    long value = -1;
    EXPECT_FALSE(VDVariant(5L).GetHuge(&huge) || VDVariant(5L).GetDouble(&number) || six.GetLong(&value));
    EXPECT_TRUE(huge == -1 && number == -1 && value == -1);
    EXPECT_TRUE(six.GetHuge(&huge) && huge == 6);

    VDVariant pointer;
    pointer.SetNamedPointer("owner", &huge);
    VDString text;
    void* address = nullptr;
    EXPECT_FALSE(pointer.GetPointer(&address));
    EXPECT_TRUE(pointer.GetNamedPointer(&text, &address) && text == "owner" && address == &huge);

    EXPECT_TRUE(VDVariant(true).ConvertToDouble(&number) && number == 1);
    EXPECT_FALSE(VDVariant("1").ConvertToDouble(&number));
    EXPECT_TRUE(VDVariant(0.1F).ConvertToString(&text) && text == "0.1") << text;
    EXPECT_FALSE(VDVariant().ConvertToString(&text));
}

TEST(Variant, ListsCopyDeeplyAndNumbersCompareExactlyAcrossTypes)
{
    VDVariant list(3.0);
    list.AppendItem(VDVariant(1L));
    list.AppendItem(list);
    EXPECT_TRUE(list.GetNumItems() == 2 && list[1].GetNumItems() == 1);
    EXPECT_TRUE(list[2].IsNull() && list[-1].IsNull() && VDVariant(7L)[0].IsNull());
    const VDVariant copy = list;
    list.AppendItem(VDVariant("more"));
    EXPECT_EQ(copy.GetNumItems(), 2);
    EXPECT_FALSE(copy == list);
    EXPECT_TRUE(copy[0] == VDVariant(1.0));

    constexpr std::int64_t large = (std::int64_t{1} << 53) + 1;
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
    EXPECT_TRUE(buffer.SetDoubleAt(0, -2.6) && buffer.SetLongAt(1, 32767));
    EXPECT_FALSE(buffer.SetLongAt(2, 32768));
    for (const double bad : {32767.5, std::nan("")})
        EXPECT_FALSE(buffer.SetDoubleAt(2, bad)) << bad;
    EXPECT_FALSE(buffer.SetDoubleAt(3, 0) || buffer.SetDoubleAt(-1, 0));
    long value = 0;
    EXPECT_TRUE(buffer.GetLongAt(0, &value) && value == -3) << value;
    float number = 1;
    EXPECT_TRUE(buffer.GetFloatAt(2, &number) && number == 0) << number;

    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantHugeBuffer, 1));
    EXPECT_FALSE(buffer.SetDoubleAt(0, 9223372036854775808.0));
    EXPECT_TRUE(buffer.SetDoubleAt(0, -9223372036854775808.0));
    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantDoubleBuffer, 1));
    EXPECT_FALSE(buffer.GetLongAt(0, &value));

    VDString text;
    EXPECT_TRUE(buffer.SetBufferSizeAndAllocate(VTVariantStringBuffer, 2));
    EXPECT_TRUE(buffer.SetStringAt(1, "on") && buffer.GetStringAt(1, &text) && text == "on");
    EXPECT_FALSE(buffer.GetStringAt(2, &text) || buffer.GetFloatAt(0, &number));

    using Size = std::pair<int, std::int64_t>;
    for (const auto& [type, count] : {Size(VTVariantDoubleBuffer, -1), Size(VTVariantDoubleBuffer, std::int64_t{1} << 60),
                                      Size(VTVariantDoubleBuffer, Largest), Size(VTVariantLong, 1)}) {
        VDVariant impossible(1L);
        EXPECT_FALSE(impossible.SetBufferSizeAndAllocate(type, count)) << type << ' ' << count;
        EXPECT_TRUE(impossible.IsNull() && impossible.GetBufferSize() == 0);
    }
}
