#pragma once

#include "BlockFile.h"

#include <vector>

/// The blobs of one commit on their way to the file. They are packed into runs of space, each written with one call.
class MetaBatch
{
public:
    explicit MetaBatch(BlockFile& file) : file_(file) {}
    /// Blobs of a batch that isn't kept give their space back.
    ~MetaBatch();
    MetaBatch(const MetaBatch&) = delete;
    MetaBatch& operator=(const MetaBatch&) = delete;

    /// @return false, recorded, if the blob can't be written
    bool Add(std::string_view bytes, const char* what, BlobRef* ref);
    /// Writes what is still held back.
    bool Flush();
    /// The commit has come through.
    void Keep();

private:
    BlockFile& file_;
    std::string run_;
    std::int64_t runOffset_ = 0;
    std::int64_t runSize_ = 0;  // room that is set aside for the run
    std::int64_t size_ = 0;     // of all blobs
    std::vector<BlobRef> blobs_;
};
