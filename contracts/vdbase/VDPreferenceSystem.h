#pragma once

#include "vdbase/VDString.h"

#include <cstdint>

/// The user's settings. A key path "/A/B/C" is the key C of the TOML table A.B; ASCII letters in it compare without regard to
/// case. The file `preferences.toml` in the logical
/// folder `home` counts before the one in `vdsys`; an override in memory counts before both. The files are read once, at the
/// first question of the process; a file that can't be parsed is recorded and counts as empty. Objects hold nothing: one is
/// built at each use. Any thread may ask at any time.
class VDBASE_API VDPreferenceSystem
{
public:
    /// An unset key, or a value of another type, yields the default. A list of texts is one text with commas; a whole number
    /// serves as a double too.
    bool GetBooleanValue(const char* key, bool defaultValue) const;
    VDString GetStringValue(const char* key, const char* defaultValue) const;
    int GetEnumValue(const char* key, int defaultValue) const;
    std::int64_t GetHugeValue(const char* key, std::int64_t defaultValue) const;
    double GetDoubleValue(const char* key, double defaultValue) const;

    /// Set a value for the rest of the process.
    void OverrideBooleanValue(const char* key, bool value);
    void OverrideStringValue(const char* key, const char* value);
    void OverrideEnumValue(const char* key, int value);
    void OverrideHugeValue(const char* key, std::int64_t value);
    void OverrideDoubleValue(const char* key, double value);
    /// Drops all overrides and reads the files again at the next question.
    void Reload();

    /// Rises with every override and reload, so that a caller can keep what it worked out from preferences.
    static std::uint64_t GetGeneration();
};
