#include "CommitSlot.h"

#include "vdarchive/Z4Bytes.h"
#include "vdbase/VFChecksum.h"

namespace {

constexpr std::string_view Magic = "Z4COMMIT";
constexpr std::size_t ChecksumOffset = 120;

}  // namespace

std::string CommitSlot::Encode() const
{
    Z4ByteWriter writer;
    for (const char byte : Magic)
        writer.Put(static_cast<std::uint8_t>(byte));
    writer.Put(generation);
    writer.Put(directory.offset);
    writer.Put(directory.size);
    writer.Put(directory.checksum);
    writer.Put(fileEnd);
    while (writer.Bytes().size() < ChecksumOffset)
        writer.Put(std::uint8_t(0));
    writer.Put(VFChecksum(writer.Bytes().data(), ChecksumOffset));
    return writer.Take();
}

std::optional<CommitSlot> CommitSlot::Decode(std::string_view bytes)
{
    if (bytes.size() < StorageLayout::SlotSize || bytes.substr(0, Magic.size()) != Magic)
        return std::nullopt;
    Z4ByteReader check(bytes.substr(ChecksumOffset));
    if (check.Get<std::uint64_t>() != VFChecksum(bytes.data(), ChecksumOffset))
        return std::nullopt;
    Z4ByteReader reader(bytes.substr(Magic.size()));
    CommitSlot slot;
    slot.generation = reader.Get<std::uint64_t>();
    slot.directory.offset = reader.Get<std::int64_t>();
    slot.directory.size = reader.Get<std::int64_t>();
    slot.directory.checksum = reader.Get<std::uint64_t>();
    slot.fileEnd = reader.Get<std::int64_t>();
    return slot;
}
