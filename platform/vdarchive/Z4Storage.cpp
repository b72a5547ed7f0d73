#include "vdarchive/Z4Storage.h"

#include "BlockFile.h"
#include "MetaBatch.h"
#include "NodePlaces.h"
#include "vdarchive/Z4Bytes.h"
#include "vdarchive/Z4FileInfo.h"

#include <bit>

namespace {

constexpr std::size_t SmallestNodeBytes = 56;

BlobRef GetRef(Z4ByteReader& reader)
{
    BlobRef ref;
    ref.offset = reader.Get<std::int64_t>();
    ref.size = reader.Get<std::int64_t>();
    ref.checksum = reader.Get<std::uint64_t>();
    return ref;
}

void PutRef(Z4ByteWriter& writer, const BlobRef& ref)
{
    writer.Put(ref.offset);
    writer.Put(ref.size);
    writer.Put(ref.checksum);
}

}  // namespace

Z4Storage::Z4Storage(std::shared_ptr<BlockFile> file, std::uint32_t blockRecords)
    : file_(std::move(file)), blockRecords_(blockRecords)
{
}

Z4Storage::~Z4Storage() = default;

bool Z4Storage::Load()
{
    std::string bytes;
    if (!file_->ReadBlob(file_->GetSlot().directory, "the directory", &bytes))
        return false;
    if (!DecodeDirectory(bytes))
        return file_->ReportDamaged("the directory contradicts itself");
    if (!file_->IsWritable())
        return true;
    file_->Space().StartWith(file_->GetSlot().fileEnd);
    if (!UseSpace(file_->Space()))
        return false;
    // Somebody may still read the version before.
    file_->Space().FreeAllLater();
    file_->ReuseSpace();
    return true;
}

bool Z4Storage::DecodeDirectory(const std::string& bytes)
{
    Z4ByteReader reader(bytes);
    blockRecords_ = reader.Get<std::uint32_t>();
    if (blockRecords_ < Z4FileInfo::SmallestStreamIndexSize || blockRecords_ > Z4FileInfo::LargestStreamIndexSize)
        return false;
    const std::uint32_t count = reader.GetCount(SmallestNodeBytes);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        const VDString name = reader.GetText();
        const auto kind = reader.Get<std::uint32_t>();
        std::unique_ptr<Z4Node> node(new Z4Node(*this, file_, name, kind));
        node->places_->content = GetRef(reader);
        node->places_->table = GetRef(reader);
        if (node->places_->table.size <= 0 || nodes_.Append(std::move(node)) == nullptr)
            return false;
    }
    return reader.IsAtEnd();
}

/// What the commit refers to is in use; the rest is free. An overlap would make a write to one object change another.
bool Z4Storage::UseSpace(SpaceMap& space)
{
    const BlobRef& directory = file_->GetSlot().directory;
    if (!space.Use(directory.offset, directory.size))
        return file_->ReportDamaged("the place of the directory is impossible");
    for (int i = 0; i < GetNodeCount(); ++i)
        if (!nodes_.At(i)->UseSpace(space))
            return false;
    return true;
}

VDString Z4Storage::GetNodeName(int index) const
{
    const Z4Node* const node = nodes_.At(index);
    return node == nullptr ? VDString() : node->GetName();
}

Z4Node* Z4Storage::GetNode(int index)
{
    Z4Node* const node = nodes_.At(index);
    return node != nullptr && node->Load() ? node : nullptr;
}

Z4Node* Z4Storage::GetNode(const char* name)
{
    Z4Node* const node = nodes_.Find(VDString(name).View());
    return node != nullptr && node->Load() ? node : nullptr;
}

Z4Node* Z4Storage::AdoptNode(const char* name, std::uint32_t kind, bool* created)
{
    if (created != nullptr)
        *created = false;
    if (nodes_.Find(VDString(name).View()) != nullptr)
        return GetNode(name);
    if (!file_->IsWritable()) {
        file_->ReportWrongUse("it is open for reading and has no such object");
        return nullptr;
    }
    if (created != nullptr)
        *created = true;
    return nodes_.Append(std::unique_ptr<Z4Node>(new Z4Node(*this, file_, name, kind)));
}

/// The directory of the next version: one node as it was saved for it, the others as they were committed.
std::string Z4Storage::EncodeDirectory(const Z4Node* saved) const
{
    Z4ByteWriter writer;
    std::uint32_t count = 0;
    for (int i = 0; i < GetNodeCount(); ++i)
        count += nodes_.At(i) == saved || nodes_.At(i)->IsCommitted() ? 1 : 0;
    writer.Put(blockRecords_);
    writer.Put(count);
    for (int i = 0; i < GetNodeCount(); ++i) {
        const Z4Node& node = *nodes_.At(i);
        if (&node != saved && !node.IsCommitted())
            continue;
        writer.PutText(node.GetName().View());
        writer.Put(node.GetKind());
        PutRef(writer, &node == saved ? node.places_->savedContent : node.places_->content);
        PutRef(writer, &node == saved ? node.places_->savedTable : node.places_->table);
    }
    return writer.Take();
}

bool Z4Storage::Commit(Z4Node* node)
{
    const BlobRef last = file_->GetSlot().directory;
    MetaBatch batch(*file_);
    BlobRef directory;
    const bool good = (node == nullptr || node->Save(batch)) &&
                      batch.Add(EncodeDirectory(node), "the directory", &directory) && batch.Flush() &&
                      file_->Commit(directory);
    if (!good)
        return false;
    batch.Keep();
    if (node != nullptr)
        node->Settle();
    if (last.size > 0)
        file_->Space().FreeLater(last.offset, last.size);
    file_->ReuseSpace();
    return file_->CheckPlace();
}
