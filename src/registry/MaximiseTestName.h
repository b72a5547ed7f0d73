#pragma once

#include "daxlib/DaxTypes.h"

class VDChanSep;

/// Moves the digits that all channel numbers of a test have in front into its name: "abc" with the channels 101 and 102
/// becomes "abc1" with 1 and 2. A folder test gets the title that goes with its name. Any other id stays.
/// @return false, recorded, on failure
bool VFMaximiseTestName(VDFileId* test, const VDChanSep& chanSep);
