#include "vdarchive/Z4Node.h"

#include "NodePlaces.h"
#include "StreamWriter.h"
#include "vdarchive/Z4Bytes.h"
#include "vdarchive/Z4Size.h"
#include "vdarchive/Z4Storage.h"

#include <algorithm>

namespace {

constexpr std::size_t SmallestStreamBytes = 16;

}  // namespace

Z4Node::Z4Node(Z4Storage& storage, std::shared_ptr<BlockFile> file, const VDString& name, std::uint32_t kind)
    : storage_(storage), file_(std::move(file)), name_(name), kind_(kind), places_(std::make_unique<Places>())
{
}

Z4Node::~Z4Node() = default;

bool Z4Node::IsWritable() const
{
    return file_->IsWritable();
}

bool Z4Node::NeedsSwap() const
{
    return file_->NeedsSwap();
}

std::int64_t Z4Node::GetFileEnd() const
{
    return std::max(file_->GetSlot().fileEnd, file_->Space().GetEnd());
}

void Z4Node::SetContent(std::string content)
{
    if (content == content_)
        return;
    content_ = std::move(content);
    isContentChanged_ = true;
}

Z4Stream* Z4Node::GetStream(int index) const
{
    return index >= 0 && index < GetStreamCount() ? streams_[index].get() : nullptr;
}

Z4Stream* Z4Node::AddStream(int recordSize)
{
    const bool isUsable = file_->IsWritable() && Z4Size::IsRecordSize(recordSize);
    if (!isUsable) {
        file_->ReportWrongUse(file_->IsWritable() ? "there is no such record size" : "it is open for reading");
        return nullptr;
    }
    isListChanged_ = true;
    std::unique_ptr<Z4Stream> stream(new Z4Stream(file_, recordSize, storage_.blockRecords_));
    Z4Stream* const added = stream.get();
    streams_.Append(std::move(stream));
    return added;
}

bool Z4Node::RemoveStream(int index)
{
    Z4Stream* const stream = GetStream(index);
    if (stream == nullptr || !file_->IsWritable())
        return file_->ReportWrongUse(stream == nullptr ? "there is no such stream" : "it is open for reading");
    StreamWriter& writer = stream->Writer();
    if (!writer.SetLength(0))
        return false;
    writer.Drop();
    auto& superseded = places_->superseded;
    const auto& records = writer.GetSuperseded();
    const auto& blocks = stream->index_->GetDropped();
    superseded.insert(superseded.end(), records.begin(), records.end());
    superseded.insert(superseded.end(), blocks.begin(), blocks.end());
    streams_.Remove(streams_.SlotOf(index), [](const auto&, std::size_t) {});
    isListChanged_ = true;
    return true;
}

bool Z4Node::Claim()
{
    if (isClaimed_ && file_->IsWritable())
        return file_->ReportWrongUse("an object in it is open already");
    isClaimed_ = true;
    return true;
}

bool Z4Node::IsCommitted() const
{
    return places_->table.size > 0;
}

bool Z4Node::Load()
{
    if (isLoaded_ || !IsCommitted())
        return true;
    std::string table;
    content_.clear();
    streams_.Clear();
    if (places_->content.size > 0 && !file_->ReadBlob(places_->content, "the content of an object", &content_))
        return false;
    if (!file_->ReadBlob(places_->table, "a table of streams", &table))
        return false;
    isLoaded_ = DecodeStreams(table) || file_->ReportDamaged("a table of streams contradicts itself");
    return isLoaded_;
}

bool Z4Node::DecodeStreams(const std::string& bytes)
{
    Z4ByteReader reader(bytes);
    const std::uint32_t count = reader.GetCount(SmallestStreamBytes);
    streams_.Reserve(count);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        const auto recordSize = reader.Get<std::int32_t>();
        const auto length = reader.Get<std::int64_t>();
        if (!Z4Size::IsRecordSize(recordSize) || length < 0 || length > Z4Stream::LargestLength)
            return false;
        std::unique_ptr<Z4Stream> stream(new Z4Stream(file_, recordSize, storage_.blockRecords_));
        stream->length_ = length;
        if (!stream->index_->ReadTable(reader, length))
            return false;
        streams_.Append(std::move(stream));
    }
    return reader.IsAtEnd();
}

bool Z4Node::UseSpace(SpaceMap& space)
{
    const auto use = [&space](const BlobRef& ref) { return ref.size == 0 || space.Use(ref.offset, ref.size); };
    if (!Load())
        return false;
    bool good = use(places_->content) && use(places_->table);
    for (const auto& stream : streams_) {
        RecordIndex& index = *stream->index_;
        const auto useRun = [&](std::int64_t record, const RecordIndex::Run& run, const std::uint64_t*) {
            good = good && space.Use(run.offset, index.GetBytes(record, run.count, stream->length_));
            return good;
        };
        good = good && index.VisitBlocks(use);
        if (good && !index.Visit(RecordIndex::Depth::All, useRun) && good)
            return false;
    }
    return good || file_->ReportDamaged("two of its parts lie in the same place");
}

bool Z4Node::IsChanged() const
{
    if (!IsCommitted() || isContentChanged_ || isListChanged_)
        return true;
    for (const auto& stream : streams_)
        if (stream->writer_ != nullptr && stream->writer_->IsChanged())
            return true;
    return false;
}

bool Z4Node::Save(MetaBatch& batch)
{
    places_->savedContent = places_->content;
    if (isContentChanged_) {
        places_->savedContent = {};
        if (!content_.empty() && !batch.Add(content_, "the content of an object", &places_->savedContent))
            return false;
    }
    Z4ByteWriter table;
    table.Put(static_cast<std::uint32_t>(streams_.GetSize()));
    for (const auto& stream : streams_) {
        StreamWriter* const writer = stream->writer_.get();
        if (writer != nullptr && !writer->Tidy())
            return false;
        table.Put(static_cast<std::int32_t>(stream->recordSize_));
        table.Put(stream->length_);
        const auto sumOf = [writer](std::int64_t record, std::int64_t offset, std::uint64_t* sum) {
            return writer != nullptr && writer->SumOf(record, offset, sum);
        };
        if (!stream->index_->Save(batch, table, sumOf))
            return false;
    }
    return batch.Add(table.Bytes(), "a table of streams", &places_->savedTable);
}

void Z4Node::Settle()
{
    SpaceMap& space = file_->Space();
    for (const BlobRef& part : places_->superseded)
        space.FreeLater(part.offset, part.size);
    places_->superseded.clear();
    if (isContentChanged_ && places_->content.size > 0)
        space.FreeLater(places_->content.offset, places_->content.size);
    if (places_->table.size > 0)
        space.FreeLater(places_->table.offset, places_->table.size);
    places_->content = places_->savedContent;
    places_->table = places_->savedTable;
    for (const auto& stream : streams_)
        if (stream->writer_ != nullptr)
            stream->writer_->Settle();
    isContentChanged_ = false;
    isListChanged_ = false;
    isLoaded_ = true;
}

bool Z4Node::Commit()
{
    return IsChanged() ? storage_.Commit(this) : file_->CheckPlace();
}

void Z4Node::Drop()
{
    for (const auto& stream : streams_)
        if (stream->writer_ != nullptr)
            stream->writer_->Drop();
    streams_.Clear();
}

void Z4Node::Revert()
{
    if (IsCommitted() && !IsChanged())
        return;
    Drop();
    places_->superseded.clear();
    isContentChanged_ = false;
    isListChanged_ = false;
    isLoaded_ = false;
    if (!IsCommitted())
        storage_.nodes_.Remove(name_.View());
}
