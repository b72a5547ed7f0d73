#pragma once

#include "vdbase/VDBaseApi.h"

#include <cstdint>

/// The sums behind the statistics of one channel: one pass, exact counts, accumulation in double around a shift so that a
/// large mean costs no digits, and in a unit of their size so that their squares don't leave the range of double. Points are
/// numbered from 1 in the order in which they come.
struct VDStatsSums
{
    std::int64_t count = 0;  ///< all points
    std::int64_t valid = 0;  ///< points that are numbers
    int unit = -600;         ///< power of two that shift, mean and (squared) squares are multiples of
    double shift = 0;        ///< near the values; fixed when the first ones come
    double mean = 0;         ///< less the shift
    double squares = 0;      ///< sum of squared deviations from the mean
    double max = 0;          ///< these two as they are
    double min = 0;
    std::int64_t pointOfMax = 0;
    std::int64_t pointOfMin = 0;
};

/// Statistics of float values.
class VDBASE_API VDStats
{
public:
    void Initialise();
    void Process(const float* values, std::int64_t count);
    /// Goes on from finished statistics of so many points, all of which are numbers.
    void Restore(std::int64_t count, float max, float min, float mean, float sdev, std::int64_t pointOfMax,
                 std::int64_t pointOfMin);
    /// Takes points of value 0, at the cost of one.
    void ProcessZeros(std::int64_t count);
    /// Whether no point was NaN.
    bool IsOfNumbers() const { return sums_.valid == sums_.count; }
    /// Standard deviation is that of a sample (count - 1), 0 for one point; with no points all values are 0. The first of
    /// equal extremes counts. NaN values are counted and otherwise passed over.
    void Finish(std::int64_t* count, float* max, float* min, float* mean, float* sdev, float* rms, std::int64_t* pointOfMax,
                std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const;

private:
    VDStatsSums sums_;
};

/// Statistics of double values.
class VDBASE_API VDStatsEx
{
public:
    void Initialise();
    void Process(const double* values, std::int64_t count);
    /// Goes on from finished statistics of so many points, all of which are numbers.
    void Restore(std::int64_t count, double max, double min, double mean, double sdev, std::int64_t pointOfMax,
                 std::int64_t pointOfMin);
    /// Takes points of value 0, at the cost of one.
    void ProcessZeros(std::int64_t count);
    /// Whether no point was NaN.
    bool IsOfNumbers() const { return sums_.valid == sums_.count; }
    void Finish(std::int64_t* count, double* max, double* min, double* mean, double* sdev, double* rms,
                std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const;

private:
    VDStatsSums sums_;
};
