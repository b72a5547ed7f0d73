#pragma once

#include "../common/PluginReport.h"

/// The texts of the catalogue that this plug-in reports.
namespace WavError {
constexpr int ClassNotRecognised = -328013;
constexpr int InvalidFileId = -331882;
constexpr int Open = -331883;
constexpr int ChannelMismatch = -331884;
constexpr int Read = -331885;
constexpr int WrongNumber = -331886;
constexpr int NotWritable = -331888;
constexpr int MetaData = -331891;
constexpr int Close = -331892;
constexpr int NoStatus = -331893;
constexpr int Header = -331895;
constexpr int NoData = -331896;
constexpr int NoChannels = -331899;
constexpr int Write = -331900;
}  // namespace WavError

/// As `PluginReport`.
inline int WavReport(int code, const char* routine, const std::string& file, const std::string& detail, int chain = 0)
{
    return PluginReport(code, routine, file, detail, chain);
}
