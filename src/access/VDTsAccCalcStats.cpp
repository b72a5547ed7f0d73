#include "VDTsAcc.h"

#include "StatsList.h"
#include "VDOperationProgress.h"
#include "frame/VDValueGuard.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VFMemory.h"

#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

using namespace DaxTimeSeries;

// Statistics as they are worked out: finished from what was gathered while writing, or read from the file, and put into the
// file with a flush.

namespace {

struct VDBufferDeleter
{
    void operator()(void* buffer) const { VFFree(buffer); }
};

template <class Value>
using VDStatsBuffer = std::unique_ptr<Value, VDBufferDeleter>;

/// Null when memory is short.
template <class Value>
VDStatsBuffer<Value> VFStatsBuffer(std::size_t points)
{
    if (points > std::numeric_limits<std::size_t>::max() / sizeof(Value))
        return {};
    return VDStatsBuffer<Value>(static_cast<Value*>(VFRealloc(nullptr, points * sizeof(Value))));
}

template <class Value>
void VFRestart(VDTimeFileChan& channel)
{
    channel.Stats<Value>().accumulator.Initialise();
    channel.nextStatPoint = 1;
}

/// What was gathered, if it is of all points.
template <class Value>
bool VFFinish(VDTimeFileChan& channel)
{
    std::int64_t count = 0;
    std::array<Value, 5> values;
    std::array<std::int64_t, 3> points;
    channel.Stats<Value>().accumulator.Finish(&count, &values[0], &values[1], &values[2], &values[3], &values[4], &points[0],
                                              &points[1], &points[2]);
    if (count != channel.numPoints)
        return false;
    channel.TakeStats(values, points);
    return true;
}

template <class Value>
VDVariant VFStatsList(VDTimeFileChan& channel)
{
    VDVariant list;
    VDStatsList<Value>{channel.Stats<Value>().values, channel.statPoints}.AppendTo(list);
    return list;
}

}  // namespace

bool VDTsAcc::SetStatsMonitor(char enable, char recalculate)
{
    constexpr const char* routine = "SetStatsMonitor";
    if (!core_.CheckFileOpen(routine) || !core_.CheckWritable(routine))
        return false;
    for (int index = 0; index < Count(); ++index) {
        VDTimeFileChan& channel = channels_[index];
        channel.recalculate = recalculate != 0;
        channel.monitor = !channel.recalculate && enable != 0;
        if (channel.recalculate)
            channel.statsToWrite = false;  // the next flush has something to do even if no data is written until then
        if (channel.monitor)
            WithStatsType(index, [&]<class Value>(Value) { VFRestart<Value>(channel); });
    }
    return true;
}

bool VDTsAcc::HasFormatFlag(int index, const char* name)
{
    VDVariant answer;
    bool flag = false;
    const VDErrorMute mute;
    return core_.GetFormatSpecificValue(index, name, &answer) && answer.GetBoolean(&flag) && flag;
}

template <class Value>
void VDTsAcc::GatherUpTo(int index, std::int64_t first)
{
    VDTimeFileChan& channel = channels_[index];
    if (first <= channel.numPoints)
        return;
    auto& [values, accumulator] = channel.Stats<Value>();
    const auto& [max, min, mean, sdev, rms] = values;
    // Nothing was written yet, and the file has the statistics of what is there.
    if (channel.nextStatPoint == 1 && channel.numPoints > 0 && channel.statsValid && !channel.statsGiven &&
        std::isfinite(mean) && std::isfinite(sdev) && HasFormatFlag(index, DaxFormatValue::StatisticsOfNumbers)) {
        accumulator.Restore(channel.numPoints, max, min, mean, sdev, channel.statPoints[0], channel.statPoints[1]);
        channel.nextStatPoint = channel.numPoints + 1;
    }
    if (channel.nextStatPoint == channel.numPoints + 1 && first > channel.nextStatPoint &&
        HasFormatFlag(index, DaxFormatValue::GapsAreZero)) {
        accumulator.ProcessZeros(first - channel.nextStatPoint);
        channel.nextStatPoint = first;
    }
}

template void VDTsAcc::GatherUpTo<float>(int, std::int64_t);
template void VDTsAcc::GatherUpTo<double>(int, std::int64_t);

bool VDTsAcc::FinishStats(int index)
{
    VDTimeFileChan& channel = channels_[index];
    if (!WithStatsType(index, [&]<class Value>(Value) { return VFFinish<Value>(channel); }))
        return core_.Report(index, DaxError::StatisticsFailure, "FinishStats");
    channel.dataChanged = false;
    channel.statsToWrite = true;
    channel.statsValid = true;
    channel.statsLoaded = true;
    return true;
}

bool VDTsAcc::CalcStats(int index)
{
    constexpr const char* routine = "CalcStats";
    if (!CheckOpenAndChannel(index, true, routine))
        return false;
    // Statistics are kept as those of the data in the file; who asks for them gets them with the offset.
    const VDValueGuard withoutOffset(takesRawValues_, true);
    std::vector<int> channels;
    double total = 0;
    for (int channel = IsAll(index) ? 0 : index; channel <= (IsAll(index) ? Count() - 1 : index); ++channel)
        if (channel == index || !IsDigital(channel)) {
            channels.push_back(channel);
            total += static_cast<double>(channels_[channel].numPoints);
        }

    VDOperationProgress progress(core_.GetProgressObject());
    const auto abort = [&] { return VFDaxReportError(DaxError::OperationAborted, core_.Routine(routine)) != 0; };
    if (!progress.Start(DaxText::CalculatingStatistics, total))
        return abort();
    long size = 0;
    if (!core_.GetBufferSize(&size))
        return false;
    for (const int channel : channels) {
        WithStatsType(channel, [&]<class Value>(Value) { VFRestart<Value>(channels_[channel]); });
        if (!PrepareSequential(channel, 1, 0))
            return false;
    }
    const std::tuple buffers(VFStatsBuffer<float>(static_cast<std::size_t>(size)),
                             VFStatsBuffer<double>(static_cast<std::size_t>(size)));
    if (!std::get<0>(buffers) || !std::get<1>(buffers))
        return VFDaxReportError(DaxError::OutOfMemory, core_.Routine(routine)) != 0;

    const auto readBuffer = [&](int channel, std::int64_t* numRead) {
        const bool done = WithStatsType(channel, [&]<class Value>(Value) {
            Value* const values = std::get<VDStatsBuffer<Value>>(buffers).get();
            if (!GetNext(channel, size, numRead, values))
                return false;
            channels_[channel].Stats<Value>().accumulator.Process(values, *numRead);
            channels_[channel].nextStatPoint += *numRead;
            return true;
        });
        return done && (progress.Advance(*numRead) || abort());
    };
    // Where channels lie interleaved, all of them go through the file together, a buffer each in turn.
    char oneAtATime = 0;
    if (!core_.GetCapability(OneChannelAtATime, &oneAtATime))
        return false;
    const std::size_t together = oneAtATime || !IsAll(index) ? 1 : channels.size();
    for (std::span<const int> rest(channels); !rest.empty(); rest = rest.subspan(together))
        for (bool found = true; found;) {
            found = false;
            for (const int channel : rest.first(together)) {
                std::int64_t numRead = 0;
                if (!readBuffer(channel, &numRead))
                    return false;
                found = found || numRead > 0;
            }
        }
    for (const int channel : channels)
        if (!FinishStats(channel))
            return false;
    return true;
}

/// Brings the statistics up to date and hands them to a plug-in that stores them.
bool VDTsAcc::FlushStats()
{
    char stored = 0;
    if (!core_.GetCapability(StoresStatistics, &stored))
        return false;
    if (!stored || core_.IsReadOnly())
        return true;
    for (int index = 0; index < Count(); ++index) {
        if (IsDigital(index))
            continue;
        VDTimeFileChan& channel = channels_[index];
        const bool upToDate = channel.statsValid && channel.statsToWrite && !channel.dataChanged;
        if (channel.monitor && channel.nextStatPoint - 1 == channel.numPoints) {
            if (!upToDate && !FinishStats(index))
                return false;
        } else if ((channel.monitor && channel.dataChanged) || (channel.recalculate && !upToDate)) {
            if (!CalcStatsForFlush(index))
                return false;
        }
        // Statistics of data that has changed since, and isn't watched any more, would be wrong ones.
        if (channel.statsToWrite && channel.statsValid && !PutStats(index))
            return false;
    }
    return true;
}

/// A host in the middle of a sequence goes on where it was. All points are gathered afterwards, so that what is written
/// behind them needs no reading the next time.
bool VDTsAcc::CalcStatsForFlush(int index)
{
    VDTimeFileChan& channel = channels_[index];
    const VDValueGuard nextPoint(channel.nextPoint, channel.nextPoint);
    const VDValueGuard lastPoint(channel.lastPoint, channel.lastPoint);
    if (!CalcStats(index))
        return false;
    channel.monitor = true;
    channel.recalculate = false;
    return true;
}

bool VDTsAcc::PutStats(int index)
{
    VDTimeFileChan& channel = channels_[index];
    if (!(IsDouble(index) ? core_.PutValue(index, StatisticsDouble, VFStatsList<double>(channel))
                          : core_.PutValue(index, Statistics, VFStatsList<float>(channel))))
        return false;
    if (!WithStatsType(index, [&]<class Value>(Value) { return channel.Stats<Value>().accumulator.IsOfNumbers(); })) {
        // A plug-in that doesn't know this won't say either that they can be gone on with.
        const VDErrorMute mute;
        VDVariant no(false);
        core_.SetFormatSpecificValue(index, DaxFormatValue::StatisticsOfNumbers, &no);
    }
    return true;
}
