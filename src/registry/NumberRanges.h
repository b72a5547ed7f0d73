#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

/// The numbers of a text such as "1,4-6". They are kept as ranges: what is written in a few bytes takes a few bytes, be it
/// "1-2000000000".
class VDNumberRanges
{
public:
    /// Adds all numbers from the first to the last; nothing if the first is above the last.
    void Add(std::int64_t first, std::int64_t last);
    /// Adds what a text says. It is cut at ","; a part is a number, or two joined by "-", the "-" not in the first place.
    /// One that reads as neither adds nothing.
    /// @param takeNegative  false passes over parts that begin with "-"
    void AddText(std::string_view text, bool takeNegative = true);
    void Clear();

    bool IsEmpty() const { return ranges_.empty(); }
    /// In logarithmic time once all numbers are there.
    bool Contains(std::int64_t number) const;
    /// Whether these are the numbers of an ascending list. A number that was added twice has to be there twice.
    bool AreExactly(const std::vector<std::int64_t>& ascending) const;

private:
    struct Range
    {
        std::int64_t first;
        std::int64_t last;
    };

    std::vector<Range> ranges_;          ///< as they were added
    mutable std::vector<Range> merged_;  ///< ascending and apart from each other; empty until somebody asks
};
