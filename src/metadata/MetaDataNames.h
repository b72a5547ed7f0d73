#pragma once

/// Names of metadata sets that have a fixed meaning.
namespace DaxSetName {
constexpr const char* InputTestInfo = "InputTestInfo";            ///< identity of the source test, anew at every read
constexpr const char* ExtraDetails = "ExtraDetails";              ///< what users add
constexpr const char* LegacyExtraDetails = "LegacyExtraDetails";  ///< the same, as older formats keep it
constexpr const char* PropertyOverrides = "PropertyOverrides";    ///< private to the suite
}  // namespace DaxSetName
