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
STAND_API DaxTimeSeries::GetData StandTSGetData;
STAND_API DaxTimeSeries::PutData StandTSPutData;
STAND_API DaxTimeSeries::LoadMetaData StandTSLoadMetaData;
STAND_API DaxTimeSeries::AddLegacyMetaData StandTSAddLegacyMetaData;
STAND_API DaxTimeSeries::GetDataDoublePrecision StandTSGetDataDoublePrecision;
STAND_API DaxTimeSeries::PutDataDoublePrecision StandTSPutDataDoublePrecision;
STAND_API DaxTimeSeries::GetDataDigital32 StandTSGetDataDigital32;
STAND_API DaxTimeSeries::PutDataDigital32 StandTSPutDataDigital32;
STAND_API DaxTimeSeries::GetDataDigital64 StandTSGetDataDigital64;
STAND_API DaxTimeSeries::PutDataDigital64 StandTSPutDataDigital64;

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
    delete Self(instance);
    return 1;
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

int StandTSGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->Get("GetData", channel, first, count, values);
}

int StandTSPutData(void* instance, long channel, std::int64_t first, std::int64_t count, const float* values)
{
    return Self(instance)->Put("PutData", channel, first, count, values);
}

int StandTSLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

int StandTSAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddLegacyMetaData(mapper);
}

int StandTSGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Self(instance)->Get("GetDataDoublePrecision", channel, first, count, values);
}

int StandTSPutDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, const double* values)
{
    return Self(instance)->Put("PutDataDoublePrecision", channel, first, count, values);
}

int StandTSGetDataDigital32(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint32_t* values)
{
    return Self(instance)->Get("GetDataDigital32", channel, first, count, values);
}

int StandTSPutDataDigital32(void* instance, long channel, std::int64_t first, std::int64_t count,
                            const std::uint32_t* values)
{
    return Self(instance)->Put("PutDataDigital32", channel, first, count, values);
}

int StandTSGetDataDigital64(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint64_t* values)
{
    return Self(instance)->Get("GetDataDigital64", channel, first, count, values);
}

int StandTSPutDataDigital64(void* instance, long channel, std::int64_t first, std::int64_t count,
                            const std::uint64_t* values)
{
    return Self(instance)->Put("PutDataDigital64", channel, first, count, values);
}
