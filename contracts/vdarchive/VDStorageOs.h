#pragma once

#include "vdarchive/VDArchiveApi.h"

#include <cstdint>
#include <memory>

/// The seam between the structured storage and the operating system. Everything that the storage does to a disk goes through
/// these two interfaces, so that a test can stand in for the system. Where a result is an `int` it is 0 or an `errno` value.

/// What a storage file is locked for. Locks belong to the open file, so that two opens in one process exclude each other
/// too; the system frees them when the file is closed or its process ends.
enum class VTStorageLock {
    Writer,     ///< this open file alone may write
    Reader,     ///< shared: somebody reads a committed version
    NoReaders,  ///< held by nobody else as `Reader`, and kept from being so
};

enum class VTStorageOpen {
    Read,
    Update,
    Create,  ///< read and write; made if it is not there, its content left as it is if it is
};

/// One open file. Positioned reads may come from several threads.
class VDARCHIVE_API VDStorageFile
{
public:
    virtual ~VDStorageFile();

    /// @param numRead  fewer than `count` only at the end of the file
    virtual int Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead) = 0;
    /// Writes all or fails; a failed write may have written a part.
    virtual int Write(std::int64_t offset, std::int64_t count, const void* buffer) = 0;
    virtual int GetSize(std::int64_t* size) = 0;
    /// Cuts or, with zeros, lengthens the file.
    virtual int Truncate(std::int64_t size) = 0;
    /// Comes back when everything written is safe against a loss of power.
    virtual int Sync() = 0;
    /// Waits only for `Reader`, and there only as long as somebody asks for `NoReaders`.
    /// @return `EWOULDBLOCK` if somebody else has it
    virtual int Lock(VTStorageLock lock) = 0;
    virtual void Unlock(VTStorageLock lock) = 0;
    /// Whether the name still leads to this file and not to one that took its place.
    virtual bool IsAt(const char* filename) = 0;
};

class VDARCHIVE_API VDStorageOs
{
public:
    virtual ~VDStorageOs();

    /// The system itself.
    static VDStorageOs& System();

    virtual int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) = 0;
    /// Puts the file in the place of one of the new name, in one step.
    virtual int Rename(const char* from, const char* to) = 0;
    virtual int Remove(const char* filename) = 0;
    /// Makes names given or taken in the folder of this file safe against a loss of power.
    virtual int SyncDirectory(const char* filename) = 0;
};
