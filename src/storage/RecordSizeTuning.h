#pragma once

#include "vdarchive/Z4File.h"

/// The record size that stores so many elements of each channel in the least room, index blocks included.
/// @param elementSize   in bytes
/// @param channelCount  of a file whose channels share records point by point
/// @return one of `Z4Size`; the usual one where there is nothing to go by
int VFGetOptimumRecordSize(const Z4File* file, std::int64_t elementCount, std::int64_t elementSize, int channelCount);
