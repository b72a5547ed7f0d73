#pragma once

#include "CsvIndex.h"
#include "CsvRows.h"
#include "CsvValue.h"

#include <bit>
#include <memory>
#include <vector>

/// Some rows of a table, decoded: all columns at once, since their text lies row by row.
struct CsvBlock
{
    std::int64_t first = 0;  ///< row, from 0
    std::int64_t rows = 0;
    std::int64_t end = 0;     ///< offset behind the rows
    std::int64_t stride = 0;  ///< slots of a column
    /// Column by column a slot for each row: the bits of a double, a whole number, or where a text lies in `texts`.
    std::vector<std::uint64_t> slots;
    std::vector<char> valid;
    std::string texts;

    static constexpr unsigned LengthBits = 26;
    std::size_t At(std::size_t column, std::int64_t row) const
    {
        return column * static_cast<std::size_t>(stride) + static_cast<std::size_t>(row - first);
    }
    std::string GetText(std::size_t slot) const
    {
        const std::uint64_t place = slots[slot];
        return texts.substr(place >> LengthBits, place & ((std::uint64_t(1) << LengthBits) - 1));
    }
    std::size_t GetBytes() const { return slots.size() * sizeof(slots[0]) + valid.size() + texts.capacity(); }
};

/// The decoded blocks of a table that were used last, within a bound. Reading all columns in chunks goes over the file once,
/// whatever the order of the columns; a column is never held as a whole.
class CsvBlocks
{
public:
    static constexpr std::size_t MaxBytes = std::size_t(32) << 20;

    /// @param io  the open file; outlives the blocks
    CsvBlocks(VDIo& io, std::shared_ptr<const CsvIndex> index);

    /// The block that holds a row; null if the file can't be read or isn't any more what it was.
    const CsvBlock* Get(std::int64_t row);
    /// Rows of which all columns fit at the same time.
    std::int64_t GetChunkRows() const { return std::max<std::int64_t>(1, blockRows_ * blocksHeld_ / 2); }

private:
    const CsvBlock* Load(std::int64_t row);
    CsvRows::State Decode(CsvRows& rows, CsvBlock& block);
    const char* TakeCell(const CsvRows& rows, CsvBlock& block, std::int64_t column, const char* begin);
    const char* TakePlain(const CsvRows& rows, int type, const char* begin, std::uint64_t& slot) const;
    void Store(const CsvCell& cell, int type, CsvBlock& block, std::size_t slot);
    void MakeRoom();

    VDIo& io_;
    std::shared_ptr<const CsvIndex> index_;
    CsvCells cells_;
    CsvValue values_;
    std::vector<int> types_;
    std::int64_t blockRows_;
    std::int64_t blocksHeld_;
    std::unique_ptr<CsvRows> rows_;                  ///< stands behind the block that was loaded last
    std::vector<std::unique_ptr<CsvBlock>> blocks_;  ///< the one that was used last comes first
    std::size_t bytes_ = 0;
};
