#pragma once

#include <cstdint>
#include <string>

/// A file that is written anew beside the place where it belongs, and put there as a whole; or a file that is there and
/// grows by whole lines. All give false with the reason in `GetReason`.
class CsvOutput
{
public:
    /// @param filename  a link stands for what it leads to
    explicit CsvOutput(const std::string& filename);
    ~CsvOutput();
    CsvOutput(const CsvOutput&) = delete;
    CsvOutput& operator=(const CsvOutput&) = delete;

    const std::string& GetFilename() const { return filename_; }
    /// With a separator at its end; empty for the current one.
    std::string GetFolder() const;
    const std::string& GetReason() const { return reason_; }

    bool Begin();
    /// Takes over the beginning of the file that is there.
    bool CopyFromPresent(std::int64_t bytes);
    /// Goes on with a file of which this is the size.
    bool Continue(std::int64_t size);
    bool Write(const std::string& bytes);
    /// Puts a new file into its place; brings either to the disk.
    bool Finish();
    /// A new file vanishes, one that is there gets its size back.
    void GiveUp();
    std::int64_t GetSize() const { return size_; }

private:
    bool Fail();
    bool TakeMode() const;
    bool SyncFolder() const;

    std::string filename_;
    std::string staged_;  ///< name of a new file; empty while it goes on with one that is there
    int file_ = -1;
    std::int64_t begin_ = 0;
    std::int64_t size_ = 0;
    std::string reason_;
};
