#pragma once

#include <cstddef>

/// What one pass over a block of values gives. The sum is NaN if one of the values is, and the extremes then mean nothing.
template <class T>
struct VDStatsBlock
{
    double sum;      ///< of the deviations from a value near the mean
    double squares;  ///< of these deviations
    T max;
    T min;
};

/// @param count  at least 1
VDStatsBlock<float> VFStatsPass(const float* values, std::size_t count, double near);
VDStatsBlock<double> VFStatsPass(const double* values, std::size_t count, double near);

/// Index of the first element that equals a value that is among them.
std::size_t VFFirstIndexOf(const float* values, std::size_t count, float wanted);
std::size_t VFFirstIndexOf(const double* values, std::size_t count, double wanted);
