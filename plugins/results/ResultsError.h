#pragma once

#include "../common/PluginReport.h"

/// The texts of the catalogue that this library reports. What the storage itself reports comes on its own.
namespace ResultsError {
constexpr int NoSpectraChannels = -327982;
constexpr int ClassNotRecognised = -328013;
constexpr int VariantBuffer = -328993;
constexpr int NoStatusWords = -328996;
constexpr int WrongType = -329281;
constexpr int InvalidFileId = -329283;
constexpr int DataType = -329287;
constexpr int Open = -329885;
constexpr int ChannelNumber = -329886;
constexpr int NoTableChannels = -330081;
}  // namespace ResultsError
