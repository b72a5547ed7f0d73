#include "StagingFolder.h"

#include "TextSink.h"
#include "ToolError.h"

#include <cerrno>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sstream>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view VVPrefix = ".dax-";
constexpr std::size_t VVRandomLetters = 6;
constexpr const char* VVOwnerFile = ".dax-owner";
/// First line of the owner's file.
constexpr const char* VVMark = "dax staging folder 1\n";
/// A longer list of files isn't one that was written here.
constexpr std::size_t VVMaxList = std::size_t{1} << 26;

class Descriptor
{
public:
    explicit Descriptor(int file) : file_(file) {}
    ~Descriptor()
    {
        if (file_ >= 0)
            close(file_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    explicit operator bool() const { return file_ >= 0; }
    int Get() const { return file_; }
    int Detach() { return std::exchange(file_, -1); }

private:
    int file_;
};

bool VFIsStagingName(std::string_view name)
{
    return name.size() == VVPrefix.size() + VVRandomLetters && name.starts_with(VVPrefix);
}

/// Nobody but this user can have put anything there.
bool VFIsOwnAlone(int file, mode_t kind)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && (status.st_mode & S_IFMT) == kind && status.st_uid == geteuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// Whether the file still has a name: whoever cleared it away meanwhile has taken that.
bool VFIsLinked(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && status.st_nlink > 0;
}

/// Names that the owner has listed; none if it died before it came to that.
std::vector<std::string> VFReadList(int file)
{
    std::string text;
    char block[4096];
    for (ssize_t got = 0; text.size() < VVMaxList && (got = read(file, block, sizeof block)) > 0;)
        text.append(block, static_cast<std::size_t>(got));
    std::vector<std::string> names;
    if (!text.starts_with(VVMark))
        return names;
    // Names end with a zero byte, which none contains.
    std::istringstream list(text.substr(std::string_view(VVMark).size()));
    for (std::string name; std::getline(list, name, '\0') && !list.eof();)  // one without its end was cut off
        if (!name.empty() && name.find('/') == std::string::npos)
            names.push_back(name);
    return names;
}

/// Removes a folder if its owner is dead for certain; leaves it alone on any doubt.
void VFRemoveDead(int place, const char* name)
{
    const Descriptor folder(openat(place, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder || !VFIsOwnAlone(folder.Get(), S_IFDIR))
        return;
    const Descriptor owner(openat(folder.Get(), VVOwnerFile, O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (owner) {
        if (!VFIsOwnAlone(owner.Get(), S_IFREG) || flock(owner.Get(), LOCK_EX | LOCK_NB) != 0)
            return;
        for (const std::string& file : VFReadList(owner.Get())) {
            struct stat status = {};
            if (fstatat(folder.Get(), file.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(status.st_mode))
                unlinkat(folder.Get(), file.c_str(), 0);
        }
        unlinkat(folder.Get(), VVOwnerFile, 0);
    }
    // Without the owner's file it is removed only if it is empty: an owner that is about to make that file begins anew.
    unlinkat(place, name, AT_REMOVEDIR);
}

void VFRemoveDeadFolders(const fs::path& place)
{
    Descriptor file(open(place.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!file)
        return;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(file.Get()), closedir);
    if (!folder)
        return;
    file.Detach();  // the stream closes it
    std::vector<std::string> found;
    while (const dirent* entry = readdir(folder.get()))
        if (VFIsStagingName(entry->d_name))
            found.emplace_back(entry->d_name);
    for (const std::string& name : found)
        VFRemoveDead(dirfd(folder.get()), name.c_str());
}

}  // namespace

VDStagingFolder::VDStagingFolder(const fs::path& place, const std::vector<std::string>& names)
{
    VFRemoveDeadFolders(place);
    const std::string pattern = (place / (std::string(VVPrefix) + std::string(VVRandomLetters, 'X'))).string();
    // Somebody who clears away may take a folder that isn't claimed yet.
    constexpr int tries = 100;
    for (int attempt = 0; attempt < tries; ++attempt) {
        std::string name = pattern;
        if (mkdtemp(name.data()) == nullptr)
            break;
        path_ = name;
        if (Claim(names))
            return;
        const int reason = errno;
        unlink((path_ / VVOwnerFile).c_str());
        rmdir(path_.c_str());
        errno = reason;
        if (reason != ENOENT && reason != EWOULDBLOCK)
            break;
    }
    VFFailSystem(DaxToolError::OutputWrite, "Can't write into the folder " + place.string(), "VDStagingFolder");
}

VDStagingFolder::~VDStagingFolder()
{
    // The list goes last, so that a kill on the way leaves nothing that it doesn't name.
    Clear();
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    close(lock_);
}

/// @return false, with the reason in `errno`; `ENOENT` or `EWOULDBLOCK` if somebody has cleared the folder away
bool VDStagingFolder::Claim(const std::vector<std::string>& names)
{
    Descriptor owner(open((path_ / VVOwnerFile).c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!owner)
        return false;
    if (flock(owner.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        return false;
    if (!VFIsLinked(owner.Get())) {
        errno = ENOENT;
        return false;
    }
    std::string list = VVMark;
    for (const std::string& name : names)
        list += name + '\0';
    if (!VFWriteAll(owner.Get(), list) || (fsync(owner.Get()) != 0 && errno != EINVAL))
        return false;
    lock_ = owner.Detach();
    return true;
}

std::vector<fs::path> VDStagingFolder::GetFiles() const
{
    std::vector<fs::path> files;
    std::error_code failed;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_, failed))
        if (entry.path().filename() != VVOwnerFile)
            files.push_back(entry.path());
    return files;
}

void VDStagingFolder::Clear() const
{
    std::error_code ignored;
    for (const fs::path& file : GetFiles())
        fs::remove_all(file, ignored);
}
