#pragma once

#include "vdbase/VDString.h"

/// A component's version as it registered itself.
struct VDVersionInfo
{
    VDString name;
    int major = 0;
    int minor = 0;
    int build = 0;
    VDString date;  ///< "Dec 12 2012"
    VDString time;  ///< "17:41:34"
};

/// Registers a component; a later call for the same name replaces the entry.
VDBASE_API void VFVersionLoad(const char* name, int major, int minor, int build, const char* date, const char* time);
/// False if no such component is registered. Names compare without regard to case.
VDBASE_API bool VFVersionGet(const char* name, VDVersionInfo* version);
