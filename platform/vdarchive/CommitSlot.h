#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Where a piece of a storage file lies that is read as a whole, and its checksum.
struct BlobRef
{
    std::int64_t offset = 0;
    std::int64_t size = 0;  ///< 0: there is none
    std::uint64_t checksum = 0;
};

/// What makes a version of a file: whoever has this has, by way of places and checksums, all the rest.
struct CommitSlot
{
    std::uint64_t generation = 0;
    BlobRef directory;
    std::int64_t fileEnd = 0;  ///< the version refers to nothing behind it

    /// The 128 bytes of a slot.
    std::string Encode() const;
    /// Nothing if the bytes are no whole slot.
    static std::optional<CommitSlot> Decode(std::string_view bytes);
};

/// The fixed places of a storage file. Header and slots have a page each, so that writing one never touches another. A slot
/// stands twice in its page: a byte that goes bad doesn't lose the version.
namespace StorageLayout {
constexpr int FileType = 154;
constexpr int Version = 1;
constexpr std::int64_t Page = 4096;
constexpr std::int64_t SlotSize = 128;
constexpr std::int64_t SecondCopy = 2048;  ///< inside the slot's page
constexpr std::int64_t Body = 3 * Page;    ///< the first byte that is given out
constexpr std::int64_t LargestEnd = std::int64_t(1) << 60;
constexpr std::int64_t LargestBlob = std::int64_t(1) << 28;

/// Versions take turns.
constexpr std::int64_t SlotOffset(std::uint64_t generation)
{
    return generation % 2 == 0 ? Page : 2 * Page;
}
}  // namespace StorageLayout
