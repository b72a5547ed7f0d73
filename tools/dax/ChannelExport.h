#pragma once

#include "TextSink.h"
#include "TimeSeriesTest.h"
#include "Values.h"

/// Which points of each channel are asked for.
struct VDPointRange
{
    std::int64_t first = 1;
    std::int64_t count = -1;  ///< -1: up to the end

    /// The last point asked for that the channel has; below `first` if there is none.
    std::int64_t Last(const VDChannel& channel) const;
};

/// Channels that have the same sample rate and base time, so that one time column serves all of them.
using VDChannelGroup = std::vector<VDChannel>;

std::vector<VDChannelGroup> VFGroupByTime(const std::vector<VDChannel>& channels);

/// Writes a group as CSV: a header line, then a row for each point with its time and the value of each channel; a cell is
/// empty where a channel has ended. Values have the fewest digits that read back the same. Memory stays constant.
/// @return the rows written
std::int64_t VFWriteCsv(const VDTimeSeriesTest& test, const VDChannelGroup& channels, const VDPointRange& range,
                        VDTextSink& out);

/// Writes channels as a JSON object, channel behind channel, in constant memory:
/// {"path": ..., "channels": [{"index", "number", ..., "first", "values": [...]}, ...]. The object is left open for keys
/// that follow, also when a failure on the way is thrown on. NaN and the infinities are texts.
void VFWriteJson(const VDTimeSeriesTest& test, const std::vector<VDChannel>& channels, const VDPointRange& range,
                 VDTextSink& out);
