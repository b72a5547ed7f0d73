#include "CsvOutput.h"

#include "CsvScratch.h"

#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string Resolve(const std::string& filename)
{
    std::error_code failed;
    if (std::filesystem::is_symlink(filename, failed)) {
        const std::filesystem::path target = std::filesystem::canonical(filename, failed);
        if (!failed)
            return target.string();
    }
    return filename;
}

}  // namespace

CsvOutput::CsvOutput(const std::string& filename) : filename_(Resolve(filename)) {}

CsvOutput::~CsvOutput()
{
    GiveUp();
}

std::string CsvOutput::GetFolder() const
{
    return filename_.substr(0, filename_.rfind('/') + 1);
}

bool CsvOutput::Fail()
{
    reason_ = std::strerror(errno);
    return false;
}

bool CsvOutput::Begin()
{
    static std::atomic<unsigned> counter = 0;
    do {
        staged_ = GetFolder() + ".daxcsv" + std::to_string(getpid()) + "-" + std::to_string(counter++);
        file_ = open(staged_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    } while (file_ < 0 && errno == EEXIST);
    begin_ = size_ = 0;
    if (file_ >= 0 && TakeMode())
        return true;
    return Fail();
}

/// The new file is open to those to whom the one in its place is, or to whom any new file is.
bool CsvOutput::TakeMode() const
{
    struct stat present = {};
    if (stat(filename_.c_str(), &present) != 0)
        return true;
    if (!S_ISREG(present.st_mode)) {
        errno = EEXIST;
        return false;
    }
    return access(filename_.c_str(), W_OK) == 0 && fchmod(file_, present.st_mode & 07777) == 0;
}

bool CsvOutput::CopyFromPresent(std::int64_t bytes)
{
    if (bytes == 0)
        return true;
    const int present = open(filename_.c_str(), O_RDONLY | O_CLOEXEC);
    if (present < 0)
        return Fail();
    std::string block(std::size_t(1) << 20, 0);
    bool copied = true;
    for (std::int64_t at = 0; copied && at < bytes;) {
        const auto wanted = std::min<std::int64_t>(bytes - at, static_cast<std::int64_t>(block.size()));
        const ssize_t got = pread(present, block.data(), static_cast<std::size_t>(wanted), at);
        if (got == 0)
            errno = EIO;
        copied = got > 0 && CsvWriteAll(file_, at, block.data(), static_cast<std::size_t>(got));
        at += copied ? got : 0;
    }
    const int reason = errno;
    close(present);
    errno = reason;
    size_ = bytes;
    return copied || Fail();
}

bool CsvOutput::Continue(std::int64_t size)
{
    struct stat present = {};
    staged_.clear();
    file_ = open(filename_.c_str(), O_WRONLY | O_CLOEXEC);
    if (file_ < 0 || fstat(file_, &present) != 0)
        return Fail();
    begin_ = size_ = present.st_size;
    if (present.st_size == size)
        return true;
    reason_ = "Somebody else has changed the file.";
    return false;
}

bool CsvOutput::Write(const std::string& bytes)
{
    if (!CsvWriteAll(file_, size_, bytes.data(), bytes.size()))
        return Fail();
    size_ += static_cast<std::int64_t>(bytes.size());
    return true;
}

bool CsvOutput::SyncFolder() const
{
    const std::string folder = GetFolder();
    const int opened = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool synced = opened >= 0 && (fsync(opened) == 0 || errno == EINVAL);
    if (opened >= 0)
        close(opened);
    return synced;
}

bool CsvOutput::Finish()
{
    if (fsync(file_) != 0 && errno != EINVAL)
        return Fail();
    const bool closed = close(file_) == 0;
    file_ = -1;
    if (!closed)
        return Fail();
    if (staged_.empty())
        return true;
    if (rename(staged_.c_str(), filename_.c_str()) != 0)
        return Fail();
    staged_.clear();
    return SyncFolder() || Fail();
}

void CsvOutput::GiveUp()
{
    if (file_ >= 0 && staged_.empty())
        (void)!ftruncate(file_, begin_);
    if (file_ >= 0)
        close(file_);
    file_ = -1;
    if (!staged_.empty())
        unlink(staged_.c_str());
    staged_.clear();
}
