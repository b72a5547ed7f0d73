#include "support/TestHistogram.h"
#include "support/TestSupport.h"
#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDCompBase.h"

#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST(Hist, RefusesWhatCannotBeAndStaysAsItWas)
{
    const TestHist hist = MakeHist(VTHistFormatLong);
    const TestHist before = MakeHist(VTHistFormatLong);
    VDHist* const it = hist.get();
    const double falling[] = {1, 1};
    std::int64_t count = 0;
    const auto refused = [](int result) { ExpectFailure(result, VDBaseError::HistValue); };
    refused(VFHistSetXLimits(it, 1, 0, 3));
    refused(VFHistSetXLimits(it, 0, Infinity, 3));
    refused(VFHistSetXLimits(it, 0, 1, -1));
    refused(VFHistSetXLimits(it, 0, 1, std::int64_t(1) << 62));
    refused(VFHistSetXLimits(it, 0, 1, std::int64_t(1) << 44));
    refused(VFHistSetVariableXBins(it, falling, 2));
    refused(VFHistSetFormat(it, 0));
    refused(VFHistGetOverflowCount(it, 3, &count));
    refused(VFHistAddStaticOffset(it, Infinity));
    refused(VFHistSetResiduals(it, -1, nullptr));
    EXPECT_TRUE(IsSame(it, before.get()));
    VDCompBase stranger(7);
    ExpectFailure(VFHistSet3D(nullptr, 1), VDBaseError::HistHandle, "", "VFHistSet3D");
    ExpectFailure(VFHistSet3D(reinterpret_cast<VDHist*>(&stranger), 1), VDBaseError::HistHandle);
}

TEST(Hist, BinsCrossBetweenFormatsWhereEachHasAnExactForm)
{
    const TestHist hist(VFHistCreate());
    VDHist* const it = hist.get();
    int format = 0;
    EXPECT_FALSE(VFHistGetFormat(it, &format));
    EXPECT_TRUE(VFHistSetXLimits(it, 0, 3, 3) && VFHistSetYLimits(it, 0, 2, 2));
    const double values[] = {1, 2, 3, -4, 5, 2147483647};
    EXPECT_TRUE(VFHistSetXYBins_D(it, 0, values, 6));
    std::int32_t columns[6] = {};
    EXPECT_TRUE(VFHistGetXYBins_L(it, 1, columns, 6));
    EXPECT_EQ(std::vector<std::int32_t>(columns, columns + 6), (std::vector<std::int32_t>{1, -4, 2, 5, 3, 2147483647}));
    ExpectFailure(VFHistSetFormat(it, VTHistFormatFloat), VDBaseError::HistValue, "no exact form");
    EXPECT_TRUE(VFHistSetFormat(it, VTHistFormatLong) && VFHistSetFormat(it, VTHistFormatHuge));
    double back[6] = {};
    EXPECT_TRUE(VFHistGetXYBins_D(it, 0, back, 6) && std::equal(back, back + 6, values));
    const std::int64_t exact[] = {0, 0, 0, 0, 0, (std::int64_t(1) << 53) + 1};
    EXPECT_TRUE(VFHistSetXYBins_H(it, 0, exact, 6));
    ExpectFailure(VFHistSetFormat(it, VTHistFormatDouble), VDBaseError::HistValue);
    for (const double bad : {0.5, 9223372036854775808.0, Infinity}) {
        back[0] = bad;
        ExpectFailure(VFHistSetXYBins_D(it, 0, back, 6), VDBaseError::HistValue);
    }
    ExpectFailure(VFHistGetXYBins_D(it, 0, back, 5), VDBaseError::HistValue, "another number of bins");
    // A change of the number of bins makes all bins 0.
    double min = 1;
    double max = 1;
    EXPECT_TRUE(VFHistSetYLimits(it, 0, 2, 1) && VFHistGetZLimits(it, &min, &max));
    EXPECT_EQ(min, 0);
    EXPECT_EQ(max, 0);
}
