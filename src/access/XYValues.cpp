#include "XYValues.h"

#include <array>

namespace {

/// Calls `function` with the values as a span of their own type.
template <class Function>
bool VFWithNumbers(const VDVariant& buffer, std::int64_t count, Function&& function)
{
    const auto use = [&]<class Value>(std::span<const Value> values) {
        if (count < 0 || count > static_cast<std::int64_t>(values.size()))
            return false;
        function(values.first(static_cast<std::size_t>(count)));
        return true;
    };
    switch (buffer.GetType()) {
    case VTVariantShortBuffer:
        return use(buffer.GetBuffer<short>());
    case VTVariantLongBuffer:
        return use(buffer.GetBuffer<std::int32_t>());
    case VTVariantHugeBuffer:
        return use(buffer.GetBuffer<std::int64_t>());
    case VTVariantFloatBuffer:
        return use(buffer.GetBuffer<float>());
    case VTVariantDoubleBuffer:
        return use(buffer.GetBuffer<double>());
    default:
        return false;
    }
}

/// Several running limits side by side, so that the compiler can keep them in wide registers. A NaN compares as neither
/// smaller nor larger and so passes by.
template <class Value>
inline __attribute__((always_inline)) VDXYLimits VFLimitsOf(std::span<const Value> values)
{
    constexpr std::size_t lanes = 64 / sizeof(Value);
    using Numbers = std::numeric_limits<Value>;
    std::array<Value, lanes> low;
    std::array<Value, lanes> high;
    low.fill(Numbers::has_infinity ? Numbers::infinity() : Numbers::max());
    high.fill(Numbers::has_infinity ? -Numbers::infinity() : Numbers::lowest());
    const Value* value = values.data();
    std::size_t rest = values.size();
    for (; rest >= lanes; rest -= lanes, value += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            low[lane] = value[lane] < low[lane] ? value[lane] : low[lane];
            high[lane] = value[lane] > high[lane] ? value[lane] : high[lane];
        }
    for (; rest > 0; --rest, ++value) {
        low[0] = *value < low[0] ? *value : low[0];
        high[0] = *value > high[0] ? *value : high[0];
    }
    return {static_cast<double>(*std::min_element(low.begin(), low.end())),
            static_cast<double>(*std::max_element(high.begin(), high.end()))};
}

template <class Value>
inline __attribute__((always_inline)) void VFCopyAsFloats(std::span<const Value> numbers, float* values)
{
    for (std::size_t at = 0; at < numbers.size(); ++at)
        values[at] = static_cast<float>(numbers[at]);
}

#if defined(__x86_64__)
// Both once more for processors with 256-bit registers. They give the same values.

bool VFIsWide()
{
    static const bool has = __builtin_cpu_supports("avx2") != 0;
    return has;
}

template <class Value>
__attribute__((target("avx2"))) VDXYLimits VFLimitsOfWide(std::span<const Value> values)
{
    return VFLimitsOf(values);
}

template <class Value>
__attribute__((target("avx2"))) void VFCopyAsFloatsWide(std::span<const Value> numbers, float* values)
{
    VFCopyAsFloats(numbers, values);
}
#endif

}  // namespace

bool VFToFloats(const VDVariant& buffer, std::int64_t count, float* values)
{
    return VFWithNumbers(buffer, count, [values]<class Value>(std::span<const Value> numbers) {
#if defined(__x86_64__)
        if (VFIsWide())
            return VFCopyAsFloatsWide(numbers, values);
#endif
        VFCopyAsFloats(numbers, values);
    });
}

bool VFIncludeValues(const VDVariant& buffer, std::int64_t count, VDXYLimits& limits)
{
    return VFWithNumbers(buffer, count, [&]<class Value>(std::span<const Value> numbers) {
        if (numbers.empty())
            return;
#if defined(__x86_64__)
        if (VFIsWide())
            return limits.Include(VFLimitsOfWide(numbers));
#endif
        limits.Include(VFLimitsOf(numbers));
    });
}
