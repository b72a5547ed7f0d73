#include "daxlib/HFAcc.h"

#include "AccessWrapper.h"
#include "VDHistAcc.h"

VDHistAcc* HFAccCreate()
{
    return VFCreate<VDHistAcc>(__func__);
}

int HFAccRelease(VDHistAcc* acc)
{
    return VFRelease(acc, __func__);
}

int HFAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VFHistPlugins().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int HFAccSetId(VDHistAcc* acc, VDFileId* id, char create)
{
    return VFForwardToCore<&VDAccessCore::SetId>(acc, __func__, id, create);
}

int HFAccGetId(VDHistAcc* acc, VDFileId** id)
{
    return VFForwardToCore<&VDAccessCore::GetId>(acc, __func__, id);
}

int HFAccOpen(VDHistAcc* acc, int mode)
{
    return VFForwardToCore<&VDAccessCore::Open>(acc, __func__, mode);
}

int HFAccClose(VDHistAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Close>(acc, __func__);
}

int HFAccFlush(VDHistAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Flush>(acc, "HFFlush");
}

int HFAccGetCapability(VDHistAcc* acc, int capability, char* answer)
{
    return VFForwardToCore<&VDAccessCore::GetCapability>(acc, __func__, capability, answer);
}

int HFAccGetNumChans(VDHistAcc* acc, int* count)
{
    return VFForwardToCore<&VDAccessCore::GetNumChans<int>>(acc, __func__, count);
}

int HFAccGetChans(VDHistAcc* acc, VDArrayWithSort<long>* numbers)
{
    return VFForwardToCore<&VDAccessCore::GetChans>(acc, __func__, numbers);
}

int HFAccGetChanIndex(VDHistAcc* acc, int number, int* index)
{
    return VFForwardToCore<&VDAccessCore::GetChanIndex>(acc, __func__, number, index);
}

int HFAccIsValidChan(VDHistAcc* acc, int number, char* valid)
{
    return VFForwardToCore<&VDAccessCore::IsValidChan>(acc, __func__, number, valid);
}

int HFAccGetActualChanNumber(VDHistAcc* acc, int index, int* number)
{
    return VFForwardToCore<&VDAccessCore::GetActualChanNumber<int>>(acc, __func__, index, number);
}

int HFAccGetChanTitle(VDHistAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanTitle>(acc, __func__, index, title);
}

int HFAccSetChanTitle(VDHistAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanTitle>(acc, __func__, index, title);
}

int HFAccGetHistogram(VDHistAcc* acc, int index, VDHist** histogram)
{
    return VFForward<&VDHistAcc::GetHistogram>(acc, __func__, index, histogram);
}

int HFAccPutHistogram(VDHistAcc* acc, int index, VDHist* histogram)
{
    return VFForward<&VDHistAcc::PutHistogram>(acc, __func__, index, histogram);
}

int HFAccSetUseOffset(VDHistAcc* acc, char useOffset)
{
    return VFForwardToCore<&VDAccessCore::SetUseOffset>(acc, __func__, useOffset);
}

int HFAccGetFormatSpecificValue(VDHistAcc* acc, int index, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::GetFormatSpecificValue>(acc, __func__, index, name, value);
}

int HFAccSetFormatSpecificValue(VDHistAcc* acc, int index, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::SetFormatSpecificValue>(acc, __func__, index, name, value);
}

int HFAccGetMetaData(VDHistAcc* acc, LQChannelMapper** mapper)
{
    return VFForwardToCore<&VDAccessCore::GetMetaData>(acc, __func__, mapper);
}
