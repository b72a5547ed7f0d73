#include "StatsBlock.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#define DAX_INLINE inline __attribute__((always_inline))

namespace {

// The loops are written with the vectors of GCC and clang, since no compiler may reorder a sum of floating-point numbers
// into vectors by itself. How wide the processor's vectors are must not show in a result: value n of a block always goes to
// sum n modulo `lanes`, however many chains of whatever width hold them, and the sums are added up in one order.
constexpr std::size_t lanes = 16;

template <class T, std::size_t Width>
struct Vector
{
    using Type __attribute__((vector_size(Width * sizeof(T)))) = T;
};

/// One of several independent chains of additions, so that one need not wait for another.
template <class T, std::size_t Width>
struct Chain
{
    using Doubles = typename Vector<double, Width>::Type;
    using Values = typename Vector<T, Width>::Type;
    Doubles sum{};
    Doubles squares{};
    Values max;
    Values min;

    DAX_INLINE void Start(T value) { max = min = Values{} + value; }
    DAX_INLINE void Take(const T* from, double near)
    {
        Values values;
        std::memcpy(&values, from, sizeof values);
        // As one whole the conversion comes out in halves, which costs as much as all the rest.
        Doubles deviations;
        for (std::size_t lane = 0; lane < Width; ++lane)
            deviations[lane] = static_cast<double>(values[lane]);
        deviations -= near;
        sum += deviations;
        squares += deviations * deviations;
        Widen(values, values);
    }
    DAX_INLINE void Widen(const Values& high, const Values& low)
    {
        max = high > max ? high : max;
        min = low < min ? low : min;
    }
};

/// The sum of the lanes.
DAX_INLINE double AddUp(const double (&sums)[lanes])
{
    double whole = 0;
    for (std::size_t lane = 0; lane < 4; ++lane)
        whole += sums[lane] + sums[lane + 4] + sums[lane + 8] + sums[lane + 12];
    return whole;
}

template <std::size_t Width, class T>
DAX_INLINE VDStatsBlock<T> Pass(const T* values, std::size_t count, double near)
{
    constexpr std::size_t chains = lanes / Width;
    Chain<T, Width> parts[chains];
    for (auto& part : parts)
        part.Start(values[0]);
    std::size_t index = 0;
    for (; index + lanes <= count; index += lanes)
        for (std::size_t chain = 0; chain < chains; ++chain)
            parts[chain].Take(values + index + chain * Width, near);

    for (std::size_t chain = 1; chain < chains; ++chain)
        parts[0].Widen(parts[chain].max, parts[chain].min);
    VDStatsBlock<T> block{0, 0, values[0], values[0]};
    for (std::size_t lane = 0; lane < Width; ++lane) {
        block.max = std::max<T>(block.max, parts[0].max[lane]);
        block.min = std::min<T>(block.min, parts[0].min[lane]);
    }
    double sums[lanes];
    double squares[lanes];
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const Chain<T, Width>& part = parts[lane / Width];
        sums[lane] = part.sum[lane % Width];
        squares[lane] = part.squares[lane % Width];
    }
    block.sum = AddUp(sums);
    block.squares = AddUp(squares);
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
    constexpr std::size_t width = 4;
    constexpr std::size_t group = 32;
    std::size_t index = 0;
    for (; index + group <= count; index += group) {
        typename Vector<T, width>::Type part;
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
#define DAX_WIDEST __attribute__((target("avx512f,avx512vl,avx512dq,avx512bw")))
bool HasWideVectors()
{
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}
bool HasWidestVectors()
{
    static const bool has = __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512vl") != 0 &&
                            __builtin_cpu_supports("avx512dq") != 0 && __builtin_cpu_supports("avx512bw") != 0;
    return has;
}
#else
#define DAX_WIDE
#define DAX_WIDEST
bool HasWideVectors()
{
    return false;
}
bool HasWidestVectors()
{
    return false;
}
#endif

template <class T>
DAX_WIDE VDStatsBlock<T> WidePass(const T* values, std::size_t count, double near)
{
    return Pass<4>(values, count, near);
}

template <class T>
DAX_WIDEST VDStatsBlock<T> WidestPass(const T* values, std::size_t count, double near)
{
    return Pass<8>(values, count, near);
}

template <class T>
DAX_WIDE std::size_t WideFirstIndexOf(const T* values, std::size_t count, T wanted)
{
    return FirstIndexOf(values, count, wanted);
}

template <class T>
VDStatsBlock<T> BestPass(const T* values, std::size_t count, double near)
{
    constexpr std::size_t smallest = 16 / sizeof(T);  // what every processor has in one register
    if (HasWidestVectors())
        return WidestPass(values, count, near);
    return HasWideVectors() ? WidePass(values, count, near) : Pass<smallest>(values, count, near);
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
