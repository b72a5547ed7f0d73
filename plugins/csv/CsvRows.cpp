#include "CsvRows.h"

#include <algorithm>

/// Moves what is left of the bytes to the front and puts more behind them; the buffer grows where one row fills it.
CsvRows::State CsvRows::Fill()
{
    constexpr std::int64_t usual = std::int64_t(1) << 18;
    const std::int64_t left = end_ - at_;
    if (left >= MaxRowBytes)
        return TooLong;
    if (left * 2 >= capacity_) {
        const std::int64_t capacity = std::max(usual, left * 3);
        auto buffer = std::make_unique_for_overwrite<char[]>(static_cast<std::size_t>(capacity) + 1);
        if (left > 0)
            std::memcpy(buffer.get(), at_, static_cast<std::size_t>(left));
        buffer_ = std::move(buffer);
        capacity_ = capacity;
    } else if (left > 0)
        std::memmove(buffer_.get(), at_, static_cast<std::size_t>(left));
    std::int64_t got = 0;
    const std::int64_t wanted = std::min(capacity_ - left, fileEnd_ - offset_);
    const bool read = io_.Read(offset_, wanted, buffer_.get() + left, &got);
    // A file that has become shorter ends there.
    offset_ += got;
    if (got < wanted)
        fileEnd_ = offset_;
    at_ = row_ = buffer_.get();
    end_ = at_ + left + got;
    buffer_[static_cast<std::size_t>(left + got)] = 0;
    return read ? Row : Failed;
}
