#include "TextTable.h"

#include "Printable.h"

#include <algorithm>

void VDTextTable::Add(const std::vector<std::string>& row)
{
    rows_.emplace_back();
    std::transform(row.begin(), row.end(), std::back_inserter(rows_.back()), VFPrintable);
}

void VDTextTable::Print(VDTextSink& out, std::size_t indent) const
{
    std::vector<std::size_t> widths(alignment_.size(), 0);
    for (const auto& row : rows_)
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], VFTextWidth(row[column]));
    for (const auto& row : rows_) {
        std::string line(indent, ' ');
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string gap(widths[column] - VFTextWidth(row[column]), ' ');
            line += alignment_[column] == 'r' ? gap + row[column] : row[column] + gap;
            line += "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out.Write(line + '\n');
    }
}
