#pragma once

#include "vdbase/VDString.h"

#include <string_view>

/// What a `SG_` line says.
struct VDDbcSignal
{
    std::string_view title;
    bool isSwitch = false;
    bool isMultiplexed = false;
    int multiplexId = 0;
    int startBit = 0;
    int numBits = 0;
    bool bigEndian = false;
    bool isSigned = false;
    double factor = 0;
    double offset = 0;
    double minval = 0;
    double maxval = 0;
    VDString units;
    std::string_view receivers;  ///< the list as it stands
};

/// Reads a `SG_` line. Gives 0 or the code of the failure.
int VFReadDbcSignal(std::string_view line, VDDbcSignal* signal);
