#include "vdstore/LQTimeChannels.h"

#include "vdstore/LQAttributeNames.h"

// What a time series knows about its channels beside their data.

namespace {

/// Puts facts into a set of attributes, those that are there already only if they aren't to be kept.
class Attributes
{
public:
    Attributes(Z4PropertySet& set, bool keep) : set_(set), keep_(keep) {}

    void Put(const char* name, double value) const
    {
        if (MayPut(name))
            set_.PutDouble(name, value);
    }
    void Put(const char* name, std::int64_t value) const
    {
        if (MayPut(name))
            set_.PutHuge(name, value);
    }
    void Put(const char* name, const VDString& value) const
    {
        if (MayPut(name))
            set_.PutString(name, value);
    }
    void Remove(const char* name) const
    {
        if (!keep_)
            set_.RemoveProperty(name);
    }

private:
    bool MayPut(const char* name) const { return !keep_ || !set_.Exists(name, false); }

    Z4PropertySet& set_;
    bool keep_;
};

}  // namespace

bool LQTimeChannels::GetSampleRate(int channel, double* rate) const
{
    return GetFact(channel, &Channel::sampleRate, *rate);
}

bool LQTimeChannels::SetSampleRate(int channel, double rate)
{
    return SetFact(channel, &Channel::sampleRate, rate);
}

bool LQTimeChannels::GetBaseTime(int channel, double* time) const
{
    return GetFact(channel, &Channel::baseTime, *time);
}

bool LQTimeChannels::SetBaseTime(int channel, double time)
{
    return SetFact(channel, &Channel::baseTime, time);
}

bool LQTimeChannels::GetYTitle(int channel, VDString& title) const
{
    return GetFact(channel, &Channel::yTitle, title);
}

bool LQTimeChannels::SetYTitle(int channel, const char* title)
{
    return SetFact(channel, &Channel::yTitle, title);
}

bool LQTimeChannels::GetYUnits(int channel, VDString& units) const
{
    return GetFact(channel, &Channel::yUnits, units);
}

bool LQTimeChannels::SetYUnits(int channel, const char* units)
{
    return SetFact(channel, &Channel::yUnits, units);
}

bool LQTimeChannels::GetXTitle(VDString& title) const
{
    title = xTitle_;
    return true;
}

bool LQTimeChannels::SetXTitle(const char* title)
{
    xTitle_ = title;
    return true;
}

bool LQTimeChannels::GetXUnits(VDString& units) const
{
    units = xUnits_;
    return true;
}

bool LQTimeChannels::SetXUnits(const char* units)
{
    xUnits_ = units;
    return true;
}

bool LQTimeChannels::GetAllStats(int channel, float* max, float* min, float* mean, float* sdev, float* rms,
                                 std::int64_t* pointOfMax, std::int64_t* pointOfMin, std::int64_t* pointOfAbs) const
{
    return ReadStats(channel, {max, min, mean, sdev, rms}, {pointOfMax, pointOfMin, pointOfAbs});
}

bool LQTimeChannels::SetStats(int channel, float max, float min, float mean, float sdev, float rms, std::int64_t pointOfMax,
                              std::int64_t pointOfMin, std::int64_t pointOfAbs)
{
    const Stats stats = {{max, min, mean, sdev, rms}, {pointOfMax, pointOfMin, pointOfAbs}, true};
    return SetFact(channel, &Channel::stats, stats);
}

bool LQTimeChannels::GetStat(int channel, VTTsFloatStatType type, float* value) const
{
    const Channel* const found = GetChannel(channel);
    if (found == nullptr || !found->stats.isKnown || type < VTTsFloatStatMax || type > VTTsFloatStatRms)
        return false;
    *value = static_cast<float>(found->stats.values[type - VTTsFloatStatMax]);
    return true;
}

bool LQTimeChannels::SetStatsFlags(int channel, int flags)
{
    Channel* const found = GetChannel(channel);
    if (found != nullptr)
        found->stats.isKnown = flags != 0;
    return found != nullptr;
}

bool LQTimeChannels::GetStatsOfNumbers(int channel, bool* ofNumbers) const
{
    const Channel* const found = GetChannel(channel);
    if (found != nullptr)
        *ofNumbers = found->stats.isKnown && found->stats.isOfNumbers;
    return found != nullptr;
}

bool LQTimeChannels::SetStatsOfNumbers(int channel, bool ofNumbers)
{
    Channel* const found = GetChannel(channel);
    if (found != nullptr)
        found->stats.isOfNumbers = ofNumbers;
    return found != nullptr;
}

void LQTimeChannels::RefreshChannel(bool keep, int channel)
{
    Z4PropertySet* const set = GetMapper()->AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, channel);
    if (set == nullptr)
        return;
    const Attributes attributes(*set, keep);
    const Channel& facts = channels_[channel];
    attributes.Put(LQAttribute::SampleRate, facts.sampleRate);
    attributes.Put(LQAttribute::BaseTime, facts.baseTime);
    attributes.Put(LQAttribute::NumPoints, GetElementCount(channel));
    for (std::size_t i = 0; i < std::size(LQAttribute::Stats); ++i)
        facts.stats.isKnown ? attributes.Put(LQAttribute::Stats[i], facts.stats.values[i])
                            : attributes.Remove(LQAttribute::Stats[i]);
    for (std::size_t i = 0; i < std::size(LQAttribute::StatPoints); ++i) {
        const std::int64_t point = facts.stats.points[i];
        facts.stats.isKnown ? attributes.Put(LQAttribute::StatPoints[i], point)
                            : attributes.Remove(LQAttribute::StatPoints[i]);
        if (facts.stats.isKnown && facts.sampleRate > 0)
            attributes.Put(LQAttribute::StatTimes[i], (static_cast<double>(point) - 1) / facts.sampleRate + facts.baseTime);
        else
            attributes.Remove(LQAttribute::StatTimes[i]);
    }
    attributes.Put(LQAttribute::YTitle, facts.yTitle);
    attributes.Put(LQAttribute::YUnits, facts.yUnits);
}

bool LQTimeChannels::RefreshMetadata(bool keep, int channel)
{
    if (!LQObject::RefreshMetadata(keep, channel))
        return false;
    if (channel == ALL_CHANNELS) {
        const Attributes test(*GetMapper()->AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL),
                              keep);
        test.Put(LQAttribute::XTitle, xTitle_);
        test.Put(LQAttribute::XUnits, xUnits_);
    }
    for (int i = 0; i < GetChannelCount(); ++i)
        if (channel == ALL_CHANNELS || channel == i)
            RefreshChannel(keep, i);
    return true;
}
