#include "VDTsAcc.h"

#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQAttributeNames.h"

using namespace DaxTimeSeries;

// The attributes that describe the test and its channels in the metadata, for formats that don't put them there themselves.

namespace {

void VFSetText(Z4PropertySet& set, const char* name, const char* text)
{
    set.AddString(name, text);
    set.SetString(name, text);
}

}  // namespace

bool VDTsAcc::AddHeaderAttributes(LQChannelMapper& mapper)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL);
    if (set == nullptr)
        return false;
    VDString text;
    if (GetFileText(XTitle, &text, "GetXTitle"))
        VFSetText(*set, LQAttribute::XTitle, text);
    if (GetFileText(XUnits, &text, "GetXUnits"))
        VFSetText(*set, LQAttribute::XUnits, text);
    for (int index = 0; index < Count(); ++index)
        if (!AddChannelAttributes(mapper, index))
            return false;
    return true;
}

bool VDTsAcc::AddChannelAttributes(LQChannelMapper& mapper, int index)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, index);
    if (set == nullptr)
        return false;
    LoadStats(index);
    VDTimeFileChan& channel = channels_[index];
    set->AddDouble(LQAttribute::SampleRate, channel.sampleRate);
    set->AddDouble(LQAttribute::BaseTime, channel.baseTime);
    set->AddHuge(LQAttribute::NumPoints, channel.numPoints);
    if (channel.statsValid) {
        WithStatsType(index, [&]<class Value>(Value) {
            const auto& values = channel.Stats<Value>().values;
            for (std::size_t at = 0; at < values.size(); ++at)
                set->AddDouble(LQAttribute::Stats[at], static_cast<double>(values[at]));
        });
        for (std::size_t at = 0; at < channel.statPoints.size(); ++at)
            set->AddHuge(LQAttribute::StatPoints[at], channel.statPoints[at]);
        for (std::size_t at = 0; at < channel.statPoints.size(); ++at) {
            double time = 0;
            if (PointToTime(index, channel.statPoints[at], &time))
                set->AddDouble(LQAttribute::StatTimes[at], time);
        }
    }
    VDString text;
    if (GetYTitle(index, &text))
        VFSetText(*set, LQAttribute::YTitle, text);
    if (GetYUnits(index, &text))
        VFSetText(*set, LQAttribute::YUnits, text);
    if (core_.GetChanTitle(index, &text))
        VFSetText(*set, LQAttribute::ChanTitle, text);
    return true;
}
