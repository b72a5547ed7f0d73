#include "daxlib/MetaAcc.h"

#include "AccessWrapper.h"
#include "VDMetaAcc.h"

VDMetaAcc* MetaAccCreate()
{
    return VFCreate<VDMetaAcc>(__func__);
}

int MetaAccRelease(VDMetaAcc* acc)
{
    return VFRelease(acc, __func__);
}

int MetaAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VFMetaPlugins().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int MetaAccSetId(VDMetaAcc* acc, VDFileId* id, char create)
{
    return VFForwardToCore<&VDAccessCore::SetId>(acc, __func__, id, create);
}

int MetaAccGetId(VDMetaAcc* acc, VDFileId** id)
{
    return VFForwardToCore<&VDAccessCore::GetId>(acc, __func__, id);
}

int MetaAccOpen(VDMetaAcc* acc, int mode)
{
    return VFForwardToCore<&VDAccessCore::Open>(acc, __func__, mode);
}

int MetaAccClose(VDMetaAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Close>(acc, __func__);
}

int MetaAccFlush(VDMetaAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Flush>(acc, __func__);
}

int MetaAccGetCapability(VDMetaAcc* acc, int capability, char* answer)
{
    return VFForwardToCore<&VDAccessCore::GetCapability>(acc, __func__, capability, answer);
}

int MetaAccGetNumChans(VDMetaAcc* acc, int* count)
{
    return VFForwardToCore<&VDAccessCore::GetNumChans<int>>(acc, __func__, count);
}

int MetaAccGetChans(VDMetaAcc* acc, VDArrayWithSort<long>* numbers)
{
    return VFForwardToCore<&VDAccessCore::GetChans>(acc, __func__, numbers);
}

int MetaAccGetChanIndex(VDMetaAcc* acc, int number, int* index)
{
    return VFForwardToCore<&VDAccessCore::GetChanIndex>(acc, __func__, number, index);
}

int MetaAccIsValidChan(VDMetaAcc* acc, int number, char* valid)
{
    return VFForwardToCore<&VDAccessCore::IsValidChan>(acc, __func__, number, valid);
}

int MetaAccGetActualChanNumber(VDMetaAcc* acc, int index, int* number)
{
    return VFForwardToCore<&VDAccessCore::GetActualChanNumber<int>>(acc, __func__, index, number);
}

int MetaAccGetChanTitle(VDMetaAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanTitle>(acc, __func__, index, title);
}

int MetaAccSetChanTitle(VDMetaAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanTitle>(acc, __func__, index, title);
}

int MetaAccGetFormatSpecificValue(VDMetaAcc* acc, int channel, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::GetFormatSpecificValue>(acc, __func__, channel, name, value);
}

int MetaAccSetFormatSpecificValue(VDMetaAcc* acc, int channel, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::SetFormatSpecificValue>(acc, __func__, channel, name, value);
}

int MetaAccGetMetaData(VDMetaAcc* acc, LQChannelMapper** mapper)
{
    return VFForwardToCore<&VDAccessCore::GetMetaData>(acc, __func__, mapper);
}
