#include "AccessWrapper.h"
#include "VDXYAcc.h"

extern "C" {

VDXYAcc* XYAccCreate()
{
    return VFCreate<VDXYAcc>(__func__);
}

int XYAccRelease(VDXYAcc* acc)
{
    return VFRelease(acc, __func__);
}

int XYAccSetId(VDXYAcc* acc, VDFileId* id, char create)
{
    return VFForwardToCore<&VDAccessCore::SetId>(acc, __func__, id, create);
}

int XYAccOpen(VDXYAcc* acc, int mode)
{
    return VFForwardToCore<&VDAccessCore::Open>(acc, __func__, mode);
}

int XYAccClose(VDXYAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Close>(acc, __func__);
}

int XYAccFlush(VDXYAcc* acc)
{
    return VFForwardToCore<&VDAccessCore::Flush>(acc, __func__);
}

int XYAccAddPlugin(const char* name, const char* prefix, const char* library, const char* description)
{
    return VFExport(__func__, [=] { return VFXyPlugins().AddPlugin(name, prefix, library, description) ? 1 : 0; });
}

int XYAccGetCapability(VDXYAcc* acc, int capability, char* answer)
{
    return VFForwardToCore<&VDAccessCore::GetCapability>(acc, __func__, capability, answer);
}

int XYAccGetBufferSize(VDXYAcc* acc, int* values)
{
    return VFForwardToCore<&VDAccessCore::GetBufferSize<int>>(acc, __func__, values);
}

int XYAccSetProgressObject(VDXYAcc* acc, VDProgressObject* progress)
{
    return VFForwardToCore<&VDAccessCore::SetProgressObject>(acc, __func__, progress);
}

int XYAccGetNumChans(VDXYAcc* acc, int* count)
{
    return VFForwardToCore<&VDAccessCore::GetNumChans<int>>(acc, __func__, count);
}

int XYAccGetChans(VDXYAcc* acc, VDArrayWithSort<long>* numbers)
{
    return VFForwardToCore<&VDAccessCore::GetChans>(acc, __func__, numbers);
}

int XYAccGetChanIndex(VDXYAcc* acc, int number, int* index)
{
    return VFForwardToCore<&VDAccessCore::GetChanIndex>(acc, __func__, number, index);
}

int XYAccIsValidChan(VDXYAcc* acc, int number, char* valid)
{
    return VFForwardToCore<&VDAccessCore::IsValidChan>(acc, __func__, number, valid);
}

int XYAccGetActualChanNumber(VDXYAcc* acc, int index, int* number)
{
    return VFForwardToCore<&VDAccessCore::GetActualChanNumber<int>>(acc, __func__, index, number);
}

int XYAccGetChanTitle(VDXYAcc* acc, int index, VDString* title)
{
    return VFForwardToCore<&VDAccessCore::GetChanTitle>(acc, __func__, index, title);
}

int XYAccSetChanTitle(VDXYAcc* acc, int index, const char* title)
{
    return VFForwardToCore<&VDAccessCore::SetChanTitle>(acc, __func__, index, title);
}

int XYAccGetNumDataSets(VDXYAcc* acc, int channel, int* count)
{
    return VFForward<&VDXYAcc::GetNumDataSets>(acc, __func__, channel, count);
}

int XYAccGetNumRows(VDXYAcc* acc, int channel, int dataSet, std::int64_t* rows)
{
    return VFForward<&VDXYAcc::GetNumRows>(acc, __func__, channel, dataSet, rows);
}

int XYAccGetDataSetTitle(VDXYAcc* acc, int channel, int dataSet, VDString* title)
{
    return VFForward<&VDXYAcc::GetDataSetTitle>(acc, __func__, channel, dataSet, title);
}

int XYAccSetDataSetTitle(VDXYAcc* acc, int channel, int dataSet, const char* title)
{
    return VFForward<&VDXYAcc::SetDataSetTitle>(acc, __func__, channel, dataSet, title);
}

int XYAccAppendDataSet(VDXYAcc* acc, int channel)
{
    return VFForward<&VDXYAcc::AppendDataSet>(acc, __func__, channel);
}

int XYAccSetNumRows(VDXYAcc* acc, int channel, int dataSet, std::int64_t rows)
{
    return VFForward<&VDXYAcc::SetNumRows>(acc, __func__, channel, dataSet, rows);
}

int XYAccGetNumCols(VDXYAcc* acc, int channel, int* count)
{
    return VFForward<&VDXYAcc::GetNumCols>(acc, __func__, channel, count);
}

int XYAccGetColType(VDXYAcc* acc, int channel, int column, int* type)
{
    return VFForward<&VDXYAcc::GetColType>(acc, __func__, channel, column, type);
}

int XYAccGetColTitle(VDXYAcc* acc, int channel, int column, VDString* title)
{
    return VFForward<&VDXYAcc::GetColText>(acc, __func__, channel, column, &VDXYFileCol::title, title, "GetColTitle");
}

int XYAccGetColUnits(VDXYAcc* acc, int channel, int column, VDString* units)
{
    return VFForward<&VDXYAcc::GetColText>(acc, __func__, channel, column, &VDXYFileCol::units, units, "GetColUnits");
}

int XYAccGetColKeyword(VDXYAcc* acc, int channel, int column, VDString* keyword)
{
    return VFForward<&VDXYAcc::GetColText>(acc, __func__, channel, column, &VDXYFileCol::keyword, keyword, "GetColKeyword");
}

int XYAccSetColTitle(VDXYAcc* acc, int channel, int column, const char* title)
{
    return VFForward<&VDXYAcc::SetColText>(acc, __func__, channel, column, DaxMultiColumn::ColTitle, title, "SetColTitle");
}

int XYAccSetColUnits(VDXYAcc* acc, int channel, int column, const char* units)
{
    return VFForward<&VDXYAcc::SetColText>(acc, __func__, channel, column, DaxMultiColumn::ColUnits, units, "SetColUnits");
}

int XYAccSetColKeyword(VDXYAcc* acc, int channel, int column, const char* keyword)
{
    return VFForward<&VDXYAcc::SetColText>(acc, __func__, channel, column, DaxMultiColumn::ColKeyword, keyword, "SetColKeyword");
}

int XYAccGetMaxTitleLength(VDXYAcc* acc, int* length)
{
    return VFForward<&VDXYAcc::GetMaxLength>(acc, __func__, DaxMultiColumn::MaxTitle, length, "GetMaxTitleLength");
}

int XYAccGetMaxUnitsLength(VDXYAcc* acc, int* length)
{
    return VFForward<&VDXYAcc::GetMaxLength>(acc, __func__, DaxMultiColumn::MaxUnits, length, "GetMaxUnitsLength");
}

int XYAccGetColEnumOptions(VDXYAcc* acc, int channel, int column, VDArrayWithSort<long>* values, VDStringArray* texts)
{
    return VFForward<&VDXYAcc::GetColEnumOptions>(acc, __func__, channel, column, values, texts);
}

int XYAccSetColEnumOptions(VDXYAcc* acc, int channel, int column, VDArrayWithSort<long>* values, VDStringArray* texts)
{
    return VFForward<&VDXYAcc::SetColEnumOptions>(acc, __func__, channel, column, values, texts);
}

int XYAccAppendCol(VDXYAcc* acc, int channel, int type)
{
    return VFForward<&VDXYAcc::AppendCol>(acc, __func__, channel, type);
}

int XYAccAppendColWithStatus(VDXYAcc* acc, int channel, int type)
{
    return VFForward<&VDXYAcc::AppendColWithStatus>(acc, __func__, channel, type);
}

int XYAccGetDataF(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                  std::int64_t* numRead, float* values)
{
    return VFForward<&VDXYAcc::GetDataF>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, numRead, values);
}

int XYAccGetData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count, VDVariant* values)
{
    return VFForward<&VDXYAcc::GetData>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, values);
}

int XYAccGetDataElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value)
{
    return VFForward<&VDXYAcc::GetDataElement>(acc, __func__, VDXYPlace{channel, dataSet, column}, row, value);
}

int XYAccPutDataF(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                  const float* values)
{
    return VFForward<&VDXYAcc::PutDataF>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, values);
}

int XYAccPutData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, VDVariant* values)
{
    return VFForward<&VDXYAcc::PutData>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, values);
}

int XYAccPutDataElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value)
{
    return VFForward<&VDXYAcc::PutDataElement>(acc, __func__, VDXYPlace{channel, dataSet, column}, row, value);
}

int XYAccGetColLimits(VDXYAcc* acc, int channel, int dataSet, int column, VDVariant* minimum, VDVariant* maximum)
{
    return VFForward<&VDXYAcc::GetColLimits>(acc, __func__, VDXYPlace{channel, dataSet, column}, minimum, maximum);
}

int XYAccGetStatusWordEnabled(VDXYAcc* acc, int channel, int dataSet, int column, char* enabled)
{
    return VFForward<&VDXYAcc::GetStatusWordEnabled>(acc, __func__, VDXYPlace{channel, dataSet, column}, enabled);
}

int XYAccGetStatusWordBitText(VDXYAcc* acc, int channel, int dataSet, int column, int bit, VDString* text)
{
    return VFForward<&VDXYAcc::GetStatusBitText>(acc, __func__, VDXYPlace{channel, dataSet, column}, bit, text);
}

int XYAccSetStatusWordBitText(VDXYAcc* acc, int channel, int dataSet, int column, int bit, const char* text)
{
    return VFForward<&VDXYAcc::SetStatusBitText>(acc, __func__, VDXYPlace{channel, dataSet, column}, bit, text);
}

int XYAccGetStatusWordBitData(VDXYAcc* acc, int channel, int dataSet, int column, int bit, std::int64_t first,
                              std::int64_t count, std::int64_t* numRead, char* flags)
{
    return VFForward<&VDXYAcc::GetStatusWordBitData>(acc, __func__, VDXYPlace{channel, dataSet, column}, bit, first, count,
                                                     numRead, flags);
}

int XYAccGetStatusWordData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                           std::int64_t* numRead, std::uint16_t* words)
{
    return VFForward<&VDXYAcc::GetStatusWordData>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, numRead,
                                                  words);
}

int XYAccGetDataValidData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                          std::int64_t* numRead, char* valid)
{
    return VFForward<&VDXYAcc::GetDataValidData>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, numRead,
                                                 valid);
}

int XYAccPutStatusWordData(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t first, std::int64_t count,
                           const std::uint16_t* words)
{
    return VFForward<&VDXYAcc::PutStatusWordData>(acc, __func__, VDXYPlace{channel, dataSet, column}, first, count, words);
}

int XYAccGetStatusElement(VDXYAcc* acc, int channel, int dataSet, int column, std::int64_t row, VDVariant* value, char* valid,
                          char* hasStatus, VDStringArray* bitTexts)
{
    return VFForward<&VDXYAcc::GetStatusElement>(acc, __func__, VDXYPlace{channel, dataSet, column}, row, value, valid,
                                                 hasStatus, bitTexts);
}

int XYAccGetFormatSpecificValue(VDXYAcc* acc, int channel, int dataSet, int column, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::GetFormatSpecificValue>(acc, __func__, VDAccessSelector(channel, dataSet, column), name,
                                                                 value);
}

int XYAccSetFormatSpecificValue(VDXYAcc* acc, int channel, int dataSet, int column, const char* name, VDVariant* value)
{
    return VFForwardToCore<&VDAccessCore::SetFormatSpecificValue>(acc, __func__, VDAccessSelector(channel, dataSet, column), name,
                                                                 value);
}

int XYAccGetMetaData(VDXYAcc* acc, LQChannelMapper** mapper)
{
    return VFForwardToCore<&VDAccessCore::GetMetaData>(acc, __func__, mapper);
}

}  // extern "C"
