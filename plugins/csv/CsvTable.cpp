#include "CsvTable.h"

#include "CsvEncoding.h"
#include "CsvReport.h"

#include <algorithm>
#include <cmath>
#include <limits>

std::unique_ptr<CsvTable> CsvTable::Open(const std::string& filename, const CsvSettings& settings, const char* routine)
{
    std::unique_ptr<CsvTable> table(new CsvTable(filename));
    if (!table->io_.Open(VTOpenRead))
        return PluginReport(CsvError::Open, routine, filename, {}, 1), nullptr;
    table->index_ = CsvIndex::Get(table->io_, settings);
    if (!table->index_)
        return PluginReport(CsvError::Read, routine, filename, "The file holds no table that can be read."), nullptr;
    table->blocks_.emplace(table->io_, table->index_);
    return table;
}

/// Calls visit(block, slot, index, count) for each run of rows that a block holds.
template <class Visitor>
bool CsvTable::Visit(std::size_t column, std::int64_t first, std::int64_t count, const char* routine, Visitor&& visit)
{
    for (std::int64_t done = 0; done < count;) {
        const CsvBlock* const block = blocks_->Get(first + done);
        if (block == nullptr)
            return PluginReport(CsvError::Read, routine, io_.GetFilename().Str(),
                                "The file isn't any more what it was when it was opened.", 1) != 0;
        const std::int64_t part = std::min(count - done, block->first + block->rows - first - done);
        visit(*block, block->At(column, first + done), done, part);
        done += part;
    }
    return true;
}

template <class Value>
bool CsvTable::Read(std::size_t column, std::int64_t first, std::int64_t count, Value* values, const char* routine)
{
    const bool real = index_->GetColumns()[column].type == DaxColumnType::Double;
    return Visit(
        column, first, count, routine, [=](const CsvBlock& block, std::size_t slot, std::int64_t at, std::int64_t part) {
            const std::uint64_t* const from = block.slots.data() + slot;
            if (real)
                std::transform(from, from + part, values + at,
                               [](std::uint64_t bits) { return static_cast<Value>(std::bit_cast<double>(bits)); });
            else
                std::transform(from, from + part, values + at,
                               [](std::uint64_t bits) { return static_cast<Value>(static_cast<std::int64_t>(bits)); });
        });
}

template <class Value>
bool CsvTable::ReadSamples(std::size_t column, std::int64_t first, std::int64_t count, Value* values, const char* routine)
{
    const auto mark = [=](const CsvBlock& block, std::size_t slot, std::int64_t at, std::int64_t part) {
        for (std::int64_t row = 0; row < part; ++row, ++slot)
            if (block.valid[slot] == 0)
                values[at + row] = std::numeric_limits<Value>::quiet_NaN();
    };
    return Read(column, first, count, values, routine) &&
           (!index_->GetColumns()[column].hasInvalid || Visit(column, first, count, routine, mark));
}

template bool CsvTable::Read(std::size_t, std::int64_t, std::int64_t, float*, const char*);
template bool CsvTable::Read(std::size_t, std::int64_t, std::int64_t, short*, const char*);
template bool CsvTable::Read(std::size_t, std::int64_t, std::int64_t, double*, const char*);
template bool CsvTable::Read(std::size_t, std::int64_t, std::int64_t, std::int32_t*, const char*);
template bool CsvTable::Read(std::size_t, std::int64_t, std::int64_t, std::int64_t*, const char*);

template bool CsvTable::ReadSamples(std::size_t, std::int64_t, std::int64_t, float*, const char*);
template bool CsvTable::ReadSamples(std::size_t, std::int64_t, std::int64_t, double*, const char*);

bool CsvTable::ReadTexts(std::size_t column, std::int64_t first, std::int64_t count, VDString* values, const char* routine)
{
    const CsvDialect::Encoding encoding = index_->GetDialect().encoding;
    return Visit(column, first, count, routine,
                 [=](const CsvBlock& block, std::size_t slot, std::int64_t at, std::int64_t part) {
                     for (std::int64_t row = 0; row < part; ++row, ++slot)
                         values[at + row] = CsvDecode(block.GetText(slot), encoding);
                 });
}

bool CsvTable::ReadValid(std::size_t column, std::int64_t first, std::int64_t count, char* valid, const char* routine)
{
    return Visit(column, first, count, routine,
                 [=](const CsvBlock& block, std::size_t slot, std::int64_t at, std::int64_t part) {
                     std::copy_n(block.valid.data() + slot, part, valid + at);
                 });
}

bool CsvTable::CalculateLimits(const char* routine)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    const std::vector<CsvColumn>& columns = index_->GetColumns();
    std::vector<std::pair<double, double>> limits(columns.size(), {infinite, -infinite});
    const auto take = [&](const CsvBlock& block, std::size_t column, auto valueOf) {
        auto& [least, most] = limits[column];
        const std::size_t begin = block.At(column, block.first);
        for (std::size_t slot = begin; slot < begin + static_cast<std::size_t>(block.rows); ++slot) {
            const double value = valueOf(block.slots[slot]);
            // What isn't a number is in no order.
            if (block.valid[slot] != 0 && !std::isnan(value)) {
                least = std::min(least, value);
                most = std::max(most, value);
            }
        }
    };
    const auto visit = [&](const CsvBlock& block, std::size_t, std::int64_t, std::int64_t) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            if (columns[column].type == DaxColumnType::Double)
                take(block, column, [](std::uint64_t bits) { return std::bit_cast<double>(bits); });
            else if (columns[column].IsNumeric())
                take(block, column, [](std::uint64_t bits) { return static_cast<double>(static_cast<std::int64_t>(bits)); });
        }
    };
    if (!Visit(0, 0, index_->GetNumRows(), routine, visit))
        return false;
    limits_ = std::move(limits);
    return true;
}

bool CsvTable::GetLimits(std::size_t column, VDVariant& limits, const char* routine)
{
    if (limits_.empty() && !CalculateLimits(routine))
        return false;
    const auto& [least, most] = limits_[column];
    limits = least > most ? VDVariant::FromList({VDVariant(), VDVariant()})
                          : VDVariant::FromList({VDVariant(least), VDVariant(most)});
    return true;
}
