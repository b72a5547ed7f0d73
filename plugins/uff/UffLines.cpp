#include "UffLines.h"

#include <algorithm>
#include <cstring>

UffLines::UffLines(VDIo& io, std::int64_t start, std::int64_t end)
    : io_(io), block_(std::make_unique_for_overwrite<char[]>(BlockBytes)), end_(end), blockStart_(start)
{
}

void UffLines::Seek(std::int64_t place)
{
    if (place >= blockStart_ && place <= blockStart_ + size_) {
        at_ = place - blockStart_;
        return;
    }
    blockStart_ = place;
    size_ = 0;
    at_ = 0;
}

bool UffLines::Fill()
{
    std::memmove(block_.get(), block_.get() + at_, static_cast<std::size_t>(size_ - at_));
    blockStart_ += at_;
    size_ -= at_;
    at_ = 0;
    const std::int64_t room = std::min(BlockBytes - size_, end_ - blockStart_ - size_);
    std::int64_t got = 0;
    if (room <= 0)
        return false;
    if (!io_.Read(blockStart_ + size_, room, block_.get() + size_, &got)) {
        hasFailed_ = true;
        return false;
    }
    size_ += got;
    return got > 0;
}

bool UffLines::Next(std::string_view* line)
{
    lineStart_ = GetPlace();
    std::int64_t searched = 0;
    const void* found = nullptr;
    do {
        const char* const from = block_.get() + at_ + searched;
        found = std::memchr(from, '\n', static_cast<std::size_t>(size_ - at_ - searched));
        searched = size_ - at_;
    } while (found == nullptr && Fill());
    if (hasFailed_ || (found == nullptr && searched == 0 && size_ == at_))
        return false;
    const char* const begin = block_.get() + at_;
    const char* const stop = found != nullptr ? static_cast<const char*>(found) : block_.get() + size_;
    isWhole_ = found != nullptr;
    *line = std::string_view(begin, static_cast<std::size_t>(stop - begin));
    if (line->ends_with('\r'))
        line->remove_suffix(1);
    at_ = stop - block_.get() + (isWhole_ ? 1 : 0);
    return true;
}
