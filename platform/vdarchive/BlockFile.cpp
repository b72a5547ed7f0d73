#include "BlockFile.h"

#include "vdarchive/VDArchiveErrorCodes.h"
#include "vdbase/VDHeader.h"
#include "vdbase/VFByteOrder.h"
#include "vdbase/VFChecksum.h"
#include "vdbase/VFError.h"

#include <bit>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <thread>

namespace {

namespace fs = std::filesystem;

constexpr int OwnOpSys = std::endian::native == std::endian::little ? VTOpSysLittleEndian : VTOpSysBigEndian;
// A file that is replaced between being opened and being locked is opened anew.
constexpr int LargestAttempts = 10;
// A reader waits this long for a writer that keeps readers out, which takes no time unless the writer was stopped there.
constexpr std::chrono::milliseconds LongestWait(500);
constexpr std::chrono::milliseconds LongestPause(10);
// Names that are tried for a file whose own has been taken.
constexpr int MostSpareNames = 1000;
constexpr std::size_t LongestSpareStem = 200;
// Room that nothing refers to any more is given back when it is worth while: so much, and this part of the file.
constexpr std::int64_t LeastGivenBack = 256 * 1024;
constexpr std::int64_t GivenBackPart = 16;

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
    case VDArchiveError::FileMoved:
        return "The storage file is no longer at its name";
    default:
        return "The storage file can't be opened";
    }
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

bool BlockFile::Hold(VDStorageOs& os, const char* filename, std::unique_ptr<VDStorageFile>* file)
{
    BlockFile holder(os, filename, true);
    int error = os.Resolve(filename, &holder.place_);
    if (error == 0)
        error = holder.OpenLocked(file);
    return error == 0 || error == ENOENT || holder.ReportOpen(error);
}

/// Opens the file at the place to be written, and no other that took its place on the way.
/// @return `EBUSY` if it is replaced again and again
int BlockFile::OpenLocked(std::unique_ptr<VDStorageFile>* file)
{
    for (int attempt = 0; attempt < LargestAttempts; ++attempt) {
        file->reset();
        int error = os_.Open(place_, VTStorageOpen::Update, file);
        if (error == 0)
            error = (*file)->Lock(VTStorageLock::Writer);
        if (error != 0)
            file->reset();
        if (error != 0 || (*file)->IsAt(place_))
            return error;
    }
    file->reset();
    return EBUSY;
}

/// @return `EWOULDBLOCK` if a writer keeps readers out and was stopped meanwhile, as it seems
int BlockFile::LockAsReader()
{
    std::chrono::milliseconds waited(0);
    std::chrono::milliseconds pause(1);
    int error = file_->Lock(VTStorageLock::Reader);
    while (error == EWOULDBLOCK && waited < LongestWait) {
        std::this_thread::sleep_for(pause);
        waited += pause;
        pause = std::min(2 * pause, LongestPause);
        error = file_->Lock(VTStorageLock::Reader);
    }
    return error;
}

bool BlockFile::OpenExisting()
{
    int error = 0;
    if (writable_) {
        error = os_.Resolve(filename_, &place_);
        if (error == 0)
            error = OpenLocked(&file_);
        return error == 0 || ReportOpen(error);
    }
    error = os_.Open(filename_, VTStorageOpen::Read, &file_);
    if (error != 0)
        return ReportOpen(error);
    // A file system without locks still lets itself be read, and nobody writes there.
    isHeld_ = LockAsReader() != EWOULDBLOCK;
    return true;
}

bool BlockFile::MakeNew()
{
    int error = os_.Resolve(filename_, &place_);
    // Who writes the file that is to be replaced would lose what it writes.
    if (error == 0)
        error = OpenLocked(&replaced_);
    if (error == 0 || error == ENOENT)
        error = os_.Make(place_, replaced_.get(), &file_);
    // From its first moment under the name on the file has its writer.
    if (error == 0)
        error = file_->Lock(VTStorageLock::Writer);
    return error == 0 || ReportOpen(error);
}

int BlockFile::ReadSlots(std::string* start, std::int64_t* count)
{
    start->resize(StorageLayout::Body);
    return file_->Read(0, StorageLayout::Body, start->data(), count);
}

/// For a reader that a writer kept out. As long as no newer version than its own is there, nothing that it read was written
/// over; and once it is let in with its version still the last one, nothing will be.
bool BlockFile::ConfirmVersion()
{
    const bool isHeld = file_->Lock(VTStorageLock::Reader) == 0;
    std::string start;
    std::int64_t count = 0;
    if (const int error = ReadSlots(&start, &count); error != 0)
        return ReportSystem(VDArchiveError::FileRead, error);
    const auto latest = LatestSlot(start);
    if (!latest || latest->generation != slot_.generation)
        return Report(VDArchiveError::FileInUse, "its writer kept readers out, and has gone on since it was opened");
    isHeld_ = isHeld;
    return true;
}

bool BlockFile::ReadStart()
{
    std::string start;
    std::int64_t count = 0;
    if (const int error = ReadSlots(&start, &count); error != 0)
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
    if (writable_ && !broken_ && slot_.generation > 0 && file_->Lock(VTStorageLock::NoReaders) == 0) {
        GiveBackRoom();
        file_->Unlock(VTStorageLock::NoReaders);
    }
    replaced_.reset();
    file_.reset();
}

/// Nobody reads an older version. Keeping the room would do no harm either, so that nothing of this may fail.
void BlockFile::GiveBackRoom()
{
    space_.Reuse();
    std::int64_t unused = slot_.fileEnd - space_.GetEnd();
    space_.VisitFree([&unused](std::int64_t, std::int64_t size) { unused += size; });
    const auto isWorthWhile = [this](std::int64_t size) {
        return size >= LeastGivenBack && size >= slot_.fileEnd / GivenBackPart;
    };
    // The version says where it ends: the same one is published anew if that is too far behind its last part.
    if (isWorthWhile(slot_.fileEnd - space_.GetEnd()))
        Commit(slot_.directory);
    if (std::int64_t size = 0; file_->GetSize(&size) == 0 && size > slot_.fileEnd)
        file_->Truncate(slot_.fileEnd);
    if (isWorthWhile(unused))
        space_.VisitFree([this](std::int64_t offset, std::int64_t size) {
            if (const std::int64_t from = SpaceMap::RoundUp(offset, StorageLayout::Page);
                offset + size - from >= StorageLayout::Page)
                file_->Discard(from, (offset + size - from) / StorageLayout::Page * StorageLayout::Page);
        });
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
    return (isHeld_ || ConfirmVersion()) && (got == count || ReportDamaged("it is shorter than it was"));
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
    //    leaves what stood under the name. Nothing is left of the file itself; where the system has no files without a name,
    //    a hidden one that nobody will ever look at.
    std::string start(StorageLayout::Body, '\0');
    VDHeader(StorageLayout::FileType, subType_, VDHeader::Size).GetHeader(start.data());
    const std::string page = SlotPage(slot);
    start.replace(static_cast<std::size_t>(StorageLayout::SlotOffset(slot.generation)), page.size(), page);
    int error = file_->Write(0, StorageLayout::Body, start.data());
    if (error == 0)
        error = file_->Sync();
    // 2. The file takes its name. A crash in here leaves the old file or the new one, both whole.
    if (error == 0)
        error = GiveName();
    if (error != 0)
        return ReportSystem(VDArchiveError::FileWrite, error);
    replaced_.reset();
    // 3. The name is made safe.
    error = file_->SyncName();
    return error == 0 || ReportSystem(VDArchiveError::FileWrite, error);
}

/// Takes the place of the file whose writer's lock this one has, and of no other. What was written under a name that is
/// somebody else's by now goes beside it.
int BlockFile::GiveName()
{
    int error = file_->GiveName(place_, replaced_ != nullptr && replaced_->IsAt(place_));
    const fs::path place(place_.c_str());
    const std::string stem = place.stem().string().substr(0, LongestSpareStem);
    const std::string extension = place.extension().string().substr(0, 255 - LongestSpareStem - 6);
    for (int number = 2; error == EEXIST && number <= MostSpareNames; ++number) {
        sparePlace_ = (place.parent_path() / (stem + " (" + std::to_string(number) + ")" + extension)).string();
        error = file_->GiveName(sparePlace_, false);
    }
    return error;
}

bool BlockFile::CheckPlace() const
{
    if (file_ == nullptr || !writable_ || slot_.generation == 0 || file_->IsAt(place_))
        return true;
    if (sparePlace_.IsEmpty())
        return Report(VDArchiveError::FileMoved, "it was moved, replaced or removed, and what was written went with it");
    return Report(VDArchiveError::FileMoved, "another file came up there, and what was written is in " + sparePlace_);
}

bool BlockFile::ReportOpen(int error) const
{
    switch (error) {
    case EWOULDBLOCK:
        return Report(VDArchiveError::FileInUse, "another writer has it open");
    case EBUSY:
        return Report(VDArchiveError::FileInUse, "it is replaced again and again");
    default:
        return ReportSystem(VDArchiveError::FileOpen, error);
    }
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
