#pragma once

#include "AccessFamily.h"

#include "daxlib/TimeSeriesPlugin.h"

class VDAccessPlugins;

/// The entry points of a time-series plug-in.
struct VDTsAccEntryPoints : VDAccessEntryPoints
{
    DaxTimeSeries::GetLastError* GetLastError = nullptr;
    DaxTimeSeries::GetValue* GetValue = nullptr;
    DaxTimeSeries::PutValue* PutValue = nullptr;
    DaxTimeSeries::GetData* GetData = nullptr;
    DaxTimeSeries::PutData* PutData = nullptr;
    DaxTimeSeries::GetDataDoublePrecision* GetDataDoublePrecision = nullptr;
    DaxTimeSeries::PutDataDoublePrecision* PutDataDoublePrecision = nullptr;
    DaxTimeSeries::GetDataDigital32* GetDataDigital32 = nullptr;
    DaxTimeSeries::PutDataDigital32* PutDataDigital32 = nullptr;
    DaxTimeSeries::GetDataDigital64* GetDataDigital64 = nullptr;
    DaxTimeSeries::PutDataDigital64* PutDataDigital64 = nullptr;
};

const VDAccessFamily& VFTsFamily();
VDAccessPlugins& VFTsPlugins();
