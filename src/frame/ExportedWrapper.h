#pragma once

#include "VFDaxReport.h"

#include "vdbase/VDCompBase.h"

#include <utility>

/// The one shape of the exported functions: check the handle, forward to one method of the class behind it, give its result.
/// All of them go through `VFExport`, which lets no exception out. A class that stands behind a handle has
///
///     static constexpr std::int32_t HandleId = ...;     // what GetID gives for this family
///     static constexpr bool GuardedHandle = true;       // whatever reading the id throws counts as a failed check
///
/// and a wrapper is one line:
///
///     int FIDGetNumChans(VDFileId* id, int* count) { return VFForward<&VDFileId::GetNumChans>(id, __func__, count); }

/// Does the work of an exported function. An exception is recorded and gives 0.
template <class Work>
auto VFExport(const char* routine, Work&& work) noexcept -> decltype(work())
{
    try {
        return work();
    } catch (...) {
        VFReportException(routine);
        return decltype(work())();
    }
}

/// Whether a handle is one of the family of `Class`.
template <class Class>
bool VFIsHandle(const Class* handle)
{
    if (handle == nullptr)
        return false;
    // The handle may be an object of any other family, so it is looked at as no more than the common base.
    const auto* object = static_cast<const VDCompBase*>(handle);
    if constexpr (Class::GuardedHandle) {
        try {
            return object->GetID() == Class::HandleId;
        } catch (...) {
            return false;
        }
    } else {
        return object->GetID() == Class::HandleId;
    }
}

/// `VFIsHandle` with the report of a failure.
template <class Class>
bool VFCheckHandle(const Class* handle, const char* routine)
{
    return VFIsHandle(handle) || VFDaxReportError(DaxError::InvalidHandle, routine) != 0;
}

/// Checks the handle and forwards to the method. A failed check gives 0.
template <auto Method, class Class, class... Arguments>
int VFForward(Class* handle, const char* routine, Arguments&&... arguments)
{
    return VFExport(routine, [&] {
        if (!VFCheckHandle(handle, routine))
            return 0;
        return static_cast<int>((handle->*Method)(std::forward<Arguments>(arguments)...));
    });
}

/// `VFForward` for a method that takes a second handle of the family `Other` first.
template <auto Method, class Class, class Other, class... Arguments>
int VFForwardPair(Class* handle, Other* other, const char* routine, Arguments&&... arguments)
{
    return VFExport(routine, [&] {
        if (!VFCheckHandle(handle, routine) || !VFCheckHandle(other, routine))
            return 0;
        return static_cast<int>((handle->*Method)(other, std::forward<Arguments>(arguments)...));
    });
}

/// A new object with one reference; null, recorded, when memory is short.
template <class Class>
Class* VFCreate(const char* routine)
{
    return VFExport(routine, [] { return new Class; });
}

/// Takes a reference; gives the number of references.
template <class Class>
int VFAddRef(Class* handle, const char* routine)
{
    return VFExport(routine, [&] { return VFCheckHandle(handle, routine) ? handle->AddRef() : 0; });
}

/// Gives a reference back and deletes the object with the last one.
template <class Class>
int VFRelease(Class* handle, const char* routine)
{
    return VFExport(routine, [&] {
        if (!VFCheckHandle(handle, routine))
            return 0;
        if (handle->Release() == 0)
            delete handle;
        return 1;
    });
}
