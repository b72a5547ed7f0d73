#include "CsvScratch.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

bool CsvWriteAll(int file, std::int64_t offset, const void* bytes, std::size_t count)
{
    const char* at = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = pwrite(file, at, count, offset);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        at += written;
        offset += written;
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

CsvScratch::~CsvScratch()
{
    if (file_ >= 0)
        close(file_);
}

bool CsvScratch::Open(const std::string& folder)
{
    file_ = open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (file_ >= 0)
        return true;
    // Not every file system has files without names.
    std::string name = folder + ".daxcsvXXXXXX";
    file_ = mkostemp(name.data(), O_CLOEXEC);
    return file_ >= 0 && unlink(name.c_str()) == 0;
}

bool CsvScratch::Write(std::int64_t offset, const void* bytes, std::size_t count) const
{
    return CsvWriteAll(file_, offset, bytes, count);
}

bool CsvScratch::Read(std::int64_t offset, void* bytes, std::size_t count) const
{
    char* at = static_cast<char*>(bytes);
    while (count > 0) {
        const ssize_t got = pread(file_, at, count, offset);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return false;
        if (got == 0) {
            std::memset(at, 0, count);
            return true;
        }
        at += got;
        offset += got;
        count -= static_cast<std::size_t>(got);
    }
    return true;
}
