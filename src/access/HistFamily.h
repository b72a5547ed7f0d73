#pragma once

#include "AccessFamily.h"

#include "daxlib/HistogramPlugin.h"

class VDAccessPlugins;

/// The entry points of a histogram plug-in.
struct VDHistAccEntryPoints : VDAccessEntryPoints
{
    DaxHistogram::GetLastError* GetLastError = nullptr;
    DaxHistogram::GetValue* GetValue = nullptr;
    DaxHistogram::PutValue* PutValue = nullptr;
    DaxHistogram::GetHistogram* GetHistogram = nullptr;
    DaxHistogram::PutHistogram* PutHistogram = nullptr;
};

const VDAccessFamily& VFHistFamily();
VDAccessPlugins& VFHistPlugins();
