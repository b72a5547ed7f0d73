#include "HistogramCodec.h"

namespace {

// Flags of the histogram
constexpr std::uint8_t Is3D = 1;
constexpr std::uint8_t AutoScale = 2;
constexpr std::uint8_t OverflowsExceeded = 4;
// Flags of an axis
constexpr std::uint8_t ActualsSet = 1;
constexpr std::uint8_t MovesWithOffset = 2;

constexpr std::size_t SmallestLabelBytes = 4;

std::uint8_t Flag(bool isSet, std::uint8_t flag)
{
    return isSet ? flag : std::uint8_t(0);
}

void PutNumbers(Z4ByteWriter& writer, const std::vector<double>& numbers)
{
    writer.Put(static_cast<std::uint32_t>(numbers.size()));
    for (const double number : numbers)
        writer.Put(number);
}

void GetNumbers(Z4ByteReader& reader, std::vector<double>& numbers)
{
    numbers.resize(reader.GetCount(sizeof(double)));
    for (double& number : numbers)
        number = reader.Get<double>();
}

void PutAxis(Z4ByteWriter& writer, const VDHistAxis& axis)
{
    writer.PutText(axis.title.View());
    writer.PutText(axis.units.View());
    writer.Put(static_cast<std::uint8_t>(Flag(axis.actualsSet, ActualsSet) | Flag(axis.movesWithOffset, MovesWithOffset)));
    for (const double value : {axis.min, axis.max, axis.binSize, axis.actualMin, axis.actualMax, axis.toleranceFraction})
        writer.Put(value);
    writer.Put(axis.binCount);
    writer.Put(axis.boundaryRule);
    PutNumbers(writer, axis.borders);
    writer.Put(static_cast<std::uint32_t>(axis.labels.GetSize()));
    for (const VDString& label : axis.labels)
        writer.PutText(label.View());
}

void GetAxis(Z4ByteReader& reader, VDHistAxis& axis)
{
    axis.title = reader.GetText();
    axis.units = reader.GetText();
    const auto flags = reader.Get<std::uint8_t>();
    axis.actualsSet = (flags & ActualsSet) != 0;
    axis.movesWithOffset = (flags & MovesWithOffset) != 0;
    for (double* const value :
         {&axis.min, &axis.max, &axis.binSize, &axis.actualMin, &axis.actualMax, &axis.toleranceFraction})
        *value = reader.Get<double>();
    axis.binCount = reader.Get<std::int64_t>();
    axis.boundaryRule = reader.Get<std::int32_t>();
    GetNumbers(reader, axis.borders);
    const std::uint32_t labels = reader.GetCount(SmallestLabelBytes);
    for (std::uint32_t i = 0; i < labels && reader.IsGood(); ++i)
        axis.labels.AppendItem(reader.GetText());
}

}  // namespace

void VFPutHistogram(Z4ByteWriter& writer, const HistogramFacts& facts)
{
    const VDHistDescription& hist = facts.description;
    for (const int number : {hist.format, hist.type, hist.subType, hist.binType, hist.maxOverflows})
        writer.Put(number);
    writer.Put(static_cast<std::uint8_t>(Flag(hist.is3D, Is3D) | Flag(hist.autoScale, AutoScale) |
                                         Flag(hist.overflowsExceeded, OverflowsExceeded)));
    PutAxis(writer, hist.x);
    PutAxis(writer, hist.y);
    writer.PutText(hist.zTitle.View());
    writer.PutText(hist.zUnits.View());
    for (const double value : {hist.missEdgeFraction, facts.zMin, facts.zMax})
        writer.Put(value);
    for (const std::int64_t count : hist.overflowCounts)
        writer.Put(count);
    writer.Put(static_cast<std::uint32_t>(hist.overflows.size()));
    for (const VDHistOverflow& overflow : hist.overflows)
        for (const double value : {overflow.x, overflow.y, overflow.count})
            writer.Put(value);
    PutNumbers(writer, hist.residuals);
}

bool VFGetHistogram(Z4ByteReader& reader, HistogramFacts* facts)
{
    VDHistDescription& hist = facts->description;
    for (int* const number : {&hist.format, &hist.type, &hist.subType, &hist.binType, &hist.maxOverflows})
        *number = reader.Get<std::int32_t>();
    const auto flags = reader.Get<std::uint8_t>();
    hist.is3D = (flags & Is3D) != 0;
    hist.autoScale = (flags & AutoScale) != 0;
    hist.overflowsExceeded = (flags & OverflowsExceeded) != 0;
    GetAxis(reader, hist.x);
    GetAxis(reader, hist.y);
    hist.zTitle = reader.GetText();
    hist.zUnits = reader.GetText();
    for (double* const value : {&hist.missEdgeFraction, &facts->zMin, &facts->zMax})
        *value = reader.Get<double>();
    for (std::int64_t& count : hist.overflowCounts)
        count = reader.Get<std::int64_t>();
    hist.overflows.resize(reader.GetCount(sizeof(VDHistOverflow)));
    for (VDHistOverflow& overflow : hist.overflows)
        for (double* const value : {&overflow.x, &overflow.y, &overflow.count})
            *value = reader.Get<double>();
    GetNumbers(reader, hist.residuals);
    return reader.IsAtEnd();
}
