// The plug-ins inside the library as one histogram access plug-in under the prefix "HFAccGen".

#include "PluginAdapter.h"
#include "StorageFileTypes.h"
#include "VDHistAccZ4.h"

#include "daxlib/HFAccGen.h"
#include "daxlib/Z4FF.h"

namespace {

using Base = VDHistAccPluginBase;

constexpr VDPluginClass VVClasses[] = {{StorageFormat::HistogramClass, VFMakePlugin<VDHistAccZ4>}};

template <auto Method, class... Arguments>
int VFForwardToPlugin(void* instance, const char* routine, Arguments... arguments)
{
    return VFForwardToPluginOf<Base, Method>(instance, routine, arguments...);
}

}  // namespace

void* HFAccGenCreate(const char* classId)
{
    return VFCreatePlugin(VVClasses, classId, __func__);
}

int HFAccGenRelease(void* instance)
{
    return VFReleasePlugin<Base>(instance, __func__);
}

int HFAccGenSetId(void* instance, VDFileId* id, char create)
{
    return VFForwardToPlugin<&Base::SetId>(instance, __func__, id, create);
}

int HFAccGenOpen(void* instance, int mode)
{
    return VFForwardToPlugin<&Base::Open>(instance, __func__, mode);
}

int HFAccGenClose(void* instance)
{
    return VFForwardToPlugin<&Base::Close>(instance, __func__);
}

void HFAccGenGetLastError(VDString& text)
{
    Z4FFGetLastError(&text);
}

int HFAccGenFlush(void* instance)
{
    return VFForwardToPlugin<&Base::Flush>(instance, __func__);
}

int HFAccGenGetCapability(void* instance, int capability, char* answer)
{
    return VFForwardToPlugin<&Base::GetCapability>(instance, __func__, capability, answer);
}

int HFAccGenGetValue(void* instance, long channel, int key, VDVariant* value)
{
    return VFForwardToPlugin<&Base::GetValue>(instance, __func__, channel, key, value);
}

int HFAccGenPutValue(void* instance, long channel, int key, VDVariant* value)
{
    return VFForwardToPlugin<&Base::PutValue>(instance, __func__, channel, key, value);
}

int HFAccGenGetHistogram(void* instance, long channel, VDHist** histogram)
{
    return VFForwardToPlugin<&Base::GetHistogram>(instance, __func__, channel, histogram);
}

int HFAccGenPutHistogram(void* instance, long channel, VDHist* histogram)
{
    return VFForwardToPlugin<&Base::PutHistogram>(instance, __func__, channel, histogram);
}

int HFAccGenLoadMetaData(void* instance, LQChannelMapper** mapper)
{
    return VFForwardToPlugin<&Base::LoadMetaData>(instance, "HFAccLoadMetaData", mapper);
}

int HFAccGenAddLegacyMetaData(void* instance, LQChannelMapper* mapper)
{
    return VFForwardToPlugin<&Base::AddLegacyMetaData>(instance, "HFAccAddLegacyMetaData", mapper);
}
