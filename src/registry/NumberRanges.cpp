#include "NumberRanges.h"

#include "vdbase/VFNumber.h"

#include <algorithm>

namespace {

bool VFReadNumber(std::string_view text, std::int64_t* number)
{
    return VFAscToNum(VDString(text), number);
}

}  // namespace

void VDNumberRanges::Add(std::int64_t first, std::int64_t last)
{
    if (first > last)
        return;
    ranges_.push_back({first, last});
    merged_.clear();
}

void VDNumberRanges::AddText(std::string_view text, bool takeNegative)
{
    for (;;) {
        const std::size_t comma = text.find(',');
        const std::string_view part = text.substr(0, comma);
        const std::size_t dash = part.find('-', 1);
        std::int64_t first = 0;
        std::int64_t last = 0;
        if ((takeNegative || !part.starts_with('-')) && VFReadNumber(part.substr(0, dash), &first) &&
            VFReadNumber(dash == std::string_view::npos ? part : part.substr(dash + 1), &last))
            Add(first, last);
        if (comma == std::string_view::npos)
            return;
        text.remove_prefix(comma + 1);
    }
}

void VDNumberRanges::Clear()
{
    ranges_.clear();
    merged_.clear();
}

bool VDNumberRanges::Contains(std::int64_t number) const
{
    if (merged_.empty()) {
        std::vector<Range> sorted = ranges_;
        std::sort(sorted.begin(), sorted.end(),
                  [](const Range& left, const Range& right) { return left.first < right.first; });
        for (const Range& range : sorted) {
            if (merged_.empty() || merged_.back().last < range.first)
                merged_.push_back(range);
            else
                merged_.back().last = std::max(merged_.back().last, range.last);
        }
    }
    const auto behind = std::upper_bound(merged_.begin(), merged_.end(), number,
                                         [](std::int64_t value, const Range& range) { return value < range.first; });
    return behind != merged_.begin() && number <= std::prev(behind)->last;
}

bool VDNumberRanges::AreExactly(const std::vector<std::int64_t>& ascending) const
{
    std::vector<std::int64_t> numbers;
    for (const Range& range : ranges_) {
        // The list says how many there may be at most. The width is worked out so that it fits for any two numbers.
        if (static_cast<std::uint64_t>(range.last) - static_cast<std::uint64_t>(range.first) >=
            ascending.size() - numbers.size())
            return false;
        for (std::int64_t number = range.first; number < range.last; ++number)
            numbers.push_back(number);
        numbers.push_back(range.last);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers == ascending;
}
