#pragma once

#include <cstdint>
#include <string>

/// A file without a name for what doesn't fit in memory. It goes with the object, or with the process.
class CsvScratch
{
public:
    CsvScratch() = default;
    ~CsvScratch();
    CsvScratch(const CsvScratch&) = delete;
    CsvScratch& operator=(const CsvScratch&) = delete;

    bool IsOpen() const { return file_ >= 0; }
    /// All give false with the system's reason in `errno`.
    bool Open(const std::string& folder);
    bool Write(std::int64_t offset, const void* bytes, std::size_t count) const;
    /// What was never written reads as zeros.
    bool Read(std::int64_t offset, void* bytes, std::size_t count) const;

private:
    int file_ = -1;
};

/// Writes all bytes at an offset of an open file.
bool CsvWriteAll(int file, std::int64_t offset, const void* bytes, std::size_t count);
