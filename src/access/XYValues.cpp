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
VDXYLimits VFLimitsOf(std::span<const Value> values)
{
    constexpr std::size_t lanes = 64 / sizeof(Value);
    using Numbers = std::numeric_limits<Value>;
    std::array<Value, lanes> low;
    std::array<Value, lanes> high;
    low.fill(Numbers::has_infinity ? Numbers::infinity() : Numbers::max());
    high.fill(Numbers::has_infinity ? -Numbers::infinity() : Numbers::lowest());
    const auto take = [&](std::size_t lane, Value value) {
        low[lane] = value < low[lane] ? value : low[lane];
        high[lane] = value > high[lane] ? value : high[lane];
    };
    const Value* value = values.data();
    std::size_t rest = values.size();
    for (; rest >= lanes; rest -= lanes, value += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane)
            take(lane, value[lane]);
    for (std::size_t lane = 0; lane < rest; ++lane)
        take(lane, value[lane]);
    return {static_cast<double>(*std::min_element(low.begin(), low.end())),
            static_cast<double>(*std::max_element(high.begin(), high.end()))};
}

}  // namespace

bool VFToFloats(const VDVariant& buffer, std::int64_t count, float* values)
{
    return VFWithNumbers(buffer, count, [values](auto numbers) {
        for (std::size_t at = 0; at < numbers.size(); ++at)
            values[at] = static_cast<float>(numbers[at]);
    });
}

bool VFIncludeValues(const VDVariant& buffer, std::int64_t count, VDXYLimits& limits)
{
    return VFWithNumbers(buffer, count, [&](auto numbers) {
        if (!numbers.empty())
            limits.Include(VFLimitsOf(numbers));
    });
}
