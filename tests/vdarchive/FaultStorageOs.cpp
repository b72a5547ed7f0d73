#include "FaultStorageOs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <random>

namespace {

constexpr std::size_t Sector = 512;

}  // namespace

class FaultStorageFile : public VDStorageFile
{
public:
    FaultStorageFile(FaultStorageOs& os, std::shared_ptr<FaultStorageOs::Inode> inode)
        : os_(os), inode_(std::move(inode)), power_(os.power_)
    {
    }
    ~FaultStorageFile() override
    {
        Unlock(VTStorageLock::Writer);
        Unlock(VTStorageLock::Reader);
    }

    int Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead) override
    {
        const auto size = static_cast<std::int64_t>(inode_->current.size());
        *numRead = std::clamp<std::int64_t>(size - offset, 0, count);
        std::memcpy(buffer, inode_->current.data() + std::min(offset, size), static_cast<std::size_t>(*numRead));
        return 0;
    }
    int Write(std::int64_t offset, std::int64_t count, const void* buffer) override
    {
        return Change({offset, std::string(static_cast<const char*>(buffer), static_cast<std::size_t>(count)), false});
    }
    int GetSize(std::int64_t* size) override
    {
        *size = static_cast<std::int64_t>(inode_->current.size());
        return 0;
    }
    int Truncate(std::int64_t size) override { return Change({size, {}, true}); }
    int Sync() override
    {
        const int error = Step();
        if (error != 0)
            return error;
        ++os_.syncs_;
        inode_->synced = inode_->current;
        inode_->changes.clear();
        return 0;
    }
    void Discard(std::int64_t offset, std::int64_t size) override
    {
        const auto there = std::min(size, static_cast<std::int64_t>(inode_->current.size()) - offset);
        if (there > 0)
            Change({offset, std::string(static_cast<std::size_t>(there), '\0'), false});
    }
    int Lock(VTStorageLock lock) override
    {
        const bool others = inode_->readers.size() > inode_->readers.count(this);
        const VDStorageFile*& holder = lock == VTStorageLock::Writer ? inode_->writer : inode_->noReaders;
        if ((holder != nullptr && holder != this) || (lock == VTStorageLock::NoReaders && others))
            return EWOULDBLOCK;
        if (lock != VTStorageLock::Writer)
            Unlock(lock);  // the same byte, held one way or the other
        if (lock == VTStorageLock::Reader)
            inode_->readers.insert(this);
        else
            holder = this;
        return 0;
    }
    void Unlock(VTStorageLock lock) override
    {
        const VDStorageFile*& holder = lock == VTStorageLock::Writer ? inode_->writer : inode_->noReaders;
        holder = holder == this ? nullptr : holder;
        if (lock != VTStorageLock::Writer)
            inode_->readers.erase(this);
    }
    bool IsAt(const char* filename) override
    {
        const auto found = os_.names_.find(filename);
        return found != os_.names_.end() && found->second == inode_;
    }
    int GiveName(const char* filename, bool replace) override
    {
        if (const int error = Step(); error != 0)
            return error;
        if (!replace && os_.Exists(filename))
            return EEXIST;
        os_.names_[filename] = inode_;
        return 0;
    }
    int SyncName() override
    {
        const int error = Step();
        if (error != 0)
            return error;
        ++os_.syncs_;
        os_.syncedNames_ = os_.names_;
        return 0;
    }

private:
    int Step() { return power_ == os_.power_ ? os_.Step() : EIO; }
    int Change(FaultStorageOs::Change change)
    {
        const int error = Step();
        if (error != 0 && !change.bytes.empty() && power_ == os_.power_) {
            change.bytes.resize(change.bytes.size() / 2);  // a part may have been written
        } else if (error != 0) {
            return error;
        }
        FaultStorageOs::Apply(inode_->current, change);
        inode_->changes.push_back(std::move(change));
        return error;
    }

    FaultStorageOs& os_;
    std::shared_ptr<FaultStorageOs::Inode> inode_;
    int power_;
};

void FaultStorageOs::FailAt(int operation, int error, bool dead)
{
    operations_ = 0;
    syncs_ = 0;
    failAt_ = operation;
    error_ = error;
    isDead_ = dead;
}

int FaultStorageOs::Step()
{
    const int now = operations_++;
    return failAt_ >= 0 && (now == failAt_ || (isDead_ && now > failAt_)) ? error_ : 0;
}

void FaultStorageOs::Apply(std::string& content, const Change& change)
{
    const auto offset = static_cast<std::size_t>(change.offset);
    if (change.isTruncation) {
        content.resize(offset);
        return;
    }
    content.resize(std::max(content.size(), offset + change.bytes.size()));
    content.replace(offset, change.bytes.size(), change.bytes);
}

/// The size is that of some moment since the sync, and so is each sector, whatever the others are. What lies behind the size
/// that was synced and didn't reach the disk is what the disk had there.
std::string FaultStorageOs::Tear(const Inode& inode, unsigned seed)
{
    std::mt19937 random(seed);
    const auto moment = [&] { return random() % (inode.changes.size() + 1); };
    std::size_t size = inode.synced.size();
    std::size_t largest = size;
    const std::size_t sizeMoment = moment();
    for (std::size_t i = 0; i < inode.changes.size(); ++i) {
        const Change& change = inode.changes[i];
        const auto end = static_cast<std::size_t>(change.offset) + change.bytes.size();
        largest = std::max(largest, end);
        if (i < sizeMoment)
            size = change.isTruncation ? end : std::max(size, end);
    }
    std::string content = inode.synced;
    const std::size_t known = content.size();
    content.resize(std::max(largest, known));
    for (std::size_t at = known; at < content.size(); ++at)
        content[at] = static_cast<char>(random());
    std::vector<std::size_t> moments(content.size() / Sector + 1);
    for (std::size_t& each : moments)
        each = random() % 3 == 0 ? inode.changes.size() : moment();
    for (std::size_t i = 0; i < inode.changes.size(); ++i) {
        const auto start = static_cast<std::size_t>(inode.changes[i].offset);
        const std::string& bytes = inode.changes[i].bytes;
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t count = std::min(bytes.size() - at, Sector - (start + at) % Sector);
            if (i < moments[(start + at) / Sector])
                content.replace(start + at, count, bytes, at, count);
            at += count;
        }
    }
    content.resize(size);
    return content;
}

void FaultStorageOs::LosePower(After after, unsigned seed)
{
    ++power_;
    failAt_ = -1;
    if (after == After::Drop || (after == After::Tear && seed % 2 == 0))
        names_ = syncedNames_;
    for (auto& [name, inode] : names_) {
        if (after != After::Keep)
            inode->current = after == After::Drop ? inode->synced : Tear(*inode, seed);
        inode->changes.clear();
        inode->synced = inode->current;
        inode->writer = inode->noReaders = nullptr;
        inode->readers.clear();
    }
    syncedNames_ = names_;
}

void FaultStorageOs::Put(const std::string& name, std::string content)
{
    names_[name] = std::make_shared<Inode>();
    names_[name]->synced = names_[name]->current = std::move(content);
    syncedNames_ = names_;
}

void FaultStorageOs::Move(const std::string& from, const std::string& to)
{
    names_[to] = names_.at(from);
    names_.erase(from);
}

int FaultStorageOs::Open(const char* filename, VTStorageOpen, std::unique_ptr<VDStorageFile>* file)
{
    if (const int error = Step(); error != 0)
        return error;
    if (!Exists(filename))
        return ENOENT;
    *file = std::make_unique<FaultStorageFile>(*this, names_.at(filename));
    return 0;
}

int FaultStorageOs::Resolve(const char* filename, VDString* place)
{
    *place = filename;
    return 0;
}

int FaultStorageOs::Make(const char*, const VDStorageFile*, std::unique_ptr<VDStorageFile>* file)
{
    if (const int error = Step(); error != 0)
        return error;
    *file = std::make_unique<FaultStorageFile>(*this, std::make_shared<Inode>());
    return 0;
}
