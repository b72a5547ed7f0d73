#pragma once

#include "vdbase/VDIo.h"

#include <memory>
#include <string_view>

/// The lines of a file from any place on, read in large blocks. A line ends with a line feed, which may have a carriage return
/// before it; one that is longer than a block comes in pieces.
class UffLines
{
public:
    static constexpr std::int64_t BlockBytes = 256 * 1024;

    /// @param end  of what is to be read; behind the file's own end nothing is
    explicit UffLines(VDIo& io, std::int64_t start = 0, std::int64_t end = INT64_MAX);

    void Seek(std::int64_t place);
    /// @param line  without its end, valid until the next call
    /// @return false at the end, and after a failure, which is recorded
    bool Next(std::string_view* line);
    bool HasFailed() const { return hasFailed_; }
    /// Where the line began, and where the next one does.
    std::int64_t GetLineStart() const { return lineStart_; }
    std::int64_t GetPlace() const { return blockStart_ + at_; }
    /// The line ended with a line feed, and not with the file or the block.
    bool IsWhole() const { return isWhole_; }

private:
    /// Makes more of the file follow what is left of the block.
    bool Fill();

    VDIo& io_;
    std::unique_ptr<char[]> block_;
    std::int64_t end_;
    std::int64_t blockStart_;     ///< in the file
    std::int64_t size_ = 0;       ///< of what is in the block
    std::int64_t at_ = 0;         ///< in the block
    std::int64_t lineStart_ = 0;  ///< in the file
    bool isWhole_ = false;
    bool hasFailed_ = false;
};
