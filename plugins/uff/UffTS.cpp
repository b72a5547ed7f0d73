#include "UffTimeSeries.h"

/// The time-series entry points: each forwards to the instance.

#define UFF_API extern "C" __attribute__((visibility("default")))

UFF_API DaxTimeSeries::Create UffTSCreate;
UFF_API DaxTimeSeries::Release UffTSRelease;
UFF_API DaxTimeSeries::SetId UffTSSetId;
UFF_API DaxTimeSeries::Open UffTSOpen;
UFF_API DaxTimeSeries::Close UffTSClose;
UFF_API DaxTimeSeries::GetLastError UffTSGetLastError;
UFF_API DaxTimeSeries::Flush UffTSFlush;
UFF_API DaxTimeSeries::GetCapability UffTSGetCapability;
UFF_API DaxTimeSeries::GetValue UffTSGetValue;
UFF_API DaxTimeSeries::PutValue UffTSPutValue;
UFF_API DaxTimeSeries::GetData UffTSGetData;
UFF_API DaxTimeSeries::PutData UffTSPutData;
UFF_API DaxTimeSeries::LoadMetaData UffTSLoadMetaData;
UFF_API DaxTimeSeries::AddLegacyMetaData UffTSAddLegacyMetaData;
UFF_API DaxTimeSeries::GetDataDoublePrecision UffTSGetDataDoublePrecision;
UFF_API DaxTimeSeries::PutDataDoublePrecision UffTSPutDataDoublePrecision;
UFF_API DaxTimeSeries::GetDataDigital32 UffTSGetDataDigital32;
UFF_API DaxTimeSeries::PutDataDigital32 UffTSPutDataDigital32;
UFF_API DaxTimeSeries::GetDataDigital64 UffTSGetDataDigital64;
UFF_API DaxTimeSeries::PutDataDigital64 UffTSPutDataDigital64;

namespace {

UffTimeSeries* Self(void* instance)
{
    return static_cast<UffTimeSeries*>(instance);
}

}  // namespace

void* UffTSCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(UffFormat::TimeSeriesClass) == 0)
        return new UffTimeSeries;
    PluginReport(UffError::ClassNotRecognised, "UffTSCreate", {}, {});
    return nullptr;
}

int UffTSRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int UffTSSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int UffTSOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int UffTSClose(void* instance)
{
    return Self(instance)->Close();
}

int UffTSFlush(void* instance)
{
    return Self(instance)->Flush();
}

int UffTSGetCapability(void* instance, int capability, char* answer)
{
    *answer = Self(instance)->GetCapability(capability);
    return 1;
}

// The format keeps no metadata but its header fields, which are added to those that the library keeps beside the file.
int UffTSLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    *mapper = nullptr;
    return Self(instance)->Fail(UffError::NotImplemented, "UffTS::LoadMetaData");
}

int UffTSAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddMetaData(*mapper);
}

void UffTSGetLastError(void*, VDString& text)
{
    text = "VARDO";
}

int UffTSGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, *value);
}

int UffTSPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, key, *value);
}

int UffTSGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

int UffTSPutData(void* instance, long channel, std::int64_t first, std::int64_t count, const float* values)
{
    return Self(instance)->PutData(channel, first, count, values);
}

int UffTSGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

int UffTSPutDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, const double* values)
{
    return Self(instance)->PutData(channel, first, count, values);
}

// Values without a scale have no place in a universal file.
int UffTSGetDataDigital32(void* instance, long, std::int64_t, std::int64_t, std::uint32_t*)
{
    return Self(instance)->Fail(UffError::NotImplemented, "UffTS::GetDataDigital32");
}

int UffTSPutDataDigital32(void* instance, long, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return Self(instance)->Fail(UffError::NotImplemented, "UffTS::PutDataDigital32");
}

int UffTSGetDataDigital64(void* instance, long, std::int64_t, std::int64_t, std::uint64_t*)
{
    return Self(instance)->Fail(UffError::NotImplemented, "UffTS::GetDataDigital64");
}

int UffTSPutDataDigital64(void* instance, long, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return Self(instance)->Fail(UffError::NotImplemented, "UffTS::PutDataDigital64");
}
