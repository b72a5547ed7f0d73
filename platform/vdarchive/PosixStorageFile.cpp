#include "PosixStorageFile.h"

#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <vector>

namespace {

// Far behind any data, so that locks never meet a file's content.
constexpr off_t WriterByte = off_t(1) << 62;
constexpr off_t ReaderByte = WriterByte + 1;
constexpr const char* AccessList = "system.posix_acl_access";
constexpr int MostNames = 10;

/// Calls again while a signal interrupts; gives 0 or `errno`.
template <class Call>
int Retry(Call call)
{
    while (call() != 0)
        if (errno != EINTR)
            return errno;
    return 0;
}

/// No more than the system moves at a time.
std::size_t Part(std::int64_t count)
{
    return static_cast<std::size_t>(std::min<std::int64_t>(count, 0x7ffff000));
}

struct flock RangeOf(VTStorageLock lock, short type)
{
    struct flock range = {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = lock == VTStorageLock::Writer ? WriterByte : ReaderByte;
    range.l_len = 1;
    return range;
}

bool IsSame(const struct stat& one, const struct stat& other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

/// Gives a file the access list of another one; without one there, none. False if it has one that can't be had.
bool CopyAccessList(int from, int to)
{
    const ssize_t size = fgetxattr(from, AccessList, nullptr, 0);
    if (size < 0) {
        fremovexattr(to, AccessList);  // the folder may have set one
        return true;
    }
    std::vector<char> list(static_cast<std::size_t>(size));
    return fgetxattr(from, AccessList, list.data(), list.size()) == size &&
           fsetxattr(to, AccessList, list.data(), list.size(), 0) == 0;
}

}  // namespace

PosixStorageFile::PosixStorageFile(Descriptor file) : file_(std::move(file)), owner_(getpid()) {}

PosixStorageFile::PosixStorageFile(Descriptor file, Descriptor folder, std::string hiddenName)
    : file_(std::move(file)), folder_(std::move(folder)), hiddenName_(std::move(hiddenName)), owner_(getpid())
{
}

PosixStorageFile::~PosixStorageFile()
{
    // In a child that was forked meanwhile, all this is its parent's.
    if (owner_ != getpid())
        return;
    // A child may have the file open, too, and closing it here would leave the locks to it.
    Unlock(VTStorageLock::Writer);
    Unlock(VTStorageLock::Reader);
    struct stat own = {};
    struct stat named = {};
    if (IsHidden() && !hiddenName_.empty() && fstat(file_.Get(), &own) == 0 &&
        fstatat(folder_.Get(), hiddenName_.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && IsSame(own, named))
        unlinkat(folder_.Get(), hiddenName_.c_str(), 0);
}

std::string PosixStorageFile::OpenName(int descriptor)
{
    return "/proc/self/fd/" + std::to_string(descriptor);
}

std::string PosixStorageFile::HiddenName()
{
    unsigned long long number = 0;
    while (getrandom(&number, sizeof number, 0) != sizeof number) {
    }
    char name[32];
    std::snprintf(name, sizeof name, ".z4-%016llx", number);
    return name;
}

int PosixStorageFile::Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead)
{
    std::int64_t total = 0;
    while (total < count) {
        const ssize_t got = pread(file_.Get(), static_cast<char*>(buffer) + total, Part(count - total), offset + total);
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

int PosixStorageFile::Write(std::int64_t offset, std::int64_t count, const void* buffer)
{
    std::int64_t total = 0;
    while (total < count) {
        const ssize_t put =
            pwrite(file_.Get(), static_cast<const char*>(buffer) + total, Part(count - total), offset + total);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return put < 0 ? errno : ENOSPC;
        total += put;
    }
    return 0;
}

int PosixStorageFile::GetSize(std::int64_t* size)
{
    struct stat status = {};
    if (fstat(file_.Get(), &status) != 0)
        return errno;
    *size = status.st_size;
    return 0;
}

int PosixStorageFile::Truncate(std::int64_t size)
{
    return Retry([&] { return ftruncate(file_.Get(), size); });
}

int PosixStorageFile::Sync()
{
    return Retry([&] { return fdatasync(file_.Get()); });
}

void PosixStorageFile::Discard(std::int64_t offset, std::int64_t size)
{
    fallocate(file_.Get(), FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, offset, size);
}

int PosixStorageFile::Lock(VTStorageLock lock)
{
    struct flock range = RangeOf(lock, lock == VTStorageLock::Reader ? F_RDLCK : F_WRLCK);
    const int error = Retry([&] { return fcntl(file_.Get(), F_OFD_SETLK, &range); });
    return error == EACCES || error == EAGAIN ? EWOULDBLOCK : error;
}

void PosixStorageFile::Unlock(VTStorageLock lock)
{
    struct flock range = RangeOf(lock, F_UNLCK);
    fcntl(file_.Get(), F_OFD_SETLK, &range);
}

bool PosixStorageFile::IsAt(const char* filename)
{
    struct stat own = {};
    struct stat named = {};
    return fstat(file_.Get(), &own) == 0 && stat(filename, &named) == 0 && IsSame(own, named);
}

void PosixStorageFile::TakeRightsOf(const PosixStorageFile& other)
{
    struct stat from = {};
    struct stat own = {};
    if (fstat(other.file_.Get(), &from) != 0 || fstat(file_.Get(), &own) != 0)
        return;
    const bool hasOwner = own.st_uid == from.st_uid || fchown(file_.Get(), from.st_uid, gid_t(-1)) == 0;
    const bool hasGroup = own.st_gid == from.st_gid || fchown(file_.Get(), uid_t(-1), from.st_gid) == 0;
    mode_t mode = from.st_mode & 07777;
    // What was allowed to one group is not to be allowed to another.
    if (!hasGroup || !CopyAccessList(other.file_.Get(), file_.Get()))
        mode = (mode & ~mode_t(070)) | (mode & (mode << 3) & 070);
    fchmod(file_.Get(), hasOwner && hasGroup ? mode : mode & 0777);
}

/// Gives a file without any name a hidden one. From then on it can't be without.
int PosixStorageFile::LinkHidden()
{
    int error = EEXIST;
    for (int attempt = 0; error == EEXIST && attempt < MostNames; ++attempt) {
        const std::string name = HiddenName();
        const bool linked =
            linkat(AT_FDCWD, OpenName(file_.Get()).c_str(), folder_.Get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0;
        error = linked ? 0 : errno;
        if (linked)
            hiddenName_ = name;
    }
    return error;
}

int PosixStorageFile::MoveFromHidden(const char* name, bool replace)
{
    const int folder = folder_.Get();
    const char* const hidden = hiddenName_.c_str();
    if (replace)
        return renameat(folder, hidden, folder, name) == 0 ? 0 : errno;
    if (renameat2(folder, hidden, folder, name, RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A second link is as good, where the file system knows links.
    if (linkat(folder, hidden, folder, name, 0) == 0)
        return unlinkat(folder, hidden, 0) == 0 ? 0 : errno;
    struct stat present = {};
    if (errno == EEXIST || fstatat(folder, name, &present, AT_SYMLINK_NOFOLLOW) == 0)
        return EEXIST;
    return renameat(folder, hidden, folder, name) == 0 ? 0 : errno;
}

int PosixStorageFile::GiveName(const char* filename, bool replace)
{
    const std::string name = std::filesystem::path(filename).filename().string();
    int error = 0;
    if (hiddenName_.empty() && !replace) {
        const std::string open = OpenName(file_.Get());
        error = linkat(AT_FDCWD, open.c_str(), folder_.Get(), name.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
    } else {
        error = hiddenName_.empty() ? LinkHidden() : 0;
        if (error == 0)
            error = MoveFromHidden(name.c_str(), replace);
    }
    isNamed_ = isNamed_ || error == 0;
    return error;
}

int PosixStorageFile::SyncName()
{
    const Descriptor folder = Descriptor::Open(folder_.Get(), ".", O_RDONLY | O_DIRECTORY);
    // A folder that may be written into but not be listed can't be opened.
    const int error =
        folder.IsOpen() ? Retry([&] { return fsync(folder.Get()); }) : Retry([&] { return syncfs(file_.Get()); });
    if (error == 0 || error == EINVAL)
        folder_ = Descriptor();
    return error == EINVAL ? 0 : error;  // EINVAL: the file system has nothing to sync
}
