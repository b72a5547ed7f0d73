#pragma once

#include "vdarchive/VDStorageOs.h"

#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// A disk in memory that fails when it is told to and, after a loss of power, forgets what wasn't synced.
class FaultStorageOs : public VDStorageOs
{
public:
    enum class After {
        Keep,  ///< everything written is there
        Drop,  ///< only what was synced is there
        Tear,  ///< of what wasn't synced any part is there
    };

    FaultStorageOs();

    /// The operation of this number, counted from 0, fails with this error; with `dead` all later ones fail, too.
    void FailAt(int operation, int error, bool dead);
    int GetOperations() const { return operations_; }
    /// The power is gone and back: open files are worth nothing, and nothing fails any more.
    void LosePower(After after, unsigned seed);

    bool Exists(const std::string& name) const { return names_.count(name) != 0; }
    /// The bytes of a file, to look at or to spoil.
    std::string& Content(const std::string& name) { return names_.at(name)->current; }
    void Put(const std::string& name, std::string content);

    int Open(const char* filename, VTStorageOpen mode, std::unique_ptr<VDStorageFile>* file) override;
    int Rename(const char* from, const char* to) override;
    int Remove(const char* filename) override;
    int SyncDirectory(const char* filename) override;

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
        bool isLocked = false;
        int readers = 0;
    };
    using Names = std::map<std::string, std::shared_ptr<Inode>>;

    int Step();
    static void Apply(std::string& content, const Change& change);

    Names names_;
    Names syncedNames_;
    int operations_ = 0;
    int failAt_ = -1;
    int error_ = 0;
    bool isDead_ = false;
    int power_ = 0;  // open files of an earlier power are worth nothing
};
