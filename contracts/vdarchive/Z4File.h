#pragma once

#include "vdarchive/Z4FileInfo.h"
#include "vdarchive/Z4Storage.h"

class VDStorageOs;

/// An open storage file. The manager makes and ends it.
class VDARCHIVE_API Z4File
{
public:
    ~Z4File();
    Z4File(const Z4File&) = delete;
    Z4File& operator=(const Z4File&) = delete;

    const VDString& GetFilename() const;
    bool IsWritable() const;
    /// Code of the system that wrote the file.
    int GetOpSys() const;

    /// The nodes; valid until the file is closed.
    Z4Storage* GetRoot() const { return root_.get(); }
    int GetSubType() const;
    /// @return false, recorded, for another sub type than a file has that was committed before
    bool SetSubType(int subType);
    const Z4FileInfo* GetInfo() const { return &info_; }

private:
    friend class Z4Manager;
    friend class StorageCheck;

    Z4File(std::shared_ptr<BlockFile> file, const Z4FileInfo& info);
    static std::unique_ptr<Z4File> Open(VDStorageOs& os, const char* filename, bool writable);
    static std::unique_ptr<Z4File> Create(VDStorageOs& os, const char* filename, const Z4FileInfo* info);
    bool Close(bool save);

    std::shared_ptr<BlockFile> file_;
    Z4FileInfo info_;
    std::shared_ptr<Z4Storage> root_;
};
