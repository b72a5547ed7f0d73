#include "vdarchive/VDStorageOs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

namespace {

// Far behind any data, so that locks never meet a file's content.
constexpr off_t WriterByte = off_t(1) << 62;
constexpr off_t ReaderByte = WriterByte + 1;

/// An open descriptor, closed with the object.
class Descriptor
{
public:
    Descriptor(const char* filename, int flags)
    {
        do
            value_ = open(filename, flags | O_CLOEXEC, 0666);
        while (value_ < 0 && errno == EINTR);
    }
    Descriptor(Descriptor&& other) noexcept : value_(other.value_) { other.value_ = -1; }
    Descriptor& operator=(Descriptor&&) = delete;
    ~Descriptor()
    {
        if (value_ >= 0)
            close(value_);
    }
    int Get() const { return value_; }

private:
    int value_;
};

/// Calls again while a signal interrupts; gives 0 or `errno`.
template <class Call>
int Retry(Call call)
{
    while (call() != 0)
        if (errno != EINTR)
            return errno;
    return 0;
}

class PosixStorageFile final : public VDStorageFile
{
public:
    explicit PosixStorageFile(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}

    int Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead) override
    {
        std::int64_t total = 0;
        while (total < count) {
            const ssize_t got =
                pread(descriptor_.Get(), static_cast<char*>(buffer) + total, Part(count - total), offset + total);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return errno;
            if (got == 0)
                break;
            total += got;
        }
        *numRead = total;
        return 0;
    }

    int Write(std::int64_t offset, std::int64_t count, const void* buffer) override
    {
        std::int64_t total = 0;
        while (total < count) {
            const ssize_t put =
                pwrite(descriptor_.Get(), static_cast<const char*>(buffer) + total, Part(count - total), offset + total);
            if (put < 0 && errno == EINTR)
                continue;
            if (put <= 0)
                return put < 0 ? errno : ENOSPC;
            total += put;
        }
        return 0;
    }

    int GetSize(std::int64_t* size) override
    {
        struct stat status = {};
        if (fstat(descriptor_.Get(), &status) != 0)
            return errno;
        *size = status.st_size;
        return 0;
    }

    int Truncate(std::int64_t size) override
    {
        return Retry([&] { return ftruncate(descriptor_.Get(), size); });
    }

    int Sync() override
    {
        return Retry([&] { return fdatasync(descriptor_.Get()); });
    }

    int Lock(VTStorageLock lock) override
    {
        struct flock range = RangeOf(lock);
        range.l_type = lock == VTStorageLock::Reader ? F_RDLCK : F_WRLCK;
        const int command = lock == VTStorageLock::Reader ? F_OFD_SETLKW : F_OFD_SETLK;
        const int error = Retry([&] { return fcntl(descriptor_.Get(), command, &range); });
        return error == EACCES || error == EAGAIN ? EWOULDBLOCK : error;
    }

    void Unlock(VTStorageLock lock) override
    {
        struct flock range = RangeOf(lock);
        range.l_type = F_UNLCK;
        fcntl(descriptor_.Get(), F_OFD_SETLK, &range);
    }

    bool IsAt(const char* filename) override
    {
        struct stat own = {};
        struct stat named = {};
        return fstat(descriptor_.Get(), &own) == 0 && stat(filename, &named) == 0 && own.st_dev == named.st_dev &&
               own.st_ino == named.st_ino;
    }

private:
    /// No more than the system moves at a time.
    static std::size_t Part(std::int64_t count)
    {
        return static_cast<std::size_t>(std::min<std::int64_t>(count, 0x7ffff000));
    }

    static struct flock RangeOf(VTStorageLock lock)
    {
        struct flock range = {};
        range.l_whence = SEEK_SET;
        range.l_start = lock == VTStorageLock::Writer ? WriterByte : ReaderByte;
        range.l_len = 1;
        return range;
    }

    Descriptor descriptor_;
};

class PosixStorageOs final : public VDStorageOs
{
public:
    int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) override
    {
        // A pipe that nobody writes to would otherwise hold the process up.
        const int flags =
            mode == VTStorageOpen::Read ? O_RDONLY | O_NONBLOCK : O_RDWR | (mode == VTStorageOpen::Create ? O_CREAT : 0);
        Descriptor descriptor(filename, flags);
        if (descriptor.Get() < 0)
            return errno;
        struct stat status = {};
        if (fstat(descriptor.Get(), &status) != 0)
            return errno;
        if (!S_ISREG(status.st_mode))
            return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
        *file = std::make_unique<PosixStorageFile>(std::move(descriptor));
        return 0;
    }

    int Rename(const char* from, const char* to) override { return rename(from, to) == 0 ? 0 : errno; }

    int Remove(const char* filename) override { return unlink(filename) == 0 ? 0 : errno; }

    int SyncDirectory(const char* filename) override
    {
        std::string folder = std::filesystem::path(filename).parent_path().string();
        const Descriptor descriptor(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY);
        if (descriptor.Get() < 0)
            return errno;
        return Retry([&] { return fsync(descriptor.Get()); });
    }
};

}  // namespace

VDStorageFile::~VDStorageFile() = default;
VDStorageOs::~VDStorageOs() = default;

VDStorageOs& VDStorageOs::System()
{
    static PosixStorageOs system;
    return system;
}
