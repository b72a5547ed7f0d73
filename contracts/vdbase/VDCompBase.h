#pragma once

#include "vdbase/VDBaseApi.h"

#include <atomic>
#include <cstdint>

/// Base of every object that crosses an exported interface: a type id and a reference count. An object starts with one
/// reference, held by whoever made it.
class VDBASE_API VDCompBase
{
public:
    explicit VDCompBase(std::int32_t id);
    virtual ~VDCompBase();
    VDCompBase(const VDCompBase&) = delete;
    VDCompBase& operator=(const VDCompBase&) = delete;

    std::int32_t GetID() const;
    void SetID(const std::int32_t& id);
    /// Both give the number of references that there are after the call. `Release` never deletes the object: who gets 0
    /// from it does.
    int AddRef();
    int Release();

private:
    std::int32_t id_;
    std::atomic<int> references_{1};
};
