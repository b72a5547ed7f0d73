#pragma once

#include "StandScript.h"

#include "vdbase/VFError.h"

#include <stdexcept>

#define STAND_API extern "C" __attribute__((visibility("default")))

/// Throws as a key of the script says: an int for "int", otherwise a standard exception.
inline void StandThrow(const std::string& how)
{
    if (how == "int")
        throw 4711;
    if (!how.empty())
        throw std::runtime_error("thrown by the stand-in");
}

/// Prepares a failure: records what the script wants recorded.
inline int StandFail(const StandScript& script, const char* routine)
{
    if (script.Has("record"))
        VFErrorSet(script.Int("record"), "Recorded by the stand-in", routine, 0);
    return 0;
}

/// What GetLastError gives.
inline VDString StandLastError(const StandScript& script)
{
    const std::string text = script.Text("lasterror", "Stand-in failure");
    if (text == "throw")
        throw std::runtime_error("thrown by GetLastError");
    return text;
}
