#include "vdbase/VFVersion.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace {

// Built on first use: libraries register while they load.
struct VersionRegister
{
    std::mutex lock;
    std::vector<VDVersionInfo> entries;

    VDVersionInfo* Find(const char* name)
    {
        const auto found = std::find_if(entries.begin(), entries.end(),
                                        [&](const VDVersionInfo& entry) { return entry.name.CompareNoCase(name) == 0; });
        return found == entries.end() ? nullptr : &*found;
    }
};

VersionRegister& Versions()
{
    static VersionRegister versions;
    return versions;
}

}  // namespace

void VFVersionLoad(const char* name, int major, int minor, int build, const char* date, const char* time)
{
    VDVersionInfo info{name, major, minor, build, date, time};
    VersionRegister& versions = Versions();
    const std::lock_guard guard(versions.lock);
    if (VDVersionInfo* entry = versions.Find(name))
        *entry = std::move(info);
    else
        versions.entries.push_back(std::move(info));
}

bool VFVersionGet(const char* name, VDVersionInfo* version)
{
    VersionRegister& versions = Versions();
    const std::lock_guard guard(versions.lock);
    const VDVersionInfo* entry = versions.Find(name);
    if (entry == nullptr)
        return false;
    *version = *entry;
    return true;
}
