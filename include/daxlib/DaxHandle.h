#pragma once

#include "daxlib/CFAcc.h"
#include "daxlib/FIA.h"
#include "daxlib/FID.h"
#include "daxlib/FINF.h"
#include "daxlib/HFAcc.h"
#include "daxlib/MetaAcc.h"
#include "daxlib/TSAcc.h"
#include "daxlib/VFDirList.h"
#include "daxlib/VMD.h"
#include "daxlib/XYAcc.h"
#include "vdbase/VFHist.h"

#include <utility>

/// Owns one reference on a handle of the family whose release function is given.
template <class Class, int (*ReleaseFunction)(Class*)>
class VDDaxHandle
{
public:
    VDDaxHandle() = default;
    explicit VDDaxHandle(Class* handle) : handle_(handle) {}
    VDDaxHandle(VDDaxHandle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
    VDDaxHandle& operator=(VDDaxHandle&& other) noexcept
    {
        if (this != &other)
            Reset(std::exchange(other.handle_, nullptr));
        return *this;
    }
    ~VDDaxHandle() { Reset(); }

    Class* Get() const { return handle_; }
    explicit operator bool() const { return handle_ != nullptr; }

    /// Gives the held reference back and owns another one.
    void Reset(Class* handle = nullptr)
    {
        if (Class* old = std::exchange(handle_, handle))
            ReleaseFunction(old);
    }
    /// Hands the reference to the caller.
    Class* Detach() { return std::exchange(handle_, nullptr); }
    /// Where a function stores a handle with a reference for the caller.
    Class** Out()
    {
        Reset();
        return &handle_;
    }

private:
    Class* handle_ = nullptr;
};

using VDDirListHandle = VDDaxHandle<VDDirList, VFDirListRelease>;
using VDFileIdHandle = VDDaxHandle<VDFileId, FIDRelease>;
using VDFileIdArrayHandle = VDDaxHandle<VDFileIdArray, FIARelease>;
using VDFileInfoHandle = VDDaxHandle<VDFileInfo, FINFRelease>;
using VDTsAccHandle = VDDaxHandle<VDTsAcc, TSAccRelease>;
using VDCFAccHandle = VDDaxHandle<VDCFAcc, CFAccRelease>;
using VDHistAccHandle = VDDaxHandle<VDHistAcc, HFAccRelease>;
using VDHistHandle = VDDaxHandle<VDHist, VFHistRelease>;
using VDMetaAccHandle = VDDaxHandle<VDMetaAcc, MetaAccRelease>;
using VDVmdFileHandle = VDDaxHandle<VDVmdFile, VMDRelease>;
using VDXYAccHandle = VDDaxHandle<VDXYAcc, XYAccRelease>;
