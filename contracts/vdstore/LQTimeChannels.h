#pragma once

#include "vdstore/LQObject.h"

/// Data types of points beside those of `Z4PropertyType`.
enum LQDataType : std::int32_t {
    LQTypeDigital32 = static_cast<std::int32_t>(0xa04f1079),
    LQTypeDigital64 = static_cast<std::int32_t>(0xa04f107a),
};

/// Statistics of a channel that can be asked for one by one.
enum VTTsFloatStatType : int {
    VTTsFloatStatMax = 1,
    VTTsFloatStatMin = 2,
    VTTsFloatStatMean = 3,
    VTTsFloatStatSDev = 4,
    VTTsFloatStatRms = 5,
};

/// What the two kinds of time series share: channels of equally spaced points with what is known about each, and the data of
/// float channels. Points count from 0. Data go straight between the caller's buffer and the file.
class VDSTORE_API LQTimeChannels : public LQObject
{
public:
    ~LQTimeChannels() override;

    int GetChannelCount() const override { return channels_.GetSize(); }
    /// With float channels.
    bool AdjustChannelCount(int count) override;
    bool RemoveChannel(int channel) override;
    std::int64_t GetElementCount(int channel) const override;
    bool AdjustElementCount(std::int64_t count, int channel) override;
    std::int32_t GetChannelDataType(int channel) const override;
    bool RefreshMetadata(bool keep, int channel) override;

    using LQObject::GetChanTitle;
    using LQObject::SetChanTitle;
    bool GetChanTitle(int channel, VDString& title) const { return LQObject::GetChanTitle(title, channel); }
    bool SetChanTitle(int channel, const char* title) { return LQObject::SetChanTitle(title, channel); }

    /// @name Data
    /// @param count    points that there is room or data for
    /// @param numRead  points read: fewer only at the end of the channel. May be null.
    /// A write lengthens the channel if need be; points left out on the way are 0. What was known of the statistics is not
    /// any more. Floats and doubles are read from either kind of channel, and a double channel takes floats; all else must
    /// be of the channel's type, so that nothing is lost unseen.
    /// @return false, recorded, if the channel has another data type or the file fails
    /// @{
    bool GetData(std::int64_t first, std::int64_t count, std::int64_t* numRead, float* values, int channel);
    bool SetData(std::int64_t first, std::int64_t count, const float* values, int channel);
    /// @}

    /// @name Facts of a channel
    /// Rate in points per second, base time in seconds.
    /// @{
    bool GetSampleRate(int channel, double* rate) const;
    bool SetSampleRate(int channel, double rate);
    bool GetBaseTime(int channel, double* time) const;
    bool SetBaseTime(int channel, double time);
    bool GetYTitle(int channel, VDString& title) const;
    bool SetYTitle(int channel, const char* title);
    bool GetYUnits(int channel, VDString& units) const;
    bool SetYUnits(int channel, const char* units);
    /// @}

    /// @name Facts of all channels
    /// @{
    bool GetXTitle(VDString& title) const;
    bool SetXTitle(const char* title);
    bool GetXUnits(VDString& units) const;
    bool SetXUnits(const char* units);
    /// @}

    /// @name Statistics
    /// Stored as they are given. There is one set of them for each channel, whatever the precision; points count from 1. The
    /// getters give false, with no report, while there are none.
    /// @{
    bool GetAllStats(int channel, float* max, float* min, float* mean, float* sdev, float* rms, std::int64_t* pointOfMax,
                     std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const;
    bool SetStats(int channel, float max, float min, float mean, float sdev, float rms, std::int64_t pointOfMax,
                  std::int64_t pointOfMin, std::int64_t pointOfAbs);
    bool GetStat(int channel, VTTsFloatStatType type, float* value) const;
    /// @param flags  0 takes the statistics for unknown, 1 for known as they were last given
    bool SetStatsFlags(int channel, int flags);
    /// Whether all points that the statistics are of are numbers, so that a writer can go on with them. It is true of
    /// statistics that are set, until it is denied.
    bool GetStatsOfNumbers(int channel, bool* ofNumbers) const;
    bool SetStatsOfNumbers(int channel, bool ofNumbers);
    /// @}

protected:
    struct Stats
    {
        double values[5] = {};  ///< in the order of `VTTsFloatStatType`
        std::int64_t points[3] = {};
        bool isKnown = false;
        bool isOfNumbers = true;
    };
    struct Channel
    {
        std::int32_t type = Z4TypeFloat;
        double sampleRate = 1;
        double baseTime = 0;
        VDString yTitle;
        VDString yUnits;
        Stats stats;
        Z4Stream* stream = nullptr;  ///< the node's of the same index
    };

    LQTimeChannels();

    /// Null, recorded, if there is no such channel.
    const Channel* GetChannel(int channel) const;
    Channel* GetChannel(int channel);
    /// Leaves the object with so many channels of a type; new ones come behind all there are, the last ones go.
    bool AdjustTypedCount(int count, std::int32_t type);
    template <class T>
    bool GetFact(int channel, T Channel::*fact, T& value) const
    {
        const Channel* const found = GetChannel(channel);
        if (found != nullptr)
            value = found->*fact;
        return found != nullptr;
    }
    template <class T, class Value>
    bool SetFact(int channel, T Channel::*fact, const Value& value)
    {
        Channel* const found = GetChannel(channel);
        if (found != nullptr)
            found->*fact = value;
        return found != nullptr;
    }
    template <class T>
    bool ReadStats(int channel, T* const (&values)[5], std::int64_t* const (&points)[3]) const
    {
        const Channel* const found = GetChannel(channel);
        if (found == nullptr || !found->stats.isKnown)
            return false;
        for (int i = 0; i < 5; ++i)
            *values[i] = static_cast<T>(found->stats.values[i]);
        for (int i = 0; i < 3; ++i)
            *points[i] = found->stats.points[i];
        return true;
    }
    template <class T>
    bool ReadPoints(std::int32_t type, std::int64_t first, std::int64_t count, std::int64_t* numRead, T* values,
                    int channel);
    template <class T>
    bool WritePoints(std::int32_t type, std::int64_t first, std::int64_t count, const T* values, int channel);

private:
    friend class LQDataManager;

    template <class T>
    bool ReadConverted(std::int64_t first, std::int64_t count, std::int64_t* numRead, T* values, int channel);
    bool WriteAsDoubles(std::int64_t first, std::int64_t count, const float* values, int channel);

    void WriteContent(Z4ByteWriter& writer) const override;
    bool ReadContent(Z4ByteReader& reader) override;
    bool CheckRange(std::int64_t first, std::int64_t count) const;
    int CountChannels(std::int32_t type) const;
    void RefreshChannel(bool keep, int channel);

    Z4SlotList<Channel> channels_;
    VDString xTitle_;
    VDString xUnits_;
    int recordSize_;
};
