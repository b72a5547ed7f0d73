#include "VDTsAcc.h"

#include "vdarchive/Z4PropertySet.h"

using namespace DaxTimeSeries;

// The attributes that describe the test and its channels in the metadata, for formats that don't put them there themselves.

namespace {

constexpr const char* VVStatNames[] = {"Max", "Min", "Mean", "SDev", "RMS"};
constexpr const char* VVPointNames[] = {"PMax", "PMin", "PAbs"};
constexpr const char* VVTimeNames[] = {"TimeMax", "TimeMin", "TimeAbs"};

void VFSetText(Z4PropertySet& set, const char* name, const char* text)
{
    set.AddString(name, text);
    set.SetString(name, text);
}

}  // namespace

bool VDTsAcc::AddHeaderMetaData(LQChannelMapper& mapper)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, LQChannelMapper::GLOBAL);
    if (set == nullptr)
        return false;
    VDString text;
    if (GetFileText(XTitle, &text, "GetXTitle"))
        VFSetText(*set, "XTitle", text);
    if (GetFileText(XUnits, &text, "GetXUnits"))
        VFSetText(*set, "XUnits", text);
    for (int index = 0; index < Count(); ++index)
        if (!AddChannelMetaData(mapper, index))
            return false;
    return true;
}

bool VDTsAcc::AddChannelMetaData(LQChannelMapper& mapper, int index)
{
    Z4PropertySet* const set = mapper.AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, index);
    if (set == nullptr)
        return false;
    LoadStats(index);
    VDTimeFileChan& channel = channels_[index];
    set->AddDouble("SampleRate", channel.sampleRate);
    set->AddDouble("BaseTime", channel.baseTime);
    set->AddHuge("NumPoints", channel.numPoints);
    if (channel.statsValid) {
        WithStatsType(index, [&]<class Value>(Value) {
            const auto& values = channel.Stats<Value>().values;
            for (std::size_t at = 0; at < values.size(); ++at)
                set->AddDouble(VVStatNames[at], static_cast<double>(values[at]));
        });
        for (std::size_t at = 0; at < channel.statPoints.size(); ++at)
            set->AddHuge(VVPointNames[at], channel.statPoints[at]);
        for (std::size_t at = 0; at < channel.statPoints.size(); ++at) {
            double time = 0;
            if (PointToTime(index, channel.statPoints[at], &time))
                set->AddDouble(VVTimeNames[at], time);
        }
    }
    VDString text;
    if (GetYTitle(index, &text))
        VFSetText(*set, "YTitle", text);
    if (GetYUnits(index, &text))
        VFSetText(*set, "YUnits", text);
    if (GetChanTitle(index, &text))
        VFSetText(*set, "ChanTitle", text);
    return true;
}
