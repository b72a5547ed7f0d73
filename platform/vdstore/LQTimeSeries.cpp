#include "vdstore/LQTimeSeries.h"

#include "vdstore/LQFlexTimeSeries.h"
#include "vdstore/VDStoreErrorCodes.h"

LQFlexTimeSeries::LQFlexTimeSeries() = default;
LQFlexTimeSeries::~LQFlexTimeSeries() = default;

LQTimeSeries::LQTimeSeries() = default;
LQTimeSeries::~LQTimeSeries() = default;

bool LQTimeSeries::AdjustChannelCountSinglePrecision(int count)
{
    return AdjustTypedCount(count, Z4TypeFloat);
}

bool LQTimeSeries::AdjustChannelCountDoublePrecision(int count)
{
    return AdjustTypedCount(count, Z4TypeDouble);
}

bool LQTimeSeries::AdjustChannelCountDigital32(int count, int valuesPerPoint)
{
    return valuesPerPoint == 1 ? AdjustTypedCount(count, LQTypeDigital32)
                               : Report(VDStoreError::OutOfRange, "A digital channel has one value for each point");
}

bool LQTimeSeries::AdjustChannelCountDigital64(int count, int valuesPerPoint)
{
    return valuesPerPoint == 1 ? AdjustTypedCount(count, LQTypeDigital64)
                               : Report(VDStoreError::OutOfRange, "A digital channel has one value for each point");
}

bool LQTimeSeries::GetDataDoublePrecision(std::int64_t first, std::int64_t count, std::int64_t* numRead, double* values,
                                          int channel)
{
    return ReadPoints(Z4TypeDouble, first, count, numRead, values, channel);
}

bool LQTimeSeries::SetDataDoublePrecision(std::int64_t first, std::int64_t count, const double* values, int channel)
{
    return WritePoints(Z4TypeDouble, first, count, values, channel);
}

bool LQTimeSeries::GetDataDigital32(std::int64_t first, std::int64_t count, std::int64_t* numRead, std::uint32_t* values,
                                    int channel)
{
    return ReadPoints(LQTypeDigital32, first, count, numRead, values, channel);
}

bool LQTimeSeries::SetDataDigital32(std::int64_t first, std::int64_t count, const std::uint32_t* values, int channel)
{
    return WritePoints(LQTypeDigital32, first, count, values, channel);
}

bool LQTimeSeries::GetDataDigital64(std::int64_t first, std::int64_t count, std::int64_t* numRead, std::uint64_t* values,
                                    int channel)
{
    return ReadPoints(LQTypeDigital64, first, count, numRead, values, channel);
}

bool LQTimeSeries::SetDataDigital64(std::int64_t first, std::int64_t count, const std::uint64_t* values, int channel)
{
    return WritePoints(LQTypeDigital64, first, count, values, channel);
}

bool LQTimeSeries::GetAllStatsDoublePrecision(int channel, double* max, double* min, double* mean, double* sdev, double* rms,
                                              std::int64_t* pointOfMax, std::int64_t* pointOfMin,
                                              std::int64_t* pointOfAbs) const
{
    return ReadStats(channel, {max, min, mean, sdev, rms}, {pointOfMax, pointOfMin, pointOfAbs});
}

bool LQTimeSeries::SetStatsDoublePrecision(int channel, double max, double min, double mean, double sdev, double rms,
                                           std::int64_t pointOfMax, std::int64_t pointOfMin, std::int64_t pointOfAbs)
{
    const Stats stats = {{max, min, mean, sdev, rms}, {pointOfMax, pointOfMin, pointOfAbs}, true};
    return SetFact(channel, &Channel::stats, stats);
}
