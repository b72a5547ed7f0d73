#include "VDTsAccPluginBase.h"

#include "PluginReport.h"

namespace {

bool VFNotImplemented(const char* operation)
{
    return VFDaxReportError(DaxError::NotImplemented, VDString("VDTsAccPluginBase::") + operation) != 0;
}

}  // namespace

VDTsAccPluginBase::VDTsAccPluginBase() : VDCompBase(0), familyId_(FamilyId) {}

bool VDTsAccPluginBase::GetDataDoublePrecision(long, std::int64_t, std::int64_t, double*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::PutDataDoublePrecision(long, std::int64_t, std::int64_t, const double*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::GetDataDigital32(long, std::int64_t, std::int64_t, std::uint32_t*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::PutDataDigital32(long, std::int64_t, std::int64_t, const std::uint32_t*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::GetDataDigital64(long, std::int64_t, std::int64_t, std::uint64_t*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::PutDataDigital64(long, std::int64_t, std::int64_t, const std::uint64_t*)
{
    return VFNotImplemented(__func__);
}

bool VDTsAccPluginBase::AddLegacyMetaData(LQChannelMapper*)
{
    return true;
}

bool VDTsAccPluginBase::LoadMetaData(LQChannelMapper**)
{
    return VFNotImplemented(__func__);
}

void VDTsAccPluginBase::GetChanFileName(VDString& filename, long) const
{
    filename.Empty();
}

bool VDTsAccPluginBase::Report(long channel, int code, const char* routine, int chain) const
{
    return VFReportOfPlugin(*this, channel, code, routine, chain);
}
