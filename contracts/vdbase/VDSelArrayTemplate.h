#pragma once

#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

#include <string>
#include <utility>

/// A list of numbers that is bounded in its count and in the length of the text that it is written as.
template <class T>
class VDSelArrayTemplate : public VDArrayWithSort<T>
{
public:
    /// @param maxItems       a further entry is refused without a message
    /// @param maxTextLength  limit of `GetRangeText` in bytes
    VDSelArrayTemplate(int maxItems, int maxTextLength) : maxItems_(maxItems), maxTextLength_(maxTextLength) {}

    void Add(T value)
    {
        if (this->GetSize() < maxItems_)
            this->AppendItem(value);
    }

    /// The range list of a sorted list: numbers joined by commas, a run of three or more as first-last. Where the text, the
    /// next number and its separator together would pass the limit, "~" is appended and writing stops.
    VDString GetRangeText() const;

private:
    /// Also for the largest value, which has no next one.
    static bool IsNext(T value, T following) { return following > value && following - 1 == value; }

    int maxItems_;
    int maxTextLength_;
};

template <class T>
VDString VDSelArrayTemplate<T>::GetRangeText() const
{
    std::string text;
    const auto append = [&](const std::string& separator, T number) {
        const std::string digits = std::to_string(number);
        if (text.size() + digits.size() + 1 > static_cast<std::size_t>(std::max(maxTextLength_, 0))) {
            text += '~';
            return false;
        }
        text += separator + digits;
        return true;
    };
    for (int first = 0; first < this->GetSize();) {
        int last = first;
        while (last + 1 < this->GetSize() && IsNext((*this)[last], (*this)[last + 1]))
            ++last;
        if (!append(first == 0 ? "" : ",", (*this)[first]))
            break;
        if (last > first && !append(last == first + 1 ? "," : "-", (*this)[last]))
            break;
        first = last + 1;
    }
    return VDString(std::move(text));
}
