#pragma once

#include "vdarchive/Z4NamedList.h"
#include "vdarchive/Z4Node.h"

/// The nodes of a storage file by their names.
class VDARCHIVE_API Z4Storage : public std::enable_shared_from_this<Z4Storage>
{
public:
    ~Z4Storage();
    Z4Storage(const Z4Storage&) = delete;
    Z4Storage& operator=(const Z4Storage&) = delete;

    int GetNodeCount() const { return nodes_.GetSize(); }
    /// Empty outside the list.
    VDString GetNodeName(int index) const;
    /// Both are null if there is none or, recorded, if it can't be read.
    Z4Node* GetNode(int index);
    Z4Node* GetNode(const char* name);
    /// The node of this name, which is made if it is not there.
    /// @param created  whether it was made; may be null
    /// @return null, recorded, if it can't be read or be made
    Z4Node* AdoptNode(const char* name, std::uint32_t kind, bool* created);

private:
    friend class Z4File;
    friend class Z4Node;
    friend class StorageCheck;

    Z4Storage(std::shared_ptr<BlockFile> file, std::uint32_t blockRecords);

    bool Load();
    bool DecodeDirectory(const std::string& bytes);
    bool UseSpace(SpaceMap& space);
    bool Commit(Z4Node* node);
    std::string EncodeDirectory(const Z4Node* saved) const;

    std::shared_ptr<BlockFile> file_;
    std::uint32_t blockRecords_;
    Z4NamedList<Z4Node> nodes_;
};
