// The pairs of Famos recordings as a multi-column access plug-in, under the prefix "FamosXY".

#include "daxlib/FamosXY.h"

#include "FamosFormat.h"
#include "VDFamosPairs.h"
#include "frame/VFDaxReport.h"

namespace {

VDFamosPairs* Self(void* instance)
{
    return static_cast<VDFamosPairs*>(instance);
}

int RefuseToWrite()
{
    return VFDaxReportError(DaxError::FamosWrite, "VDFamosPairs::PutData");
}

int HasNoStatus()
{
    return VFDaxReportError(DaxError::FamosNoStatus, "VDFamosPairs::GetStatusWordData");
}

}  // namespace

void* FamosXYCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(FamosFormat::PairsClass) == 0)
        return new VDFamosPairs;
    VFDaxReportError(DaxError::ClassNotRecognised, __func__);
    return nullptr;
}

int FamosXYRelease(void* instance)
{
    delete Self(instance);
    return 1;
}

int FamosXYSetId(void* instance, VDFileId* id, char create)
{
    return Self(instance)->SetId(id, create);
}

int FamosXYOpen(void* instance, int mode)
{
    return Self(instance)->Open(mode);
}

int FamosXYClose(void* instance)
{
    return Self(instance)->Close();
}

void FamosXYGetLastError(VDString& text)
{
    text = "VARDO";
}

int FamosXYFlush(void*)
{
    return 1;
}

int FamosXYGetCapability(void*, int capability, char* answer)
{
    *answer = VDFamosPairs::GetCapability(capability);
    return 1;
}

int FamosXYGetValue(void* instance, long channel, long, long column, int key, VDVariant*, VDVariant* value)
{
    return Self(instance)->GetValue(channel, column, key, value);
}

int FamosXYPutValue(void*, long, long, long, int key, VDVariant*)
{
    return key == DaxMultiColumn::AccessObject ? 1 : RefuseToWrite();
}

int FamosXYGetDataF(void* instance, long channel, long, long column, std::int64_t first, std::int64_t count, float* values)
{
    return Self(instance)->GetData(channel, column, first, count, values);
}

int FamosXYPutDataF(void*, long, long, long, std::int64_t, std::int64_t, const float*)
{
    return RefuseToWrite();
}

int FamosXYGetDataElement(void* instance, long channel, long, long column, std::int64_t row, VDVariant* value)
{
    return Self(instance)->GetElement(channel, column, row, value);
}

int FamosXYPutDataElement(void*, long, long, long, std::int64_t, VDVariant*)
{
    return RefuseToWrite();
}

int FamosXYAppendCol(void*, long, int)
{
    return RefuseToWrite();
}

int FamosXYAppendColWithStatus(void*, long, int)
{
    return RefuseToWrite();
}

int FamosXYAppendDataSet(void*, long)
{
    return RefuseToWrite();
}

int FamosXYSetProgressObject(void*, void*)
{
    return 1;
}

int FamosXYGetStatusWordBitData(void*, long, long, long, int, std::int64_t, std::int64_t, char*)
{
    return HasNoStatus();
}

int FamosXYGetStatusWordData(void*, long, long, long, std::int64_t, std::int64_t, std::uint16_t*)
{
    return HasNoStatus();
}

int FamosXYPutStatusWordData(void*, long, long, long, std::int64_t, std::int64_t, const std::uint16_t*)
{
    return RefuseToWrite();
}

int FamosXYGetDataValidData(void*, long, long, long, std::int64_t, std::int64_t, char*)
{
    return HasNoStatus();
}

int FamosXYGetData(void* instance, long channel, long, long column, std::int64_t first, std::int64_t count,
                   VDVariant* values)
{
    return Self(instance)->GetData(channel, column, first, count, values);
}

int FamosXYPutData(void*, long, long, long, std::int64_t, VDVariant*)
{
    return RefuseToWrite();
}

int FamosXYLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return Self(instance)->LoadMetaData(mapper);
}

// They are all in the mapper.
int FamosXYAddLegacyMetaData(void*, LQChannelMapper*)
{
    return 1;
}
