#pragma once

#include "daxlib/TimeSeriesPlugin.h"

/// The time-series plug-ins that live inside the library, as one plug-in under the prefix "TSAccGen". Configured without any
/// manifest for the class id text "8F517AAA-6DB0-45bb-990D-821265DFB159", which stands for time series in storage files, and for
/// those of Famos recordings.
/// An instance that isn't of this family is refused with -327682.

extern "C" {
DAX_API DaxTimeSeries::Create TSAccGenCreate;  ///< -328013 for a class id that isn't known; case doesn't count
DAX_API DaxTimeSeries::Release TSAccGenRelease;
DAX_API DaxTimeSeries::SetId TSAccGenSetId;
DAX_API DaxTimeSeries::Open TSAccGenOpen;
DAX_API DaxTimeSeries::Close TSAccGenClose;
DAX_API DaxTimeSeries::GetLastError TSAccGenGetLastError;
DAX_API DaxTimeSeries::Flush TSAccGenFlush;
DAX_API DaxTimeSeries::GetCapability TSAccGenGetCapability;
DAX_API DaxTimeSeries::GetValue TSAccGenGetValue;
DAX_API DaxTimeSeries::PutValue TSAccGenPutValue;
DAX_API DaxTimeSeries::GetData TSAccGenGetData;
DAX_API DaxTimeSeries::PutData TSAccGenPutData;
DAX_API DaxTimeSeries::LoadMetaData TSAccGenLoadMetaData;
DAX_API DaxTimeSeries::AddLegacyMetaData TSAccGenAddLegacyMetaData;
DAX_API DaxTimeSeries::GetDataDoublePrecision TSAccGenGetDataDoublePrecision;
DAX_API DaxTimeSeries::PutDataDoublePrecision TSAccGenPutDataDoublePrecision;
DAX_API DaxTimeSeries::GetDataDigital32 TSAccGenGetDataDigital32;
DAX_API DaxTimeSeries::PutDataDigital32 TSAccGenPutDataDigital32;
DAX_API DaxTimeSeries::GetDataDigital64 TSAccGenGetDataDigital64;
DAX_API DaxTimeSeries::PutDataDigital64 TSAccGenPutDataDigital64;
}
