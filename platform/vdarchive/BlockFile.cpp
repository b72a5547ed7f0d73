#include "BlockFile.h"

#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdbase/VDHeader.h"
#include "vdbase/VFByteOrder.h"
#include "vdbase/VFChecksum.h"
#include "vdbase/VFError.h"

#include <bit>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr int OwnOpSys = std::endian::native == std::endian::little ? VTOpSysLittleEndian : VTOpSysBigEndian;
// A file that is replaced between being opened and being locked is opened anew.
constexpr int LargestAttempts = 10;

const char* WhatFailed(int code)
{
    switch (code) {
    case VDArchiveError::FileRead:
        return "The storage file can't be read";
    case VDArchiveError::FileWrite:
        return "The storage file can't be written";
    case VDArchiveError::FileDamaged:
        return "The storage file is damaged";
    case VDArchiveError::FileInUse:
        return "The storage file is in use";
    case VDArchiveError::WrongUse:
        return "The storage file can't be used like this";
    default:
        return "The storage file can't be opened";
    }
}

/// The file behind links, so that replacing it doesn't replace a link.
std::string FinalName(const char* filename)
{
    std::error_code error;
    const fs::path name = fs::canonical(filename, error);
    return error ? std::string(filename) : name.string();
}

std::optional<CommitSlot> LatestSlot(std::string_view start)
{
    std::optional<CommitSlot> latest;
    for (const auto turn : {std::uint64_t(0), std::uint64_t(1)})
        for (const std::int64_t copy : {std::int64_t(0), StorageLayout::SecondCopy}) {
            const auto place = static_cast<std::size_t>(StorageLayout::SlotOffset(turn) + copy);
            const auto slot = CommitSlot::Decode(start.substr(place, StorageLayout::SlotSize));
            if (slot && (!latest || slot->generation > latest->generation))
                latest = slot;
        }
    return latest;
}

/// A slot's page as far as it is written: the slot twice.
std::string SlotPage(const CommitSlot& slot)
{
    std::string page = slot.Encode();
    page.resize(StorageLayout::SecondCopy);
    return page + slot.Encode();
}

}  // namespace

BlockFile::BlockFile(VDStorageOs& os, const char* filename, bool writable)
    : os_(os), filename_(filename), writable_(writable), opSys_(OwnOpSys)
{
}

BlockFile::~BlockFile()
{
    Close();
}

std::shared_ptr<BlockFile> BlockFile::Open(VDStorageOs& os, const char* filename, bool writable)
{
    std::shared_ptr<BlockFile> file(new BlockFile(os, filename, writable));
    return file->OpenExisting() && file->ReadStart() ? file : nullptr;
}

std::shared_ptr<BlockFile> BlockFile::Create(VDStorageOs& os, const char* filename)
{
    std::shared_ptr<BlockFile> file(new BlockFile(os, filename, true));
    return file->MakeNew() ? file : nullptr;
}

bool BlockFile::LockForWriting(VDStorageFile& file, bool* current, const VDString& filename)
{
    const int error = file.Lock(VTStorageLock::Writer);
    if (error == EWOULDBLOCK)
        return Report(VDArchiveError::FileInUse, "another writer has it open");
    if (error != 0)
        return ReportSystem(VDArchiveError::FileOpen, error);
    *current = file.IsAt(filename);
    return true;
}

bool BlockFile::OpenExisting()
{
    for (int attempt = 0; attempt < LargestAttempts; ++attempt) {
        const auto mode = writable_ ? VTStorageOpen::Update : VTStorageOpen::Read;
        if (const int error = os_.Open(filename_, mode, &file_); error != 0)
            return ReportSystem(VDArchiveError::FileOpen, error);
        bool current = true;
        if (!writable_)
            // A file system without locks still lets itself be read.
            file_->Lock(VTStorageLock::Reader);
        else if (!LockForWriting(*file_, &current, filename_))
            return false;
        if (current)
            return true;
    }
    return Report(VDArchiveError::FileInUse, "it is replaced again and again");
}

bool BlockFile::MakeNew()
{
    const VDString target = FinalName(filename_);
    const fs::path path(target.c_str());
    const VDString temporary((path.parent_path() / ("." + path.filename().string() + ".z4new")).string());
    for (int attempt = 0; attempt < LargestAttempts; ++attempt) {
        if (const int error = os_.Open(temporary, VTStorageOpen::Create, &file_); error != 0)
            return ReportSystem(VDArchiveError::FileOpen, error);
        bool current = false;
        if (!LockForWriting(*file_, &current, temporary))
            return false;
        if (!current)
            continue;
        filename_ = target;
        temporaryName_ = temporary;
        // Who writes the file that is to be replaced would lose what it writes.
        const int error = os_.Open(target, VTStorageOpen::Update, &replaced_);
        if (error != 0 && error != ENOENT)
            return ReportSystem(VDArchiveError::FileOpen, error);
        if (error == 0 && !LockForWriting(*replaced_, &current, target))
            return false;
        if (!current) {
            Close();
            continue;
        }
        // What a writer that died left behind under the other name is of no use.
        const int cut = file_->Truncate(0);
        return cut == 0 || ReportSystem(VDArchiveError::FileOpen, cut);
    }
    return Report(VDArchiveError::FileInUse, "it is replaced again and again");
}

bool BlockFile::ReadStart()
{
    std::string start(StorageLayout::Body, '\0');
    std::int64_t count = 0;
    if (const int error = file_->Read(0, StorageLayout::Body, start.data(), &count); error != 0)
        return ReportSystem(VDArchiveError::FileRead, error);
    VDHeader header(StorageLayout::FileType, -1, VDHeader::Size);
    if (!header.SetHeader(start.data(), filename_))
        return header.IsDamaged() && count >= VDHeader::Size ? ReportDamaged("its header doesn't match its checksum")
                                                             : Report(VDArchiveError::FileOpen, "it isn't a storage file");
    if (header.GetVersion() != StorageLayout::Version)
        return Report(VDArchiveError::FileOpen, "it was written by a newer version of the storage");
    opSys_ = header.GetOpSys();
    subType_ = header.GetSubType();
    needsSwap_ = VFNeedSwap(opSys_, OwnOpSys, 0);
    if (needsSwap_ && writable_)
        return Report(VDArchiveError::FileOpen, "it comes from a system of the other byte order and can only be read");

    const auto slot = LatestSlot(start);
    std::int64_t size = 0;
    if (count < StorageLayout::Body || !slot)
        return ReportDamaged("it has no whole commit slot");
    if (const int error = file_->GetSize(&size); error != 0)
        return ReportSystem(VDArchiveError::FileRead, error);
    if (slot->fileEnd < StorageLayout::Body || slot->fileEnd > size || size > StorageLayout::LargestEnd)
        return ReportDamaged("it is shorter than it was");
    slot_ = *slot;
    return true;
}

void BlockFile::Close()
{
    if (file_ == nullptr)
        return;
    if (!temporaryName_.IsEmpty())
        os_.Remove(temporaryName_);
    else if (writable_ && !broken_ && slot_.generation > 0 && file_->Lock(VTStorageLock::NoReaders) == 0)
        // Room that was reserved or belonged to older versions; keeping it would do no harm either.
        if (std::int64_t size = 0; file_->GetSize(&size) == 0 && size > slot_.fileEnd)
            file_->Truncate(slot_.fileEnd);
    temporaryName_.Empty();
    replaced_.reset();
    file_.reset();
}

bool BlockFile::SetSubType(int subType)
{
    if (subType == subType_)
        return true;
    if (!writable_ || slot_.generation > 0)
        return ReportWrongUse("its sub type stands fast once it is written");
    subType_ = subType;
    return true;
}

bool BlockFile::Read(std::int64_t offset, std::int64_t count, void* buffer)
{
    if (file_ == nullptr)
        return ReportWrongUse("it is closed");
    std::int64_t got = 0;
    if (const int error = file_->Read(offset, count, buffer, &got); error != 0)
        return ReportSystem(VDArchiveError::FileRead, error);
    return got == count || ReportDamaged("it is shorter than it was");
}

bool BlockFile::Write(std::int64_t offset, std::int64_t count, const void* buffer)
{
    if (file_ == nullptr || !writable_)
        return ReportWrongUse(file_ == nullptr ? "it is closed" : "it is open for reading");
    if (broken_)
        return ReportBroken();
    const int error = file_->Write(offset, count, buffer);
    return error == 0 || ReportSystem(VDArchiveError::FileWrite, error);
}

bool BlockFile::IsInside(std::int64_t offset, std::int64_t size) const
{
    return offset >= StorageLayout::Body && size >= 0 && offset <= slot_.fileEnd && size <= slot_.fileEnd - offset;
}

bool BlockFile::ReadBlob(const BlobRef& ref, const char* what, std::string* bytes)
{
    if (ref.size > StorageLayout::LargestBlob || !IsInside(ref.offset, ref.size))
        return ReportDamaged((VDString("the place of ") + what + " is impossible").c_str());
    bytes->resize(static_cast<std::size_t>(ref.size));
    if (!Read(ref.offset, ref.size, bytes->data()))
        return false;
    return VFChecksum(bytes->data(), ref.size) == ref.checksum ||
           ReportDamaged((VDString(what) + " doesn't match its checksum").c_str());
}

void BlockFile::ReuseSpace()
{
    // Who begins to read from now on reads the last commit, to which none of that space belongs.
    if (file_->Lock(VTStorageLock::NoReaders) != 0)
        return;
    file_->Unlock(VTStorageLock::NoReaders);
    space_.Reuse();
}

bool BlockFile::Commit(const BlobRef& directory)
{
    if (file_ == nullptr || !writable_)
        return ReportWrongUse(file_ == nullptr ? "it is closed" : "it is open for reading");
    if (broken_)
        return ReportBroken();
    CommitSlot slot;
    slot.generation = slot_.generation + 1;
    slot.directory = directory;
    slot.fileEnd = space_.GetEnd();
    // The last record may not have been written to its end. A crash here leaves a longer file and the version as it was.
    std::int64_t size = 0;
    int error = file_->GetSize(&size);
    if (error == 0 && size < slot.fileEnd)
        error = file_->Truncate(slot.fileEnd);
    if (error != 0)
        return ReportSystem(VDArchiveError::FileWrite, error);
    if (!(slot_.generation == 0 ? PublishFirst(slot) : Publish(slot))) {
        // Nobody knows what of it reached the disk, so that nothing may build on it.
        broken_ = true;
        return false;
    }
    slot_ = slot;
    return true;
}

bool BlockFile::Publish(const CommitSlot& slot)
{
    // 1. All that the version refers to is made safe. A crash before or in here leaves the version as it was, since no slot
    //    speaks of the new parts.
    int error = file_->Sync();
    // 2. The slot of the version before the last is written over. A crash in here leaves a slot that doesn't match its
    //    checksum, and so the last version; or a whole slot, and so the new version, all parts of which are safe.
    const std::string page = SlotPage(slot);
    if (error == 0)
        error =
            file_->Write(StorageLayout::SlotOffset(slot.generation), static_cast<std::int64_t>(page.size()), page.data());
    // 3. The slot is made safe. From here on the new version is the one, and what only older ones refer to may be reused.
    if (error == 0)
        error = file_->Sync();
    return error == 0 || ReportSystem(VDArchiveError::FileWrite, error);
}

bool BlockFile::PublishFirst(const CommitSlot& slot)
{
    // 1. Header, slot and all that it refers to are made safe in the file that nobody knows yet. A crash before step 2
    // leaves
    //    what stood under the name, and a hidden file that the next writer of that name takes over.
    std::string start(StorageLayout::Body, '\0');
    VDHeader(StorageLayout::FileType, subType_, VDHeader::Size).GetHeader(start.data());
    const std::string page = SlotPage(slot);
    start.replace(static_cast<std::size_t>(StorageLayout::SlotOffset(slot.generation)), page.size(), page);
    int error = file_->Write(0, StorageLayout::Body, start.data());
    if (error == 0)
        error = file_->Sync();
    // 2. The file takes its name. A crash in here leaves the old file or the new one, both whole.
    if (error == 0)
        error = os_.Rename(temporaryName_, filename_);
    if (error != 0)
        return ReportSystem(VDArchiveError::FileWrite, error);
    temporaryName_.Empty();
    replaced_.reset();
    // 3. The name is made safe.
    error = os_.SyncDirectory(filename_);
    return error == 0 || ReportSystem(VDArchiveError::FileWrite, error);
}

bool BlockFile::Report(int code, const VDString& reason) const
{
    return VFErrorSet(code, VDString(WhatFailed(code)) + ": " + reason + "\nFile : " + filename_, "Z4File", 0) != 0;
}

bool BlockFile::ReportSystem(int code, int error) const
{
    char buffer[256];
    return Report(code, strerror_r(error, buffer, sizeof buffer));
}

bool BlockFile::ReportBroken() const
{
    return Report(VDArchiveError::FileWrite,
                  "an earlier write failed, so that what was written since the last commit is lost");
}

bool BlockFile::ReportDamaged(const char* what) const
{
    return Report(VDArchiveError::FileDamaged, what);
}

bool BlockFile::ReportWrongUse(const char* what) const
{
    return Report(VDArchiveError::WrongUse, what);
}
