#pragma once

#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDHistDescription.h"
#include "vdstore/VDStoreApi.h"

/// Describes a histogram in a set of attributes: kind, axes, texts, overflows, limits. Items of the set by these names are
/// replaced, and those that don't go for this histogram are removed.
/// @param zMin, zMax  the limits of its values
/// @param keep        leaves an item that is there already
VDSTORE_API void VFPutHistogramAttributes(Z4PropertySet& set, const VDHistDescription& histogram, double zMin, double zMax,
                                          bool keep = false);
