#include "RecordSizeTuning.h"

#include "vdarchive/Z4Size.h"
#include "vdarchive/Z4Stream.h"
#include "vdbase/VDString.h"
#include "vdstore/LQMode.h"
#include "vdtrace/VXError.h"

#include <limits>

namespace {

constexpr std::int64_t LargestTandemFileOfSmallRecords = 1'000'000;
constexpr std::int64_t IndexEntryBytes = 32;

/// The product; nothing below 0 and nothing that a stream can't hold.
std::int64_t VFGetBytes(std::int64_t count, std::int64_t size)
{
    std::int64_t bytes = 0;
    if (count < 0 || size < 0 || __builtin_mul_overflow(count, size, &bytes) || bytes > Z4Stream::LargestLength)
        return -1;
    return bytes;
}

int VFReportMissing(const char* format)
{
    VDString text;
    text.FormatRuntime(format, "GetOptimumRecordSize");
    VXError(text, 0, 1);
    return Z4Size::Record32K;
}

}  // namespace

int VFGetOptimumRecordSize(const Z4File* file, std::int64_t elementCount, std::int64_t elementSize, int channelCount)
{
    if (LQMode::IsTandemChannels()) {
        const std::int64_t bytes = VFGetBytes(VFGetBytes(elementCount, elementSize), channelCount);
        return bytes >= 0 && bytes <= LargestTandemFileOfSmallRecords ? Z4Size::Record32K : Z4Size::Record256K;
    }
    if (file == nullptr)
        return VFReportMissing("%s - null file ptr");
    const Z4FileInfo* const info = file->GetInfo();
    if (info == nullptr)
        return VFReportMissing("%s - null file info ptr");
    const std::int64_t bytes = VFGetBytes(elementCount, elementSize);
    if (bytes < 0)
        return Z4Size::Record32K;
    const std::int64_t indexSize = info->GetDefaultStreamIndexSize();
    std::int64_t bestCost = std::numeric_limits<std::int64_t>::max();
    int best = Z4Size::Record32K;
    for (int i = Z4Size::GetNumRecordSizes() - 1; i >= 0; --i) {
        const int recordSize = Z4Size::GetRecordSize(i);
        const std::int64_t records = bytes / recordSize + 1;
        const std::int64_t cost = (records / indexSize + 1) * (indexSize * IndexEntryBytes) + records * recordSize;
        if (cost < bestCost) {
            bestCost = cost;
            best = recordSize;
        }
    }
    return best;
}
