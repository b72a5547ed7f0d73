#pragma once

#include "HistFamily.h"
#include "VDAccessCore.h"

#include "daxlib/HFAcc.h"
#include "vdbase/VDCompBase.h"
#include "vdstore/LQChannelMapper.h"

/// Access to one histogram test, behind the `HFAcc` functions: checks, offsets and the description of each histogram in the
/// metadata around the plug-in's calls. A channel is one whole histogram.
class VDHistAcc : public VDCompBase
{
public:
    static constexpr std::int32_t HandleId = DaxHandleId::HistAcc;
    static constexpr bool GuardedHandle = true;

    VDHistAcc() : VDCompBase(HandleId), core_(VFHistFamily(), VFHistPlugins(), this) {}

    VDAccessCore& GetCore() { return core_; }

    bool GetHistogram(int index, VDHist** histogram);
    bool PutHistogram(int index, VDHist* histogram);

    /// A step of the core: describes each histogram in the attributes of its channel.
    bool AddHeaderAttributes(LQChannelMapper& mapper);

private:
    bool CheckOpenAndChannel(int index, const char* routine);
    bool ReadHistogram(int index, VDHist** histogram);
    bool AddOffset(int index, VDHist* histogram);
    bool Describe(LQChannelMapper& mapper, int index);

    VDAccessCore core_;  // the last member: it ends first
};
