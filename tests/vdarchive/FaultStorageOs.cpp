#include "FaultStorageOs.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

class FaultStorageFile : public VDStorageFile
{
public:
    FaultStorageFile(FaultStorageOs& os, std::shared_ptr<FaultStorageOs::Inode> inode)
        : os_(os), inode_(std::move(inode)), power_(os.power_)
    {
    }
    ~FaultStorageFile() override
    {
        if (power_ != os_.power_)
            return;
        if (isWriter_)
            inode_->isLocked = false;
        inode_->readers -= isReader_ ? 1 : 0;
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
        inode_->synced = inode_->current;
        inode_->changes.clear();
        return 0;
    }
    int Lock(VTStorageLock lock) override
    {
        if (lock == VTStorageLock::Reader) {
            isReader_ = true;
            ++inode_->readers;
            return 0;
        }
        if (lock == VTStorageLock::NoReaders)
            return inode_->readers == 0 ? 0 : EWOULDBLOCK;
        if (inode_->isLocked)
            return EWOULDBLOCK;
        isWriter_ = inode_->isLocked = true;
        return 0;
    }
    void Unlock(VTStorageLock) override {}
    bool IsAt(const char* filename) override
    {
        const auto found = os_.names_.find(filename);
        return found != os_.names_.end() && found->second == inode_;
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
    bool isWriter_ = false;
    bool isReader_ = false;
};

FaultStorageOs::FaultStorageOs() = default;

void FaultStorageOs::FailAt(int operation, int error, bool dead)
{
    operations_ = 0;
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

void FaultStorageOs::LosePower(After after, unsigned seed)
{
    std::mt19937 random(seed);
    ++power_;
    failAt_ = -1;
    if (after == After::Drop || (after == After::Tear && random() % 2 == 0))
        names_ = syncedNames_;
    for (auto& [name, inode] : names_) {
        if (after != After::Keep)
            inode->current = inode->synced;
        for (Change& change : inode->changes) {
            if (after != After::Tear || random() % 3 == 0)
                continue;
            if (!change.isTruncation && random() % 2 == 0) {
                const std::size_t from = random() % change.bytes.size();
                change = {change.offset + static_cast<std::int64_t>(from), change.bytes.substr(from, random() % 5000),
                          false};
            }
            Apply(inode->current, change);
        }
        inode->changes.clear();
        inode->synced = inode->current;
        inode->isLocked = false;
        inode->readers = 0;
    }
    syncedNames_ = names_;
}

void FaultStorageOs::Put(const std::string& name, std::string content)
{
    names_[name] = std::make_shared<Inode>();
    names_[name]->synced = names_[name]->current = std::move(content);
    syncedNames_ = names_;
}

int FaultStorageOs::Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file)
{
    if (const int error = Step(); error != 0)
        return error;
    if (mode == VTStorageOpen::Create && !Exists(filename))
        names_[filename] = std::make_shared<Inode>();
    if (!Exists(filename))
        return ENOENT;
    *file = std::make_unique<FaultStorageFile>(*this, names_.at(filename));
    return 0;
}

int FaultStorageOs::Rename(const char* from, const char* to)
{
    if (const int error = Step(); error != 0)
        return error;
    names_[to] = names_.at(from);
    names_.erase(from);
    return 0;
}

int FaultStorageOs::Remove(const char* filename)
{
    if (const int error = Step(); error != 0)
        return error;
    return names_.erase(filename) != 0 ? 0 : ENOENT;
}

int FaultStorageOs::SyncDirectory(const char*)
{
    const int error = Step();
    if (error == 0)
        syncedNames_ = names_;
    return error;
}
