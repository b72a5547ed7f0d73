#include "CsvBlocks.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::int64_t BlockBytes = 1 << 19;
constexpr std::int64_t BlockSlots = 1 << 18;
constexpr std::size_t MostTexts = std::size_t(8) << 20;

}  // namespace

CsvBlocks::CsvBlocks(VDIo& io, std::shared_ptr<const CsvIndex> index)
    : io_(io), index_(std::move(index)), cells_(index_->GetDialect()), values_(index_->GetDialect())
{
    for (const CsvColumn& column : index_->GetColumns())
        types_.push_back(column.type);
    const auto columns = static_cast<std::int64_t>(types_.size());
    const std::int64_t rows = std::max<std::int64_t>(1, index_->GetNumRows());
    const std::int64_t rowBytes = std::max<std::int64_t>(1, (index_->GetEnd() - index_->Find(0).offset) / rows);
    blockRows_ = std::max<std::int64_t>(1, std::min({BlockBytes / rowBytes, BlockSlots / columns, rows}));
    const auto size = static_cast<std::int64_t>(sizeof(std::uint64_t) + 1) * columns + rowBytes;
    blocksHeld_ = std::max<std::int64_t>(1, static_cast<std::int64_t>(MaxBytes) / (blockRows_ * size));
}

const CsvBlock* CsvBlocks::Get(std::int64_t row)
{
    for (auto block = blocks_.begin(); block != blocks_.end(); ++block)
        if (row >= (*block)->first && row < (*block)->first + (*block)->rows) {
            std::rotate(blocks_.begin(), block, block + 1);
            return blocks_.front().get();
        }
    return Load(row);
}

const CsvBlock* CsvBlocks::Load(std::int64_t row)
{
    CsvIndex::Place place = index_->Find(row);
    for (const auto& block : blocks_)
        if (block->first + block->rows <= row && block->first + block->rows > place.row)
            place = {block->first + block->rows, block->end};
    if (rows_ == nullptr || rows_->GetNextOffset() != place.offset)
        rows_ = std::make_unique<CsvRows>(io_, place.offset, index_->GetFileEnd());
    // Rows in front that make no part of the block are only gone over.
    const auto pass = [this](std::int64_t, const char* begin) -> const char* {
        CsvCell cell;
        const char* const stop = cells_.Scan(begin, rows_->GetEnd(), cell);
        return stop == rows_->GetEnd() && !rows_->IsFinal() ? nullptr : stop;
    };
    for (const std::int64_t from = row - (row - place.row) % blockRows_; place.row < from; ++place.row)
        if (rows_->Next(cells_, pass) != CsvRows::Row)
            return rows_ = nullptr, nullptr;
    auto block = std::make_unique<CsvBlock>();
    block->first = place.row;
    block->stride = std::min(blockRows_, index_->GetNumRows() - place.row);
    block->slots.resize(static_cast<std::size_t>(block->stride) * types_.size());
    block->valid.resize(block->slots.size());
    if (Decode(*rows_, *block) != CsvRows::Row || row >= block->first + block->rows)
        return rows_ = nullptr, nullptr;
    bytes_ += block->GetBytes();
    blocks_.insert(blocks_.begin(), std::move(block));
    MakeRoom();
    return blocks_.front().get();
}

void CsvBlocks::MakeRoom()
{
    while (blocks_.size() > 1 && bytes_ > MaxBytes) {
        bytes_ -= blocks_.back()->GetBytes();
        blocks_.pop_back();
    }
}

CsvRows::State CsvBlocks::Decode(CsvRows& rows, CsvBlock& block)
{
    const auto take = [&](std::int64_t column, const char* begin) { return TakeCell(rows, block, column, begin); };
    while (block.rows < block.stride && block.texts.size() < MostTexts) {
        const CsvRows::State state = rows.Next(cells_, take);
        if (state != CsvRows::Row)
            return state;
        const auto row = block.first + block.rows;
        for (auto column = static_cast<std::size_t>(rows.GetCount()); column < types_.size(); ++column)
            Store({}, types_[column], block, block.At(column, row));
        ++block.rows;
    }
    block.end = rows.GetNextOffset();
    return CsvRows::Row;
}

const char* CsvBlocks::TakeCell(const CsvRows& rows, CsvBlock& block, std::int64_t column, const char* begin)
{
    const auto index = static_cast<std::size_t>(column);
    const bool wanted = index < types_.size();
    const std::size_t slot = wanted ? block.At(index, block.first + block.rows) : 0;
    if (wanted)
        if (const char* stop = TakePlain(rows, types_[index], begin, block.slots[slot])) {
            block.valid[slot] = 1;
            return stop;
        }
    CsvCell cell;
    const char* const stop = cells_.Scan(begin, rows.GetEnd(), cell);
    if (stop == rows.GetEnd() && !rows.IsFinal())
        return nullptr;
    if (wanted)
        Store(cell, types_[index], block, slot);
    return stop;
}

/// A number with nothing around it, as nearly all are, is read without looking for its end first; null for anything else.
const char* CsvBlocks::TakePlain(const CsvRows& rows, int type, const char* begin, std::uint64_t& slot) const
{
    const char* const end = rows.GetEnd();
    const char* const number = cells_.SkipBlanks(begin);
    const char* stop = nullptr;
    if (type == DaxColumnType::Double) {
        double value = 0.0;
        stop = values_.ReadDouble(number, end, value);
        slot = std::bit_cast<std::uint64_t>(value);
    } else if (DaxColumnType::IsNumeric(type)) {
        std::int64_t value = 0;
        stop = CsvValue::ReadHuge(number, end, value);
        slot = static_cast<std::uint64_t>(value);
    }
    return stop != nullptr && cells_.IsStop(*stop) && (stop != end || rows.IsFinal()) ? stop : nullptr;
}

void CsvBlocks::Store(const CsvCell& cell, int type, CsvBlock& block, std::size_t slot)
{
    double number = std::numeric_limits<double>::quiet_NaN();
    std::int64_t whole = 0;
    bool valid = false;
    if (type == DaxColumnType::Double) {
        valid = values_.GetDouble(cell, number);
        block.slots[slot] = std::bit_cast<std::uint64_t>(number);
    } else if (DaxColumnType::IsNumeric(type)) {
        valid = values_.GetHuge(cell, whole);
        block.slots[slot] = static_cast<std::uint64_t>(whole);
    } else {
        const std::size_t begin = block.texts.size();
        CsvCell text = cell;
        if (type == DaxColumnType::DateTime) {
            const std::string_view trimmed = CsvTrim(cell.View());
            text.begin = trimmed.data();
            text.end = text.begin + trimmed.size();
        }
        text.AppendTo(block.texts);
        const std::size_t length = block.texts.size() - begin;
        block.slots[slot] = std::uint64_t(begin) << CsvBlock::LengthBits | length;
        valid = length > 0 || (cell.quoted && type == DaxColumnType::Text);
    }
    block.valid[slot] = valid;
}
