#include "CsvReport.h"
#include "CsvTimeSeries.h"

/// The time-series entry points: each forwards to the instance, or refuses what a table over time has no room for.

#define CSV_API extern "C" __attribute__((visibility("default")))

CSV_API DaxTimeSeries::Create CsvTSCreate;
CSV_API DaxTimeSeries::Release CsvTSRelease;
CSV_API DaxTimeSeries::SetId CsvTSSetId;
CSV_API DaxTimeSeries::Open CsvTSOpen;
CSV_API DaxTimeSeries::Close CsvTSClose;
CSV_API DaxTimeSeries::GetLastError CsvTSGetLastError;
CSV_API DaxTimeSeries::Flush CsvTSFlush;
CSV_API DaxTimeSeries::GetCapability CsvTSGetCapability;
CSV_API DaxTimeSeries::GetValue CsvTSGetValue;
CSV_API DaxTimeSeries::PutValue CsvTSPutValue;
CSV_API DaxTimeSeries::GetData CsvTSGetData;
CSV_API DaxTimeSeries::PutData CsvTSPutData;
CSV_API DaxTimeSeries::LoadMetaData CsvTSLoadMetaData;
CSV_API DaxTimeSeries::AddLegacyMetaData CsvTSAddLegacyMetaData;
CSV_API DaxTimeSeries::GetDataDoublePrecision CsvTSGetDataDoublePrecision;
CSV_API DaxTimeSeries::PutDataDoublePrecision CsvTSPutDataDoublePrecision;
CSV_API DaxTimeSeries::GetDataDigital32 CsvTSGetDataDigital32;
CSV_API DaxTimeSeries::PutDataDigital32 CsvTSPutDataDigital32;
CSV_API DaxTimeSeries::GetDataDigital64 CsvTSGetDataDigital64;
CSV_API DaxTimeSeries::PutDataDigital64 CsvTSPutDataDigital64;

namespace {

CsvTimeSeries* Self(void* instance)
{
    return static_cast<CsvTimeSeries*>(instance);
}

}  // namespace

void* CsvTSCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(CsvFormat::Find(CsvFormat::FileId, CsvFormat::TimeSeries)->accessClass) == 0)
        return new CsvTimeSeries;
    PluginReport(CsvError::ClassNotRecognised, "CsvTSCreate", {}, {});
    return nullptr;
}

int CsvTSRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int CsvTSSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int CsvTSOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int CsvTSClose(void* instance)
{
    return Self(instance)->Close();
}

void CsvTSGetLastError(void*, VDString& text)
{
    text = "VARDO";
}

int CsvTSFlush(void*)
{
    return 1;
}

int CsvTSGetCapability(void* instance, int capability, char* answer)
{
    *answer = Self(instance)->GetCapability(capability);
    return 1;
}

int CsvTSGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, *value);
}

int CsvTSPutValue(void* instance, long, int key, VDVariant* value)
{
    return Self(instance)->PutValue(key, *value);
}

int CsvTSGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

int CsvTSGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Self(instance)->GetData(channel, first, count, values);
}

// The library asks for none of these of a format that isn't writable and has no digital channels.
int CsvTSPutData(void* instance, long, std::int64_t, std::int64_t, const float*)
{
    return Self(instance)->Fail(CsvError::NotWritable, "CsvTS::PutData");
}

int CsvTSPutDataDoublePrecision(void* instance, long, std::int64_t, std::int64_t, const double*)
{
    return Self(instance)->Fail(CsvError::NotWritable, "CsvTS::PutDataDoublePrecision");
}

int CsvTSGetDataDigital32(void* instance, long, std::int64_t, std::int64_t, std::uint32_t*)
{
    return Self(instance)->Fail(CsvError::DigitalData, "CsvTS::GetDataDigital32");
}

int CsvTSPutDataDigital32(void* instance, long, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return Self(instance)->Fail(CsvError::NotWritable, "CsvTS::PutDataDigital32");
}

int CsvTSGetDataDigital64(void* instance, long, std::int64_t, std::int64_t, std::uint64_t*)
{
    return Self(instance)->Fail(CsvError::DigitalData, "CsvTS::GetDataDigital64");
}

int CsvTSPutDataDigital64(void* instance, long, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return Self(instance)->Fail(CsvError::NotWritable, "CsvTS::PutDataDigital64");
}

// The library keeps the metadata beside the file; what stands in front of the table is added to them.
int CsvTSLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    *mapper = nullptr;
    return Self(instance)->Fail(CsvError::Read, "CsvTS::LoadMetaData");
}

int CsvTSAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddMetaData(*mapper);
}
