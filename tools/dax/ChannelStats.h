#pragma once

#include "TimeSeriesTest.h"

#include <array>
#include <optional>
#include <string>

/// The statistics of one channel. Their values have the precision of the channel's, and their texts no more digits.
struct VDChannelStats
{
    /// Max, min, mean, standard deviation and rms.
    std::array<double, 5> values{};
    std::array<std::string, 5> texts;
    /// Points, from 1, of max, min and the largest absolute value.
    std::array<std::int64_t, 3> points{};
};

/// Digital channels have none.
bool VFHasStats(const VDChannel& channel);

/// What is known of a channel's statistics at present; nothing where they would have to be worked out. Throws on failure.
std::optional<VDChannelStats> VFGetStats(const VDTimeSeriesTest& test, const VDChannel& channel);

/// Works the channels' statistics out from their data, for this test object only: the file stays as it is. Throws on failure
/// and when a signal comes.
/// @param quiet  shows no progress
void VFCalculateStats(const VDTimeSeriesTest& test, const std::vector<VDChannel>& channels, bool quiet);
