#pragma once

#include "CsvScratch.h"

#include <string>
#include <vector>

/// Cells on their way into a file. They come column by column, in any order, and leave row by row; in between they lie in
/// scratch files, so that a table of any size takes the same memory.
class CsvSpool
{
public:
    /// What is known of a run of cells of one column.
    struct Cells
    {
        std::vector<std::uint64_t> slots;  ///< bits of a double, a whole number, or where a text lies
        std::vector<char> given;           ///< 1 where a value was put
        std::vector<char> invalid;         ///< 1 where the value was marked as invalid
        bool IsValid(std::size_t index) const { return given[index] != 0 && invalid[index] == 0; }
    };

    /// @param folder  for the scratch files, with a separator at its end
    CsvSpool(std::string folder, std::size_t columns);

    /// Rows that lie together.
    std::int64_t GetChunkRows() const { return chunkRows_; }
    /// All give false with the system's reason in `errno`.
    bool Put(std::size_t column, std::int64_t row, const std::vector<std::uint64_t>& slots);
    bool PutInvalid(std::size_t column, std::int64_t row, const std::vector<char>& invalid);
    bool Get(std::size_t column, std::int64_t row, std::int64_t count, Cells& cells) const;

    bool PutText(const std::string& text, std::uint64_t& slot);
    bool GetText(std::uint64_t slot, std::string& text) const;
    /// A text is shorter than this.
    static constexpr std::size_t MaxText = std::size_t(1) << 26;

private:
    enum Part { Slots, Given, Invalid };
    bool Open();
    std::int64_t OffsetOf(std::size_t column, std::int64_t row, Part part) const;
    template <class Work>
    bool ForChunks(std::int64_t row, std::int64_t count, Work&& work) const;
    bool FlushTexts();

    std::string folder_;
    std::size_t columns_;
    std::int64_t chunkRows_;
    CsvScratch cells_;
    CsvScratch texts_;
    std::int64_t textsEnd_ = 0;  ///< of those that are in the scratch file
    std::string newTexts_;       ///< behind them
};
