#include "UffSpectra.h"

/// The complex frequency entry points: each forwards to the instance.

#define UFF_API extern "C" __attribute__((visibility("default")))

UFF_API DaxComplexFrequency::Create UffCFCreate;
UFF_API DaxComplexFrequency::Release UffCFRelease;
UFF_API DaxComplexFrequency::SetId UffCFSetId;
UFF_API DaxComplexFrequency::Open UffCFOpen;
UFF_API DaxComplexFrequency::Close UffCFClose;
UFF_API DaxComplexFrequency::GetLastError UffCFGetLastError;
UFF_API DaxComplexFrequency::Flush UffCFFlush;
UFF_API DaxComplexFrequency::GetCapability UffCFGetCapability;
UFF_API DaxComplexFrequency::GetValue UffCFGetValue;
UFF_API DaxComplexFrequency::PutValue UffCFPutValue;
UFF_API DaxComplexFrequency::GetData UffCFGetData;
UFF_API DaxComplexFrequency::PutData UffCFPutData;
UFF_API DaxComplexFrequency::GetLineAxisData UffCFGetLineAxisData;
UFF_API DaxComplexFrequency::PutLineAxisData UffCFPutLineAxisData;
UFF_API DaxComplexFrequency::GetSpectrumAxisData UffCFGetSpectrumAxisData;
UFF_API DaxComplexFrequency::PutSpectrumAxisData UffCFPutSpectrumAxisData;
UFF_API DaxComplexFrequency::SetProgressObject UffCFSetProgressObject;
UFF_API DaxComplexFrequency::LoadMetaData UffCFLoadMetaData;
UFF_API DaxComplexFrequency::AddLegacyMetaData UffCFAddLegacyMetaData;

namespace {

UffSpectra* Self(void* instance)
{
    return static_cast<UffSpectra*>(instance);
}

}  // namespace

void* UffCFCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(UffFormat::SpectraClass) == 0)
        return new UffSpectra;
    PluginReport(UffError::ClassNotRecognised, "UffCFCreate", {}, {});
    return nullptr;
}

int UffCFRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int UffCFSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int UffCFOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int UffCFClose(void* instance)
{
    return Self(instance)->Close();
}

int UffCFFlush(void* instance)
{
    return Self(instance)->Flush();
}

int UffCFGetCapability(void* instance, int capability, char* answer)
{
    *answer = Self(instance)->GetCapability(capability);
    return 1;
}

// The format keeps no metadata but its header fields, which are added to those that the library keeps beside the file.
int UffCFLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    *mapper = nullptr;
    return Self(instance)->Fail(UffError::NotImplemented, "UffCF::LoadMetaData");
}

int UffCFAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddMetaData(*mapper);
}

void UffCFGetLastError(VDString& text)
{
    text = "VARDO";
}

int UffCFGetValue(void* instance, long channel, std::int64_t, std::int64_t, int key, VDVariant*, VDVariant* value)
{
    return Self(instance)->GetValue(channel, key, *value);
}

int UffCFPutValue(void* instance, long channel, std::int64_t, std::int64_t, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, key, *value);
}

int UffCFGetData(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                 void* values)
{
    return Self(instance)->GetData(channel, spectrum, first, count, kind, values);
}

int UffCFPutData(void* instance, long channel, std::int64_t spectrum, std::int64_t first, std::int64_t count, int kind,
                 const void* values)
{
    return Self(instance)->PutData(channel, spectrum, first, count, kind, values);
}

int UffCFGetLineAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, void* values)
{
    return Self(instance)->GetLines(first, count, kind, values);
}

int UffCFPutLineAxisData(void* instance, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    return Self(instance)->PutLines(first, count, kind, values);
}

int UffCFGetSpectrumAxisData(void* instance, std::int64_t, std::int64_t, int kind, void* values)
{
    return Self(instance)->GetPlace(kind, values);
}

int UffCFPutSpectrumAxisData(void* instance, std::int64_t, std::int64_t, int kind, const void* values)
{
    return Self(instance)->PutPlace(kind, values);
}

int UffCFSetProgressObject(void*, VDProgressObject*)
{
    return 1;
}
