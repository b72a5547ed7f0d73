#include "VDDaxLib.h"

#include "MessageCatalogue.h"
#include "storage/BuiltInPlugins.h"

#include "daxlib/VFDax.h"
#include "vdbase/VFPlugIn.h"
#include "vdbase/VFVersion.h"

namespace {

// Constructs the object at load, whether anybody calls the library or not.
[[maybe_unused]] const VDDaxLib& VVDaxLibAtLoad = VDDaxLib::Get();

}  // namespace

VDDaxLib& VDDaxLib::Get()
{
    static VDDaxLib library;
    return library;
}

VDDaxLib::VDDaxLib() : catalogue_(VFTextCreateEmbedded("daxlib", VFGetMessageTable(), 0))
{
    VFVersionLoad("DAXLIB", DAX_VERSION_MAJOR, DAX_VERSION_MINOR, DAX_VERSION_PATCH, __DATE__, __TIME__);
    // Manifests may name this library as the one that holds a plug-in.
    VFRegisterModule("daxlib", VFGetMessageTable());
    VFAddBuiltInPlugins();
}

VDDaxLib::~VDDaxLib()
{
    VFTextRelease(catalogue_);
}

VDTextCatalogue* VFGetDaxLibText()
{
    return VDDaxLib::Get().GetCatalogue();
}
