#include "MetaBatch.h"

#include "vdbase/VFChecksum.h"

#include <algorithm>

namespace {

constexpr std::int64_t SmallRun = 4096;
constexpr std::int64_t LargeRun = 256 * 1024;

}  // namespace

MetaBatch::~MetaBatch()
{
    file_.Space().Free(runOffset_ + static_cast<std::int64_t>(run_.size()),
                       runSize_ - static_cast<std::int64_t>(run_.size()));
    for (const BlobRef& blob : blobs_)
        file_.Space().Free(blob.offset, blob.size);
}

bool MetaBatch::Add(std::string_view bytes, const char* what, BlobRef* ref)
{
    const auto size = static_cast<std::int64_t>(bytes.size());
    if (size > StorageLayout::LargestBlob)
        return file_.ReportWrongUse((VDString(what) + " is too large").c_str());
    const std::int64_t room = SpaceMap::RoundUp(size);
    if (static_cast<std::int64_t>(run_.size()) + room > runSize_) {
        if (!Flush())
            return false;
        // A file with few channels needs little room, and one with many gets few calls.
        const std::int64_t likely = std::max(file_.UsualBatch() - size_, size_);
        const std::int64_t wanted = std::max(room, std::clamp(likely, SmallRun, LargeRun));
        runOffset_ = file_.Space().AllocateUpTo(room, SpaceMap::Unit, wanted, SpaceMap::Unit, &runSize_);
    }
    size_ += room;
    *ref = {runOffset_ + static_cast<std::int64_t>(run_.size()), size, VFChecksum(bytes.data(), size)};
    blobs_.push_back(*ref);
    run_ += bytes;
    run_.resize(static_cast<std::size_t>(SpaceMap::RoundUp(static_cast<std::int64_t>(run_.size()))));
    return true;
}

void MetaBatch::Keep()
{
    blobs_.clear();
    file_.UsualBatch() = size_;
}

bool MetaBatch::Flush()
{
    const auto size = static_cast<std::int64_t>(run_.size());
    if (size > 0 && !file_.Write(runOffset_, size, run_.data()))
        return false;
    file_.Space().Free(runOffset_ + size, runSize_ - size);
    run_.clear();
    runSize_ = 0;
    return true;
}
