#pragma once

#include "vdarchive/VDArchiveApi.h"
#include "vdbase/VDString.h"

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

enum class VTStorageOpen { Read, Update };

/// One open file. Positioned reads may come from several threads. Locks end with the object, whoever else has the file open.
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
    /// Gives the room of a part back to the disk, where the system can; it reads as 0 from then on.
    virtual void Discard(std::int64_t offset, std::int64_t size) = 0;
    /// Never waits: who has it may have been stopped.
    /// @return `EWOULDBLOCK` if somebody else has it
    virtual int Lock(VTStorageLock lock) = 0;
    virtual void Unlock(VTStorageLock lock) = 0;
    /// Whether the name still leads to this file and not to one that took its place.
    virtual bool IsAt(const char* filename) = 0;

    /// Gives a file that the system made its name, in one step, in the folder for which it was made.
    /// @param filename  a path whose folder part is not looked at
    /// @param replace   takes the name from a file that has it; without, that one stays, and the result is `EEXIST`
    virtual int GiveName(const char* filename, bool replace) = 0;
    /// Makes the name safe against a loss of power.
    virtual int SyncName() = 0;
};

class VDARCHIVE_API VDStorageOs
{
public:
    virtual ~VDStorageOs();

    /// The system itself.
    static VDStorageOs& System();

    virtual int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) = 0;
    /// Where the file of a name is, or would be made: what a link at its end leads to, whether that is there or not. The
    /// place stays right whatever becomes of the working folder.
    virtual int Resolve(const char* filename, VDString* place) = 0;
    /// A new file to read and write in the folder of a place, which nobody else can come by. It is gone with the object, or
    /// with the process, unless it was given a name.
    /// @param replaced  a file of this system whose owner, mode and access list it gets, as far as that is allowed; null for
    ///                  the usual ones
    virtual int Make(const char* place, const VDStorageFile* replaced, std::unique_ptr<VDStorageFile>* file) = 0;
};
