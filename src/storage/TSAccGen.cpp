// The plug-ins inside the library as one time-series access plug-in under the prefix "TSAccGen".

#include "PluginAdapter.h"
#include "StorageFileTypes.h"
#include "VDTsAccZ4.h"
#include "famos/FamosFormat.h"
#include "famos/VDTsAccFamos.h"
#include "famos/VDTsAccFamosStamped.h"

#include "daxlib/TSAccGen.h"

namespace {

using Base = VDTsAccPluginBase;

constexpr VDPluginClass VVClasses[] = {
    {StorageFormat::TimeSeriesClass, VFMakePlugin<VDTsAccZ4>},
    {FamosFormat::TimeSeriesClass, VFMakePlugin<VDTsAccFamos>},
    {FamosFormat::TimeStampedClass, VFMakePlugin<VDTsAccFamosStamped>},
};

template <auto Method, class... Arguments>
int VFForwardToPlugin(void* instance, const char* routine, Arguments... arguments)
{
    return VFForwardToPluginOf<Base, Method>(instance, routine, arguments...);
}

}  // namespace

void* TSAccGenCreate(const char* classId)
{
    return VFCreatePlugin(VVClasses, classId, __func__);
}

int TSAccGenRelease(void* instance)
{
    return VFReleasePlugin<Base>(instance, __func__);
}

int TSAccGenSetId(void* instance, VDFileId* id, char create)
{
    return VFForwardToPlugin<&Base::SetId>(instance, __func__, id, create);
}

int TSAccGenOpen(void* instance, int mode)
{
    return VFForwardToPlugin<&Base::Open>(instance, __func__, mode);
}

int TSAccGenClose(void* instance)
{
    return VFForwardToPlugin<&Base::Close>(instance, __func__);
}

void TSAccGenGetLastError(void*, VDString& text)
{
    text = "VARDO";
}

int TSAccGenFlush(void* instance)
{
    return VFForwardToPlugin<&Base::Flush>(instance, __func__);
}

int TSAccGenGetCapability(void* instance, int capability, char* answer)
{
    return VFForwardToPlugin<&Base::GetCapability>(instance, __func__, capability, answer);
}

int TSAccGenGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return VFForwardToPlugin<&Base::GetValue>(instance, __func__, channel, key, value);
}

int TSAccGenPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return VFForwardToPlugin<&Base::PutValue>(instance, __func__, channel, key, value);
}

int TSAccGenGetData(void* instance, long channel, std::int64_t first, std::int64_t count, float* values)
{
    return VFForwardToPlugin<&Base::GetData>(instance, __func__, channel, first, count, values);
}

int TSAccGenPutData(void* instance, long channel, std::int64_t first, std::int64_t count, const float* values)
{
    return VFForwardToPlugin<&Base::PutData>(instance, __func__, channel, first, count, values);
}

int TSAccGenLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return VFForwardToPlugin<&Base::LoadMetaData>(instance, "TSAccLoadMetaData", mapper);
}

int TSAccGenAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return VFForwardToPlugin<&Base::AddLegacyMetaData>(instance, "TSAccAddLegacyMetaData", mapper);
}

int TSAccGenGetDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count, double* values)
{
    return VFForwardToPlugin<&Base::GetDataDoublePrecision>(instance, __func__, channel, first, count, values);
}

int TSAccGenPutDataDoublePrecision(void* instance, long channel, std::int64_t first, std::int64_t count,
                                   const double* values)
{
    return VFForwardToPlugin<&Base::PutDataDoublePrecision>(instance, __func__, channel, first, count, values);
}

int TSAccGenGetDataDigital32(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint32_t* values)
{
    return VFForwardToPlugin<&Base::GetDataDigital32>(instance, __func__, channel, first, count, values);
}

int TSAccGenPutDataDigital32(void* instance, long channel, std::int64_t first, std::int64_t count,
                             const std::uint32_t* values)
{
    return VFForwardToPlugin<&Base::PutDataDigital32>(instance, __func__, channel, first, count, values);
}

int TSAccGenGetDataDigital64(void* instance, long channel, std::int64_t first, std::int64_t count, std::uint64_t* values)
{
    return VFForwardToPlugin<&Base::GetDataDigital64>(instance, __func__, channel, first, count, values);
}

int TSAccGenPutDataDigital64(void* instance, long channel, std::int64_t first, std::int64_t count,
                             const std::uint64_t* values)
{
    return VFForwardToPlugin<&Base::PutDataDigital64>(instance, __func__, channel, first, count, values);
}
