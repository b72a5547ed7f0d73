#include "VDHist.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

// The values of the bins: from every format and to every type.

namespace {

/// The type that bins of a format have, to be called with a value of it.
template <class Call>
auto WithFormat(int format, Call call)
{
    switch (format) {
    case VTHistFormatHuge:
        return call(std::int64_t());
    case VTHistFormatLong:
        return call(std::int32_t());
    case VTHistFormatFloat:
        return call(float());
    default:
        return call(double());
    }
}

/// Whether a value crosses from one type to the other and back without becoming another one.
template <class To, class From>
bool IsExact(From value)
{
    if constexpr (std::is_same_v<To, From> || (std::is_same_v<To, double> && sizeof(From) == 4)) {
        return true;
    } else if constexpr (std::is_integral_v<To> && std::is_integral_v<From>) {
        return std::in_range<To>(value);
    } else if constexpr (std::is_integral_v<To>) {
        constexpr double limit = sizeof(To) == 4 ? 2147483648.0 : 9223372036854775808.0;
        const auto wide = static_cast<double>(value);
        return wide >= -limit && wide < limit && std::trunc(wide) == wide;
    } else if constexpr (std::is_integral_v<From>) {
        const To there = static_cast<To>(value);
        return IsExact<From>(there) && static_cast<From>(there) == value;
    } else {
        return std::isnan(value) || static_cast<From>(static_cast<To>(value)) == value;
    }
}

/// Each value at its place: bins stand in order 0, a caller's values in either.
template <class Call>
void VisitPlaces(const VDHist& hist, int order, Call call)
{
    const std::int64_t columns = hist.Describe().x.binCount;
    const std::int64_t rows = hist.Describe().y.binCount;
    if (order == 0 || columns < 2 || rows < 2) {
        for (std::int64_t at = 0; at < columns * rows; ++at)
            call(at, at);
        return;
    }
    // In squares, so that neither side jumps through memory with every value.
    constexpr std::int64_t side = 32;
    for (std::int64_t firstRow = 0; firstRow < rows; firstRow += side)
        for (std::int64_t firstColumn = 0; firstColumn < columns; firstColumn += side)
            for (std::int64_t row = firstRow; row < std::min(firstRow + side, rows); ++row)
                for (std::int64_t column = firstColumn; column < std::min(firstColumn + side, columns); ++column)
                    call(row * columns + column, column * rows + row);
}

const char* FindFault(const VDHist& hist, int order, const void* values, std::int64_t count)
{
    if (order != 0 && order != 1)
        return "Bins have the orders 0 and 1";
    return values == nullptr || count != hist.GetBinCount() ? "The histogram has another number of bins" : nullptr;
}

constexpr const char* NotExact = "A value of a bin has no exact form in the type that is to take it";

template <class Value>
int GetBins(const VDHist* hist, const char* routine, int order, Value* values, std::int64_t count)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) {
        if (const char* const fault = FindFault(it, order, values, count))
            return VFReportHist(VDBaseError::HistValue, fault, routine);
        return WithFormat(it.Describe().format, [&]<class Bin>(Bin) {
            const auto* const bins = static_cast<const Bin*>(it.Bins());
            if constexpr (std::is_integral_v<Value>)
                if (!std::all_of(bins, bins + count, [](Bin bin) { return IsExact<Value>(bin); }))
                    return VFReportHist(VDBaseError::HistValue, NotExact, routine);
            if (std::is_same_v<Value, Bin> && order == 0)
                std::memcpy(values, bins, static_cast<std::size_t>(count) * sizeof(Value));
            else
                VisitPlaces(it, order,
                            [&](std::int64_t from, std::int64_t to) { values[to] = static_cast<Value>(bins[from]); });
            return 1;
        });
    });
}

template <class Value>
int SetBins(VDHist* hist, const char* routine, int order, const Value* values, std::int64_t count)
{
    return VFWithHist(hist, routine, [&](VDHist& it) {
        if (const char* const fault = FindFault(it, order, values, count))
            return VFReportHist(VDBaseError::HistValue, fault, routine);
        return WithFormat(it.Describe().format, [&]<class Bin>(Bin) {
            if (!std::all_of(values, values + count, [](Value value) { return IsExact<Bin>(value); }))
                return VFReportHist(VDBaseError::HistValue, NotExact, routine);
            auto* const bins = static_cast<Bin*>(it.RawBins());
            if (std::is_same_v<Value, Bin> && order == 0)
                std::memcpy(bins, values, static_cast<std::size_t>(count) * sizeof(Value));
            else
                VisitPlaces(it, order,
                            [&](std::int64_t to, std::int64_t from) { bins[to] = static_cast<Bin>(values[from]); });
            return 1;
        });
    });
}

/// Smallest and largest value, in several lanes that the processor works through at once; a NaN is never taken.
template <class Bin>
void FindLimits(const Bin* bins, std::int64_t count, double* min, double* max)
{
    constexpr std::int64_t lanes = 16;
    using Limits = std::numeric_limits<Bin>;
    constexpr Bin largest = Limits::has_infinity ? Limits::infinity() : Limits::max();
    constexpr Bin smallest = Limits::has_infinity ? -Limits::infinity() : Limits::lowest();
    Bin low[lanes];
    Bin high[lanes];
    std::fill_n(low, lanes, largest);
    std::fill_n(high, lanes, smallest);
    std::int64_t at = 0;
    for (; at + lanes <= count; at += lanes)
        for (std::int64_t lane = 0; lane < lanes; ++lane) {
            const Bin bin = bins[at + lane];
            low[lane] = bin < low[lane] ? bin : low[lane];
            high[lane] = bin > high[lane] ? bin : high[lane];
        }
    for (; at < count; ++at) {
        low[0] = bins[at] < low[0] ? bins[at] : low[0];
        high[0] = bins[at] > high[0] ? bins[at] : high[0];
    }
    const Bin lowest = *std::min_element(low, low + lanes);
    const Bin highest = *std::max_element(high, high + lanes);
    if (lowest <= highest) {
        *min = static_cast<double>(lowest);
        *max = static_cast<double>(highest);
    }
}

}  // namespace

int VFHistGetBinBytes(int format)
{
    return WithFormat(format, [](auto bin) { return static_cast<int>(sizeof bin); });
}

int VFHistSetFormat(VDHist* hist, int format)
{
    return VFWithHist(hist, __func__, [&](VDHist& it) {
        if (format < 1)
            return VFReportHist(VDBaseError::HistValue, "A histogram can't have a format below 1", "VFHistSetFormat");
        VDHistDescription& present = it.Change();
        const std::int64_t count = it.GetBinCount();
        if (!it.HasBins() || VFHistGetBinBytes(format) * count > VDHist::LargestBins) {
            VDHistDescription asked;
            asked.format = format;
            asked.x.binCount = present.x.binCount;
            asked.y.binCount = present.y.binCount;
            if (const char* const fault = VDHist::FindFault(asked))
                return VFReportHist(VDBaseError::HistValue, fault, "VFHistSetFormat");
            present.format = format;
            return 1;
        }
        return WithFormat(present.format, [&]<class From>(From) {
            return WithFormat(format, [&]<class To>(To) {
                if constexpr (std::is_same_v<From, To>)
                    return present.format = format, 1;
                const auto* const bins = static_cast<const From*>(it.Bins());
                if (!std::all_of(bins, bins + count, [](From bin) { return IsExact<To>(bin); }))
                    return VFReportHist(VDBaseError::HistValue, NotExact, "VFHistSetFormat");
                auto converted = VDHist::Allocate(count * static_cast<std::int64_t>(sizeof(To)), false);
                std::transform(bins, bins + count, static_cast<To*>(converted.get()),
                               [](From bin) { return static_cast<To>(bin); });
                it.TakeBins(format, std::move(converted));
                return 1;
            });
        });
    });
}

int VFHistCopy(VDHist* hist, const VDHist* other)
{
    return VFWithHist(hist, __func__, [&](VDHist& to) {
        return VFWithHist(other, "VFHistCopy", [&](const VDHist& from) {
            if (&to == &from)
                return 1;
            VDHistDescription description = from.Describe();
            auto bins = VDHist::Allocate(from.HasBins() ? from.GetBinBytes() : 0, false);
            if (from.HasBins())
                std::memcpy(bins.get(), from.Bins(), static_cast<std::size_t>(from.GetBinBytes()));
            to.Take(std::move(description));
            if (from.HasBins())
                to.TakeBins(from.Describe().format, std::move(bins));
            return 1;
        });
    });
}

int VFHistGetZLimits(const VDHist* hist, double* min, double* max)
{
    return VFWithHist(hist, __func__, [&](const VDHist& it) {
        *min = 1e30;
        *max = -1e30;
        if (!it.HasBins() && it.GetBinCount() > 0)
            return *min = *max = 0, 1;
        return WithFormat(it.Describe().format, [&]<class Bin>(Bin) {
            FindLimits(static_cast<const Bin*>(it.Bins()), it.GetBinCount(), min, max);
            return 1;
        });
    });
}

int VFHistGetRawBins(const VDHist* hist, std::int64_t* bytes, const void** bins)
{
    return VFWithHist(hist, __func__, [&](const VDHist& it) {
        *bins = it.Bins();
        *bytes = it.GetBinBytes();
        return 1;
    });
}

int VFHistPrepareRawBins(VDHist* hist, std::int64_t* bytes, void** bins)
{
    return VFWithHist(hist, __func__, [&](VDHist& it) {
        *bins = it.RawBins();
        *bytes = it.GetBinBytes();
        return 1;
    });
}

int VFHistGetXYBins_D(const VDHist* hist, int order, double* values, std::int64_t count)
{
    return GetBins(hist, __func__, order, values, count);
}

int VFHistGetXYBins_F(const VDHist* hist, int order, float* values, std::int64_t count)
{
    return GetBins(hist, __func__, order, values, count);
}

int VFHistGetXYBins_H(const VDHist* hist, int order, std::int64_t* values, std::int64_t count)
{
    return GetBins(hist, __func__, order, values, count);
}

int VFHistGetXYBins_L(const VDHist* hist, int order, std::int32_t* values, std::int64_t count)
{
    return GetBins(hist, __func__, order, values, count);
}

int VFHistSetXYBins_D(VDHist* hist, int order, const double* values, std::int64_t count)
{
    return SetBins(hist, __func__, order, values, count);
}

int VFHistSetXYBins_F(VDHist* hist, int order, const float* values, std::int64_t count)
{
    return SetBins(hist, __func__, order, values, count);
}

int VFHistSetXYBins_H(VDHist* hist, int order, const std::int64_t* values, std::int64_t count)
{
    return SetBins(hist, __func__, order, values, count);
}

int VFHistSetXYBins_L(VDHist* hist, int order, const std::int32_t* values, std::int64_t count)
{
    return SetBins(hist, __func__, order, values, count);
}
