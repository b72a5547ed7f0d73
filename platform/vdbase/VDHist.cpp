#include "VDHist.h"

#include "vdbase/VFError.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <new>

namespace {

const char* FindAxisFault(const VDHistAxis& axis)
{
    const auto isFinite = [](double value) { return std::isfinite(value); };
    if (axis.binCount < 0)
        return "An axis of a histogram can't have fewer than no bins";
    if (!isFinite(axis.min) || !isFinite(axis.max) || !isFinite(axis.binSize) || axis.min > axis.max)
        return "The limits of an axis of a histogram aren't numbers in their order";
    if (axis.borders.empty())
        return nullptr;
    if (axis.borders.size() < 2 || static_cast<std::uint64_t>(axis.binCount) != axis.borders.size() - 1)
        return "An axis of a histogram needs one border more than bins";
    if (!std::all_of(axis.borders.begin(), axis.borders.end(), isFinite) ||
        std::adjacent_find(axis.borders.begin(), axis.borders.end(), std::greater_equal<>()) != axis.borders.end())
        return "The borders of bins aren't ascending numbers";
    return axis.min != axis.borders.front() || axis.max != axis.borders.back()
               ? "The limits of variable bins aren't their outer borders"
               : nullptr;
}

}  // namespace

int VFReportHist(int code, const char* text, const char* routine)
{
    return VFErrorSet(code, text, routine, 0);
}

const char* VDHist::FindFault(const VDHistDescription& description)
{
    for (const VDHistAxis* axis : {&description.x, &description.y})
        if (const char* const fault = FindAxisFault(*axis))
            return fault;
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(description.x.binCount, description.y.binCount, &bytes) ||
        __builtin_mul_overflow(bytes, VFHistGetBinBytes(description.format), &bytes) || bytes > LargestBins)
        return "A histogram can't have that many bins";
    if (description.format < 0)
        return "A histogram can't have a format below 1";
    return nullptr;
}

void VDHist::Take(VDHistDescription description)
{
    description_ = std::move(description);
    bins_.reset();
}

void VDHist::TakeAxis(VDHistAxis VDHistDescription::*which, VDHistAxis axis)
{
    if ((description_.*which).binCount != axis.binCount)
        bins_.reset();
    description_.*which = std::move(axis);
}

void VDHist::TakeBins(int format, std::unique_ptr<void, decltype(&std::free)> bins)
{
    description_.format = format;
    bins_ = std::move(bins);
}

std::unique_ptr<void, decltype(&std::free)> VDHist::Allocate(std::int64_t bytes, bool zero)
{
    const auto size = static_cast<std::size_t>(std::max<std::int64_t>(bytes, 1));
    std::unique_ptr<void, decltype(&std::free)> memory(zero ? std::calloc(size, 1) : std::malloc(size), &std::free);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* VDHist::Touch(bool zero)
{
    if (bins_ == nullptr)
        bins_ = Allocate(GetBinBytes(), zero);
    return bins_.get();
}
