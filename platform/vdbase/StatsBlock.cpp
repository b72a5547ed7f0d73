#include "StatsBlock.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#define DAX_INLINE inline __attribute__((always_inline))

namespace {

// The loops are written with the vectors of GCC and clang, since no compiler may reorder a sum of floating-point numbers
// into vectors by itself. Without AVX each vector of doubles becomes two; the order of the additions, and so the result,
// stays.
constexpr std::size_t width = 4;
// Independent chains of additions, so that one need not wait for another.
constexpr std::size_t chains = 4;
constexpr std::size_t stride = width * chains;

using Doubles = double __attribute__((vector_size(width * sizeof(double))));
template <class T>
struct Vector
{
    using Type __attribute__((vector_size(width * sizeof(T)))) = T;
};

template <class T>
struct Chain
{
    using Values = typename Vector<T>::Type;
    Doubles sum{};
    Doubles squares{};
    Values max;
    Values min;

    DAX_INLINE void Start(T value) { max = min = Values{} + value; }
    DAX_INLINE void Take(const T* from, double near)
    {
        Values values;
        std::memcpy(&values, from, sizeof values);
        const Doubles deviations = __builtin_convertvector(values, Doubles) - near;
        sum += deviations;
        squares += deviations * deviations;
        max = values > max ? values : max;
        min = values < min ? values : min;
    }
    DAX_INLINE void Join(const Chain& other)
    {
        sum += other.sum;
        squares += other.squares;
        max = other.max > max ? other.max : max;
        min = other.min < min ? other.min : min;
    }
};

template <class T>
DAX_INLINE VDStatsBlock<T> Pass(const T* values, std::size_t count, double near)
{
    Chain<T> parts[chains];
    for (Chain<T>& part : parts)
        part.Start(values[0]);
    std::size_t index = 0;
    for (; index + stride <= count; index += stride)
        for (std::size_t chain = 0; chain < chains; ++chain)
            parts[chain].Take(values + index + chain * width, near);
    for (std::size_t chain = 1; chain < chains; ++chain)
        parts[0].Join(parts[chain]);

    VDStatsBlock<T> block{0, 0, values[0], values[0]};
    for (std::size_t lane = 0; lane < width; ++lane) {
        block.sum += parts[0].sum[lane];
        block.squares += parts[0].squares[lane];
        block.max = std::max<T>(block.max, parts[0].max[lane]);
        block.min = std::min<T>(block.min, parts[0].min[lane]);
    }
    for (; index < count; ++index) {
        const double deviation = static_cast<double>(values[index]) - near;
        block.sum += deviation;
        block.squares += deviation * deviation;
        block.max = std::max(block.max, values[index]);
        block.min = std::min(block.min, values[index]);
    }
    return block;
}

// Groups are compared without a branch in them: on a ramp every block ends with a new extreme.
template <class T>
DAX_INLINE std::size_t FirstIndexOf(const T* values, std::size_t count, T wanted)
{
    constexpr std::size_t group = 32;
    std::size_t index = 0;
    for (; index + group <= count; index += group) {
        typename Vector<T>::Type part;
        decltype(part == part) found{};
        for (std::size_t at = 0; at < group; at += width) {
            std::memcpy(&part, values + index + at, sizeof part);
            found |= part == wanted;
        }
        if ((found[0] | found[1] | found[2] | found[3]) != 0)
            break;
    }
    return static_cast<std::size_t>(std::find(values + index, values + count, wanted) - values);
}

#if defined(__x86_64__)
#define DAX_WIDE __attribute__((target("avx2")))
bool HasWideVectors()
{
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}
#else
#define DAX_WIDE
bool HasWideVectors()
{
    return false;
}
#endif

template <class T>
DAX_WIDE VDStatsBlock<T> WidePass(const T* values, std::size_t count, double near)
{
    return Pass(values, count, near);
}

template <class T>
DAX_WIDE std::size_t WideFirstIndexOf(const T* values, std::size_t count, T wanted)
{
    return FirstIndexOf(values, count, wanted);
}

template <class T>
VDStatsBlock<T> BestPass(const T* values, std::size_t count, double near)
{
    return HasWideVectors() ? WidePass(values, count, near) : Pass(values, count, near);
}

template <class T>
std::size_t BestFirstIndexOf(const T* values, std::size_t count, T wanted)
{
    return HasWideVectors() ? WideFirstIndexOf(values, count, wanted) : FirstIndexOf(values, count, wanted);
}

}  // namespace

VDStatsBlock<float> VFStatsPass(const float* values, std::size_t count, double near)
{
    return BestPass(values, count, near);
}

VDStatsBlock<double> VFStatsPass(const double* values, std::size_t count, double near)
{
    return BestPass(values, count, near);
}

std::size_t VFFirstIndexOf(const float* values, std::size_t count, float wanted)
{
    return BestFirstIndexOf(values, count, wanted);
}

std::size_t VFFirstIndexOf(const double* values, std::size_t count, double wanted)
{
    return BestFirstIndexOf(values, count, wanted);
}
