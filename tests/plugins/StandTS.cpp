#include "StandTimeSeries.h"

STAND_API DaxTimeSeries::Create StandTSCreate;
STAND_API DaxTimeSeries::Release StandTSRelease;
STAND_API DaxTimeSeries::SetId StandTSSetId;
STAND_API DaxTimeSeries::Open StandTSOpen;
STAND_API DaxTimeSeries::Close StandTSClose;
STAND_API DaxTimeSeries::GetLastError StandTSGetLastError;
STAND_API DaxTimeSeries::Flush StandTSFlush;
STAND_API DaxTimeSeries::GetCapability StandTSGetCapability;
STAND_API DaxTimeSeries::GetValue StandTSGetValue;
STAND_API DaxTimeSeries::PutValue StandTSPutValue;
STAND_API DaxTimeSeries::LoadMetaData StandTSLoadMetaData;
STAND_API DaxTimeSeries::AddLegacyMetaData StandTSAddLegacyMetaData;

namespace {

StandTimeSeries* Self(void* instance)
{
    return static_cast<StandTimeSeries*>(instance);
}

}  // namespace

void* StandTSCreate(const char* classId)
{
    const std::string_view id(classId);
    return id == StandIn::NoCreateClassId ? nullptr : new StandTimeSeries(id == StandIn::SerialClassId);
}

int StandTSRelease(void* instance)
{
    static std::vector<std::unique_ptr<StandTimeSeries>> notReleased;
    std::unique_ptr<StandTimeSeries> owner(Self(instance));
    if (owner->Release())
        return 1;
    notReleased.push_back(std::move(owner));
    return 0;
}

int StandTSSetId(void* instance, VDFileId* id, char create)
{
    return Self(instance)->SetId(id, create);
}

int StandTSOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int StandTSClose(void* instance)
{
    return Self(instance)->Close();
}

void StandTSGetLastError(void* instance, VDString& text)
{
    text = instance == nullptr ? VDString("No instance") : Self(instance)->GetLastError();
}

int StandTSFlush(void* instance)
{
    return Self(instance)->Flush();
}

int StandTSGetCapability(void* instance, int capability, char* answer)
{
    return Self(instance)->GetCapability(capability, answer);
}

int StandTSGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, value);
}

int StandTSPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, key, *value);
}

int StandTSLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

int StandTSAddLegacyMetaData(void* instance, LQChannelMapper*)
{
    return Self(instance)->AddLegacyMetaData();
}

/// The entry points of one data type, whose names end in the suffix.
#define STAND_DATA(Suffix, Value)                                                                                           \
    STAND_API DaxTimeSeries::GetData##Suffix StandTSGetData##Suffix;                                                        \
    STAND_API DaxTimeSeries::PutData##Suffix StandTSPutData##Suffix;                                                        \
    int StandTSGetData##Suffix(void* instance, long channel, std::int64_t first, std::int64_t count, Value* values)         \
    {                                                                                                                       \
        return Self(instance)->Get("GetData" #Suffix, channel, first, count, values);                                       \
    }                                                                                                                       \
    int StandTSPutData##Suffix(void* instance, long channel, std::int64_t first, std::int64_t count, const Value* values)   \
    {                                                                                                                       \
        return Self(instance)->Put("PutData" #Suffix, channel, first, count, values);                                       \
    }

STAND_DATA(, float)
STAND_DATA(DoublePrecision, double)
STAND_DATA(Digital32, std::uint32_t)
STAND_DATA(Digital64, std::uint64_t)
