#pragma once

#include "vdbase/VDStats.h"

#include <array>
#include <cstdint>
#include <type_traits>

/// The statistics of one channel in one precision, and what they are gathered with.
template <class Value>
struct VDTsChanStats
{
    std::array<Value, 5> values{};  ///< max, min, mean, sdev, rms; without any offset
    std::conditional_t<std::is_same_v<Value, double>, VDStatsEx, VDStats> accumulator;
};

/// What a time-series access object knows of one channel of the open test.
struct VDTimeFileChan
{
    double sampleRate = 1.0;  ///< points per x unit
    double baseTime = 0.0;    ///< x value of point 1
    std::int64_t numPoints = 0;

    bool statsValid = false;                   ///< the statistics below are those of the data
    bool statsToWrite = false;                 ///< they were worked out here and go to the plug-in with a flush
    bool statsGiven = false;                   ///< a host put values of its own into them
    bool statsLoaded = false;                  ///< no use asking the plug-in for stored ones
    std::array<std::int64_t, 3> statPoints{};  ///< of max, min and largest absolute value
    bool monitor = true;                       ///< statistics are gathered while data is written
    bool recalculate = false;                  ///< they must be worked out from the file at the next flush
    bool dataChanged = false;                  ///< points were written since they were worked out
    std::int64_t nextStatPoint = 0;            ///< the point that must come next to be gathered; 0 if none will do

    std::int64_t nextPoint = 1;  ///< sequential cursor
    std::int64_t lastPoint = 0;  ///< end of the sequential chunk, 0 for none

    /// Double channels have theirs in double, all others in float. The others stay at 0.
    template <class Value>
    VDTsChanStats<Value>& Stats()
    {
        if constexpr (std::is_same_v<Value, double>)
            return doubleStats;
        else
            return floatStats;
    }

    /// Takes what was worked out from the data. What was loaded in the other precision doesn't hold any more.
    template <class Value>
    void TakeStats(const std::array<Value, 5>& values, const std::array<std::int64_t, 3>& points)
    {
        floatStats.values = {};
        doubleStats.values = {};
        Stats<Value>().values = values;
        statPoints = points;
        statsGiven = false;
    }

    void SetNumPoints(std::int64_t points)
    {
        if (points == numPoints)
            return;
        numPoints = points < 0 ? 0 : points;
        MarkChanged();
    }

    /// Points were written, or their number changed.
    void MarkChanged()
    {
        dataChanged = true;
        statsValid = false;
        statsLoaded = true;
    }

    VDTsChanStats<float> floatStats;
    VDTsChanStats<double> doubleStats;
};
