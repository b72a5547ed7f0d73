#pragma once

#include "Descriptor.h"
#include "vdarchive/VDStorageOs.h"

#include <string>

/// An open file of the system.
class PosixStorageFile final : public VDStorageFile
{
public:
    explicit PosixStorageFile(Descriptor file);
    /// A file that is gone with the object unless it gets a name.
    /// @param hiddenName  the name that it has until then; empty if the system can do without
    PosixStorageFile(Descriptor file, Descriptor folder, std::string hiddenName);
    ~PosixStorageFile() override;

    /// The file without a name among those that the process has open, under which it can be given one.
    static std::string OpenName(int descriptor);
    /// A name that nobody can foresee, however long that of the file is to be.
    static std::string HiddenName();

    int Read(std::int64_t offset, std::int64_t count, void* buffer, std::int64_t* numRead) override;
    int Write(std::int64_t offset, std::int64_t count, const void* buffer) override;
    int GetSize(std::int64_t* size) override;
    int Truncate(std::int64_t size) override;
    int Sync() override;
    void Discard(std::int64_t offset, std::int64_t size) override;
    int Lock(VTStorageLock lock) override;
    void Unlock(VTStorageLock lock) override;
    bool IsAt(const char* filename) override;
    int GiveName(const char* filename, bool replace) override;
    int SyncName() override;

    void TakeRightsOf(const PosixStorageFile& other);

private:
    int LinkHidden();
    int MoveFromHidden(const char* name, bool replace);
    bool IsHidden() const { return folder_.IsOpen() && !isNamed_; }

    Descriptor file_;
    Descriptor folder_;  // of a file that was made, until its name is safe
    std::string hiddenName_;
    bool isNamed_ = false;
    pid_t owner_;
};
