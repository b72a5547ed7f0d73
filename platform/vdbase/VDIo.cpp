#include "vdbase/VDIo.h"

#include "FileReport.h"
#include "VDIoObjects.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

namespace {

constexpr std::int64_t ReadAheadSize = 65536;
// What opening reads along: as much as identification looks at.
constexpr std::int64_t HeaderSize = 512;
// Above this, copying out of the buffer costs more than the system calls that it saves.
constexpr std::int64_t LargestBuffered = 16384;
constexpr std::int64_t LargestOffset = std::numeric_limits<std::int64_t>::max();

int VFOpenFlags(int mode)
{
    switch (mode) {
    case VTOpenRead:
        // A pipe that nobody writes to would otherwise hold the process up.
        return O_RDONLY | O_NONBLOCK;
    case VTOpenUpdate:
        return O_RDWR;
    case VTOpenCreate:
        return O_RDWR | O_CREAT | O_TRUNC;
    default:
        return -1;
    }
}

int VFOpenHandle(const char* filename, int flags)
{
    for (;;) {
        const int handle = open(filename, flags | O_CLOEXEC, 0666);
        if (handle >= 0)
            return handle;
        if (errno == EWOULDBLOCK && (flags & O_NONBLOCK) != 0)
            flags &= ~O_NONBLOCK;  // a file server holds a lease on the file and gives it back if it is waited for
        else if (errno != EINTR)
            return -1;
    }
}

// Reads on until all is there or the file ends. Gives the number of bytes, -1 with `errno` on failure.
std::int64_t VFReadFully(int handle, std::int64_t offset, std::int64_t count, unsigned char* buffer)
{
    std::int64_t total = 0;
    while (total < count) {
        const auto part = static_cast<std::size_t>(count - total);
        const ssize_t got = pread(handle, buffer + total, part, offset + total);
        if (got > 0)
            total += got;
        else if (got == 0)
            break;
        else if (errno != EINTR)
            return -1;
    }
    return total;
}

const char* VFBadRange(int handle, std::int64_t offset, std::int64_t count, const void* buffer)
{
    if (handle < 0)
        return "it isn't open";
    if (offset < 0 || count < 0)
        return "an offset or a count is negative";
    if (buffer == nullptr && count > 0)
        return "there is no buffer";
    return nullptr;
}

}  // namespace

VDIo::VDIo(const char* filename) : filename_(filename) {}

VDIo::~VDIo()
{
    if (handle_ >= 0)
        close(handle_);
}

bool VDIo::Open(int mode)
{
    constexpr const char* Routine = "VDIo::Open";
    if (!Close())
        return false;
    const int flags = VFOpenFlags(mode);
    if (flags < 0)
        return VFReportFile(VDBaseError::FileOpen, filename_, "the mode is unknown", Routine);
    handle_ = VFOpenHandle(filename_, flags);
    if (handle_ < 0)
        return VFReportFile(VDBaseError::FileOpen, filename_, errno, Routine);
    position_ = 0;
    lastReadEnd_ = -1;
    if (mode != VTOpenRead)
        return true;

    // The system opens a folder for reading and only fails to read it. Reading the start at once finds that out with the
    // call that the first read of a header saves.
    // The large buffer waits until it is needed: most files are opened for their header alone.
    ReserveReadAhead(HeaderSize);
    readAheadOffset_ = 0;
    readAheadCount_ = VFReadFully(handle_, 0, HeaderSize, readAhead_.get());
    if (readAheadCount_ >= 0)
        return true;
    const int reason = errno;
    close(handle_);
    handle_ = -1;
    if (reason == ESPIPE)
        return VFReportFile(VDBaseError::FileOpen, filename_, "it is a pipe or a device", Routine);
    return VFReportFile(VDBaseError::FileOpen, filename_, reason, Routine);
}

bool VDIo::Close()
{
    const int handle = handle_;
    handle_ = -1;
    position_ = 0;
    objects_.reset();
    readAhead_.reset();
    readAheadSize_ = 0;
    readAheadCount_ = 0;
    // An interrupted close has closed all the same.
    if (handle < 0 || close(handle) == 0 || errno == EINTR)
        return true;
    return VFReportFile(VDBaseError::FileWrite, filename_, errno, "VDIo::Close");
}

bool VDIo::Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead)
{
    constexpr const char* Routine = "VDIo::Read";
    if (numRead != nullptr)
        *numRead = 0;
    if (const char* bad = VFBadRange(handle_, offset, count, buffer))
        return VFReportFile(VDBaseError::FileRead, filename_, bad, Routine);

    const std::int64_t wanted = std::min(count, LargestOffset - offset);
    const bool sequential = offset == lastReadEnd_;
    // The first read of a header that opening has read along; a shorter one is the whole file.
    const bool isHeader = lastReadEnd_ < 0 && offset == 0 && wanted <= HeaderSize && readAhead_ != nullptr;
    auto* const to = static_cast<unsigned char*>(buffer);
    std::int64_t total = 0;
    bool failed = false;
    while (total < wanted) {
        const std::int64_t at = offset + total;
        const std::int64_t rest = wanted - total;
        if (at >= readAheadOffset_ && at - readAheadOffset_ < readAheadCount_) {
            const std::int64_t inBuffer = at - readAheadOffset_;
            const std::int64_t part = std::min(rest, readAheadCount_ - inBuffer);
            std::memcpy(to + total, readAhead_.get() + inBuffer, static_cast<std::size_t>(part));
            total += part;
        } else if (isHeader) {
            break;
        } else if (sequential && rest < LargestBuffered) {
            failed = !FillReadAhead(at);
            if (failed || readAheadCount_ == 0)
                break;
        } else {
            const std::int64_t got = VFReadFully(handle_, at, rest, to + total);
            failed = got < 0;
            total += std::max<std::int64_t>(got, 0);
            break;
        }
    }
    if (failed)
        VFReportFile(VDBaseError::FileRead, filename_, errno, Routine);
    position_ = offset + total;
    lastReadEnd_ = position_;
    if (numRead != nullptr)
        *numRead = total;
    if (!failed && numRead == nullptr && total < count)
        return VFReportFile(VDBaseError::FileRead, filename_, "it ends too early", Routine);
    return !failed;
}

bool VDIo::ReadAtCur(std::int64_t count, void* buffer, std::int64_t* numRead)
{
    return Read(position_, count, buffer, numRead);
}

void VDIo::ReserveReadAhead(std::int64_t size)
{
    if (readAheadSize_ >= size)
        return;
    readAhead_ = std::make_unique_for_overwrite<unsigned char[]>(static_cast<std::size_t>(size));
    readAheadSize_ = size;
}

bool VDIo::FillReadAhead(std::int64_t offset)
{
    ReserveReadAhead(ReadAheadSize);
    const std::int64_t size = std::min(ReadAheadSize, LargestOffset - offset);
    const std::int64_t got = VFReadFully(handle_, offset, size, readAhead_.get());
    readAheadOffset_ = offset;
    readAheadCount_ = std::max<std::int64_t>(got, 0);
    return got >= 0;
}

bool VDIo::Write(std::int64_t offset, std::int64_t count, const void* buffer)
{
    constexpr const char* Routine = "VDIo::Write";
    if (const char* bad = VFBadRange(handle_, offset, count, buffer))
        return VFReportFile(VDBaseError::FileWrite, filename_, bad, Routine);
    if (count > LargestOffset - offset)
        return VFReportFile(VDBaseError::FileWrite, filename_, EFBIG, Routine);

    // Nothing read earlier may be given out again, not even as the header of a first read.
    readAheadCount_ = 0;
    lastReadEnd_ = std::max<std::int64_t>(lastReadEnd_, 0);
    const auto* const from = static_cast<const unsigned char*>(buffer);
    std::int64_t total = 0;
    while (total < count) {
        const auto part = static_cast<std::size_t>(count - total);
        const ssize_t put = pwrite(handle_, from + total, part, offset + total);
        if (put > 0)
            total += put;
        else if (put == 0 || errno != EINTR)
            return VFReportFile(VDBaseError::FileWrite, filename_, put == 0 ? ENOSPC : errno, Routine);
    }
    position_ = offset + total;
    return true;
}

bool VDIo::WriteAtCur(std::int64_t count, const void* buffer)
{
    return Write(position_, count, buffer);
}

bool VDIo::SetCurPos(std::int64_t position)
{
    if (const char* bad = VFBadRange(handle_, position, 0, nullptr))
        return VFReportFile(VDBaseError::FileRead, filename_, bad, "VDIo::SetCurPos");
    position_ = position;
    return true;
}

std::int64_t VDIo::GetFileSize() const
{
    struct stat status
    {
    };
    if (handle_ >= 0 && fstat(handle_, &status) == 0)
        return status.st_size;
    VFReportFile(VDBaseError::FileRead, filename_, handle_ < 0 ? EBADF : errno, "VDIo::GetFileSize");
    return -1;
}
