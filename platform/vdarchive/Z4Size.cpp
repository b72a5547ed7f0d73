#include "vdarchive/Z4Size.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr int RecordSizes[] = {Z4Size::Record32K, Z4Size::Record256K};

}  // namespace

int Z4Size::GetNumRecordSizes()
{
    return static_cast<int>(std::size(RecordSizes));
}

int Z4Size::GetRecordSize(int index)
{
    return index >= 0 && index < GetNumRecordSizes() ? RecordSizes[index] : 0;
}

bool Z4Size::IsRecordSize(std::int64_t size)
{
    return std::find(std::begin(RecordSizes), std::end(RecordSizes), size) != std::end(RecordSizes);
}
