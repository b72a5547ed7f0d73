#include "vdbase/VDStringArray.h"

#include "AsciiText.h"

#include <string_view>

int VDStringArray::Find(const char* value, int fromStart) const
{
    const std::string_view wanted = value == nullptr ? std::string_view() : std::string_view(value);
    const auto isWanted = [&](const VDString& item) { return item.View() == wanted; };
    if (fromStart != 0) {
        const auto found = std::find_if(begin(), end(), isWanted);
        return found == end() ? -1 : static_cast<int>(found - begin());
    }
    const auto found = std::find_if(items_.rbegin(), items_.rend(), isWanted);
    return static_cast<int>(items_.rend() - found) - 1;
}

int VDStringArray::FindNoCase(const char* value) const
{
    const auto found = std::find_if(begin(), end(), [&](const VDString& item) { return item.CompareNoCase(value) == 0; });
    return found == end() ? -1 : static_cast<int>(found - begin());
}

int VDStringArray::SplitString(const char* text, const char* separators, int maxParts)
{
    // The text may be an element of this very list.
    const VDString whole(text);
    const VDString separating(separators);
    Clear();
    if (whole.IsEmpty())
        return 0;
    std::string_view rest = whole.View();
    while (maxParts <= 0 || GetSize() + 1 < maxParts) {
        const std::size_t separator = rest.find_first_of(separating.View());
        if (separator == std::string_view::npos)
            break;
        AppendItem(VDString(rest.substr(0, separator)));
        rest.remove_prefix(separator + 1);
    }
    AppendItem(VDString(rest));
    return GetSize();
}

void VDStringArray::Sort()
{
    std::sort(begin(), end());
}

void VDStringArray::MakeUpper()
{
    for (VDString& item : *this)
        item.MakeUpper();
}

bool VDStringArray::AreEqual(const VDStringArray& other, int noCase) const
{
    return std::equal(begin(), end(), other.begin(), other.end(), [&](const VDString& left, const VDString& right) {
        return noCase != 0 ? VFCompareNoCase(left.View(), right.View()) == 0 : left == right;
    });
}
