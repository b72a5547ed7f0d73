#pragma once

/// The codes of `vdarchive`'s own error reports. Their texts are plain English and stand in the platform library.
namespace VDArchiveError {
constexpr int NoProperty = -66049;   ///< a property set has no property of this name
constexpr int FileOpen = -66050;     ///< a storage file can't be opened or made
constexpr int FileRead = -66051;     ///< a storage file can't be read
constexpr int FileWrite = -66052;    ///< a storage file can't be written; what the last commit holds is untouched
constexpr int FileDamaged = -66053;  ///< what a storage file holds contradicts itself or its checksums
constexpr int FileInUse = -66054;    ///< another writer has the storage file
constexpr int WrongUse = -66055;   ///< a call that this object can't serve, for instance writing to a file open for reading
constexpr int FileMoved = -66056;  ///< what was written is committed, but the storage file is no longer at its name
}  // namespace VDArchiveError
