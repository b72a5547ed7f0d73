#pragma once

#include "MetaFamily.h"
#include "VDAccessCore.h"

#include "vdbase/VDCompBase.h"

/// Access to one test that is metadata alone, behind the `MetaAcc` functions. There are no data calls of its own: all that it
/// does, the core does.
class VDMetaAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::MetaAcc;
    static constexpr bool GuardedHandle = true;

    VDMetaAcc() : VDCompBase(HandleId), core_(VFMetaFamily(), VFMetaPlugins(), this) {}

    VDAccessCore& GetCore() { return core_; }

private:
    VDAccessCore core_;
};
