#include "VDHist.h"

#include <algorithm>
#include <bit>
#include <cmath>

// The functions of histograms but for those of the bins.

namespace {

using Description = VDHistDescription;
constexpr auto AxisX = &Description::x;
constexpr auto AxisY = &Description::y;

int Refuse(const char* fault, const char* routine)
{
    return VFReportHist(VDBaseError::HistValue, fault, routine);
}

// A field of the description, or of one of its axes.

template <class Value, class Out>
int Get(const VDHist* hist, const char* routine, Value Description::*field, Out* out)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) { return *out = static_cast<Out>(it.Describe().*field), 1; });
}

template <class Value, class In>
int Set(VDHist* hist, const char* routine, Value Description::*field, const In& value)
{
    return VFWithHist(hist, routine, [&](VDHist& it) { return it.Change().*field = static_cast<Value>(value), 1; });
}

template <class Value, class Out>
int Get(const VDHist* hist, const char* routine, VDHistAxis Description::*axis, Value VDHistAxis::*field, Out* out)
{
    return VFWithHist(hist, routine,
                      [&](const VDHist& it) { return *out = static_cast<Out>(it.Describe().*axis.*field), 1; });
}

template <class Value, class In>
int Set(VDHist* hist, const char* routine, VDHistAxis Description::*axis, Value VDHistAxis::*field, const In& value)
{
    return VFWithHist(hist, routine, [&](VDHist& it) { return it.Change().*axis.*field = static_cast<Value>(value), 1; });
}

// Limits and borders of an axis

int GetLimits(const VDHist* hist, const char* routine, VDHistAxis Description::*which, double* min, double* max,
              std::int64_t* binCount, double* binSize)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) {
        const VDHistAxis& axis = it.Describe().*which;
        *min = axis.min;
        *max = axis.max;
        *binCount = axis.binCount;
        *binSize = axis.binSize;
        return 1;
    });
}

/// Takes an axis that was changed, if the histogram is possible with it.
int TakeAxis(VDHist& hist, const char* routine, VDHistAxis Description::*which, VDHistAxis axis)
{
    Description changed;
    changed.format = hist.Describe().format;
    changed.x.binCount = hist.Describe().x.binCount;
    changed.y.binCount = hist.Describe().y.binCount;
    changed.*which = std::move(axis);
    if (const char* const fault = VDHist::FindFault(changed))
        return Refuse(fault, routine);
    hist.TakeAxis(which, std::move(changed.*which));
    return 1;
}

int SetLimits(VDHist* hist, const char* routine, VDHistAxis Description::*which, double min, double max,
              std::int64_t binCount)
{
    return VFWithHist(hist, routine, [&](VDHist& it) {
        VDHistAxis axis = it.Describe().*which;
        axis.borders.clear();
        axis.min = min;
        axis.max = max;
        axis.binCount = binCount;
        // The difference of the halves has a place in a double even where that of the limits has none.
        axis.binSize = binCount > 0 ? (max / 2 - min / 2) / static_cast<double>(binCount) * 2 : 0;
        return TakeAxis(it, routine, which, std::move(axis));
    });
}

int GetBorders(const VDHist* hist, const char* routine, VDHistAxis Description::*which, VDArray<double>* borders)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) {
        const std::vector<double>& from = (it.Describe().*which).borders;
        borders->SetSize(static_cast<int>(from.size()));
        std::copy(from.begin(), from.end(), borders->begin());
        return 1;
    });
}

int SetBorders(VDHist* hist, const char* routine, VDHistAxis Description::*which, const double* borders, std::int64_t count)
{
    return VFWithHist(hist, routine, [&](VDHist& it) {
        if (borders == nullptr || count < 2)
            return Refuse("Variable bins need two borders at least", routine);
        VDHistAxis axis = it.Describe().*which;
        axis.borders.assign(borders, borders + count);
        axis.min = axis.borders.front();
        axis.max = axis.borders.back();
        axis.binSize = 0;
        axis.binCount = count - 1;
        return TakeAxis(it, routine, which, std::move(axis));
    });
}

int IsVariable(const VDHist* hist, const char* routine, VDHistAxis Description::*which, char* isVariable)
{
    return VFWithHist(hist, routine,
                      [&](const VDHist& it) { return *isVariable = !(it.Describe().*which).borders.empty(), 1; });
}

int GetActual(const VDHist* hist, const char* routine, VDHistAxis Description::*which, double VDHistAxis::*field,
              double* value)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) {
        const VDHistAxis& axis = it.Describe().*which;
        if (axis.actualsSet)
            *value = axis.*field;
        return axis.actualsSet ? 1 : 0;
    });
}

int SetActuals(VDHist* hist, const char* routine, VDHistAxis Description::*which, double min, double max)
{
    return VFWithHist(hist, routine, [&](VDHist& it) {
        VDHistAxis& axis = it.Change().*which;
        axis.actualsSet = true;
        axis.actualMin = min;
        axis.actualMax = max;
        return 1;
    });
}

/// Place of a flag in the counts; negative for what is no flag.
int IndexOfFlag(int flag)
{
    const auto bits = static_cast<unsigned>(flag);
    return std::has_single_bit(bits) && std::countr_zero(bits) < VTHistOverflowFlags ? std::countr_zero(bits) : -1;
}

template <class Value>
int GetList(const VDHist* hist, const char* routine, std::vector<Value> Description::*list, std::int64_t room, Value* values,
            std::int64_t* count)
{
    return VFWithHist(hist, routine, [&](const VDHist& it) {
        const std::vector<Value>& from = it.Describe().*list;
        *count = static_cast<std::int64_t>(from.size());
        if (values != nullptr)
            std::copy_n(from.begin(), std::clamp<std::int64_t>(room, 0, *count), values);
        return 1;
    });
}

template <class Value>
int SetList(VDHist* hist, const char* routine, std::vector<Value> Description::*list, std::int64_t count,
            const Value* values)
{
    return VFWithHist(hist, routine, [&](VDHist& it) {
        if (count < 0 || (count > 0 && values == nullptr))
            return Refuse("A list of a histogram can't have fewer than no values", routine);
        (it.Change().*list) = std::vector<Value>(values, values + count);
        return 1;
    });
}

void MoveAxis(VDHistAxis& axis, double offset)
{
    if (!axis.movesWithOffset)
        return;
    for (double* const value : {&axis.min, &axis.max, &axis.actualMin, &axis.actualMax})
        *value += offset;
    for (double& border : axis.borders)
        border += offset;
}

}  // namespace

VDHist* VFHistCreate()
{
    try {
        return new VDHist;
    } catch (...) {
        VFReportHist(VDBaseError::HistMemory, "Memory is too short for the histogram", __func__);
        return nullptr;
    }
}

int VFHistAddRef(VDHist* hist)
{
    return VFWithHist(hist, __func__, [](VDHist& it) { return it.AddRef(); });
}

int VFHistRelease(VDHist* hist)
{
    return VFWithHist(hist, __func__, [](VDHist& it) {
        if (it.Release() == 0)
            delete &it;
        return 1;
    });
}

const VDHistDescription* VFHistGetDescription(const VDHist* hist)
{
    return VFWithHist(hist, __func__, [](const VDHist&) { return 1; }) ? &hist->Describe() : nullptr;
}

int VFHistSetDescription(VDHist* hist, const VDHistDescription& description)
{
    return VFWithHist(hist, __func__, [&](VDHist& it) {
        if (const char* const fault = VDHist::FindFault(description))
            return Refuse(fault, "VFHistSetDescription");
        it.Take(description);
        return 1;
    });
}

int VFHistGetType(const VDHist* hist, int* type, int* subType)
{
    return Get(hist, __func__, &Description::type, type) && Get(hist, __func__, &Description::subType, subType);
}

int VFHistSetType(VDHist* hist, int type, int subType)
{
    return Set(hist, __func__, &Description::type, type) && Set(hist, __func__, &Description::subType, subType);
}

int VFHistIs3D(const VDHist* hist, char* is3D)
{
    return Get(hist, __func__, &Description::is3D, is3D);
}

int VFHistSet3D(VDHist* hist, char is3D)
{
    return Set(hist, __func__, &Description::is3D, is3D != 0);
}

int VFHistGetFormat(const VDHist* hist, int* format)
{
    return Get(hist, __func__, &Description::format, format) && *format != VTHistFormatUnset;
}

int VFHistGetBinType(const VDHist* hist, int* binType)
{
    return Get(hist, __func__, &Description::binType, binType);
}

int VFHistSetBinType(VDHist* hist, int binType)
{
    return Set(hist, __func__, &Description::binType, binType);
}

int VFHistGetXLimits(const VDHist* hist, double* min, double* max, std::int64_t* binCount, double* binSize)
{
    return GetLimits(hist, __func__, AxisX, min, max, binCount, binSize);
}

int VFHistGetYLimits(const VDHist* hist, double* min, double* max, std::int64_t* binCount, double* binSize)
{
    return GetLimits(hist, __func__, AxisY, min, max, binCount, binSize);
}

int VFHistSetXLimits(VDHist* hist, double min, double max, std::int64_t binCount)
{
    return SetLimits(hist, __func__, AxisX, min, max, binCount);
}

int VFHistSetYLimits(VDHist* hist, double min, double max, std::int64_t binCount)
{
    return SetLimits(hist, __func__, AxisY, min, max, binCount);
}

int VFHistGetIsVariableXBins(const VDHist* hist, char* isVariable)
{
    return IsVariable(hist, __func__, AxisX, isVariable);
}

int VFHistGetIsVariableYBins(const VDHist* hist, char* isVariable)
{
    return IsVariable(hist, __func__, AxisY, isVariable);
}

int VFHistGetVariableXBins(const VDHist* hist, VDArray<double>* borders)
{
    return GetBorders(hist, __func__, AxisX, borders);
}

int VFHistGetVariableYBins(const VDHist* hist, VDArray<double>* borders)
{
    return GetBorders(hist, __func__, AxisY, borders);
}

int VFHistSetVariableXBins(VDHist* hist, const double* borders, std::int64_t count)
{
    return SetBorders(hist, __func__, AxisX, borders, count);
}

int VFHistSetVariableYBins(VDHist* hist, const double* borders, std::int64_t count)
{
    return SetBorders(hist, __func__, AxisY, borders, count);
}

int VFHistGetXBinCount(const VDHist* hist, std::int64_t* binCount)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::binCount, binCount);
}

int VFHistGetYBinCount(const VDHist* hist, std::int64_t* binCount)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::binCount, binCount);
}

int VFHistGetXBinLabels(const VDHist* hist, VDStringArray* labels)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::labels, labels);
}

int VFHistGetYBinLabels(const VDHist* hist, VDStringArray* labels)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::labels, labels);
}

int VFHistSetXBinLabels(VDHist* hist, const VDStringArray& labels)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::labels, labels);
}

int VFHistSetYBinLabels(VDHist* hist, const VDStringArray& labels)
{
    return Set(hist, __func__, AxisY, &VDHistAxis::labels, labels);
}

int VFHistGetXTitle(const VDHist* hist, VDString* title)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::title, title);
}

int VFHistGetYTitle(const VDHist* hist, VDString* title)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::title, title);
}

int VFHistGetZTitle(const VDHist* hist, VDString* title)
{
    return Get(hist, __func__, &Description::zTitle, title);
}

int VFHistSetXTitle(VDHist* hist, const char* title)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::title, title);
}

int VFHistSetYTitle(VDHist* hist, const char* title)
{
    return Set(hist, __func__, AxisY, &VDHistAxis::title, title);
}

int VFHistSetZTitle(VDHist* hist, const char* title)
{
    return Set(hist, __func__, &Description::zTitle, title);
}

int VFHistGetXUnits(const VDHist* hist, VDString* units)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::units, units);
}

int VFHistGetYUnits(const VDHist* hist, VDString* units)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::units, units);
}

int VFHistGetZUnits(const VDHist* hist, VDString* units)
{
    return Get(hist, __func__, &Description::zUnits, units);
}

int VFHistSetXUnits(VDHist* hist, const char* units)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::units, units);
}

int VFHistSetYUnits(VDHist* hist, const char* units)
{
    return Set(hist, __func__, AxisY, &VDHistAxis::units, units);
}

int VFHistSetZUnits(VDHist* hist, const char* units)
{
    return Set(hist, __func__, &Description::zUnits, units);
}

int VFHistGetXBoundaryRule(const VDHist* hist, int* rule)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::boundaryRule, rule);
}

int VFHistGetYBoundaryRule(const VDHist* hist, int* rule)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::boundaryRule, rule);
}

int VFHistSetXBoundaryRule(VDHist* hist, int rule)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::boundaryRule, rule);
}

int VFHistSetYBoundaryRule(VDHist* hist, int rule)
{
    return Set(hist, __func__, AxisY, &VDHistAxis::boundaryRule, rule);
}

int VFHistGetAutoScale(const VDHist* hist, char* autoScale)
{
    return Get(hist, __func__, &Description::autoScale, autoScale);
}

int VFHistSetAutoScale(VDHist* hist, char autoScale)
{
    return Set(hist, __func__, &Description::autoScale, autoScale != 0);
}

int VFHistGetToleranceFractions(const VDHist* hist, double* x, double* y)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::toleranceFraction, x) &&
           Get(hist, __func__, AxisY, &VDHistAxis::toleranceFraction, y);
}

int VFHistSetToleranceFractions(VDHist* hist, double x, double y)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::toleranceFraction, x) &&
           Set(hist, __func__, AxisY, &VDHistAxis::toleranceFraction, y);
}

int VFHistGetMissEdgeFraction(const VDHist* hist, double* fraction)
{
    return Get(hist, __func__, &Description::missEdgeFraction, fraction);
}

int VFHistSetMissEdgeFraction(VDHist* hist, double fraction)
{
    return Set(hist, __func__, &Description::missEdgeFraction, fraction);
}

int VFHistAreXActualsSet(const VDHist* hist, char* set)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::actualsSet, set);
}

int VFHistAreYActualsSet(const VDHist* hist, char* set)
{
    return Get(hist, __func__, AxisY, &VDHistAxis::actualsSet, set);
}

int VFHistGetActualXMin(const VDHist* hist, double* value)
{
    return GetActual(hist, __func__, AxisX, &VDHistAxis::actualMin, value);
}

int VFHistGetActualXMax(const VDHist* hist, double* value)
{
    return GetActual(hist, __func__, AxisX, &VDHistAxis::actualMax, value);
}

int VFHistGetActualYMin(const VDHist* hist, double* value)
{
    return GetActual(hist, __func__, AxisY, &VDHistAxis::actualMin, value);
}

int VFHistGetActualYMax(const VDHist* hist, double* value)
{
    return GetActual(hist, __func__, AxisY, &VDHistAxis::actualMax, value);
}

int VFHistSetXActuals(VDHist* hist, double min, double max)
{
    return SetActuals(hist, __func__, AxisX, min, max);
}

int VFHistSetYActuals(VDHist* hist, double min, double max)
{
    return SetActuals(hist, __func__, AxisY, min, max);
}

int VFHistGetOverflowCount(const VDHist* hist, int flag, std::int64_t* count)
{
    return VFWithHist(hist, __func__, [&](const VDHist& it) {
        const int index = IndexOfFlag(flag);
        if (index < 0)
            return Refuse("There is no such overflow of a histogram", "VFHistGetOverflowCount");
        *count = it.Describe().overflowCounts[static_cast<std::size_t>(index)];
        return 1;
    });
}

int VFHistSetOverflowCount(VDHist* hist, int flag, std::int64_t count)
{
    return VFWithHist(hist, __func__, [&](VDHist& it) {
        const int index = IndexOfFlag(flag);
        if (index < 0)
            return Refuse("There is no such overflow of a histogram", "VFHistSetOverflowCount");
        it.Change().overflowCounts[static_cast<std::size_t>(index)] = count;
        return 1;
    });
}

int VFHistGetMaxOverflows(const VDHist* hist, int* count)
{
    return Get(hist, __func__, &Description::maxOverflows, count);
}

int VFHistSetMaxOverflows(VDHist* hist, int count)
{
    return Set(hist, __func__, &Description::maxOverflows, count);
}

int VFHistGetOverflows_D(const VDHist* hist, std::int64_t room, VDHistOverflow* overflows, char* exceeded,
                         std::int64_t* count)
{
    return Get(hist, __func__, &Description::overflowsExceeded, exceeded) &&
           GetList(hist, __func__, &Description::overflows, room, overflows, count);
}

int VFHistSetOverflows_D(VDHist* hist, char exceeded, std::int64_t count, const VDHistOverflow* overflows)
{
    return SetList(hist, __func__, &Description::overflows, count, overflows) &&
           Set(hist, __func__, &Description::overflowsExceeded, exceeded != 0);
}

int VFHistGetResiduals(const VDHist* hist, std::int64_t room, double* values, std::int64_t* count)
{
    return GetList(hist, __func__, &Description::residuals, room, values, count);
}

int VFHistSetResiduals(VDHist* hist, std::int64_t count, const double* values)
{
    return SetList(hist, __func__, &Description::residuals, count, values);
}

int VFHistGetOffsetAxes(const VDHist* hist, char* x, char* y)
{
    return Get(hist, __func__, AxisX, &VDHistAxis::movesWithOffset, x) &&
           Get(hist, __func__, AxisY, &VDHistAxis::movesWithOffset, y);
}

int VFHistSetOffsetAxes(VDHist* hist, char x, char y)
{
    return Set(hist, __func__, AxisX, &VDHistAxis::movesWithOffset, x != 0) &&
           Set(hist, __func__, AxisY, &VDHistAxis::movesWithOffset, y != 0);
}

int VFHistAddStaticOffset(VDHist* hist, double offset)
{
    return VFWithHist(hist, __func__, [&](VDHist& it) {
        Description moved = it.Describe();
        MoveAxis(moved.x, offset);
        MoveAxis(moved.y, offset);
        for (VDHistOverflow& overflow : moved.overflows) {
            overflow.x += moved.x.movesWithOffset ? offset : 0;
            overflow.y += moved.y.movesWithOffset ? offset : 0;
        }
        for (double& residual : moved.residuals)
            residual += offset;
        const char* const fault = std::isfinite(offset) ? VDHist::FindFault(moved) : "An offset isn't a number";
        if (fault != nullptr)
            return Refuse(fault, "VFHistAddStaticOffset");
        it.Change() = std::move(moved);
        return 1;
    });
}
