#pragma once

#include "TextSink.h"

#include <string>
#include <string_view>
#include <vector>

/// A text made fit for a terminal: control bytes, line ends among them, become blanks.
std::string VFPrintable(std::string_view text);

/// Rows of texts, printed in columns that are as wide as their longest text.
class VDTextTable
{
public:
    /// @param alignment  one character a column: 'l' left or 'r' right
    explicit VDTextTable(std::string alignment) : alignment_(std::move(alignment)) {}

    void Add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }
    /// @param indent  blanks before each row
    void Print(VDTextSink& out, std::size_t indent = 0) const;

private:
    std::string alignment_;
    std::vector<std::vector<std::string>> rows_;
};
