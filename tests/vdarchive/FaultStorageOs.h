#pragma once

#include "vdarchive/VDStorageOs.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

/// A disk in memory that fails when it is told to and, after a loss of power, has any mixture of the sectors that weren't
/// synced. Locks are those of open files, as the system's are.
class FaultStorageOs : public VDStorageOs
{
public:
    enum class After {
        Keep,  ///< everything written is there
        Drop,  ///< only what was synced is there
        Tear,  ///< each sector that wasn't synced is as it was at any moment since; what is new to the file may hold
               ///< anything
    };

    /// The operation of this number, counted from 0, fails with this error; with `dead` all later ones fail, too.
    void FailAt(int operation, int error, bool dead);
    int GetOperations() const { return operations_; }
    int GetSyncs() const { return syncs_; }
    /// The power is gone and back: open files are worth nothing, and nothing fails any more.
    void LosePower(After after, unsigned seed);

    bool Exists(const std::string& name) const { return names_.count(name) != 0; }
    std::size_t GetNameCount() const { return names_.size(); }
    /// The bytes of a file, to look at or to spoil.
    std::string& Content(const std::string& name) { return names_.at(name)->current; }
    /// Another file of this name, as somebody else would put it there.
    void Put(const std::string& name, std::string content);
    void Move(const std::string& from, const std::string& to);

    int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) override;
    int Resolve(const char* filename, VDString* place) override;
    int Make(const char* place, const VDStorageFile* replaced, std::unique_ptr<VDStorageFile>* file) override;

private:
    friend class FaultStorageFile;
    struct Change
    {
        std::int64_t offset;  // or the new size
        std::string bytes;
        bool isTruncation;
    };
    struct Inode
    {
        std::string current;
        std::string synced;
        std::vector<Change> changes;  // since the sync
        const VDStorageFile* writer = nullptr;
        const VDStorageFile* noReaders = nullptr;
        std::set<const VDStorageFile*> readers;
    };
    using Names = std::map<std::string, std::shared_ptr<Inode>>;

    int Step();
    static void Apply(std::string& content, const Change& change);
    static std::string Tear(const Inode& inode, unsigned seed);

    Names names_;
    Names syncedNames_;
    int operations_ = 0;
    int syncs_ = 0;
    int failAt_ = -1;
    int error_ = 0;
    bool isDead_ = false;
    int power_ = 0;  // open files of an earlier power are worth nothing
};
