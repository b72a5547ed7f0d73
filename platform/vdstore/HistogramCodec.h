#pragma once

#include "vdarchive/Z4Bytes.h"
#include "vdbase/VDHistDescription.h"

/// What is stored of a histogram beside its bins.
struct HistogramFacts
{
    VDHistDescription description;
    double zMin = 0;
    double zMax = 0;
};

void VFPutHistogram(Z4ByteWriter& writer, const HistogramFacts& facts);
/// @return false if the bytes are no such facts, or are more; whether a histogram can be like that is for others to say
bool VFGetHistogram(Z4ByteReader& reader, HistogramFacts* facts);
