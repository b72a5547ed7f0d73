#pragma once

#include "vdstore/LQTimeChannels.h"

/// The older kind of time series: single precision only.
class VDSTORE_API LQFlexTimeSeries : public LQTimeChannels
{
public:
    ~LQFlexTimeSeries() override;

private:
    friend class LQDataManager;
    LQFlexTimeSeries();
};
