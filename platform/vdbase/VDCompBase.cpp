#include "vdbase/VDCompBase.h"

VDCompBase::VDCompBase(std::int32_t id) : id_(id) {}

VDCompBase::~VDCompBase() = default;

std::int32_t VDCompBase::GetID() const
{
    return id_;
}

void VDCompBase::SetID(const std::int32_t& id)
{
    id_ = id;
}

int VDCompBase::AddRef()
{
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
}

int VDCompBase::Release()
{
    // Whoever gets 0 must see all that the other holders did to the object.
    return references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
}
