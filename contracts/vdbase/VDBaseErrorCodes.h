#pragma once

/// The codes of `vdbase`'s own error reports. Their texts are plain English and stand in the platform library.
namespace VDBaseError {
constexpr int FileOpen = -65537;         ///< a file can't be opened
constexpr int FileRead = -65550;         ///< a file can't be read
constexpr int FileWrite = -65551;        ///< a file can't be written
constexpr int FileDelete = -65552;       ///< a file can't be deleted
constexpr int PluginConfig = -65601;     ///< a plug-in manifest can't be read
constexpr int PluginMissing = -65602;    ///< no plug-in of this name is configured
constexpr int LibraryLoad = -65603;      ///< a shared library can't be loaded
constexpr int Preferences = -65611;      ///< a preference file can't be read
constexpr int XmlParse = -65621;         ///< an XML text can't be parsed
constexpr int XmlWrite = -65622;         ///< an XML text can't be formed
constexpr int ExpressionText = -65631;   ///< an expression can't be read
constexpr int ExpressionValue = -65632;  ///< an expression can't be evaluated
constexpr int HistHandle = -65641;       ///< a handle is no histogram's
constexpr int HistValue = -65642;        ///< a histogram can't have this value
constexpr int HistMemory = -65643;       ///< memory is too short for a histogram
constexpr int CycArrHandle = -65651;     ///< a handle is no cycle array's
constexpr int CycArrValue = -65652;      ///< a cycle array has no such column, or can't have this value
constexpr int CycArrMemory = -65653;     ///< memory is too short for a cycle array
}  // namespace VDBaseError
