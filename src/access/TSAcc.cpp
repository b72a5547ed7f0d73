#include "AccessWrapper.h"
#include "VDTsAcc.h"

using namespace DaxTimeSeries;

extern "C" {

VDTsAcc* TSAccCreate()
{
    return VFCreate<VDTsAcc>("TsAccCreate");
}

int TSAccRelease(VDTsAcc* acc)
{
    return VFRelease(acc, __func__);
}

int TSAccSetId(VDTsAcc* acc, VDFileId* id, char create)
{
    return VFForwardToCore<&VDAccessCore::SetId>(acc, "TSAcc", id, create);
}

int TSAccOpen(VDTsAcc* acc, int mode)
{
    return VFForwardToCore<&VDAccessCore::Open>(acc, __func__, mode);
}

int TSAccClose(VDTsAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Close>(acc, __func__);
}

int TSAccFlush(VDTsAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Flush>(acc, __func__);
}

int TSAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VFTsPlugins().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int TSAccGetCapability(VDTsAcc* acc, int capability, char* answer)
{
    return VFForwardToCore<&VDAccessCore::GetCapability>(acc, __func__, capability, answer);
}

int TSAccGetBufferSize(VDTsAcc* acc, long* points)
{
    return VFForwardToCore<&VDAccessCore::GetBufferSize<long>>(acc, __func__, points);
}

int TSAccSetProgressObject(VDTsAcc* acc, VDProgressObject* progress)
{
    return VFForwardToCore<&VDAccessCore::SetProgressObject>(acc, __func__, progress);
}

int TSAccGetNumChans(VDTsAcc* acc, long* count)
{
    return VFForwardToCore<&VDAccessCore::GetNumChans<long>>(acc, __func__, count);
}

int TSAccGetChans(VDTsAcc* acc, VDArrayWithSort<long>* numbers)
{
    return VFForwardToCore<&VDAccessCore::GetChans>(acc, __func__, numbers);
}

int TSAccGetChanIndex(VDTsAcc* acc, int number, int* index)
{
    return VFForwardToCore<&VDAccessCore::GetChanIndex>(acc, __func__, number, index);
}

int TSAccIsValidChan(VDTsAcc* acc, int number, char* valid)
{
    return VFForwardToCore<&VDAccessCore::IsValidChan>(acc, __func__, number, valid);
}

int TSAccGetActualChanNumber(VDTsAcc* acc, int index, long* number)
{
    return VFForwardToCore<&VDAccessCore::GetActualChanNumber<long>>(acc, __func__, index, number);
}

int TSAccGetChanTitle(VDTsAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanTitle>(acc, __func__, index, title);
}

int TSAccSetChanTitle(VDTsAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanTitle>(acc, __func__, index, title);
}

int TSAccGetNumPoints(VDTsAcc* acc, int index, std::int64_t* points)
{
    return VFForward<&VDTsAcc::GetNumPoints>(acc, __func__, index, points, "GetPoints");
}

int TSAccGetNumPointsDoublePrecision(VDTsAcc* acc, int index, std::int64_t* points)
{
    return VFForward<&VDTsAcc::GetNumPoints>(acc, __func__, index, points, "GetNumPointsDouble");
}

int TSAccGetNumPointsDigital32(VDTsAcc* acc, int index, std::int64_t* points)
{
    return VFForward<&VDTsAcc::GetNumPoints>(acc, __func__, index, points, "GetNumPointsDigital32");
}

int TSAccGetNumPointsDigital64(VDTsAcc* acc, int index, std::int64_t* points)
{
    return VFForward<&VDTsAcc::GetNumPoints>(acc, __func__, index, points, "GetNumPointsDigital64");
}

int TSAccGetSampleRate(VDTsAcc* acc, int index, double* rate)
{
    return VFForward<&VDTsAcc::GetSampleRate>(acc, __func__, index, rate);
}

int TSAccGetBaseTime(VDTsAcc* acc, int index, double* time)
{
    return VFForward<&VDTsAcc::GetBaseTime>(acc, __func__, index, time);
}

int TSAccGetXTitle(VDTsAcc* acc, VDString* title)
{
    return VFForward<&VDTsAcc::GetFileText>(acc, __func__, XTitle, title, "GetXTitle");
}

int TSAccGetXUnits(VDTsAcc* acc, VDString* units)
{
    return VFForward<&VDTsAcc::GetFileText>(acc, __func__, XUnits, units, "GetXUnits");
}

int TSAccGetYTitle(VDTsAcc* acc, int index, VDString* title)
{
    return VFForward<&VDTsAcc::GetYTitle>(acc, __func__, index, title);
}

int TSAccGetYUnits(VDTsAcc* acc, int index, VDString* units)
{
    return VFForward<&VDTsAcc::GetYUnits>(acc, __func__, index, units);
}

int TSAccGetMaxXTitleLength(VDTsAcc* acc, long* length)
{
    return VFForward<&VDTsAcc::GetMaxLength>(acc, __func__, MaxXTitle, length, "GetMaxXTitleLength");
}

int TSAccGetMaxXUnitsLength(VDTsAcc* acc, long* length)
{
    return VFForward<&VDTsAcc::GetMaxLength>(acc, __func__, MaxXUnits, length, "GetMaxXUnitsLength");
}

int TSAccGetMaxYTitleLength(VDTsAcc* acc, long* length)
{
    return VFForward<&VDTsAcc::GetMaxLength>(acc, __func__, MaxYTitle, length, "GetMaxYTitleLength");
}

int TSAccGetMaxYUnitsLength(VDTsAcc* acc, long* length)
{
    return VFForward<&VDTsAcc::GetMaxLength>(acc, __func__, MaxYUnits, length, "GetMaxYUnitsLength");
}

int TSAccSetSampleRate(VDTsAcc* acc, int index, double rate)
{
    return VFForward<&VDTsAcc::SetSampleRate>(acc, __func__, index, rate);
}

int TSAccSetBaseTime(VDTsAcc* acc, int index, double time)
{
    return VFForward<&VDTsAcc::SetBaseTime>(acc, __func__, index, time);
}

int TSAccSetNumPoints(VDTsAcc* acc, int index, std::int64_t points)
{
    return VFForward<&VDTsAcc::SetNumPoints>(acc, __func__, index, points);
}

int TSAccSetXTitle(VDTsAcc* acc, const char* title)
{
    return VFForward<&VDTsAcc::SetFileText>(acc, __func__, XTitle, title, "SetXTitle");
}

int TSAccSetXUnits(VDTsAcc* acc, const char* units)
{
    return VFForward<&VDTsAcc::SetFileText>(acc, __func__, XUnits, units, "SetXUnits");
}

int TSAccSetYTitle(VDTsAcc* acc, int index, const char* title)
{
    return VFForward<&VDTsAcc::SetChanText>(acc, __func__, index, YTitle, title, "SetYTitle");
}

int TSAccSetYUnits(VDTsAcc* acc, int index, const char* units)
{
    return VFForward<&VDTsAcc::SetChanText>(acc, __func__, index, YUnits, units, "SetYUnits");
}

int TSAccPointToTime(VDTsAcc* acc, int index, std::int64_t point, double* time)
{
    return VFForward<&VDTsAcc::PointToTime>(acc, __func__, index, point, time);
}

int TSAccTimeToPoint(VDTsAcc* acc, int index, double time, std::int64_t* point)
{
    return VFForward<&VDTsAcc::TimeToPoint>(acc, __func__, index, time, point);
}

int TSAccGetData(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead, float* values)
{
    return VFForward<&VDTsAcc::GetData<float>>(acc, __func__, index, first, count, numRead, values);
}

int TSAccGetDataDoublePrecision(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                                double* values)
{
    return VFForward<&VDTsAcc::GetData<double>>(acc, __func__, index, first, count, numRead, values);
}

int TSAccGetDataDigital32(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                          std::uint32_t* values)
{
    return VFForward<&VDTsAcc::GetData<std::uint32_t>>(acc, __func__, index, first, count, numRead, values);
}

int TSAccGetDataDigital64(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, std::int64_t* numRead,
                          std::uint64_t* values)
{
    return VFForward<&VDTsAcc::GetData<std::uint64_t>>(acc, __func__, index, first, count, numRead, values);
}

int TSAccPrepareSequential(VDTsAcc* acc, int index, std::int64_t first, std::int64_t last)
{
    return VFForward<&VDTsAcc::PrepareSequential>(acc, __func__, index, first, last);
}

int TSAccGetNext(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, float* values)
{
    return VFForward<&VDTsAcc::GetNext<float>>(acc, __func__, index, count, numRead, values);
}

int TSAccGetNextDoublePrecision(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, double* values)
{
    return VFForward<&VDTsAcc::GetNext<double>>(acc, __func__, index, count, numRead, values);
}

int TSAccGetNextDigital32(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, std::uint32_t* values)
{
    return VFForward<&VDTsAcc::GetNext<std::uint32_t>>(acc, __func__, index, count, numRead, values);
}

int TSAccGetNextDigital64(VDTsAcc* acc, int index, std::int64_t count, std::int64_t* numRead, std::uint64_t* values)
{
    return VFForward<&VDTsAcc::GetNext<std::uint64_t>>(acc, __func__, index, count, numRead, values);
}

int TSAccPutData(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, const float* values)
{
    return VFForward<&VDTsAcc::PutData<float>>(acc, __func__, index, first, count, values);
}

int TSAccPutDataDoublePrecision(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, const double* values)
{
    return VFForward<&VDTsAcc::PutData<double>>(acc, __func__, index, first, count, values);
}

int TSAccPutDataDigital32(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, const std::uint32_t* values)
{
    return VFForward<&VDTsAcc::PutData<std::uint32_t>>(acc, __func__, index, first, count, values);
}

int TSAccPutDataDigital64(VDTsAcc* acc, int index, std::int64_t first, std::int64_t count, const std::uint64_t* values)
{
    return VFForward<&VDTsAcc::PutData<std::uint64_t>>(acc, __func__, index, first, count, values);
}

int TSAccPutNext(VDTsAcc* acc, int index, std::int64_t count, const float* values)
{
    return VFForward<&VDTsAcc::PutNext<float>>(acc, __func__, index, count, values);
}

int TSAccPutNextDigital32(VDTsAcc* acc, int index, std::int64_t count, const std::uint32_t* values)
{
    return VFForward<&VDTsAcc::PutNext<std::uint32_t>>(acc, __func__, index, count, values);
}

int TSAccPutNextDigital64(VDTsAcc* acc, int index, std::int64_t count, const std::uint64_t* values)
{
    return VFForward<&VDTsAcc::PutNext<std::uint64_t>>(acc, __func__, index, count, values);
}

int TSAccGetFormatSpecificValue(VDTsAcc* acc, int index, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::GetFormatSpecificValue>(acc, __func__, index, name, value);
}

int TSAccSetFormatSpecificValue(VDTsAcc* acc, int index, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::SetFormatSpecificValue>(acc, __func__, index, name, value);
}

int TSAccGetMetaData(VDTsAcc* acc, LQChannelMapper** mapper)
{
    return VFForwardToCore<&VDAccessCore::GetMetaData>(acc, __func__, mapper);
}

int TSAccSetUseOffset(VDTsAcc* acc, char useOffset)
{
    return VFForwardToCore<&VDAccessCore::SetUseOffset>(acc, __func__, useOffset);
}

}  // extern "C"
