#pragma once

#include "daxlib/HistogramPlugin.h"

/// The histogram plug-ins that live inside the library, as one plug-in under the prefix "HFAccGen". Configured without any
/// manifest for the class id text "FB3DAE1E-0E86-4f2d-9B58-3766EAE9A6EB", which stands for histograms in storage files. An
/// instance that isn't of this family is refused with -327682.

extern "C" {
DAX_API DaxHistogram::Create HFAccGenCreate;  ///< -328013 for a class id that isn't known; case doesn't count
DAX_API DaxHistogram::Release HFAccGenRelease;
DAX_API DaxHistogram::SetId HFAccGenSetId;
DAX_API DaxHistogram::Open HFAccGenOpen;
DAX_API DaxHistogram::Close HFAccGenClose;
DAX_API DaxHistogram::GetLastError HFAccGenGetLastError;
DAX_API DaxHistogram::Flush HFAccGenFlush;
DAX_API DaxHistogram::GetCapability HFAccGenGetCapability;
DAX_API DaxHistogram::GetValue HFAccGenGetValue;
DAX_API DaxHistogram::PutValue HFAccGenPutValue;
DAX_API DaxHistogram::GetHistogram HFAccGenGetHistogram;
DAX_API DaxHistogram::PutHistogram HFAccGenPutHistogram;
DAX_API DaxHistogram::LoadMetaData HFAccGenLoadMetaData;
DAX_API DaxHistogram::AddLegacyMetaData HFAccGenAddLegacyMetaData;
}
