#include "ResultsError.h"
#include "ResultsXYTable.h"

/// The multi-column entry points: each forwards to the instance.

#define RESULTS_API extern "C" __attribute__((visibility("default")))

RESULTS_API DaxMultiColumn::Create ResultsXYCreate;
RESULTS_API DaxMultiColumn::Release ResultsXYRelease;
RESULTS_API DaxMultiColumn::SetId ResultsXYSetId;
RESULTS_API DaxMultiColumn::Open ResultsXYOpen;
RESULTS_API DaxMultiColumn::Close ResultsXYClose;
RESULTS_API DaxMultiColumn::GetLastError ResultsXYGetLastError;
RESULTS_API DaxMultiColumn::Flush ResultsXYFlush;
RESULTS_API DaxMultiColumn::GetCapability ResultsXYGetCapability;
RESULTS_API DaxMultiColumn::GetValue ResultsXYGetValue;
RESULTS_API DaxMultiColumn::PutValue ResultsXYPutValue;
RESULTS_API DaxMultiColumn::GetDataF ResultsXYGetDataF;
RESULTS_API DaxMultiColumn::PutDataF ResultsXYPutDataF;
RESULTS_API DaxMultiColumn::GetDataElement ResultsXYGetDataElement;
RESULTS_API DaxMultiColumn::PutDataElement ResultsXYPutDataElement;
RESULTS_API DaxMultiColumn::AppendCol ResultsXYAppendCol;
RESULTS_API DaxMultiColumn::AppendColWithStatus ResultsXYAppendColWithStatus;
RESULTS_API DaxMultiColumn::AppendDataSet ResultsXYAppendDataSet;
RESULTS_API DaxMultiColumn::SetProgressObject ResultsXYSetProgressObject;
RESULTS_API DaxMultiColumn::GetStatusWordBitData ResultsXYGetStatusWordBitData;
RESULTS_API DaxMultiColumn::GetStatusWordData ResultsXYGetStatusWordData;
RESULTS_API DaxMultiColumn::PutStatusWordData ResultsXYPutStatusWordData;
RESULTS_API DaxMultiColumn::GetDataValidData ResultsXYGetDataValidData;
RESULTS_API DaxMultiColumn::GetData ResultsXYGetData;
RESULTS_API DaxMultiColumn::PutData ResultsXYPutData;
RESULTS_API DaxMultiColumn::LoadMetaData ResultsXYLoadMetaData;
RESULTS_API DaxMultiColumn::AddLegacyMetaData ResultsXYAddLegacyMetaData;

namespace {

ResultsXYTable* Self(void* instance)
{
    return static_cast<ResultsXYTable*>(instance);
}

}  // namespace

void* ResultsXYCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(ResultsFormat::TableClass) == 0)
        return new ResultsXYTable;
    PluginReport(ResultsError::ClassNotRecognised, "ResultsXYCreate", {}, {});
    return nullptr;
}

int ResultsXYRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int ResultsXYSetId(void* instance, VDFileId* id, char)
{
    return Self(instance)->SetId(id);
}

int ResultsXYOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int ResultsXYClose(void* instance)
{
    return Self(instance)->Close();
}

void ResultsXYGetLastError(VDString& text)
{
    text = "VARDO";
}

int ResultsXYFlush(void* instance)
{
    return Self(instance)->Flush();
}

int ResultsXYGetCapability(void*, int capability, char* answer)
{
    *answer = ResultsXYTable::HasCapability(capability);
    return 1;
}

int ResultsXYGetValue(void* instance, long channel, long dataSet, long column, int key, VDVariant* input, VDVariant* value)
{
    return Self(instance)->GetValue(channel, dataSet, column, key, *input, *value);
}

int ResultsXYPutValue(void* instance, long channel, long dataSet, long column, int key, VDVariant* value)
{
    return Self(instance)->PutValue(channel, dataSet, column, key, *value);
}

int ResultsXYGetDataF(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                      float* values)
{
    return Self(instance)->GetDataF(channel, dataSet, column, first, count, values);
}

int ResultsXYPutDataF(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                      const float* values)
{
    return Self(instance)->PutDataF(channel, dataSet, column, first, count, values);
}

int ResultsXYGetDataElement(void* instance, long channel, long dataSet, long column, std::int64_t row, VDVariant* value)
{
    return Self(instance)->GetDataElement(channel, dataSet, column, row, *value);
}

int ResultsXYPutDataElement(void* instance, long channel, long dataSet, long column, std::int64_t row, VDVariant* value)
{
    return Self(instance)->PutDataElement(channel, dataSet, column, row, *value);
}

int ResultsXYAppendCol(void* instance, long channel, int type)
{
    return Self(instance)->AppendCol(channel, type, false);
}

int ResultsXYAppendColWithStatus(void* instance, long channel, int type)
{
    return Self(instance)->AppendCol(channel, type, true);
}

int ResultsXYAppendDataSet(void* instance, long channel)
{
    return Self(instance)->AppendDataSet(channel);
}

// Nothing here takes long.
int ResultsXYSetProgressObject(void*, void*)
{
    return 1;
}

int ResultsXYGetStatusWordBitData(void* instance, long channel, long dataSet, long column, int bit, std::int64_t first,
                                  std::int64_t count, char* flags)
{
    const unsigned mask = bit >= 0 && bit < 16 ? 1U << bit : 0;
    return Self(instance)->GetStatusFlags(channel, dataSet, column, first, count, mask, true, flags);
}

int ResultsXYGetStatusWordData(void* instance, long channel, long dataSet, long column, std::int64_t first,
                               std::int64_t count, std::uint16_t* words)
{
    return Self(instance)->GetStatus(channel, dataSet, column, first, count, words);
}

int ResultsXYPutStatusWordData(void* instance, long channel, long dataSet, long column, std::int64_t first,
                               std::int64_t count, const std::uint16_t* words)
{
    return Self(instance)->PutStatus(channel, dataSet, column, first, count, words);
}

int ResultsXYGetDataValidData(void* instance, long channel, long dataSet, long column, std::int64_t first,
                              std::int64_t count, char* valid)
{
    return Self(instance)->GetStatusFlags(channel, dataSet, column, first, count, DaxStatusWord::Invalid, false, valid);
}

int ResultsXYGetData(void* instance, long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                     VDVariant* values)
{
    return Self(instance)->GetData(channel, dataSet, column, first, count, *values);
}

int ResultsXYPutData(void* instance, long channel, long dataSet, long column, std::int64_t first, VDVariant* values)
{
    return Self(instance)->PutData(channel, dataSet, column, first, *values);
}

int ResultsXYLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

int ResultsXYAddLegacyMetaData(void*, LQChannelMapper*)
{
    return 1;
}
