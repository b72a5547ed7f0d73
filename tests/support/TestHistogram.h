#pragma once

#include "vdbase/VFHist.h"

#include <memory>
#include <vector>

/// Histograms for tests.

struct TestHistEnd
{
    void operator()(VDHist* hist) const { VFHistRelease(hist); }
};
using TestHist = std::unique_ptr<VDHist, TestHistEnd>;

/// A 3D histogram with something in every field; those of different seeds differ in most of them, in the number of bins,
/// too.
/// @param format  whose values reach to the ends of their range
inline TestHist MakeHist(int format, int seed = 0)
{
    TestHist hist(VFHistCreate());
    VDHist* const it = hist.get();
    const double borders[] = {-3.5, 0.1, 1e9 + seed};
    VFHistSetFormat(it, format);
    VFHistSetType(it, 7, 8 + seed);
    VFHistSet3D(it, 1);
    VFHistSetBinType(it, -2);
    VFHistSetXLimits(it, -0.1, 10.2, 40 + seed);
    VFHistSetVariableYBins(it, borders, 3);
    VDStringArray labels;
    for (const char* const label : {"low", "", "high, or so"})
        labels.AppendItem(label);
    VFHistSetXBinLabels(it, labels);
    VFHistSetXTitle(it, "Range");
    VFHistSetYTitle(it, "Mean");
    VFHistSetZTitle(it, "Cycles");
    VFHistSetXUnits(it, "kN");
    VFHistSetYUnits(it, "\xc2\xb5\x65");
    VFHistSetZUnits(it, "1");
    VFHistSetXBoundaryRule(it, 3);
    VFHistSetYBoundaryRule(it, 2);
    VFHistSetAutoScale(it, 1);
    VFHistSetToleranceFractions(it, 0.01, 0.02);
    VFHistSetMissEdgeFraction(it, 0.25);
    VFHistSetXActuals(it, 1.5, 9.75);
    VFHistSetMaxOverflows(it, 100);
    for (int flag = 1; flag <= VTHistOverflowXMinYMaxSeg; flag *= 2)
        VFHistSetOverflowCount(it, flag, (std::int64_t(1) << 60) + flag);
    const VDHistOverflow overflows[] = {{11, 2, 0.5}, {12, 3, 1}};
    VFHistSetOverflows_D(it, 1, 2, overflows);
    const double residuals[] = {1, -2, 3.5};
    VFHistSetResiduals(it, 3, residuals);
    VFHistSetOffsetAxes(it, 0, 1);
    std::int64_t bytes = 0;
    void* bins = nullptr;
    VFHistPrepareRawBins(it, &bytes, &bins);
    for (std::int64_t at = 0; at < bytes; ++at)
        static_cast<unsigned char*>(bins)[at] = static_cast<unsigned char>(at * 37 + seed);
    return hist;
}

inline bool operator==(const VDHistAxis& left, const VDHistAxis& right)
{
    return left.title == right.title && left.units == right.units && left.min == right.min && left.max == right.max &&
           left.binSize == right.binSize && left.binCount == right.binCount && left.borders == right.borders &&
           left.labels.AreEqual(right.labels, 0) && left.boundaryRule == right.boundaryRule &&
           left.actualsSet == right.actualsSet && left.actualMin == right.actualMin && left.actualMax == right.actualMax &&
           left.toleranceFraction == right.toleranceFraction && left.movesWithOffset == right.movesWithOffset;
}

/// Whether two histograms are the same in every field and every bit of the bins.
inline bool IsSame(const VDHist* left, const VDHist* right)
{
    const VDHistDescription& one = *VFHistGetDescription(left);
    const VDHistDescription& other = *VFHistGetDescription(right);
    std::int64_t bytes[2] = {};
    const void* bins[2] = {};
    VFHistGetRawBins(left, &bytes[0], &bins[0]);
    VFHistGetRawBins(right, &bytes[1], &bins[1]);
    return one.format == other.format && one.type == other.type && one.subType == other.subType &&
           one.binType == other.binType && one.is3D == other.is3D && one.autoScale == other.autoScale && one.x == other.x &&
           one.y == other.y && one.zTitle == other.zTitle && one.zUnits == other.zUnits &&
           one.maxOverflows == other.maxOverflows && one.overflowCounts == other.overflowCounts &&
           one.overflowsExceeded == other.overflowsExceeded && one.overflows == other.overflows &&
           one.missEdgeFraction == other.missEdgeFraction && one.residuals == other.residuals && bytes[0] == bytes[1] &&
           std::equal(static_cast<const char*>(bins[0]), static_cast<const char*>(bins[0]) + bytes[0],
                      static_cast<const char*>(bins[1]));
}
