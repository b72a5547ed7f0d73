#include "StandTimeSeries.h"

#include "daxlib/MetaDataPlugin.h"

// The metadata plug-in: the time-series one under the numbers of its own family. Any other number is refused.

STAND_API DaxMetaData::Create StandMetaCreate;
STAND_API DaxMetaData::Release StandMetaRelease;
STAND_API DaxMetaData::SetId StandMetaSetId;
STAND_API DaxMetaData::Open StandMetaOpen;
STAND_API DaxMetaData::Close StandMetaClose;
STAND_API DaxMetaData::GetLastError StandMetaGetLastError;
STAND_API DaxMetaData::Flush StandMetaFlush;
STAND_API DaxMetaData::GetCapability StandMetaGetCapability;
STAND_API DaxMetaData::GetValue StandMetaGetValue;
STAND_API DaxMetaData::PutValue StandMetaPutValue;
STAND_API DaxMetaData::LoadMetaData StandMetaLoadMetaData;
STAND_API DaxMetaData::AddLegacyMetaData StandMetaAddLegacyMetaData;

namespace {

/// Made last: its failure is the one that is asked for.
StandTimeSeries* VVLast = nullptr;

StandTimeSeries* Self(void* instance)
{
    return static_cast<StandTimeSeries*>(instance);
}

int KeyOf(int key)
{
    static const std::map<int, int> keys = {{DaxMetaData::AccessObject, DaxTimeSeries::AccessObject},
                                            {DaxMetaData::FormatSpecific, DaxTimeSeries::FormatSpecific},
                                            {DaxMetaData::ChanTitle, DaxTimeSeries::ChanTitle},
                                            {DaxMetaData::ActualChanNumber, DaxTimeSeries::ActualChanNumber},
                                            {DaxMetaData::MetaDataMapper, DaxTimeSeries::MetaDataMapper}};
    return keys.contains(key) ? keys.at(key) : -1;
}

int CapabilityOf(int capability)
{
    static const std::map<int, int> capabilities = {{DaxMetaData::KeepsMetaData, DaxTimeSeries::KeepsMetaData},
                                                    {DaxMetaData::ChannelTitles, DaxTimeSeries::ChannelTitles},
                                                    {DaxMetaData::NoSerialisation, DaxTimeSeries::NoSerialisation}};
    return capabilities.contains(capability) ? capabilities.at(capability) : -1;
}

}  // namespace

void* StandMetaCreate(const char*)
{
    return VVLast = new StandTimeSeries(false);
}

int StandMetaRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int StandMetaSetId(void* instance, VDFileId* id, char create)
{
    return Self(instance)->SetId(id, create);
}

int StandMetaOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int StandMetaClose(void* instance)
{
    return Self(instance)->Close();
}

void StandMetaGetLastError(VDString& text)
{
    text = VVLast->GetLastError();
}

int StandMetaFlush(void* instance)
{
    return Self(instance)->Flush();
}

int StandMetaGetCapability(void* instance, int capability, char* answer)
{
    return CapabilityOf(capability) >= 0 && Self(instance)->GetCapability(CapabilityOf(capability), answer);
}

int StandMetaGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return KeyOf(key) >= 0 && Self(instance)->GetValue(channel, KeyOf(key), value);
}

int StandMetaPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return KeyOf(key) >= 0 && Self(instance)->PutValue(channel, KeyOf(key), *value);
}

int StandMetaLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

int StandMetaAddLegacyMetaData(void* instance, LQChannelMapper*)
{
    return Self(instance)->AddLegacyMetaData();
}
