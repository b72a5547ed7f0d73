#pragma once

#include "CommitSlot.h"
#include "SpaceMap.h"
#include "vdarchive/VDStorageOs.h"
#include "vdbase/VDString.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// A storage file below its content: header, commit slots, space. A reader sees the version that was the latest when it
/// opened the file. A writer adds to free space and then commits; nothing that a committed version refers to is written
/// over. All failures are recorded.
class BlockFile
{
public:
    /// @return null if it can't be had
    static std::shared_ptr<BlockFile> Open(VDStorageOs& os, const char* filename, bool writable);
    /// A new file. It grows without a name and takes its own, and the place of a file there, with the first commit.
    static std::shared_ptr<BlockFile> Create(VDStorageOs& os, const char* filename);
    /// Takes the right to write a file that may hold anything.
    /// @param file  null if there is no such file
    /// @return false if it can't be had
    static bool Hold(VDStorageOs& os, const char* filename, std::unique_ptr<VDStorageFile>* file);
    /// What isn't committed is lost.
    ~BlockFile();

    /// Gives the file back to the system; everything fails from then on.
    void Close();

    const VDString& GetFilename() const { return filename_; }
    bool IsOpen() const { return file_ != nullptr; }
    bool IsWritable() const { return writable_; }
    /// The data were written on a system of the other byte order.
    bool NeedsSwap() const { return needsSwap_; }
    int GetOpSys() const { return opSys_; }
    int GetSubType() const { return subType_; }
    /// Possible until the first commit.
    bool SetSubType(int subType);

    /// The version that this object works on; its generation is 0 before the first commit.
    const CommitSlot& GetSlot() const { return slot_; }
    SpaceMap& Space() { return space_; }
    /// A buffer for whoever needs one for the length of a call: one for all streams, of which there may be thousands.
    std::vector<unsigned char>& Scratch() { return scratch_; }
    /// What the last commit wrote beside the records; the next one will want as much.
    std::int64_t& UsualBatch() { return usualBatch_; }

    bool Read(std::int64_t offset, std::int64_t count, void* buffer);
    bool Write(std::int64_t offset, std::int64_t count, const void* buffer);
    /// Reads a blob and compares its checksum.
    bool ReadBlob(const BlobRef& ref, const char* what, std::string* bytes);
    /// Whether a part lies where the version has its data.
    bool IsInside(std::int64_t offset, std::int64_t size) const;

    /// Publishes a version: all that was written so far, as the directory describes it.
    bool Commit(const BlobRef& directory);
    /// Whether what was committed is where whoever looks for the file finds it.
    bool CheckPlace() const;
    /// Lets space that was freed later be used again if nobody reads an older version.
    void ReuseSpace();
    /// From now on nothing can be written or committed: what is in the file is no longer what was asked for, or a version
    /// may have been published that nobody here knows of.
    void Break() { broken_ = true; }

    /// Record a failure and give false.
    bool ReportDamaged(const char* what) const;
    bool ReportWrongUse(const char* what) const;

private:
    BlockFile(VDStorageOs& os, const char* filename, bool writable);

    bool OpenExisting();
    bool MakeNew();
    int OpenLocked(std::unique_ptr<VDStorageFile>* file);
    int LockAsReader();
    bool ReadStart();
    int ReadSlots(std::string* start, std::int64_t* count);
    bool ConfirmVersion();
    void GiveBackRoom();
    bool Publish(const CommitSlot& slot);
    bool PublishFirst(const CommitSlot& slot);
    int GiveName();
    bool Report(int code, const VDString& reason) const;
    bool ReportSystem(int code, int error) const;
    bool ReportOpen(int error) const;
    bool ReportBroken() const;

    VDStorageOs& os_;
    VDString filename_;
    VDString place_;       // where a file that is written is, or will be
    VDString sparePlace_;  // where it is if another file came up there
    bool writable_;
    bool broken_ = false;
    bool isHeld_ = true;  // no writer uses space again that a reader's version refers to
    bool needsSwap_ = false;
    int opSys_;
    int subType_ = 0;
    std::unique_ptr<VDStorageFile> file_;
    std::unique_ptr<VDStorageFile> replaced_;  // the file whose place a new one will take, locked
    CommitSlot slot_;
    SpaceMap space_{StorageLayout::Body};
    std::int64_t usualBatch_ = 0;
    std::vector<unsigned char> scratch_;
};
