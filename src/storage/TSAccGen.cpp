// The plug-ins inside the library as one time-series access plug-in under the prefix "TSAccGen".

#include "StorageFileTypes.h"
#include "VDTsAccZ4.h"
#include "frame/ExportedWrapper.h"

#include "daxlib/TSAccGen.h"

#include <atomic>
#include <typeinfo>

namespace {

using Base = VDTsAccPluginBase;

/// The plug-in that an object is; null for any other object. Nothing behind the common base can be looked at before that is
/// known, and finding it out costs more than most calls, so the class that was found last is remembered.
Base* VFFindPlugin(VDCompBase& object)
{
    static std::atomic<const std::type_info*> lastClass = nullptr;
    const std::type_info* const itsClass = &typeid(object);
    if (itsClass == lastClass.load(std::memory_order_relaxed))
        return static_cast<Base*>(&object);
    Base* const plugin = dynamic_cast<Base*>(&object);
    if (plugin != nullptr)
        lastClass.store(itsClass, std::memory_order_relaxed);
    return plugin;
}

/// Null, recorded, for anything that is no plug-in of this family.
Base* VFGetPlugin(void* instance, const char* routine)
{
    try {
        Base* const plugin = instance != nullptr ? VFFindPlugin(*static_cast<VDCompBase*>(instance)) : nullptr;
        if (plugin != nullptr && plugin->GetPluginFamilyId() == Base::FamilyId)
            return plugin;
    } catch (...) {  // no object at all
    }
    VFDaxReportError(DaxError::InvalidHandle, routine);
    return nullptr;
}

template <auto Method, class... Arguments>
int VFForwardToPlugin(void* instance, const char* routine, Arguments... arguments)
{
    return VFExport(routine, [=] {
        Base* const plugin = VFGetPlugin(instance, routine);
        return plugin != nullptr && (plugin->*Method)(arguments...) ? 1 : 0;
    });
}

}  // namespace

void* TSAccGenCreate(const char* classId)
{
    if (VDString(classId).CompareNoCase(StorageFormat::TimeSeriesClass) == 0)
        return static_cast<VDCompBase*>(VFCreate<VDTsAccZ4>(__func__));
    VFDaxReportError(DaxError::ClassNotRecognised, __func__);
    return nullptr;
}

int TSAccGenRelease(void* instance)
{
    Base* const plugin = VFGetPlugin(instance, __func__);
    if (plugin != nullptr && plugin->Release() == 0)
        delete plugin;
    return plugin != nullptr;
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
