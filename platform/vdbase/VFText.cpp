#include "vdbase/VFText.h"

#include <algorithm>
#include <vector>

namespace {

bool IdBefore(const VDTextRow& left, const VDTextRow& right)
{
    return left.id < right.id;
}

}  // namespace

/// Keeps the rows in ascending order of their ids; the texts stay the table's.
class VDTextCatalogue
{
public:
    explicit VDTextCatalogue(const VDTextRow* table)
    {
        const VDTextRow* end = table;
        while (end->id != 0 || end->text != nullptr)
            ++end;
        rows_.assign(table, end);
        // Of rows with one id the first counts.
        std::stable_sort(rows_.begin(), rows_.end(), IdBefore);
    }

    const char* Find(std::int32_t id) const
    {
        const auto row = std::lower_bound(rows_.begin(), rows_.end(), VDTextRow{id, nullptr}, IdBefore);
        return row != rows_.end() && row->id == id ? row->text : nullptr;
    }

private:
    std::vector<VDTextRow> rows_;
};

VDTextCatalogue* VFTextCreateEmbedded(const char* /*name*/, const VDTextRow* table, int /*flags*/)
{
    return table == nullptr ? nullptr : new VDTextCatalogue(table);
}

bool VFTextGet(const VDTextCatalogue* catalogue, int id, VDString* text)
{
    const char* found = catalogue == nullptr ? nullptr : catalogue->Find(id);
    *text = found;
    return found != nullptr;
}

void VFTextRelease(VDTextCatalogue* catalogue)
{
    delete catalogue;
}
