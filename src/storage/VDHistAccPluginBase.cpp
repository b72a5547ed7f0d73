#include "VDHistAccPluginBase.h"

#include "PluginReport.h"

VDHistAccPluginBase::VDHistAccPluginBase() : VDCompBase(0), familyId_(FamilyId) {}

bool VDHistAccPluginBase::AddLegacyMetaData(LQChannelMapper*)
{
    return true;
}

bool VDHistAccPluginBase::LoadMetaData(LQChannelMapper**)
{
    return VFDaxReportError(DaxError::NotImplemented, "VDHistAccPluginBase::LoadMetaData") != 0;
}

void VDHistAccPluginBase::GetChanFileName(VDString& filename, long) const
{
    filename.Empty();
}

bool VDHistAccPluginBase::Report(long channel, int code, const char* routine, int chain) const
{
    return VFReportOfPlugin(*this, channel, code, routine, chain);
}
