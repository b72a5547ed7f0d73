#pragma once

#include "vdbase/VDString.h"

#include <cstdint>
#include <memory>

/// How a `VDIo` or a `VDTextIo` opens its file.
enum VTOpenMode : int {
    VTOpenRead = 1,    ///< an existing file, reading only
    VTOpenUpdate = 2,  ///< an existing file, reading and writing
    VTOpenCreate = 4,  ///< a new or emptied file, reading and writing
};

/// A file of bytes with 64-bit offsets. Small reads in a row go through a read-ahead buffer and cost no system call each;
/// other reads go straight to the caller's memory. Opening for reading reads the first 512 bytes along, so that opening,
/// reading a header and closing cost three system calls. Writing isn't buffered. One thread uses an object at a time. Every
/// failure is recorded (`VDBaseError`) with the file's name.
class VDBASE_API VDIo
{
public:
    explicit VDIo(const char* filename);
    ~VDIo();
    VDIo(const VDIo&) = delete;
    VDIo& operator=(const VDIo&) = delete;

    const VDString& GetFilename() const { return filename_; }

    /// A file that is open already is closed first.
    /// @param mode  a `VTOpenMode`. A directory or a pipe can't be opened for reading.
    bool Open(int mode);
    bool IsOpen() const { return handle_ >= 0; }
    /// False if the system tells only now that something wasn't written; the file is closed in any case.
    bool Close();

    /// Reads at an offset and leaves the position behind what was read.
    /// @param numRead  bytes read, fewer than `count` only at the end of the file; may be null, and then fewer is a failure
    bool Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead);
    /// The same at the current position.
    bool ReadAtCur(std::int64_t count, void* buffer, std::int64_t* numRead);
    /// Writes all bytes or fails; the position is then behind them, after a failure where it was.
    bool Write(std::int64_t offset, std::int64_t count, const void* buffer);
    bool WriteAtCur(std::int64_t count, const void* buffer);

    std::int64_t GetCurPos() const { return position_; }
    /// A position past the end is allowed, a negative one is not.
    bool SetCurPos(std::int64_t position);
    /// Size in bytes now; -1, recorded, if it can't be told.
    std::int64_t GetFileSize() const;

    /// @name Objects
    /// Values in frames that tell what they are and how long; objects may lie in objects. Each start has its finish, whatever
    /// failed in between. What is put may wait in memory until the outermost object is finished, so nothing else is done with
    /// the file until then. An object that wasn't finished is one that no reader takes.
    /// @{
    /// Begins an object at the current position.
    bool StartWriteObject(int id, int version, int extra);
    /// False if anything since the start has failed: the object then counts as unfinished.
    /// @param context  gets the position of the object in the file; may be null
    bool FinishWriteObject(std::int64_t* context);
    bool Put(long value);  ///< 32 bits; a value that they don't hold fails
    bool Put(char value);
    bool Put(const VDString& value);

    /// Enters the object at the current position; each out argument may be null. A frame that is none, or that isn't whole
    /// within the file and the object around it, fails.
    /// @param context  gets the position of the object
    bool StartReadObject(std::int64_t* context, int* id, int* version, int* extra);
    /// Leaves the object; the position is then behind it, whatever of it was read. False if there is none to leave.
    bool FinishReadObject();
    /// Values never come from behind the end of the object, and a length is checked before memory is asked for.
    bool Get(long* value);
    bool Get(char* value);
    bool Get(VDString* value);
    /// @}

private:
    struct Objects;

    void ReserveReadAhead(std::int64_t size);
    bool FillReadAhead(std::int64_t offset);
    Objects& NeedObjects();
    bool PutBytes(const void* bytes, std::size_t count);
    bool FlushObjects();
    bool GetBytes(void* bytes, std::int64_t count);
    std::int64_t FindReadEnd() const;

    VDString filename_;
    int handle_ = -1;
    std::int64_t position_ = 0;
    std::unique_ptr<unsigned char[]> readAhead_;
    std::int64_t readAheadSize_ = 0;
    std::int64_t readAheadOffset_ = 0;
    std::int64_t readAheadCount_ = 0;
    std::int64_t lastReadEnd_ = -1;
    std::unique_ptr<Objects> objects_;  ///< while there are any
};
