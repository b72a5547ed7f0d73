#include "Installation.h"
#include "PlugInManifests.h"
#include "ProcessRights.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VFError.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFPlugIn.h"

#include <dlfcn.h>
#include <link.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

class VDLibrary
{
public:
    explicit VDLibrary(void* handle) : handle_(handle) {}
    void* Find(const char* function) const { return dlsym(handle_, function); }

private:
    void* handle_;
};

namespace {

struct VDModules
{
    std::mutex lock;
    std::map<std::string, const void*, std::less<>> registered;  // an address inside each
    std::map<void*, std::unique_ptr<VDLibrary>> loaded;          // by the loader's handle
};

VDModules& VFModules()
{
    // Never destroyed: libraries stay loaded until the process is gone.
    static auto& modules = *new VDModules;
    return modules;
}

// One library object a handle, however often it is loaded.
VDLibrary* VFKeep(void* handle)
{
    VDModules& modules = VFModules();
    const std::lock_guard guard(modules.lock);
    std::unique_ptr<VDLibrary>& library = modules.loaded[handle];
    if (library == nullptr)
        library = std::make_unique<VDLibrary>(handle);
    return library.get();
}

// Null if there is no such module. No lock is held while the loader works: what it loads may register itself.
void* VFOpenRegistered(const VDString& name)
{
    const void* address = nullptr;
    {
        VDModules& modules = VFModules();
        const std::lock_guard guard(modules.lock);
        const auto found = modules.registered.find(name.View());
        if (found == modules.registered.end())
            return nullptr;
        address = found->second;
    }
    Dl_info module{};
    link_map* map = nullptr;
    if (dladdr1(address, &module, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 || map == nullptr)
        return nullptr;
    // The main program has no name of its own here.
    const char* const path = *map->l_name != '\0' ? map->l_name : nullptr;
    return dlopen(path, RTLD_NOW | RTLD_LOCAL | (path != nullptr ? RTLD_NOLOAD : 0));
}

// Opens a file or a name for the loader's own search; a failure adds a line with the reason.
void* VFTryOpen(const VDString& filename, VDString* reasons)
{
    if (const VDString distrust = filename.Find('/') >= 0 ? VFFindDistrust(filename) : VDString(); !distrust.IsEmpty()) {
        *reasons += "\n" + filename + ": " + distrust;
        return nullptr;
    }
    if (void* const handle = dlopen(filename, RTLD_NOW | RTLD_LOCAL))
        return handle;
    const char* const reason = dlerror();
    *reasons += VDString("\n") + (reason != nullptr ? reason : filename.c_str());
    return nullptr;
}

void* VFOpenByName(const VDString& name, VDString* reasons)
{
    if (void* const handle = VFOpenRegistered(name))
        return handle;
    const VDString spellings[] = {name, "lib" + name + ".so", name + ".so"};
    std::vector<VDString> folders = VFGetManifestFolders(name);
    folders.push_back(VFInstalledPlugInFolder());
    for (const VDString& folder : folders)
        for (const VDString& spelling : spellings)
            // A file that is there is the one that is meant: if it is broken, that must be told and not covered by another.
            if (const VDString filename = VFBuildFilename(folder, spelling); VDFileSystem::FileExists(filename))
                return VFTryOpen(filename, reasons);
    for (const VDString& spelling : spellings)
        if (void* const handle = VFTryOpen(spelling, reasons))
            return handle;
    return nullptr;
}

}  // namespace

VDLibrary* VFLoadLibrary(const char* library)
{
    const VDString name(library);
    VDString reasons;
    void* handle = nullptr;
    if (name.Find('/') >= 0)
        handle = VFTryOpen(name, &reasons);
    else if (!name.IsEmpty())
        handle = VFOpenByName(name, &reasons);
    else
        reasons = "\nThe name is empty";
    if (handle != nullptr)
        return VFKeep(handle);
    VFErrorSet(VDBaseError::LibraryLoad, "The library can't be loaded: " + name + reasons, "VFLoadLibrary", 0);
    return nullptr;
}

bool VFGetLibFunc(VDLibrary* library, const char* prefix, const char* suffix, void** function)
{
    *function = library != nullptr ? library->Find(VDString(prefix) + suffix) : nullptr;
    return *function != nullptr;
}

void VFRegisterModule(const char* name, const void* addressInside)
{
    VDModules& modules = VFModules();
    const std::lock_guard guard(modules.lock);
    modules.registered.insert_or_assign(VDString(name).Str(), addressInside);
}
