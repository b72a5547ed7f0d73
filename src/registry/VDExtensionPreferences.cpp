#include "VDExtensionPreferences.h"

#include "ExtensionList.h"

#include "vdbase/VDPreferenceSystem.h"

namespace {

VDString VFKey(const char* name)
{
    return VDString("/FileFormats/Extensions/") + name;
}

void VFReadUpperList(const VDString& key, VDStringArray& list)
{
    list = VFSplitExtensions(VDPreferenceSystem().GetStringValue(key, ""), ",");
    list.MakeUpper();
}

}  // namespace

void VDExtensionPreferences::Read()
{
    const VDPreferenceSystem preferences;
    identifyByExtension_ = preferences.GetBooleanValue(VFKey("IdentifyByExtension"), true);
    identifyUnknownExtensions_ = preferences.GetBooleanValue(VFKey("IdentifyUnknownExtensions"), true);
    VFReadUpperList(VFKey("IgnoreExtensions"), ignored_);
    VFReadUpperList(VFKey("IncludeExtensions"), included_);
}

void VDExtensionPreferences::ReadFileType(VDFileInfoFileIdInfo& type)
{
    const VDPreferenceSystem preferences;
    type.enabled = preferences.GetBooleanValue(VFKey("Enable_") + type.keyword, true);
    type.identifyByExtension = preferences.GetBooleanValue(VFKey("IdentifyByExtension_") + type.keyword, false);
    if (!type.identifyByExtension)
        return;
    VFReadUpperList(VFKey("Extensions_") + type.keyword, type.extensions);
    type.identifyByExtension = !type.extensions.IsEmpty();
}

bool VDExtensionPreferences::IsIgnored(const VDString& upperExtension) const
{
    return identifyUnknownExtensions_ ? ignored_.Find(upperExtension) >= 0 : included_.Find(upperExtension) < 0;
}
