#pragma once

#include "vdbase/VDThreadSync.h"
#include "vdbase/VFText.h"

/// The one library-wide object: the text catalogue and the library lock. It lives from load to unload.
class VDDaxLib
{
public:
    /// The object. First use constructs it, so that other file-level objects may use it at load.
    static VDDaxLib& Get();

    VDDaxLib();
    virtual ~VDDaxLib();
    VDDaxLib(const VDDaxLib&) = delete;
    VDDaxLib& operator=(const VDDaxLib&) = delete;

    VDTextCatalogue* GetCatalogue() const { return catalogue_; }

    /// The re-entrant lock over the plug-in tables, the format registry and the plug-ins that need serialisation.
    /// Take it with `std::lock_guard` or `std::unique_lock`.
    VDThreadSync& GetLock() { return lock_; }

private:
    VDThreadSync lock_;
    VDTextCatalogue* catalogue_;
};
