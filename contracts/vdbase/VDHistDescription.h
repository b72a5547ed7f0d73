#pragma once

#include "vdbase/VDStringArray.h"

#include <array>
#include <cstdint>
#include <vector>

/// All that a histogram is besides the values of its bins.

/// What the bins hold. Any other number is a format of its owner's, whose bins hold doubles.
enum VTHistFormat : int {
    VTHistFormatUnset = 0,  ///< of a new histogram; its bins hold doubles
    VTHistFormatDouble = 1,
    VTHistFormatHuge = 2,  ///< 64-bit whole numbers
    VTHistFormatLong = 3,  ///< 32-bit whole numbers
    VTHistFormatFloat = 4,
};

/// Where a value fell that has no bin. The flags of `VFHistGetOverflowCount`: the first four are the sides, for one axis
/// each; the others tell the four sides and the four corners of a histogram with two axes apart.
enum VTHistOverflowFlag : int {
    VTHistOverflowXMin = 1,
    VTHistOverflowXMax = 2,
    VTHistOverflowYMin = 4,
    VTHistOverflowYMax = 8,
    VTHistOverflowXMinSeg = 16,
    VTHistOverflowXMaxSeg = 32,
    VTHistOverflowYMinSeg = 64,
    VTHistOverflowYMaxSeg = 128,
    VTHistOverflowXMaxYMinSeg = 256,
    VTHistOverflowXMaxYMaxSeg = 512,
    VTHistOverflowXMinYMinSeg = 1024,
    VTHistOverflowXMinYMaxSeg = 2048,
};
constexpr int VTHistOverflowFlags = 12;

/// A value that had no bin: its place on the axes, in their units, and what it counts.
struct VDHistOverflow
{
    double x = 0;
    double y = 0;
    double count = 0;
    bool operator==(const VDHistOverflow&) const = default;
};

struct VDHistAxis
{
    VDString title;
    VDString units;
    // Uniform bins. Of variable ones the limits are the first and the last border, and the size is 0.
    double min = 0;
    double max = 0;
    double binSize = 0;
    std::int64_t binCount = 0;
    std::vector<double> borders;  ///< of variable bins: one more than bins, ascending; empty for uniform bins
    VDStringArray labels;         ///< of the bins; there may be fewer
    int boundaryRule = 1;         ///< to which bin a value belongs that lies on a border; its owner's number
    bool actualsSet = false;      ///< the smallest and the largest value that came are known:
    double actualMin = 0;
    double actualMax = 0;
    double toleranceFraction = 0;  ///< of a bin's size
    /// The axis carries the measured value itself, so that an offset of the channel moves it. It isn't one of ranges, times
    /// or counts.
    bool movesWithOffset = false;
};

struct VDHistDescription
{
    VDHistDescription()
    {
        x.movesWithOffset = true;
        y.binCount = 1;
    }

    int format = VTHistFormatUnset;
    int type = 0;  ///< of the analysis, its owner's number, as the next two
    int subType = 0;
    int binType = 0;
    bool is3D = false;  ///< two axes, and the values of the bins as the third dimension
    bool autoScale = false;
    VDHistAxis x;
    VDHistAxis y;  ///< one bin unless the histogram is 3D
    VDString zTitle;
    VDString zUnits;
    int maxOverflows = 0;                                            ///< so many overflows are kept one by one
    std::array<std::int64_t, VTHistOverflowFlags> overflowCounts{};  ///< by flag, in their order
    bool overflowsExceeded = false;                                  ///< there were more than are kept
    std::vector<VDHistOverflow> overflows;
    double missEdgeFraction = 0;
    std::vector<double> residuals;  ///< turning points that belong to no closed cycle, in the units of the measured value
};
