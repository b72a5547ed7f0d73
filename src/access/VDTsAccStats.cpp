#include "VDTsAcc.h"

#include "StatsList.h"
#include "frame/VFDaxReport.h"

#include <algorithm>
#include <cmath>

using namespace DaxTimeSeries;

// Statistics as they are given out: loaded from the plug-in at first use, and adjusted for an offset when they are read.

namespace {

template <class Value>
Value& VFStat(VDTimeFileChan& channel, int id)
{
    return channel.Stats<Value>().values[static_cast<std::size_t>(id - VTTsAccStatMax)];
}

/// Takes the list of a plug-in if it holds values of this precision.
template <class Value>
bool VFTakeStats(const VDVariant& list, VDTimeFileChan& channel)
{
    VDStatsList<Value> stats;
    if (!stats.TakeFrom(list))
        return false;
    channel.Stats<Value>().values = stats.values;
    channel.statPoints = stats.points;
    channel.statsValid = true;
    return true;
}

template <class Value>
double VFRmsWithOffset(VDTimeFileChan& channel, double offset)
{
    const std::int64_t count = channel.numPoints;
    if (count == 1)
        return offset + static_cast<double>(VFStat<Value>(channel, VTTsAccStatRms));
    if (count < 1)
        return 0;
    const Value sdev = VFStat<Value>(channel, VTTsAccStatSDev);
    const Value variance = sdev * sdev * static_cast<Value>(count - 1) / static_cast<Value>(count);
    const double mean = static_cast<double>(VFStat<Value>(channel, VTTsAccStatMean)) + offset;
    const double square = static_cast<double>(variance) + mean * mean;
    if (std::isnormal(square))
        return std::sqrt(square);
    // The squares lie outside the range of their type, the root may still lie inside.
    const auto points = static_cast<double>(count);
    return std::hypot(mean, static_cast<double>(sdev) * std::sqrt((points - 1) / points));
}

template <class Value>
constexpr const char* VVGetStatRoutine = "GetStat";
template <>
constexpr const char* VVGetStatRoutine<double> = "GetStatDouble";

}  // namespace

bool VDTsAcc::LoadStats(int index)
{
    VDTimeFileChan& channel = channels_[index];
    if (channel.statsLoaded)
        return true;
    channel.statsLoaded = true;
    char stored = 0;
    VDVariant list;
    if (!core_.GetCapability(StoresStatistics, &stored))
        return false;
    if (!stored)
        return true;
    if (!core_.GetValue(index, Statistics, &list))
        return false;
    if (!VFTakeStats<float>(list, channel)) {
        VFTakeStats<double>(list, channel);
    } else if (IsDouble(index)) {
        // Floats of a double channel: the plug-in may have more digits under the other key. If not, few digits are better
        // than the zeros that would pass for the channel's own statistics.
        const VDErrorMute mute;
        VDVariant doubles;
        const auto& floats = channel.floatStats.values;
        if (!core_.GetValue(index, StatisticsDouble, &doubles) || !VFTakeStats<double>(doubles, channel))
            std::copy(floats.begin(), floats.end(), channel.doubleStats.values.begin());
    }
    return true;
}

double VDTsAcc::RmsWithOffset(int index)
{
    const auto offset = static_cast<double>(GetOffset(index));
    return WithStatsType(index, [&]<class Value>(Value) { return VFRmsWithOffset<Value>(channels_[index], offset); });
}

template <class Value>
bool VDTsAcc::GetStat(int index, int id, Value* value)
{
    if (!CheckOpenAndChannel(index, false, VVGetStatRoutine<Value>) || !LoadStats(index))
        return false;
    if (!channels_[index].statsValid || id < VTTsAccStatMax || id > VTTsAccStatRms)
        return core_.Report(index, DaxError::StatisticUndefined, "GetStat");
    *value = VFStat<Value>(channels_[index], id);
    if (!AddsOffsets())
        return true;
    if (!core_.GetOffsets().Need())
        return false;
    if (id <= VTTsAccStatMean)
        *value += static_cast<Value>(GetOffset(index));
    else if (id == VTTsAccStatRms)
        *value = static_cast<Value>(RmsWithOffset(index));
    return true;
}

bool VDTsAcc::GetPointStat(int index, int id, std::int64_t* point)
{
    constexpr const char* routine = "GetPointStat";
    if (!CheckOpenAndChannel(index, false, routine) || !LoadStats(index))
        return false;
    if (!channels_[index].statsValid || id < VTTsAccStatPointOfMax || id > VTTsAccStatPointOfAbs)
        return core_.Report(index, DaxError::StatisticUndefined, routine);
    *point = channels_[index].statPoints[static_cast<std::size_t>(id - VTTsAccStatPointOfMax)];
    return true;
}

template <class Value>
bool VDTsAcc::GetAllStats(int index, Value* max, Value* min, Value* mean, Value* sdev, Value* rms, std::int64_t* pointOfMax,
                          std::int64_t* pointOfMin, std::int64_t* pointOfAbs)
{
    return GetStat(index, VTTsAccStatMax, max) && GetStat(index, VTTsAccStatMin, min) &&
           GetStat(index, VTTsAccStatMean, mean) && GetStat(index, VTTsAccStatSDev, sdev) &&
           GetStat(index, VTTsAccStatRms, rms) && GetPointStat(index, VTTsAccStatPointOfMax, pointOfMax) &&
           GetPointStat(index, VTTsAccStatPointOfMin, pointOfMin) && GetPointStat(index, VTTsAccStatPointOfAbs, pointOfAbs);
}

bool VDTsAcc::SetStats(int index, float max, float min, float mean, float sdev, float rms, std::int64_t pointOfMax,
                       std::int64_t pointOfMin, std::int64_t pointOfAbs)
{
    constexpr const char* routine = "SetStats";
    if (!CheckOpenAndChannel(index, false, routine) || !core_.CheckWritable(routine))
        return false;
    channels_[index].floatStats.values = {max, min, mean, sdev, rms};
    channels_[index].statPoints = {pointOfMax, pointOfMin, pointOfAbs};
    channels_[index].statsGiven = true;
    return true;
}

template bool VDTsAcc::GetStat(int, int, float*);
template bool VDTsAcc::GetStat(int, int, double*);
template bool VDTsAcc::GetAllStats(int, float*, float*, float*, float*, float*, std::int64_t*, std::int64_t*, std::int64_t*);
template bool VDTsAcc::GetAllStats(int, double*, double*, double*, double*, double*, std::int64_t*, std::int64_t*,
                                   std::int64_t*);
