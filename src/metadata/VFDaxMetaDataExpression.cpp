#include "daxlib/VFDaxMetaDataExpression.h"

#include "MetaDataEvaluation.h"
#include "MetaDataExpansion.h"
#include "MetaDataGuard.h"

// The exported functions of keywords and expressions: each checks its arguments and forwards. The texts that come in are
// copied first, as a caller may take the result in the same place.

bool VFDaxGetMetaDataItem(LQChannelMapper* mapper, const VDString& keyword, int channel, Z4Property** item,
                          char searchGlobal, VDArray<LQChannelMapper*>* dataMappers, VDArrayWithSort<long>* dataChannels)
{
    if (item == nullptr)
        return false;
    *item = nullptr;
    return mapper != nullptr && VFGuardMetaData([&] {
               VDMetaDataKeyword parsed;
               return parsed.Read(*mapper, keyword.View(), {dataMappers, dataChannels}) &&
                      parsed.Find(channel, searchGlobal != 0, item);
           });
}

bool VFDaxEvaluateStringFromMeta(VDString& text, LQChannelMapper* mapper, int channel, char failOnUnresolved,
                                 VDString* result, char keepUnresolved, VDArray<LQChannelMapper*>* dataMappers,
                                 VDArrayWithSort<long>* dataChannels, char quoteAfterBracket)
{
    return result != nullptr && VFGuardMetaData([&] {
               const VDString source = text;
               result->Empty();
               if (mapper == nullptr)
                   return false;
               VDMetaDataExpansion expansion(*mapper, {.channel = channel,
                                                       .failOnUnresolved = failOnUnresolved != 0,
                                                       .keepUnresolved = keepUnresolved != 0,
                                                       .quoteAfterBracket = quoteAfterBracket != 0,
                                                       .sources = {dataMappers, dataChannels}});
               if (!expansion.Expand(source.View()))
                   return false;
               *result = expansion.GetResult();
               return true;
           });
}

bool VFDaxEvaluateValueFromMeta(VDString& expression, LQChannelMapper* mapper, int channel, VDString* result, int* type)
{
    return result != nullptr && VFGuardMetaData([&] {
               const VDString source = expression;
               result->Empty();
               return mapper != nullptr && VFEvaluateMetaDataValue(*mapper, source, channel, result, type);
           });
}

bool VFDaxEvaluateDoubleFromMeta(VDString& expression, LQChannelMapper* mapper, int channel, double* result)
{
    return result != nullptr && mapper != nullptr &&
           VFGuardMetaData([&] { return VFEvaluateMetaDataDouble(*mapper, expression, channel, result); });
}
