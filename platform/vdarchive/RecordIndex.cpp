#include "RecordIndex.h"

#include <algorithm>

namespace {

constexpr std::size_t TableEntryBytes = 24;
constexpr std::size_t ExtentBytes = 16;

}  // namespace

std::int64_t RecordIndex::GetBytes(std::int64_t record, std::int64_t count, std::int64_t length) const
{
    return SpaceMap::RoundUp(std::min(count * recordSize_, std::max<std::int64_t>(length - record * recordSize_, 0)));
}

RecordIndex::Block* RecordIndex::FindBlock(std::uint32_t number)
{
    // Without holes a block stands at its number.
    if (number < blocks_.size() && blocks_[number].number == number)
        return &blocks_[number];
    const auto found = std::lower_bound(blocks_.begin(), blocks_.end(), number,
                                        [](const Block& block, std::uint32_t wanted) { return block.number < wanted; });
    return found != blocks_.end() && found->number == number ? &*found : nullptr;
}

RecordIndex::Block& RecordIndex::AdoptBlock(std::uint32_t number)
{
    if (Block* const block = FindBlock(number))
        return *block;
    Block block;
    block.number = number;
    const auto behind = std::lower_bound(blocks_.begin(), blocks_.end(), number,
                                         [](const Block& each, std::uint32_t wanted) { return each.number < wanted; });
    return *blocks_.insert(behind, std::move(block));
}

/// The last extent that begins at or before the record; the number of extents if there is none.
std::size_t RecordIndex::FindExtent(const Block& block, std::uint32_t record)
{
    const auto behind = std::upper_bound(block.extents.begin(), block.extents.end(), record,
                                         [](std::uint32_t wanted, const Extent& extent) { return wanted < extent.first; });
    return behind == block.extents.begin() ? block.extents.size()
                                           : static_cast<std::size_t>(behind - block.extents.begin()) - 1;
}

bool RecordIndex::Find(std::int64_t record, Run* run)
{
    const auto number = static_cast<std::uint32_t>(record / blockRecords_);
    const auto inBlock = static_cast<std::uint32_t>(record % blockRecords_);
    Block* const block = FindBlock(number);
    if (block == nullptr) {
        *run = {blockRecords_ - inBlock, 0, false, false};
        return true;
    }
    if (!block->isLoaded && !Load(*block, file_.IsWritable()))
        return false;
    const auto& extents = block->extents;
    std::size_t at = block->hint;
    if (at >= extents.size() || inBlock < extents[at].first || inBlock - extents[at].first >= extents[at].count) {
        at = FindExtent(*block, inBlock);
        block->hint = static_cast<std::uint32_t>(at);
    }
    if (at < extents.size() && inBlock - extents[at].first < extents[at].count) {
        const std::uint32_t skipped = inBlock - extents[at].first;
        *run = {extents[at].count - skipped, extents[at].offset + skipped * recordSize_, true, extents[at].isFresh};
        return true;
    }
    const std::size_t next = at < extents.size() ? at + 1 : 0;
    const std::uint32_t end = next < extents.size() ? extents[next].first : blockRecords_;
    *run = {end - inBlock, 0, false, false};
    return true;
}

void RecordIndex::CutBlock(Block& block, std::uint32_t first, std::uint32_t count, Pieces* removed)
{
    const std::uint32_t end = first + count;
    std::vector<Extent> kept;
    kept.reserve(block.extents.size() + 1);
    for (const Extent& extent : block.extents) {
        const std::uint32_t extentEnd = extent.first + extent.count;
        const std::uint32_t from = std::max(first, extent.first);
        const std::uint32_t to = std::min(end, extentEnd);
        if (from >= to) {
            kept.push_back(extent);
            continue;
        }
        if (extent.first < from)
            kept.push_back({extent.first, from - extent.first, extent.offset, extent.isFresh});
        const std::int64_t offset = extent.offset + (from - extent.first) * recordSize_;
        removed->push_back({FirstRecord(block) + from, {to - from, offset, true, extent.isFresh}});
        if (to < extentEnd)
            kept.push_back({to, extentEnd - to, extent.offset + (to - extent.first) * recordSize_, extent.isFresh});
    }
    block.extents = std::move(kept);
}

void RecordIndex::Insert(Block& block, const Extent& extent) const
{
    const auto behind = std::upper_bound(block.extents.begin(), block.extents.end(), extent.first,
                                         [](std::uint32_t wanted, const Extent& each) { return wanted < each.first; });
    if (behind != block.extents.begin()) {
        Extent& before = *std::prev(behind);
        if (before.isFresh && extent.isFresh && before.first + before.count == extent.first &&
            before.offset + before.count * recordSize_ == extent.offset) {
            before.count += extent.count;
            return;
        }
    }
    block.extents.insert(behind, extent);
}

bool RecordIndex::Place(std::int64_t record, std::int64_t count, std::int64_t offset, Pieces* replaced)
{
    while (count > 0) {
        Block& block = AdoptBlock(static_cast<std::uint32_t>(record / blockRecords_));
        if (!block.isLoaded && !Load(block, true))
            return false;
        const auto first = static_cast<std::uint32_t>(record % blockRecords_);
        const auto part = static_cast<std::uint32_t>(std::min<std::int64_t>(count, blockRecords_ - first));
        Extent* const last = block.extents.empty() ? nullptr : &block.extents.back();
        if (last != nullptr && first < last->first + last->count) {
            CutBlock(block, first, part, replaced);
            Insert(block, {first, part, offset, true});
        } else if (last != nullptr && last->isFresh && first == last->first + last->count &&
                   offset == last->offset + last->count * recordSize_) {
            last->count += part;
        } else {
            block.extents.push_back({first, part, offset, true});
        }
        block.isDirty = true;
        if (block.sums.size() < first + part) {
            block.sums.resize(first + part);
            block.known.resize(first + part);
        }
        std::fill_n(block.known.begin() + first, part, false);
        record += part;
        count -= part;
        offset += part * recordSize_;
    }
    return true;
}

bool RecordIndex::Cut(std::int64_t record, Pieces* removed)
{
    const auto number = static_cast<std::uint32_t>(record / blockRecords_);
    while (!blocks_.empty() && blocks_.back().number >= number) {
        Block& block = blocks_.back();
        if (!block.isLoaded && !Load(block, true))
            return false;
        const auto first = block.number > number ? 0 : static_cast<std::uint32_t>(record % blockRecords_);
        const std::size_t before = removed->size();
        CutBlock(block, first, blockRecords_ - first, removed);
        block.isDirty = block.isDirty || removed->size() > before;
        if (!block.extents.empty())
            break;
        if (block.ref.size > 0)
            dropped_.push_back(block.ref);
        blocks_.pop_back();
    }
    return true;
}

bool RecordIndex::SetSum(std::int64_t record, std::uint64_t sum)
{
    Block* const block = FindBlock(static_cast<std::uint32_t>(record / blockRecords_));
    const auto inBlock = static_cast<std::size_t>(record % blockRecords_);
    if (block == nullptr || inBlock >= block->sums.size())
        return false;
    block->sums[inBlock] = sum;
    block->known[inBlock] = true;
    block->isDirty = true;
    return true;
}

bool RecordIndex::ForgetSum(std::int64_t record)
{
    Run run;
    if (!Find(record, &run) || !run.isPresent)
        return false;
    Block* const block = FindBlock(static_cast<std::uint32_t>(record / blockRecords_));
    block->known[static_cast<std::size_t>(record % blockRecords_)] = false;
    block->isDirty = true;
    return true;
}

bool RecordIndex::ReadTable(Z4ByteReader& reader, std::int64_t length)
{
    committedLength_ = length;
    const std::int64_t records = (length + recordSize_ - 1) / recordSize_;
    const std::int64_t blocks = (records + blockRecords_ - 1) / blockRecords_;
    const std::uint32_t count = reader.GetCount(TableEntryBytes);
    std::int64_t expected = 0;
    blocks_.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        Block block;
        block.number = reader.Get<std::uint32_t>();
        block.ref.size = reader.Get<std::uint32_t>();
        block.ref.offset = reader.Get<std::int64_t>();
        block.ref.checksum = reader.Get<std::uint64_t>();
        block.isLoaded = false;
        if (block.number < expected || block.number >= blocks || block.ref.size == 0 ||
            !file_.IsInside(block.ref.offset, block.ref.size))
            reader.Fail();
        if (!reader.IsGood())
            return false;
        expected = std::int64_t(block.number) + 1;
        blocks_.push_back(std::move(block));
    }
    return reader.IsGood();
}

bool RecordIndex::Load(Block& block, bool withSums)
{
    std::string bytes;
    if (!file_.ReadBlob(block.ref, "an index block", &bytes))
        return false;
    if (!Decode(block, bytes, withSums))
        return file_.ReportDamaged("an index block contradicts itself");
    block.isLoaded = true;
    return true;
}

bool RecordIndex::Decode(Block& block, const std::string& bytes, bool withSums) const
{
    Z4ByteReader reader(bytes);
    const std::uint32_t count = reader.GetCount(ExtentBytes);
    const std::int64_t records = (committedLength_ + recordSize_ - 1) / recordSize_;
    const std::int64_t limit = std::min<std::int64_t>(blockRecords_, records - FirstRecord(block));
    std::int64_t expected = 0;
    std::vector<Extent> extents;
    extents.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto first = reader.Get<std::uint32_t>();
        const auto length = reader.Get<std::uint32_t>();
        const auto offset = reader.Get<std::int64_t>();
        if (first < expected || length == 0 || first >= limit || length > limit - first || offset % SpaceMap::Unit != 0 ||
            !file_.IsInside(offset, GetBytes(FirstRecord(block) + first, length, committedLength_)))
            return false;
        expected = std::int64_t(first) + length;
        extents.push_back({first, length, offset, false});
    }
    std::vector<std::uint64_t> sums(withSums ? static_cast<std::size_t>(expected) : 0);
    for (const Extent& extent : extents)
        for (std::uint32_t i = 0; i < extent.count; ++i)
            if (const auto sum = reader.Get<std::uint64_t>(); withSums)
                sums[extent.first + i] = sum;
    if (!reader.IsAtEnd())
        return false;
    block.extents = std::move(extents);
    block.known.assign(sums.size(), true);
    block.sums = std::move(sums);
    return true;
}

bool RecordIndex::SaveBlock(Block& block, MetaBatch& batch, const SumOf& sumOf)
{
    Z4ByteWriter writer;
    writer.Put(static_cast<std::uint32_t>(block.extents.size()));
    for (const Extent& extent : block.extents) {
        writer.Put(extent.first);
        writer.Put(extent.count);
        writer.Put(extent.offset);
    }
    for (const Extent& extent : block.extents)
        for (std::uint32_t i = extent.first; i < extent.first + extent.count; ++i) {
            if (!block.known[i] &&
                !sumOf(FirstRecord(block) + i, extent.offset + (i - extent.first) * recordSize_, &block.sums[i]))
                return false;
            block.known[i] = true;
            writer.Put(block.sums[i]);
        }
    return batch.Add(writer.Bytes(), "an index block", &block.saved);
}

bool RecordIndex::Save(MetaBatch& batch, Z4ByteWriter& table, const SumOf& sumOf)
{
    table.Put(static_cast<std::uint32_t>(blocks_.size()));
    for (Block& block : blocks_) {
        if (block.isDirty && !SaveBlock(block, batch, sumOf))
            return false;
        const BlobRef& ref = block.isDirty ? block.saved : block.ref;
        table.Put(block.number);
        table.Put(static_cast<std::uint32_t>(ref.size));
        table.Put(ref.offset);
        table.Put(ref.checksum);
    }
    return true;
}

void RecordIndex::Settle(std::int64_t length)
{
    for (const BlobRef& ref : dropped_)
        file_.Space().FreeLater(ref.offset, ref.size);
    dropped_.clear();
    for (Block& block : blocks_) {
        if (!block.isDirty)
            continue;
        if (block.ref.size > 0)
            file_.Space().FreeLater(block.ref.offset, block.ref.size);
        block.ref = block.saved;
        block.isDirty = false;
        // Runs that were told apart only by their age may be one now.
        std::vector<Extent> joined;
        for (Extent extent : block.extents) {
            extent.isFresh = false;
            Extent* const last = joined.empty() ? nullptr : &joined.back();
            if (last != nullptr && last->first + last->count == extent.first &&
                last->offset + last->count * recordSize_ == extent.offset)
                last->count += extent.count;
            else
                joined.push_back(extent);
        }
        joined.shrink_to_fit();
        block.extents = std::move(joined);
        block.hint = 0;
    }
    committedLength_ = length;
}

bool RecordIndex::Visit(Depth depth, const Visitor& visitor)
{
    const bool withSums = depth == Depth::WithSums;
    for (Block& block : blocks_) {
        if (depth == Depth::Loaded && !block.isLoaded)
            continue;
        const bool isComplete = block.isLoaded && (!withSums || !block.sums.empty() || block.extents.empty());
        if (!isComplete && !Load(block, withSums || file_.IsWritable()))
            return false;
        for (const Extent& extent : block.extents)
            if (!visitor(FirstRecord(block) + extent.first, {extent.count, extent.offset, true, extent.isFresh},
                         block.sums.empty() ? nullptr : block.sums.data() + extent.first))
                return false;
    }
    return true;
}
