#include "vdstore/LQHistogramAttributes.h"

#include "vdbase/VFNumber.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

/// Puts one item after the other into the set.
class Items
{
public:
    Items(Z4PropertySet& set, bool keep) : set_(set), keep_(keep) {}

    void Long(const char* name, std::int64_t value) const
    {
        // A count that has no place is the largest that has one.
        constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
        Put(name, [&] { set_.PutLong(name, static_cast<std::int32_t>(std::min(value, largest))); });
    }
    void Huge(const char* name, std::int64_t value) const
    {
        Put(name, [&] { set_.PutHuge(name, value); });
    }
    void Boolean(const char* name, bool value) const
    {
        Put(name, [&] { set_.PutBoolean(name, value); });
    }
    void Double(const char* name, double value) const
    {
        Put(name, [&] { set_.PutDouble(name, value); });
    }
    void Text(const char* name, const VDString& value) const
    {
        Put(name, [&] { set_.PutString(name, value); });
    }
    void None(const char* name) const
    {
        if (!keep_)
            set_.RemoveProperty(name);
    }

private:
    template <class Call>
    void Put(const char* name, Call call) const
    {
        if (!keep_ || !set_.Exists(name, false))
            call();
    }

    Z4PropertySet& set_;
    bool keep_;
};

/// The names of what an axis has.
struct AxisNames
{
    const char* min;
    const char* max;
    const char* binCount;
    const char* binSize;
    const char* binBoundaries;
};
constexpr AxisNames VVXNames = {"XMin", "XMax", "XBinCount", "XBinSize", "XBinBoundaries"};
constexpr AxisNames VVYNames = {"YMin", "YMax", "YBinCount", "YBinSize", "YBinBoundaries"};

constexpr const char* VVOverflowNames[] = {"OverflowXMin",        "OverflowXMax",        "OverflowYMin",
                                           "OverflowYMax",        "OverflowXMinSeg",     "OverflowXMaxSeg",
                                           "OverflowYMinSeg",     "OverflowYMaxSeg",     "OverflowXMaxYMinSeg",
                                           "OverflowXMaxYMaxSeg", "OverflowXMinYMinSeg", "OverflowXMinYMaxSeg"};
static_assert(std::size(VVOverflowNames) == VTHistOverflowFlags);

std::int32_t DataTypeOf(int format)
{
    constexpr std::int32_t types[] = {0, Z4TypeDouble, Z4TypeHuge, Z4TypeLong, Z4TypeFloat};
    return format > 0 && format < static_cast<int>(std::size(types)) ? types[format] : 0;
}

template <class List, class ToText>
VDString Join(const List& list, ToText toText)
{
    std::string text;
    for (const auto& item : list) {
        if (&item != &*list.begin())
            text += ',';
        text += toText(item).View();
    }
    return VDString(std::move(text));
}

void PutAxis(const Items& items, const AxisNames& names, const VDHistAxis& axis)
{
    items.Double(names.min, axis.min);
    items.Double(names.max, axis.max);
    items.Huge(names.binCount, axis.binCount);
    if (axis.borders.empty()) {
        items.Double(names.binSize, axis.binSize);
        items.None(names.binBoundaries);
    } else {
        items.None(names.binSize);
        items.Text(names.binBoundaries,
                   Join(axis.borders, [](double border) { return VFFormatDouble(border, 8, -3, 4, 0, 40); }));
    }
}

VDString JoinLabels(const VDHistAxis& axis)
{
    return Join(axis.labels, [](const VDString& label) { return label; });
}

}  // namespace

void VFPutHistogramAttributes(Z4PropertySet& set, const VDHistDescription& histogram, double zMin, double zMax, bool keep)
{
    const Items items(set, keep);
    const VDHistAxis& x = histogram.x;
    const VDHistAxis& y = histogram.y;
    items.Long("Type", histogram.type);
    items.Long("SubType", histogram.subType);
    items.Boolean("3D", histogram.is3D);
    if (histogram.format != VTHistFormatUnset) {
        items.Long("Format", histogram.format);
        items.Long("DataType", DataTypeOf(histogram.format));
    } else {
        items.None("Format");
        items.None("DataType");
    }
    items.Long("BinType", histogram.binType);
    items.Text("XTitle", x.title);
    items.Text("YTitle", y.title);
    items.Text("ZTitle", histogram.zTitle);
    items.Text("XUnits", x.units);
    items.Text("YUnits", y.units);
    items.Text("ZUnits", histogram.zUnits);
    PutAxis(items, VVXNames, x);
    PutAxis(items, VVYNames, y);
    items.Text("XBinLabels", JoinLabels(x));
    items.Text("YBinLabels", JoinLabels(y));
    items.Long("XBoundaryRule", x.boundaryRule);
    items.Long("YBoundaryRule", histogram.is3D ? y.boundaryRule : 1);
    items.Long("MaxOverflows", histogram.maxOverflows);
    items.Boolean("XActualsSet", x.actualsSet);
    items.Boolean("YActualsSet", y.actualsSet);
    items.Double("XActualMin", x.actualsSet ? x.actualMin : 0);
    items.Double("YActualMin", y.actualsSet ? y.actualMin : 0);
    items.Double("XActualMax", x.actualsSet ? x.actualMax : 0);
    items.Double("YActualMax", y.actualsSet ? y.actualMax : 0);
    items.Boolean("AutoScale", histogram.autoScale);
    for (std::size_t i = 0; i < histogram.overflowCounts.size(); ++i)
        items.Huge(VVOverflowNames[i], histogram.overflowCounts[i]);
    items.Double("MissEdgeFraction", histogram.missEdgeFraction);
    items.Double("XBinToleranceFraction", x.toleranceFraction);
    items.Double("YBinToleranceFraction", y.toleranceFraction);
    items.Boolean("OverflowsExceeded", histogram.overflowsExceeded);
    items.Long("OverflowCount", static_cast<std::int64_t>(histogram.overflows.size()));
    items.Long("ResidualCount", static_cast<std::int64_t>(histogram.residuals.size()));
    items.Double("ZMin", zMin);
    items.Double("ZMax", zMax);
    items.Long("Flags", 0);
}
