#include "CopyLosses.h"
#include "TimeSeriesTest.h"
#include "ToolError.h"
#include "Values.h"

#include <algorithm>
#include <cmath>

namespace {

/// Values of each channel that are compared one by one.
constexpr std::int64_t VVComparedPoints = 1024;

/// A form that holds as much is no loss: a short in a float channel, for instance, is whole.
bool VFHoldsAsMuch(VTValueForm from, VTValueForm to)
{
    return from == to || (to == VTValueForm::Double && from != VTValueForm::Digital64);
}

bool VFSameValue(long double left, long double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

void VFCompareValues(const VDTimeSeriesTest& test, const VDChannel& from, const VDTimeSeriesTest& copy, const VDChannel& to,
                     VDLossList& list)
{
    const std::int64_t count = std::min(to.points, VVComparedPoints);
    VDValues source(VFValueForm(from.type), count);
    VDValues written(VFValueForm(to.type), count);
    if (count < 1)
        return;
    source.Read(test.Get(), from.index, 1, count);
    written.Read(copy.Get(), to.index, 1, count);
    for (std::int64_t index = 0; index < count; ++index)
        if (!VFSameValue(source.At(index), written.At(index))) {
            list.Add("values", from.number, static_cast<double>(source.At(index)), static_cast<double>(written.At(index)));
            return;
        }
}

void VFCompareChannels(const VDTimeSeriesTest& source, const VDChannel& from, const VDTimeSeriesTest& copy,
                       const VDChannel& to, VDLossList& list)
{
    list.Add("channelNumber", from.number, from.number, to.number);
    list.AddText("title", from.number, from.title, to.title);
    if (from.yTitle != from.title)
        list.AddText("yTitle", from.number, from.yTitle, to.yTitle);
    list.AddText("units", from.number, from.units, to.units);
    if (!VFHoldsAsMuch(VFValueForm(from.type), VFValueForm(to.type)))
        list.AddText("type", from.number, VFTypeWord(from.type), VFTypeWord(to.type));
    list.Add("sampleRate", from.number, from.sampleRate, to.sampleRate);
    list.Add("baseTime", from.number, from.baseTime, to.baseTime);
    VFCompareValues(source, from, copy, to, list);
}

}  // namespace

void VFCompareTimeSeries(const VDCopyPlan& plan, const VDDataTest& copy, std::int64_t limit, VDLossList& list)
{
    const auto& source = static_cast<const VDTimeSeriesTest&>(plan.source);
    const auto& written = static_cast<const VDTimeSeriesTest&>(copy);
    list.AddText("xTitle", {}, source.GetXTitle(), written.GetXTitle());
    list.AddText("xUnits", {}, source.GetXUnits(), written.GetXUnits());
    for (std::size_t index = 0; index < plan.channels.size(); ++index) {
        const VDChannel& from = plan.channels[index];
        const VDChannel& to = written.GetChannels()[index];
        if (to.points != std::min(from.points, limit))
            VFFail(DaxToolError::Incomplete,
                   "Channel " + std::to_string(from.number) + " has " + std::to_string(to.points) +
                       " points in the file written in place of " + std::to_string(std::min(from.points, limit)),
                   "VFFindLosses");
        VFCompareChannels(source, from, written, to, list);
    }
}
