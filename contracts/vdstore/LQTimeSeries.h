#pragma once

#include "vdstore/LQTimeChannels.h"

/// A time series whose channels have a data type each: float, double, digital 32 or digital 64. All channels share one
/// numbering in the order in which they were made.
class VDSTORE_API LQTimeSeries : public LQTimeChannels
{
public:
    ~LQTimeSeries() override;

    /// @name Channels of one type
    /// Leave the object with so many of them. New ones come behind all channels that there are; too many go from the end.
    /// @param valuesPerPoint  1
    /// @{
    bool AdjustChannelCountSinglePrecision(int count);
    bool AdjustChannelCountDoublePrecision(int count);
    bool AdjustChannelCountDigital32(int count, int valuesPerPoint);
    bool AdjustChannelCountDigital64(int count, int valuesPerPoint);
    /// @}

    /// The index by which the data calls of a type know the channel of a mapper's index: the same one, as all types share
    /// one numbering; negative if there is no such channel. Whether it has that type is for the data call to say.
    /// @{
    int MapperToDouble(int channel) const { return Known(channel); }
    int MapperToDigital32(int channel) const { return Known(channel); }
    int MapperToDigital64(int channel) const { return Known(channel); }
    /// @}

    /// @name Data; as `GetData` and `SetData`
    /// @{
    bool GetDataDoublePrecision(std::int64_t first, std::int64_t count, std::int64_t* numRead, double* values, int channel);
    bool SetDataDoublePrecision(std::int64_t first, std::int64_t count, const double* values, int channel);
    bool GetDataDigital32(std::int64_t first, std::int64_t count, std::int64_t* numRead, std::uint32_t* values, int channel);
    bool SetDataDigital32(std::int64_t first, std::int64_t count, const std::uint32_t* values, int channel);
    bool GetDataDigital64(std::int64_t first, std::int64_t count, std::int64_t* numRead, std::uint64_t* values, int channel);
    bool SetDataDigital64(std::int64_t first, std::int64_t count, const std::uint64_t* values, int channel);
    /// @}

    /// @name Statistics; as `GetAllStats` and `SetStats`
    /// @{
    bool GetAllStatsDoublePrecision(int channel, double* max, double* min, double* mean, double* sdev, double* rms,
                                    std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const;
    bool SetStatsDoublePrecision(int channel, double max, double min, double mean, double sdev, double rms,
                                 std::int64_t pointOfMax, std::int64_t pointOfMin, std::int64_t pointOfAbs);
    /// @}

private:
    friend class LQDataManager;
    LQTimeSeries();

    int Known(int channel) const { return channel >= 0 && channel < GetChannelCount() ? channel : -1; }
};
