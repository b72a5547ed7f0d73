#pragma once

#include "TextSink.h"

#include <string>
#include <vector>

/// Rows of texts, printed in columns that are as wide as their longest text. Texts may come from files as they are.
class VDTextTable
{
public:
    /// @param alignment  one character a column: 'l' left or 'r' right
    explicit VDTextTable(std::string alignment) : alignment_(std::move(alignment)) {}

    void Add(const std::vector<std::string>& row);
    std::size_t GetSize() const { return rows_.size(); }
    /// @param indent  blanks before each row
    void Print(VDTextSink& out, std::size_t indent = 0) const;

private:
    std::string alignment_;
    std::vector<std::vector<std::string>> rows_;
};
