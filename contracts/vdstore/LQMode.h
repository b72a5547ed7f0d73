#pragma once

#include "vdstore/VDStoreApi.h"

/// Ways in which data objects are laid out.
class VDSTORE_API LQMode
{
public:
    /// Whether the channels of a time series share their records point by point. Every channel has records of its own.
    static bool IsTandemChannels() { return false; }
};
