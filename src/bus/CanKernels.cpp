#include "CanKernels.h"

#include "WideVectors.h"

#include <algorithm>
#include <bit>
#include <type_traits>

namespace {

using Plan = VDCanSignalBits::WordPlan;

// Values of so many bits are told from their neighbours by the low bits of a double of this size.
constexpr int VVNarrowBits = 51;
constexpr double VVShiftedZero = 6755399441055744.0;  // 1.5 * 2^52

bool IsNarrow(std::uint64_t mask)
{
    return std::bit_width(mask) <= VVNarrowBits;
}

DAX_INLINE std::uint64_t LoadWord(const unsigned char* bytes)
{
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    if constexpr (std::endian::native == std::endian::big)
        word = __builtin_bswap64(word);
    return word;
}

DAX_INLINE std::int64_t TakeBits(std::uint64_t word, std::uint64_t shift, std::uint64_t mask, std::uint64_t signBit)
{
    return static_cast<std::int64_t>((((word >> shift) & mask) ^ signBit) - signBit);
}

// Vectors have no instruction for the conversion; for narrow values this does the same.
template <bool Narrow>
DAX_INLINE double ToDouble(std::int64_t value)
{
    if constexpr (Narrow)
        return std::bit_cast<double>(value + std::bit_cast<std::int64_t>(VVShiftedZero)) - VVShiftedZero;
    else
        return static_cast<double>(value);
}

struct RawValue
{
    using Type = std::int64_t;
    DAX_INLINE std::int64_t operator()(std::int64_t raw) const { return raw; }
};

template <bool Narrow>
struct PhysicalValue
{
    using Type = double;
    double factor;
    double offset;
    DAX_INLINE double operator()(std::int64_t raw) const { return ToDouble<Narrow>(raw) * factor + offset; }
};

// Recordings keep frames of 8 bytes side by side more often than not: that distance is a constant of the loop.
template <bool Reverse, class Stride, class Make>
DAX_INLINE void ColumnLoop(const Plan& plan, const unsigned char* data, Stride stride, std::int64_t count, Make make,
                           typename Make::Type* values)
{
    const Plan fixed = plan;
    for (std::int64_t index = 0; index < count; ++index) {
        std::uint64_t word = LoadWord(data + index * stride);
        if constexpr (Reverse)
            word = __builtin_bswap64(word);
        values[index] = make(TakeBits(word, fixed.shift, fixed.mask, fixed.signBit));
    }
}

template <class Make>
DAX_INLINE void Column(const Plan& plan, const VDCanFrames& frames, Make make, typename Make::Type* values)
{
    constexpr std::integral_constant<std::int64_t, 8> side;
    const unsigned char* const data = frames.data + plan.firstByte;
    if (plan.reverse != 0 && frames.stride == side)
        ColumnLoop<true>(plan, data, side, frames.count, make, values);
    else if (plan.reverse != 0)
        ColumnLoop<true>(plan, data, frames.stride, frames.count, make, values);
    else if (frames.stride == side)
        ColumnLoop<false>(plan, data, side, frames.count, make, values);
    else
        ColumnLoop<false>(plan, data, frames.stride, frames.count, make, values);
}

DAX_INLINE void PhysicalColumn(const Plan& plan, const VDCanScaling& scaling, const VDCanFrames& frames, double* physical)
{
    if (IsNarrow(plan.mask))
        Column(plan, frames, PhysicalValue<true>{scaling.factor, scaling.offset}, physical);
    else
        Column(plan, frames, PhysicalValue<false>{scaling.factor, scaling.offset}, physical);
}

enum class Wanted { Raw, NarrowPhysical, Physical };

// The values of a group, whether all are wanted or not.
template <Wanted What>
DAX_INLINE void FrameGroup(const VDCanWordPlans::Group& group, std::uint64_t word, auto* values)
{
    using SignedWords = std::int64_t __attribute__((vector_size(sizeof(VDCanWordPlans::Words))));
    const std::uint64_t turned = word ^ __builtin_bswap64(word);
    VDCanWordPlans::Words bits = (word ^ (turned & group.reverse)) >> group.shift;
    bits = ((bits & group.mask) ^ group.signBit) - group.signBit;
    if constexpr (What == Wanted::Raw) {
        std::memcpy(values, &bits, sizeof bits);
        return;
    }
    VDCanWordPlans::Doubles physical;
    if constexpr (What == Wanted::NarrowPhysical)
        physical =
            reinterpret_cast<VDCanWordPlans::Doubles>(bits + std::bit_cast<std::uint64_t>(VVShiftedZero)) - VVShiftedZero;
    else
        physical = __builtin_convertvector(reinterpret_cast<SignedWords>(bits), VDCanWordPlans::Doubles);
    physical = physical * group.factor + group.offset;
    std::memcpy(values, &physical, sizeof physical);
}

template <Wanted What, class Value>
DAX_INLINE void Frame(const VDCanWordPlans& plans, std::uint64_t word, Value* values)
{
    const VDCanWordPlans::Group* group = plans.groups.data();
    std::size_t rest = plans.count;
    for (; rest >= VDCanWordPlans::Lanes; rest -= VDCanWordPlans::Lanes, values += VDCanWordPlans::Lanes)
        FrameGroup<What>(*group++, word, values);
    if (rest == 0)
        return;
    Value last[VDCanWordPlans::Lanes];
    FrameGroup<What>(*group, word, last);
    std::copy_n(last, rest, values);
}

DAX_INLINE void PhysicalFrame(const VDCanWordPlans& plans, std::uint64_t word, double* physical)
{
    if (plans.areNarrow)
        Frame<Wanted::NarrowPhysical>(plans, word, physical);
    else
        Frame<Wanted::Physical>(plans, word, physical);
}

}  // namespace

void VFCanRawColumn(const Plan& plan, const VDCanFrames& frames, std::int64_t* raw)
{
    VFRunVectorised([&]() __attribute__((always_inline)) { Column(plan, frames, RawValue(), raw); });
}

void VFCanPhysicalColumn(const Plan& plan, const VDCanScaling& scaling, const VDCanFrames& frames, double* physical)
{
    VFRunVectorised([&]() __attribute__((always_inline)) { PhysicalColumn(plan, scaling, frames, physical); });
}

void VDCanWordPlans::Append(const Plan& plan, const VDCanScaling& scaling)
{
    const std::size_t lane = count++ % Lanes;
    if (lane == 0)
        groups.emplace_back();
    Group& group = groups.back();
    group.reverse[lane] = plan.reverse;
    group.shift[lane] = plan.shift;
    group.mask[lane] = plan.mask;
    group.signBit[lane] = plan.signBit;
    group.factor[lane] = scaling.factor;
    group.offset[lane] = scaling.offset;
    areNarrow = areNarrow && IsNarrow(plan.mask);
}

void VFCanRawFrame(const VDCanWordPlans& plans, std::uint64_t word, std::int64_t* raw)
{
    VFRunVectorised([&]() __attribute__((always_inline)) { Frame<Wanted::Raw>(plans, word, raw); });
}

void VFCanPhysicalFrame(const VDCanWordPlans& plans, std::uint64_t word, double* physical)
{
    VFRunVectorised([&]() __attribute__((always_inline)) { PhysicalFrame(plans, word, physical); });
}
