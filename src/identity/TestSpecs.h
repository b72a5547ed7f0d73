#pragma once

#include "daxlib/DaxHandle.h"

class VDChanSep;

/// The tests that a spec names: those that a plug-in knows a descriptor by, or those that a folder holds.
struct VDSpecTests
{
    VDFileIdArrayHandle tests;
    bool fromPlugin = false;
};

/// @param rules    for splitting file names; null for those of the preferences
/// @param routine  what reports on a descriptor that no plug-in takes are recorded under
/// @return false, recorded, if that fails; that there are no tests is no failure
bool VFListSpecTests(const char* text, const VDChanSep* rules, const char* routine, VDSpecTests& result);
