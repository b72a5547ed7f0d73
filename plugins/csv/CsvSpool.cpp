#include "CsvSpool.h"

#include <algorithm>

namespace {

constexpr unsigned LengthBits = 26;
constexpr std::int64_t CellBytes = sizeof(std::uint64_t) + 2;
constexpr std::size_t TextsAtOnce = std::size_t(1) << 20;

}  // namespace

CsvSpool::CsvSpool(std::string folder, std::size_t columns)
    : folder_(std::move(folder)),
      columns_(columns),
      chunkRows_(std::clamp<std::int64_t>((std::int64_t(1) << 18) / static_cast<std::int64_t>(columns), 1, 4096))
{
}

bool CsvSpool::Open()
{
    return (cells_.IsOpen() || cells_.Open(folder_)) && (texts_.IsOpen() || texts_.Open(folder_));
}

/// A chunk holds, column by column, the slots of its rows and then the two marks of each.
std::int64_t CsvSpool::OffsetOf(std::size_t column, std::int64_t row, Part part) const
{
    const std::int64_t chunk = row / chunkRows_;
    const std::int64_t inside = row % chunkRows_;
    const std::int64_t begin =
        (chunk * static_cast<std::int64_t>(columns_) + static_cast<std::int64_t>(column)) * chunkRows_ * CellBytes;
    constexpr std::int64_t slot = sizeof(std::uint64_t);
    if (part == Slots)
        return begin + inside * slot;
    return begin + chunkRows_ * (part == Given ? slot : slot + 1) + inside;
}

/// Calls work(row, index, count) for each part that lies in one chunk.
template <class Work>
bool CsvSpool::ForChunks(std::int64_t row, std::int64_t count, Work&& work) const
{
    for (std::int64_t done = 0; done < count;) {
        const std::int64_t part = std::min(count - done, chunkRows_ - (row + done) % chunkRows_);
        if (!work(row + done, static_cast<std::size_t>(done), static_cast<std::size_t>(part)))
            return false;
        done += part;
    }
    return true;
}

bool CsvSpool::Put(std::size_t column, std::int64_t row, const std::vector<std::uint64_t>& slots)
{
    const std::vector<char> given(slots.size(), 1);
    return Open() &&
           ForChunks(row, static_cast<std::int64_t>(slots.size()),
                     [&](std::int64_t at, std::size_t index, std::size_t count) {
                         return cells_.Write(OffsetOf(column, at, Slots), slots.data() + index, count * sizeof(slots[0])) &&
                                cells_.Write(OffsetOf(column, at, Given), given.data(), count);
                     });
}

bool CsvSpool::PutInvalid(std::size_t column, std::int64_t row, const std::vector<char>& invalid)
{
    return Open() && ForChunks(row, static_cast<std::int64_t>(invalid.size()),
                               [&](std::int64_t at, std::size_t index, std::size_t count) {
                                   return cells_.Write(OffsetOf(column, at, Invalid), invalid.data() + index, count);
                               });
}

bool CsvSpool::Get(std::size_t column, std::int64_t row, std::int64_t count, Cells& cells) const
{
    const auto size = static_cast<std::size_t>(count);
    cells.slots.assign(size, 0);
    cells.given.assign(size, 0);
    cells.invalid.assign(size, 0);
    return !cells_.IsOpen() || ForChunks(row, count, [&](std::int64_t at, std::size_t index, std::size_t part) {
        return cells_.Read(OffsetOf(column, at, Slots), cells.slots.data() + index, part * sizeof(cells.slots[0])) &&
               cells_.Read(OffsetOf(column, at, Given), cells.given.data() + index, part) &&
               cells_.Read(OffsetOf(column, at, Invalid), cells.invalid.data() + index, part);
    });
}

bool CsvSpool::FlushTexts()
{
    if (!Open() || !texts_.Write(textsEnd_, newTexts_.data(), newTexts_.size()))
        return false;
    textsEnd_ += static_cast<std::int64_t>(newTexts_.size());
    newTexts_.clear();
    return true;
}

bool CsvSpool::PutText(const std::string& text, std::uint64_t& slot)
{
    if (newTexts_.size() >= TextsAtOnce && !FlushTexts())
        return false;
    slot = (static_cast<std::uint64_t>(textsEnd_) + newTexts_.size()) << LengthBits | text.size();
    newTexts_ += text;
    return true;
}

bool CsvSpool::GetText(std::uint64_t slot, std::string& text) const
{
    const auto begin = static_cast<std::int64_t>(slot >> LengthBits);
    text.resize(slot & (MaxText - 1));
    if (begin < textsEnd_)
        return texts_.Read(begin, text.data(), text.size());
    newTexts_.copy(text.data(), text.size(), static_cast<std::size_t>(begin - textsEnd_));
    return true;
}
