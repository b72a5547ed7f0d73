#pragma once

#include "VDXYFileChan.h"

#include "vdbase/VDVariant.h"

/// Work on the first `count` values of a buffer of numbers, in bulk. False for a variant that holds no numbers, or fewer.

bool VFToFloats(const VDVariant& buffer, std::int64_t count, float* values);

/// Brings limits up to values; what is no number doesn't count.
bool VFIncludeValues(const VDVariant& buffer, std::int64_t count, VDXYLimits& limits);
