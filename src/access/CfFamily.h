#pragma once

#include "AccessFamily.h"

#include "daxlib/ComplexFrequencyPlugin.h"

class VDAccessPlugins;

/// The entry points of a complex frequency plug-in.
struct VDCFAccEntryPoints : VDAccessEntryPoints
{
    DaxComplexFrequency::GetLastError* GetLastError = nullptr;
    DaxComplexFrequency::GetValue* GetValue = nullptr;
    DaxComplexFrequency::PutValue* PutValue = nullptr;
    DaxComplexFrequency::GetData* GetData = nullptr;
    DaxComplexFrequency::PutData* PutData = nullptr;
    DaxComplexFrequency::GetLineAxisData* GetLineAxisData = nullptr;
    DaxComplexFrequency::PutLineAxisData* PutLineAxisData = nullptr;
    DaxComplexFrequency::GetSpectrumAxisData* GetSpectrumAxisData = nullptr;
    DaxComplexFrequency::PutSpectrumAxisData* PutSpectrumAxisData = nullptr;
    DaxComplexFrequency::SetProgressObject* SetProgressObject = nullptr;
};

const VDAccessFamily& VFCfFamily();
VDAccessPlugins& VFCfPlugins();
