#include "StorageCheck.h"

#include "vdbase/VFChecksum.h"
#include "vdbase/VFError.h"

#include <algorithm>

void StorageCheck::Run(const char* filename)
{
    const auto file = Z4File::Open(os_, filename, false);
    if (file == nullptr)
        return AddLastReport("");
    Z4Storage& root = *file->GetRoot();
    for (int i = 0; i < root.GetNodeCount(); ++i) {
        const VDString name = root.GetNodeName(i);
        Z4Node* const node = root.GetNode(i);
        if (node == nullptr)
            AddLastReport("Object \"" + name + "\": ");
        for (int stream = 0; node != nullptr && stream < node->GetStreamCount(); ++stream)
            CheckStream(*node, stream);
    }
    SpaceMap space(StorageLayout::Body);
    space.StartWith(file->file_->GetSlot().fileEnd);
    if (findings_.GetSize() == 0 && !root.UseSpace(space))
        AddLastReport("");
}

void StorageCheck::CheckStream(Z4Node& node, int stream)
{
    VDString where;
    where.Format("Object \"%s\", stream %d", node.GetName().c_str(), stream);
    Z4Stream& checked = *node.GetStream(stream);
    const auto visitor = [&](std::int64_t record, const RecordIndex::Run& run, const std::uint64_t* sums) {
        return CheckRun(checked, record, run, sums, where);
    };
    if (!checked.index_->Visit(RecordIndex::Depth::WithSums, visitor))
        AddLastReport(where + ": ");
}

bool StorageCheck::CheckRun(Z4Stream& stream, std::int64_t record, const RecordIndex::Run& run, const std::uint64_t* sums,
                            const VDString& where)
{
    buffer_.resize(static_cast<std::size_t>(stream.GetRecordSize()));
    for (std::int64_t i = 0; i < run.count; ++i) {
        const std::int64_t position = (record + i) * stream.GetRecordSize();
        const std::int64_t used = std::min<std::int64_t>(stream.GetRecordSize(), stream.GetLength() - position);
        if (!stream.Read(position, used, buffer_.data()))
            return false;
        if (VFChecksum(buffer_.data(), used) == sums[i])
            continue;
        VDString text;
        text.Format("%s: the record at byte %lld doesn't match its checksum", where.c_str(),
                    static_cast<long long>(position));
        findings_.AppendItem(text);
    }
    return true;
}

void StorageCheck::AddLastReport(const VDString& where)
{
    findings_.AppendItem(where + VFErrorGetBriefString(VFGetBaseLibError()));
}
