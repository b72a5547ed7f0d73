#include "Installation.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

#include <dlfcn.h>

#include <cstdlib>
#include <memory>

namespace {

// Links are resolved before "..": the library may be reached through a linked folder.
VDString VFFindLibraryFolder()
{
    Dl_info module{};
    if (dladdr(reinterpret_cast<const void*>(&VFFindLibraryFolder), &module) == 0 || module.dli_fname == nullptr)
        return {};
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(module.dli_fname, nullptr), &std::free);
    VDString folder;
    VFSplitFilename(real != nullptr ? real.get() : module.dli_fname, &folder, nullptr, nullptr);
    return folder;
}

VDString VFFromLibrary(const char* relative)
{
    static const VDString folder = VFFindLibraryFolder();
    return VDFileSystem::GetFullPath(VFBuildFilename(folder, relative));
}

}  // namespace

VDString VFInstalledDataFolder()
{
    static const VDString folder = VFFromLibrary(DAX_DATA_FROM_LIB);
    return folder;
}

VDString VFInstalledPlugInFolder()
{
    static const VDString folder = VFFromLibrary(DAX_PLUGINS_FROM_LIB);
    return folder;
}
