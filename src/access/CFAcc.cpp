#include "AccessWrapper.h"
#include "VDCFAcc.h"

extern "C" {

VDCFAcc* CFAccCreate()
{
    return VFCreate<VDCFAcc>(__func__);
}

int CFAccRelease(VDCFAcc* acc)
{
    return VFRelease(acc, __func__);
}

int CFAccSetId(VDCFAcc* acc, VDFileId* id, char create)
{
    return VFForwardToCore<&VDAccessCore::SetId>(acc, "CFAcc", id, create);
}

int CFAccOpen(VDCFAcc* acc, int mode)
{
    return VFForwardToCore<&VDAccessCore::Open>(acc, __func__, mode);
}

int CFAccClose(VDCFAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Close>(acc, __func__);
}

int CFAccFlush(VDCFAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Flush>(acc, __func__);
}

int CFAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VFCfPlugins().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int CFAccGetCapability(VDCFAcc* acc, int capability, char* answer)
{
    return VFForwardToCore<&VDAccessCore::GetCapability>(acc, __func__, capability, answer);
}

int CFAccGetBufferSize(VDCFAcc* acc, long* lines)
{
    return VFForwardToCore<&VDAccessCore::GetBufferSize<long>>(acc, __func__, lines);
}

int CFAccSetProgressObject(VDCFAcc* acc, VDProgressObject* progress)
{
    return VFForwardToCore<&VDAccessCore::SetProgressObject>(acc, __func__, progress);
}

int CFAccGetNumChans(VDCFAcc* acc, long* count)
{
    return VFForwardToCore<&VDAccessCore::GetNumChans<long>>(acc, __func__, count);
}

int CFAccGetChans(VDCFAcc* acc, VDArrayWithSort<long>* numbers)
{
    return VFForwardToCore<&VDAccessCore::GetChans>(acc, __func__, numbers);
}

int CFAccGetChanIndex(VDCFAcc* acc, int number, int* index)
{
    return VFForwardToCore<&VDAccessCore::GetChanIndex>(acc, __func__, number, index);
}

int CFAccIsValidChan(VDCFAcc* acc, int number, char* valid)
{
    return VFForwardToCore<&VDAccessCore::IsValidChan>(acc, __func__, number, valid);
}

int CFAccGetActualChanNumber(VDCFAcc* acc, int index, long* number)
{
    return VFForwardToCore<&VDAccessCore::GetActualChanNumber<long>>(acc, __func__, index, number);
}

int CFAccGetChanTitle(VDCFAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanTitle>(acc, __func__, index, title);
}

int CFAccSetChanTitle(VDCFAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanTitle>(acc, __func__, index, title);
}

int CFAccGetChanUnits(VDCFAcc* acc, int index, VDString* units)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::ChanUnits, index, units, "GetChanUnits");
}

int CFAccSetChanUnits(VDCFAcc* acc, int index, const char* units)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::ChanUnits, index, units, "SetChanUnits");
}

int CFAccGetXTitle(VDCFAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::XTitle, index, title, "GetXTitle");
}

int CFAccSetXTitle(VDCFAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::XTitle, index, title, "SetXTitle");
}

int CFAccGetXUnits(VDCFAcc* acc, int index, VDString* units)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::XUnits, index, units, "GetXUnits");
}

int CFAccSetXUnits(VDCFAcc* acc, int index, const char* units)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::XUnits, index, units, "SetXUnits");
}

int CFAccGetYTitle(VDCFAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::YTitle, index, title, "GetYTitle");
}

int CFAccSetYTitle(VDCFAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::YTitle, index, title, "SetYTitle");
}

int CFAccGetYUnits(VDCFAcc* acc, int index, VDString* units)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::YUnits, index, units, "GetYUnits");
}

int CFAccSetYUnits(VDCFAcc* acc, int index, const char* units)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::YUnits, index, units, "SetYUnits");
}

int CFAccGetZTitle(VDCFAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::ZTitle, index, title, "GetZTitle");
}

int CFAccSetZTitle(VDCFAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::ZTitle, index, title, "SetZTitle");
}

int CFAccGetZUnits(VDCFAcc* acc, int index, VDString* units)
{
    return VFForwardToCore<&VDAccessCore::GetChanText>(acc, __func__, VDCFAcc::ZUnits, index, units, "GetZUnits");
}

int CFAccSetZUnits(VDCFAcc* acc, int index, const char* units)
{
    return VFForwardToCore<&VDAccessCore::SetChanText>(acc, __func__, VDCFAcc::ZUnits, index, units, "SetZUnits");
}

int CFAccGetMaxTitleLength(VDCFAcc* acc, long* length)
{
    return VFForward<&VDCFAcc::GetLength>(acc, __func__, DaxComplexFrequency::MaxTitle, length, "GetMaxTitleLength");
}

int CFAccGetMaxUnitsLength(VDCFAcc* acc, long* length)
{
    return VFForward<&VDCFAcc::GetLength>(acc, __func__, DaxComplexFrequency::MaxUnits, length, "GetMaxUnitsLength");
}

int CFAccGetType(VDCFAcc* acc, int* type)
{
    return VFForward<&VDCFAcc::GetNumber>(acc, __func__, DaxComplexFrequency::Type, type, "GetType");
}

int CFAccGetSubType(VDCFAcc* acc, int* subType)
{
    return VFForward<&VDCFAcc::GetNumber>(acc, __func__, DaxComplexFrequency::SubType, subType, "GetSubType");
}

int CFAccGetNumSpectra(VDCFAcc* acc, std::int64_t* spectra)
{
    return VFForward<&VDCFAcc::GetCount>(acc, __func__, DaxComplexFrequency::NumSpectra, spectra, "GetNumSpectra");
}

int CFAccGetNumLines(VDCFAcc* acc, std::int64_t* lines)
{
    return VFForward<&VDCFAcc::GetCount>(acc, __func__, DaxComplexFrequency::NumLines, lines, "GetNumLines");
}

int CFAccGetComplex(VDCFAcc* acc, char* isComplex)
{
    return VFForward<&VDCFAcc::GetComplex>(acc, __func__, isComplex);
}

int CFAccSetType(VDCFAcc* acc, int type)
{
    return VFForward<&VDCFAcc::SetNumber>(acc, __func__, DaxComplexFrequency::Type, type, "SetType");
}

int CFAccSetSubType(VDCFAcc* acc, int subType)
{
    return VFForward<&VDCFAcc::SetNumber>(acc, __func__, DaxComplexFrequency::SubType, subType, "SetSubType");
}

int CFAccSetNumSpectra(VDCFAcc* acc, std::int64_t spectra)
{
    return VFForward<&VDCFAcc::SetNumSpectra>(acc, __func__, spectra);
}

int CFAccSetNumLines(VDCFAcc* acc, std::int64_t lines)
{
    return VFForward<&VDCFAcc::SetNumLines>(acc, __func__, lines);
}

int CFAccSetComplex(VDCFAcc* acc, char isComplex)
{
    return VFForward<&VDCFAcc::SetComplex>(acc, __func__, isComplex);
}

int CFAccGetData(VDCFAcc* acc, int index, std::int64_t spectrum, std::int64_t firstLine, std::int64_t count, int kind,
                 std::int64_t* numRead, void* values)
{
    return VFForward<&VDCFAcc::GetData>(acc, __func__, index, spectrum, firstLine, count, kind, numRead, values);
}

int CFAccPutData(VDCFAcc* acc, int index, std::int64_t spectrum, std::int64_t firstLine, std::int64_t count, int kind,
                 const void* values)
{
    return VFForward<&VDCFAcc::PutData>(acc, __func__, index, spectrum, firstLine, count, kind, values);
}

int CFAccGetLineAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead,
                         void* values)
{
    return VFForward<&VDCFAcc::GetLineAxisData>(acc, __func__, first, count, kind, numRead, values);
}

int CFAccPutLineAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    return VFForward<&VDCFAcc::PutLineAxisData>(acc, __func__, first, count, kind, values);
}

int CFAccGetSpectrumAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, std::int64_t* numRead,
                             void* values)
{
    return VFForward<&VDCFAcc::GetSpectrumAxisData>(acc, __func__, first, count, kind, numRead, values);
}

int CFAccPutSpectrumAxisData(VDCFAcc* acc, std::int64_t first, std::int64_t count, int kind, const void* values)
{
    return VFForward<&VDCFAcc::PutSpectrumAxisData>(acc, __func__, first, count, kind, values);
}

int CFAccGetFormatSpecificValue(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t line, const char* name,
                                VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::GetFormatSpecificValue>(acc, __func__, VDAccessSelector(channel, spectrum, line),
                                                                  name, value);
}

int CFAccSetFormatSpecificValue(VDCFAcc* acc, int channel, std::int64_t spectrum, std::int64_t line, const char* name,
                                VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::SetFormatSpecificValue>(acc, __func__, VDAccessSelector(channel, spectrum, line),
                                                                  name, value);
}

int CFAccGetMetaData(VDCFAcc* acc, LQChannelMapper** mapper)
{
    return VFForwardToCore<&VDAccessCore::GetMetaData>(acc, __func__, mapper);
}

}  // extern "C"
