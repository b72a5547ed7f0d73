#pragma once

#include "CsvCells.h"

#include "vdbase/VDIo.h"

#include <memory>

/// Goes through the rows of a file with a buffer that holds at least one of them.
class CsvRows
{
public:
    /// A longer row is taken for none: a quote that was left open, or no table at all.
    static constexpr std::int64_t MaxRowBytes = std::int64_t(1) << 26;

    /// @param io     the open file
    /// @param begin  offset of a row
    /// @param end    offset at which the file counts as ended
    CsvRows(VDIo& io, std::int64_t begin, std::int64_t end) : io_(io), offset_(begin), fileEnd_(end) {}

    enum State { Row, End, NoText, TooLong, Failed };
    /// Reads the next row that isn't blank, through `CsvCells::ScanRow`.
    template <class Handler>
    State Next(const CsvCells& cells, Handler&& cell)
    {
        for (;;) {
            const char* const begin = at_;
            if (at_ == end_ && IsFinal())
                return End;
            const auto state = begin == nullptr ? CsvCells::Incomplete : cells.ScanRow(at_, end_, IsFinal(), cell, count_);
            if (at_ - begin > MaxRowBytes) {
                at_ = begin;
                return TooLong;
            }
            if (state == CsvCells::Complete || state == CsvCells::Blank) {
                row_ = begin;
                if (state == CsvCells::Complete)
                    return Row;
            } else if (state == CsvCells::NoText)
                return NoText;
            else if (const State filled = Fill(); filled != Row)
                return filled;
        }
    }

    /// Of the row that was read last.
    std::int64_t GetCount() const { return count_; }
    std::int64_t GetOffset() const { return OffsetOf(row_); }
    std::string_view GetText() const { return {row_, static_cast<std::size_t>(at_ - row_)}; }
    /// Where the next row begins.
    std::int64_t GetNextOffset() const { return OffsetOf(at_); }
    /// The bytes in hand end here, with a zero byte behind them; for handlers.
    const char* GetEnd() const { return end_; }
    /// Nothing follows the bytes in hand.
    bool IsFinal() const { return offset_ == fileEnd_; }

private:
    std::int64_t OffsetOf(const char* p) const { return offset_ - (end_ - p); }
    State Fill();

    VDIo& io_;
    std::int64_t offset_;  ///< in the file, of the end of the bytes in hand
    std::int64_t fileEnd_;
    std::unique_ptr<char[]> buffer_;
    std::int64_t capacity_ = 0;
    const char* at_ = nullptr;
    const char* end_ = nullptr;
    const char* row_ = nullptr;
    std::int64_t count_ = 0;
};
