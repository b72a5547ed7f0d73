#include "CsvMultiColumn.h"
#include "CsvReport.h"

#include <algorithm>

/// The multi-column entry points: each forwards to the instance.

#define CSV_API extern "C" __attribute__((visibility("default")))

CSV_API DaxMultiColumn::Create CsvXYCreate;
CSV_API DaxMultiColumn::Release CsvXYRelease;
CSV_API DaxMultiColumn::SetId CsvXYSetId;
CSV_API DaxMultiColumn::Open CsvXYOpen;
CSV_API DaxMultiColumn::Close CsvXYClose;
CSV_API DaxMultiColumn::GetLastError CsvXYGetLastError;
CSV_API DaxMultiColumn::Flush CsvXYFlush;
CSV_API DaxMultiColumn::GetCapability CsvXYGetCapability;
CSV_API DaxMultiColumn::GetValue CsvXYGetValue;
CSV_API DaxMultiColumn::PutValue CsvXYPutValue;
CSV_API DaxMultiColumn::GetDataF CsvXYGetDataF;
CSV_API DaxMultiColumn::PutDataF CsvXYPutDataF;
CSV_API DaxMultiColumn::GetDataElement CsvXYGetDataElement;
CSV_API DaxMultiColumn::PutDataElement CsvXYPutDataElement;
CSV_API DaxMultiColumn::AppendCol CsvXYAppendCol;
CSV_API DaxMultiColumn::AppendColWithStatus CsvXYAppendColWithStatus;
CSV_API DaxMultiColumn::AppendDataSet CsvXYAppendDataSet;
CSV_API DaxMultiColumn::SetProgressObject CsvXYSetProgressObject;
CSV_API DaxMultiColumn::GetStatusWordBitData CsvXYGetStatusWordBitData;
CSV_API DaxMultiColumn::GetStatusWordData CsvXYGetStatusWordData;
CSV_API DaxMultiColumn::PutStatusWordData CsvXYPutStatusWordData;
CSV_API DaxMultiColumn::GetDataValidData CsvXYGetDataValidData;
CSV_API DaxMultiColumn::GetData CsvXYGetData;
CSV_API DaxMultiColumn::PutData CsvXYPutData;
CSV_API DaxMultiColumn::LoadMetaData CsvXYLoadMetaData;
CSV_API DaxMultiColumn::AddLegacyMetaData CsvXYAddLegacyMetaData;

namespace {

CsvMultiColumn* Self(void* instance)
{
    return static_cast<CsvMultiColumn*>(instance);
}

}  // namespace

void* CsvXYCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(CsvFormat::Find(CsvFormat::FileId, CsvFormat::Table)->accessClass) == 0)
        return new CsvMultiColumn;
    PluginReport(CsvError::ClassNotRecognised, "CsvXYCreate", {}, {});
    return nullptr;
}

int CsvXYRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int CsvXYSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int CsvXYOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int CsvXYClose(void* instance)
{
    return Self(instance)->Close();
}

void CsvXYGetLastError(VDString& text)
{
    text = "VARDO";
}

int CsvXYFlush(void* instance)
{
    return Self(instance)->Flush();
}

int CsvXYGetCapability(void* instance, int capability, char* answer)
{
    *answer = Self(instance)->GetCapability(capability);
    return 1;
}

int CsvXYGetValue(void* instance, long, long dataSet, long column, int key, VDVariant*, VDVariant* value)
{
    return Self(instance)->GetValue(dataSet, column, key, *value);
}

int CsvXYPutValue(void* instance, long, long dataSet, long column, int key, VDVariant* value)
{
    return Self(instance)->PutValue(dataSet, column, key, *value);
}

int CsvXYGetDataF(void* instance, long, long, long column, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->GetFloats(column, first, count, values);
}

int CsvXYPutDataF(void* instance, long, long, long column, std::int64_t first, std::int64_t count, const float* values)
{
    return Self(instance)->PutFloats(column, first, count, values);
}

int CsvXYGetDataElement(void* instance, long, long, long column, std::int64_t row, VDVariant* value)
{
    return Self(instance)->GetElement(column, row, *value);
}

int CsvXYPutDataElement(void* instance, long, long, long column, std::int64_t row, VDVariant* value)
{
    return Self(instance)->PutElement(column, row, *value);
}

int CsvXYAppendCol(void* instance, long, int type)
{
    return Self(instance)->AppendColumn(type, false, "CsvXY::AppendCol");
}

int CsvXYAppendColWithStatus(void* instance, long, int type)
{
    return Self(instance)->AppendColumn(type, true, "CsvXY::AppendColWithStatus");
}

int CsvXYAppendDataSet(void* instance, long)
{
    return Self(instance)->AppendDataSet();
}

// Nothing here takes long enough to tell of.
int CsvXYSetProgressObject(void*, void*)
{
    return 1;
}

// The one bit that there is, says whether the value is valid and has no number among those with texts.
int CsvXYGetStatusWordBitData(void* instance, long, long, long column, int, std::int64_t first, std::int64_t count,
                              char* flags)
{
    const int known = Self(instance)->GetValid(column, first, count, flags);
    std::fill_n(flags, count, char(0));
    return known;
}

int CsvXYGetStatusWordData(void* instance, long, long, long column, std::int64_t first, std::int64_t count,
                           std::uint16_t* words)
{
    return Self(instance)->GetWords(column, first, count, words);
}

int CsvXYPutStatusWordData(void* instance, long, long, long column, std::int64_t first, std::int64_t count,
                           const std::uint16_t* words)
{
    return Self(instance)->PutWords(column, first, count, words);
}

int CsvXYGetDataValidData(void* instance, long, long, long column, std::int64_t first, std::int64_t count, char* valid)
{
    return Self(instance)->GetValid(column, first, count, valid);
}

int CsvXYGetData(void* instance, long, long, long column, std::int64_t first, std::int64_t count, VDVariant* values)
{
    return Self(instance)->GetData(column, first, count, *values);
}

int CsvXYPutData(void* instance, long, long, long column, std::int64_t first, VDVariant* values)
{
    return Self(instance)->PutData(column, first, *values);
}

// The library keeps the metadata beside the file; what stands in front of the table is added to them.
int CsvXYLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    *mapper = nullptr;
    return Self(instance)->Fail(CsvError::Read, "CsvXY::LoadMetaData");
}

int CsvXYAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return Self(instance)->AddMetaData(*mapper);
}
