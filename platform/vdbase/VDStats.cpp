#include "vdbase/VDStats.h"

#include "StatsBlock.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace {

// A block that needs a second pass is still in the first cache then.
constexpr std::int64_t blockPoints = 1024;

/// The units in which the sums are kept, as exponents of two. Values far from 1 have squares that no double holds; with a
/// unit of their size they have, and no digit is lost by it. What comes in a unit much larger than the others leaves nothing
/// of these in a sum, so the unit only ever grows.
constexpr int smallUnit = -600;
constexpr int usualUnit = 0;
constexpr int largeUnit = 600;

/// The unit for values up to this magnitude. In it they, their differences and the squares of these keep all digits.
int UnitFor(double largest)
{
    if (largest < 0x1p-400)
        return smallUnit;
    return largest <= 0x1p450 ? usualUnit : largeUnit;
}

void RaiseUnit(VDStatsSums* sums, int unit)
{
    if (sums->unit >= unit)
        return;
    const int change = sums->unit - unit;
    sums->shift = std::ldexp(sums->shift, change);
    sums->mean = std::ldexp(sums->mean, change);
    sums->squares = std::ldexp(sums->squares, 2 * change);
    sums->unit = unit;
}

/// Adds a set of values, given by their count, mean (less the shift) and squared deviations.
void Merge(VDStatsSums* sums, std::int64_t count, double mean, double squares)
{
    if (sums->valid == 0) {
        sums->valid = count;
        sums->mean = mean;
        sums->squares = squares;
        return;
    }
    const double weight = static_cast<double>(count) / static_cast<double>(sums->valid + count);
    const double distance = mean - sums->mean;
    sums->squares += squares + distance * distance * (static_cast<double>(sums->valid) * weight);
    sums->mean += distance * weight;
    sums->valid += count;
}

/// Takes new extremes, found in the values that come after the points counted so far.
template <class T>
void MergeRange(VDStatsSums* sums, const T* values, std::size_t count, T max, T min)
{
    const auto pointOf = [&](T value) {
        return sums->count + 1 + static_cast<std::int64_t>(VFFirstIndexOf(values, count, value));
    };
    if (sums->pointOfMax == 0 || static_cast<double>(max) > sums->max) {
        sums->max = static_cast<double>(max);
        sums->pointOfMax = pointOf(max);
    }
    if (sums->pointOfMin == 0 || static_cast<double>(min) < sums->min) {
        sums->min = static_cast<double>(min);
        sums->pointOfMin = pointOf(min);
    }
}

/// Adds the values of a block, all of them finite and in the unit of the sums.
template <class T>
void ProcessFinite(VDStatsSums* sums, const T* values, std::size_t count, VDStatsBlock<T> block, double near)
{
    const auto points = static_cast<double>(count);
    const auto correction = [&] { return block.sum / points; };
    const auto squares = [&] { return block.squares - block.sum * correction(); };
    // Where the value was so far off the mean that digits are lost, the mean that it leads to isn't.
    constexpr double bearableLoss = 100;
    if (block.sum * correction() > bearableLoss * squares()) {
        near += correction();
        block = VFStatsPass(values, count, near);
    }
    if (sums->valid == 0)
        sums->shift = near;
    Merge(sums, static_cast<std::int64_t>(count), (near - sums->shift) + correction(), squares());
}

/// The way for a block in another unit than the values'.
template <class T>
void ProcessInUnit(VDStatsSums* sums, const T* values, std::size_t count)
{
    const double scale = std::ldexp(1.0, -sums->unit);
    std::array<double, blockPoints> scaled;
    for (std::size_t index = 0; index < count; ++index)
        scaled[index] = static_cast<double>(values[index]) * scale;
    ProcessFinite(sums, scaled.data(), count, VFStatsPass(scaled.data(), count, scaled[0]), scaled[0]);
}

/// The mean is the infinity among the values, or no number if both signs come; no deviation from it is one.
template <class T>
void ProcessInfinities(VDStatsSums* sums, const T* values, std::size_t count)
{
    for (std::size_t index = 0; index < count; ++index)
        if (std::isinf(values[index]))
            sums->mean += static_cast<double>(values[index]);
    sums->squares = std::numeric_limits<double>::quiet_NaN();
    sums->valid += static_cast<std::int64_t>(count);
}

/// Adds the values of a block, none of which is NaN, without their points.
template <class T>
void ProcessNumbers(VDStatsSums* sums, const T* values, std::size_t count, const VDStatsBlock<T>& block)
{
    const double largest = std::max(std::abs(static_cast<double>(block.max)), std::abs(static_cast<double>(block.min)));
    if (!std::isfinite(largest) || !std::isfinite(sums->mean)) {
        ProcessInfinities(sums, values, count);
        return;
    }
    RaiseUnit(sums, UnitFor(largest));
    if (sums->unit == usualUnit || largest == 0)
        ProcessFinite(sums, values, count, block, static_cast<double>(values[0]));
    else
        ProcessInUnit(sums, values, count);
}

template <class T>
void ProcessBlock(VDStatsSums* sums, const T* values, std::size_t count)
{
    // The first value is usually near enough to the mean.
    const T* numbers = values;
    std::size_t numberCount = count;
    VDStatsBlock<T> block = VFStatsPass(values, count, static_cast<double>(values[0]));
    std::array<T, blockPoints> gathered;
    if (std::isnan(block.sum)) {
        numbers = gathered.data();
        numberCount = 0;
        for (std::size_t index = 0; index < count; ++index) {
            gathered[numberCount] = values[index];
            numberCount += std::isnan(values[index]) ? 0U : 1U;
        }
        if (numberCount > 0)
            block = VFStatsPass(numbers, numberCount, static_cast<double>(numbers[0]));
    }
    if (numberCount > 0) {
        ProcessNumbers(sums, numbers, numberCount, block);
        MergeRange(sums, values, count, block.max, block.min);
    }
    sums->count += static_cast<std::int64_t>(count);
}

template <class T>
void ProcessAll(VDStatsSums* sums, const T* values, std::int64_t count)
{
    for (std::int64_t done = 0; done < count; done += blockPoints)
        ProcessBlock(sums, values + done, static_cast<std::size_t>(std::min(blockPoints, count - done)));
}

VDStatsSums RestoredSums(std::int64_t count, double max, double min, double mean, double sdev, std::int64_t pointOfMax,
                         std::int64_t pointOfMin)
{
    VDStatsSums sums;
    if (count < 1)
        return sums;
    sums.unit = UnitFor(std::max(std::abs(max), std::abs(min)));
    const double deviation = std::ldexp(sdev, -sums.unit);
    sums.count = sums.valid = count;
    sums.shift = std::ldexp(mean, -sums.unit);
    sums.squares = deviation * deviation * static_cast<double>(count - 1);
    sums.max = max;
    sums.min = min;
    sums.pointOfMax = pointOfMax;
    sums.pointOfMin = pointOfMin;
    return sums;
}

void AddZeros(VDStatsSums* sums, std::int64_t count)
{
    if (count < 1)
        return;
    constexpr double zero = 0;
    MergeRange(sums, &zero, 1, zero, zero);
    if (std::isfinite(sums->mean))
        Merge(sums, count, -sums->shift, 0);
    else
        sums->valid += count;
    sums->count += count;
}

std::int64_t PointOfAbs(const VDStatsSums& sums)
{
    const double max = std::abs(sums.max);
    const double min = std::abs(sums.min);
    if (max == min)
        return std::min(sums.pointOfMax, sums.pointOfMin);
    return max > min ? sums.pointOfMax : sums.pointOfMin;
}

template <class T>
void FinishAll(const VDStatsSums& sums, std::int64_t* count, T* max, T* min, T* mean, T* sdev, T* rms,
               std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs)
{
    const double wholeMean = sums.shift + sums.mean;
    const auto value = [&](double inUnit) { return static_cast<T>(std::ldexp(inUnit, sums.unit)); };
    const auto valid = static_cast<double>(std::max<std::int64_t>(sums.valid, 1));
    const double squares = std::max(sums.squares, 0.0);
    *count = sums.count;
    *max = static_cast<T>(sums.max);
    *min = static_cast<T>(sums.min);
    *mean = value(wholeMean);
    *sdev = sums.valid > 1 ? value(std::sqrt(squares / (valid - 1))) : T(0);
    // No more than the largest value; rounding must not make an infinity of it.
    *rms = std::min(value(std::hypot(wholeMean, std::sqrt(squares / valid))), std::max(std::abs(*max), std::abs(*min)));
    *pointOfMax = sums.pointOfMax;
    *pointOfMin = sums.pointOfMin;
    *pointOfAbs = PointOfAbs(sums);
}

}  // namespace

void VDStats::Initialise()
{
    sums_ = {};
}

void VDStats::Process(const float* values, std::int64_t count)
{
    ProcessAll(&sums_, values, count);
}

void VDStats::Finish(std::int64_t* count, float* max, float* min, float* mean, float* sdev, float* rms,
                     std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const
{
    FinishAll(sums_, count, max, min, mean, sdev, rms, pointOfMax, pointOfMin, pointOfAbs);
}

void VDStatsEx::Initialise()
{
    sums_ = {};
}

void VDStatsEx::Process(const double* values, std::int64_t count)
{
    ProcessAll(&sums_, values, count);
}

void VDStatsEx::Finish(std::int64_t* count, double* max, double* min, double* mean, double* sdev, double* rms,
                       std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const
{
    FinishAll(sums_, count, max, min, mean, sdev, rms, pointOfMax, pointOfMin, pointOfAbs);
}

void VDStats::Restore(std::int64_t count, float max, float min, float mean, float sdev, std::int64_t pointOfMax,
                      std::int64_t pointOfMin)
{
    sums_ = RestoredSums(count, max, min, mean, sdev, pointOfMax, pointOfMin);
}

void VDStats::ProcessZeros(std::int64_t count)
{
    AddZeros(&sums_, count);
}

void VDStatsEx::Restore(std::int64_t count, double max, double min, double mean, double sdev, std::int64_t pointOfMax,
                        std::int64_t pointOfMin)
{
    sums_ = RestoredSums(count, max, min, mean, sdev, pointOfMax, pointOfMin);
}

void VDStatsEx::ProcessZeros(std::int64_t count)
{
    AddZeros(&sums_, count);
}
