#include "VDTsAcc.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace DaxTimeSeries;

namespace {

/// Truncates; what lies outside the range of points becomes its end.
std::int64_t VFToPoint(double value)
{
    constexpr double limit = 9223372036854775807.0;  // 2^63, the nearest double
    if (std::isnan(value))
        return 0;
    if (value >= limit)
        return std::numeric_limits<std::int64_t>::max();
    if (value <= -limit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

}  // namespace

bool VDTsAcc::SetChannelCount(int count)
{
    channels_.Clear();
    channels_.SetSize(count);
    return true;
}

bool VDTsAcc::FinishOpen(bool created)
{
    if (created ? !SetSampleRate(static_cast<int>(DaxChannel::All), 1.0) : !LoadHeader())
        return false;
    // What can't be written has nothing to gather.
    const VDErrorMute mute;
    SetStatsMonitor(1, 0);
    return true;
}

bool VDTsAcc::LoadHeader()
{
    for (int index = 0; index < Count(); ++index) {
        VDTimeFileChan& channel = channels_[index];
        if (!core_.GetDouble(index, SampleRate, &channel.sampleRate) ||
            !core_.GetDouble(index, BaseTime, &channel.baseTime) || !core_.GetHuge(index, NumPoints, &channel.numPoints))
            return false;
        channel.numPoints = std::max<std::int64_t>(channel.numPoints, 0);
        // Statistics that can't be read are no reason to keep anybody from the data; they can be worked out.
        if (!core_.IsReadOnly()) {
            const VDErrorMute mute;
            LoadStats(index);
        }
    }
    return true;
}

bool VDTsAcc::CheckOpenAndChannel(int index, bool allowAll, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.CheckChannel(index, allowAll, routine);
}

int VDTsAcc::DataType(int index) const
{
    int type = DaxDataType::Float;
    FIDGetChanType(core_.GetFileId(), index, &type);
    return DaxDataType::FromId(type);
}

bool VDTsAcc::IsDigital(int index) const
{
    const int type = DataType(index);
    return type == DaxDataType::Digital32 || type == DaxDataType::Digital64;
}

bool VDTsAcc::GetNumPoints(int index, std::int64_t* points, const char* routine)
{
    *points = 0;
    if (!CheckOpenAndChannel(index, false, routine))
        return false;
    *points = channels_[index].numPoints;
    return true;
}

bool VDTsAcc::GetSampleRate(int index, double* rate)
{
    *rate = 1.0;
    if (!CheckOpenAndChannel(index, false, "GetSampleRate"))
        return false;
    *rate = channels_[index].sampleRate;
    return true;
}

bool VDTsAcc::GetBaseTime(int index, double* time)
{
    if (!CheckOpenAndChannel(index, false, "GetBaseTime"))
        return false;
    *time = channels_[index].baseTime;
    return true;
}

template <class Keep>
bool VDTsAcc::SetHeaderValue(int index, int key, const VDVariant& value, Keep&& keep)
{
    char common = 0;
    if (!core_.GetCapability(CommonHeader, &common))
        return false;
    const int first = IsAll(index) ? 0 : index;
    const int last = IsAll(index) ? Count() - 1 : index;
    for (int channel = first; channel <= last; ++channel)
        if (!core_.PutValue(channel, key, value))
            return false;
    for (int channel = common ? 0 : first; channel <= (common ? Count() - 1 : last); ++channel)
        keep(channels_[channel], std::clamp(channel, first, last));
    return true;
}

bool VDTsAcc::SetSampleRate(int index, double rate)
{
    constexpr const char* routine = "SetSampleRate";
    if (!core_.CheckFileOpen(routine) || !core_.CheckWritable(routine) || !core_.CheckChannel(index, true, routine))
        return false;
    if (!(rate > 0))
        return core_.Report(index, DaxError::InvalidSampleRate, routine);
    return SetHeaderValue(index, SampleRate, VDVariant(rate),
                          [rate](VDTimeFileChan& channel, int) { channel.sampleRate = rate; });
}

bool VDTsAcc::SetBaseTime(int index, double time)
{
    constexpr const char* routine = "SetBaseTime";
    if (!core_.CheckFileOpen(routine) || !core_.CheckWritable(routine) || !core_.CheckChannel(index, true, routine))
        return false;
    return SetHeaderValue(index, BaseTime, VDVariant(time), [time](VDTimeFileChan& channel, int) { channel.baseTime = time; });
}

bool VDTsAcc::SetNumPoints(int index, std::int64_t points)
{
    constexpr const char* routine = "SetNumPoints";
    if (!core_.CheckFileOpen(routine) || !core_.CheckWritable(routine) || !core_.CheckChannel(index, true, routine))
        return false;
    char extendable = 0;
    if (!core_.GetCapability(Extendable, &extendable))
        return false;
    if (!extendable) {
        const std::int64_t present = channels_[IsAll(index) ? 0 : index].numPoints;
        if (present != 0 && present != points)
            return core_.Report(index, DaxError::CannotExtend, routine);
    }
    // The format may hold more or fewer all the same. Where it says so, that counts.
    int asked = DaxChannel::WholeFile;
    std::int64_t kept = points;
    return SetHeaderValue(index, NumPoints, VDVariant::FromHuge(points), [&](VDTimeFileChan& channel, int put) {
        const VDErrorMute mute;
        if (put != asked && !core_.GetHuge(put, NumPoints, &kept))
            kept = points;
        asked = put;
        channel.SetNumPoints(kept);
    });
}

bool VDTsAcc::Grow(int index, std::int64_t points)
{
    return SetHeaderValue(index, NumPoints, VDVariant::FromHuge(points),
                          [points](VDTimeFileChan& channel, int) { channel.SetNumPoints(points); });
}

bool VDTsAcc::GetFileText(int key, VDString* text, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.GetString(DaxChannel::WholeFile, key, text);
}

bool VDTsAcc::SetFileText(int key, const char* text, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.CheckWritable(routine) &&
           core_.PutValue(DaxChannel::WholeFile, key, VDVariant(text));
}

bool VDTsAcc::GetMaxLength(int key, long* length, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.GetLong(DaxChannel::WholeFile, key, length);
}

bool VDTsAcc::GetYTitle(int index, VDString* title)
{
    return CheckOpenAndChannel(index, false, "GetYTitle") && core_.GetString(index, YTitle, title);
}

bool VDTsAcc::GetYUnits(int index, VDString* units)
{
    return core_.CheckFileOpen("GetYUnits") && core_.GetString(index, YUnits, units);
}

bool VDTsAcc::SetChanText(int index, int key, const char* text, const char* routine)
{
    return core_.CheckFileOpen(routine) && core_.CheckWritable(routine) &&
           core_.CheckChannel(index, false, routine) && core_.PutValue(index, key, VDVariant(text));
}

bool VDTsAcc::PointToTime(int index, std::int64_t point, double* time)
{
    if (!CheckOpenAndChannel(index, false, "PointToTime"))
        return false;
    const VDTimeFileChan& channel = channels_[index];
    *time = (static_cast<double>(point) - 1.0) / channel.sampleRate + channel.baseTime;
    return true;
}

bool VDTsAcc::TimeToPoint(int index, double time, std::int64_t* point)
{
    if (!CheckOpenAndChannel(index, false, "TimeToPoint"))
        return false;
    const VDTimeFileChan& channel = channels_[index];
    *point = VFToPoint((time - channel.baseTime) * channel.sampleRate + 1.5);
    return true;
}

bool VDTsAcc::PrepareSequential(int index, std::int64_t first, std::int64_t last)
{
    if (!CheckOpenAndChannel(index, true, "PrepareSequential"))
        return false;
    const int end = IsAll(index) ? Count() - 1 : index;
    for (int channel = IsAll(index) ? 0 : index; channel <= end; ++channel) {
        channels_[channel].nextPoint = std::max<std::int64_t>(first, 1);
        channels_[channel].lastPoint = std::max<std::int64_t>(last, 0);
    }
    return true;
}
