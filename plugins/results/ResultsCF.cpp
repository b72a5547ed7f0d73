#include "ResultsCFSpectra.h"
#include "ResultsError.h"

/// The complex frequency entry points: each forwards to the instance.

#define RESULTS_API extern "C" __attribute__((visibility("default")))

RESULTS_API DaxComplexFrequency::Create ResultsCFCreate;
RESULTS_API DaxComplexFrequency::Release ResultsCFRelease;
RESULTS_API DaxComplexFrequency::SetId ResultsCFSetId;
RESULTS_API DaxComplexFrequency::Open ResultsCFOpen;
RESULTS_API DaxComplexFrequency::Close ResultsCFClose;
RESULTS_API DaxComplexFrequency::GetLastError ResultsCFGetLastError;
RESULTS_API DaxComplexFrequency::Flush ResultsCFFlush;
RESULTS_API DaxComplexFrequency::GetCapability ResultsCFGetCapability;
RESULTS_API DaxComplexFrequency::GetValue ResultsCFGetValue;
RESULTS_API DaxComplexFrequency::PutValue ResultsCFPutValue;
RESULTS_API DaxComplexFrequency::GetData ResultsCFGetData;
RESULTS_API DaxComplexFrequency::PutData ResultsCFPutData;
RESULTS_API DaxComplexFrequency::GetLineAxisData ResultsCFGetLineAxisData;
RESULTS_API DaxComplexFrequency::PutLineAxisData ResultsCFPutLineAxisData;
RESULTS_API DaxComplexFrequency::GetSpectrumAxisData ResultsCFGetSpectrumAxisData;
RESULTS_API DaxComplexFrequency::PutSpectrumAxisData ResultsCFPutSpectrumAxisData;
RESULTS_API DaxComplexFrequency::SetProgressObject ResultsCFSetProgressObject;
RESULTS_API DaxComplexFrequency::LoadMetaData ResultsCFLoadMetaData;
RESULTS_API DaxComplexFrequency::AddLegacyMetaData ResultsCFAddLegacyMetaData;

namespace {

ResultsCFSpectra* Self(void* instance)
{
    return static_cast<ResultsCFSpectra*>(instance);
}

}  // namespace

void* ResultsCFCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(ResultsFormat::SpectraClass) == 0)
        return new ResultsCFSpectra;
    PluginReport(ResultsError::ClassNotRecognised, "ResultsCFCreate", {}, {});
    return nullptr;
}

int ResultsCFRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int ResultsCFSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int ResultsCFOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int ResultsCFClose(void* instance)
{
    return Self(instance)->Close();
}

int ResultsCFFlush(void* instance)
{
    return Self(instance)->Flush();
}

int ResultsCFGetCapability(void*, int capability, char* answer)
{
    *answer = ResultsCFSpectra::HasCapability(capability);
    return 1;
}

int ResultsCFLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

int ResultsCFAddLegacyMetaData(void*, LQChannelMapper*)
{
    return 1;
}

void ResultsCFGetLastError(VDString& text)
{
    text = "VARDO";
}

int ResultsCFGetValue(void* instance, long channel, std::int64_t, std::int64_t, int key, VDVariant*, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, *value);
}

int ResultsCFPutValue(void* instance, long channel, std::int64_t, std::int64_t, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, key, *value);
}

int ResultsCFGetData(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                 void* values)
{
    return Self(instance)->GetData(channel, spectrum, first, count, kind, values);
}

int ResultsCFPutData(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                 const void* values)
{
    return Self(instance)->PutData(channel, spectrum, first, count, kind, values);
}

int ResultsCFGetLineAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, void* values)
{
    return Self(instance)->GetAxis(LQSpectraLines, first, count, kind, values);
}

int ResultsCFPutLineAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    return Self(instance)->PutAxis(LQSpectraLines, first, count, kind, values);
}

int ResultsCFGetSpectrumAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, void* values)
{
    return Self(instance)->GetAxis(LQSpectraSpectra, first, count, kind, values);
}

int ResultsCFPutSpectrumAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    return Self(instance)->PutAxis(LQSpectraSpectra, first, count, kind, values);
}

int ResultsCFSetProgressObject(void*, VDProgressObject*)
{
    return 1;
}
