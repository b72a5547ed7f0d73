#pragma once

#include "vdarchive/Z4SlotList.h"
#include "vdarchive/Z4Stream.h"
#include "vdbase/VDString.h"

#include <string>

class MetaBatch;
class SpaceMap;
class Z4Storage;

/// What a data object keeps in a storage file: a piece of content that is read and written as a whole, and streams. A change
/// is lost unless `Commit` follows.
class VDARCHIVE_API Z4Node
{
public:
    ~Z4Node();
    Z4Node(const Z4Node&) = delete;
    Z4Node& operator=(const Z4Node&) = delete;

    const VDString& GetName() const { return name_; }
    /// What kind of object it is; chosen by who made it.
    std::uint32_t GetKind() const { return kind_; }
    bool IsWritable() const;
    /// The streams' data have the other byte order than this machine.
    bool NeedsSwap() const;

    /// Where the last data of the file end: nothing that was written wholly is longer than that.
    std::int64_t GetFileEnd() const;

    const std::string& GetContent() const { return content_; }
    void SetContent(std::string content);

    int GetStreamCount() const { return streams_.GetSize(); }
    /// Null outside the node.
    Z4Stream* GetStream(int index) const;
    /// A new stream at the end; null, recorded, if the file is only read or `Z4Size` has no such record size.
    Z4Stream* AddStream(int recordSize);
    /// Those behind it move up by one.
    bool RemoveStream(int index);

    /// Makes this node's changes, and no other's, a version of the file that survives whatever happens from then on. Nothing
    /// happens if nothing changed.
    bool Commit();
    /// Forgets the changes. Streams of before are gone; a node that was never committed is gone itself.
    void Revert();

    /// Takes the node for one data object: in a file that is written no other may have it.
    /// @return false, recorded, if another has it
    bool Claim();
    void Disclaim() { isClaimed_ = false; }

private:
    friend class Z4Storage;
    friend class StorageCheck;
    struct Places;

    Z4Node(Z4Storage& storage, std::shared_ptr<BlockFile> file, const VDString& name, std::uint32_t kind);

    bool Load();
    bool DecodeStreams(const std::string& bytes);
    bool UseSpace(SpaceMap& space);
    bool IsChanged() const;
    bool Save(MetaBatch& batch);
    void Settle();
    void Drop();
    bool IsCommitted() const;

    Z4Storage& storage_;
    std::shared_ptr<BlockFile> file_;
    VDString name_;
    std::uint32_t kind_;
    bool isLoaded_ = false;
    bool isClaimed_ = false;
    bool isContentChanged_ = false;
    bool isListChanged_ = false;
    std::string content_;
    Z4SlotList<std::unique_ptr<Z4Stream>> streams_;
    std::unique_ptr<Places> places_;
};
