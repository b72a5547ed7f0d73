#include "WavReport.h"
#include "WavTimeSeries.h"

/// The time-series entry points: each forwards to the instance.

#define WAV_API extern "C" __attribute__((visibility("default")))

WAV_API DaxTimeSeries::Create WavTSCreate;
WAV_API DaxTimeSeries::Release WavTSRelease;
WAV_API DaxTimeSeries::SetId WavTSSetId;
WAV_API DaxTimeSeries::Open WavTSOpen;
WAV_API DaxTimeSeries::Close WavTSClose;
WAV_API DaxTimeSeries::GetLastError WavTSGetLastError;
WAV_API DaxTimeSeries::Flush WavTSFlush;
WAV_API DaxTimeSeries::GetCapability WavTSGetCapability;
WAV_API DaxTimeSeries::GetValue WavTSGetValue;
WAV_API DaxTimeSeries::PutValue WavTSPutValue;
WAV_API DaxTimeSeries::GetData WavTSGetData;
WAV_API DaxTimeSeries::PutData WavTSPutData;
WAV_API DaxTimeSeries::LoadMetaData WavTSLoadMetaData;
WAV_API DaxTimeSeries::AddLegacyMetaData WavTSAddLegacyMetaData;
WAV_API DaxTimeSeries::GetDataDoublePrecision WavTSGetDataDoublePrecision;
WAV_API DaxTimeSeries::PutDataDoublePrecision WavTSPutDataDoublePrecision;
WAV_API DaxTimeSeries::GetDataDigital32 WavTSGetDataDigital32;
WAV_API DaxTimeSeries::PutDataDigital32 WavTSPutDataDigital32;
WAV_API DaxTimeSeries::GetDataDigital64 WavTSGetDataDigital64;
WAV_API DaxTimeSeries::PutDataDigital64 WavTSPutDataDigital64;

namespace {

WavTimeSeries* Self(void* instance)
{
    return static_cast<WavTimeSeries*>(instance);
}

}  // namespace

void* WavTSCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(WavFormat::AccessClass) == 0)
        return new WavTimeSeries;
    WavReport(WavError::ClassNotRecognised, "WavTSCreate", {}, {});
    return nullptr;
}

int WavTSRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int WavTSSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int WavTSOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int WavTSClose(void* instance)
{
    return Self(instance)->Close();
}

void WavTSGetLastError(void*, VDString& text)
{
    text = "VARDO";
}

int WavTSFlush(void* instance)
{
    return Self(instance)->Flush();
}

int WavTSGetCapability(void* instance, int capability, char* answer)
{
    *answer = Self(instance)->GetCapability(capability);
    return 1;
}

int WavTSGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, *value);
}

int WavTSPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, key, *value);
}

int WavTSGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

int WavTSPutData(void* instance, long channel, std::int64_t first, std::int64_t count, const float* values)
{
    return Self(instance)->PutData(channel, first, count, values);
}

int WavTSGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

int WavTSPutDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, const double* values)
{
    return Self(instance)->PutData(channel, first, count, values);
}

// Values without a scale have no place in a WAV file.
int WavTSGetDataDigital32(void* instance, long, std::int64_t, std::int64_t, std::uint32_t*)
{
    return Self(instance)->Fail(WavError::NoStatus, "WavTS::GetDataDigital32");
}

int WavTSPutDataDigital32(void* instance, long, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return Self(instance)->Fail(WavError::NoStatus, "WavTS::PutDataDigital32");
}

int WavTSGetDataDigital64(void* instance, long, std::int64_t, std::int64_t, std::uint64_t*)
{
    return Self(instance)->Fail(WavError::NoStatus, "WavTS::GetDataDigital64");
}

int WavTSPutDataDigital64(void* instance, long, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return Self(instance)->Fail(WavError::NoStatus, "WavTS::PutDataDigital64");
}

// The format keeps no metadata, which the library therefore keeps beside the file; it never asks for those inside. What the
// file says about itself is added to them.
int WavTSLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    *mapper = nullptr;
    return Self(instance)->Fail(WavError::MetaData, "WavTS::LoadMetaData");
}

int WavTSAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddMetaData(*mapper);
}
