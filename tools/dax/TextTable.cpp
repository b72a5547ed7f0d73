#include "TextTable.h"

#include <algorithm>

namespace {

/// Characters of a UTF-8 text: all bytes but those that continue one.
std::size_t VFTextWidth(std::string_view text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char byte) { return (byte & 0xc0) != 0x80; }));
}

}  // namespace

std::string VFPrintable(std::string_view text)
{
    std::string printable(text);
    for (char& byte : printable)
        if (static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f)
            byte = ' ';
    return printable;
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
            const std::string text = VFPrintable(row[column]);
            line += alignment_[column] == 'r' ? gap + text : text + gap;
            line += "  ";
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out.Write(line + '\n');
    }
}
