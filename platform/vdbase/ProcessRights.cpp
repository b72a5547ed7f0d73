#include "ProcessRights.h"

#include "vdbase/VFFilename.h"

#include <grp.h>
#include <pwd.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace {

constexpr std::size_t EntrySize = 16384;

/// An entry of the system's user list, with the room that its texts take.
struct VDUserEntry
{
    explicit VDUserEntry(uid_t user)
    {
        passwd* found = nullptr;
        known = getpwuid_r(user, &entry, room.data(), room.size(), &found) == 0 && found != nullptr;
    }

    std::vector<char> room = std::vector<char>(EntrySize);
    passwd entry{};
    bool known = false;
};

/// The user's own group by the rule of one group a user: it has the user's name and no other members. Where that is the
/// custom, files are writable by their group and yet by nobody else.
bool VFIsPrivateGroup(gid_t id, uid_t user)
{
    const VDUserEntry owner(user);
    std::vector<char> room(EntrySize);
    group entry{};
    group* found = nullptr;
    if (!owner.known || owner.entry.pw_gid != id || getgrgid_r(id, &entry, room.data(), room.size(), &found) != 0 ||
        found == nullptr || std::string_view(entry.gr_name) != owner.entry.pw_name)
        return false;
    for (char** member = entry.gr_mem; *member != nullptr; ++member)
        if (std::string_view(*member) != owner.entry.pw_name)
            return false;
    return true;
}

bool VFIsTrustedUser(uid_t user)
{
    if (user == 0)
        return true;
    // Where rights were raised in another way than by another user's, the effective user is the caller.
    return user == geteuid() && (!VFHasRaisedRights() || user != getuid());
}

bool VFIsWritableByOthers(const char* path, const struct stat& facts)
{
    if ((facts.st_mode & S_IWOTH) != 0)
        return true;
    if ((facts.st_mode & S_IWGRP) == 0)
        return false;
    // With an access list, the bits of the group stand for everybody in the list.
    const bool hasAccessList = getxattr(path, "system.posix_acl_access", nullptr, 0) > 0;
    return facts.st_uid == 0 || VFHasRaisedRights() || hasAccessList || !VFIsPrivateGroup(facts.st_gid, facts.st_uid);
}

VDString VFJudgeFolder(const char* filename)
{
    VDString folder;
    VFSplitFilename(filename, &folder, nullptr, nullptr);
    if (folder.IsEmpty())
        folder = ".";
    struct stat facts{};
    if (stat(folder, &facts) != 0)
        return {};
    if (!VFIsTrustedUser(facts.st_uid))
        return "its folder " + folder + " belongs to another user";
    // Where only owners may rename and delete, others can't put a file of theirs in the place of one that is there.
    if ((facts.st_mode & S_ISVTX) == 0 && VFIsWritableByOthers(folder, facts))
        return "others may write to its folder " + folder;
    return {};
}

VDString VFJudgeFile(const char* filename)
{
    struct stat facts{};
    if (stat(filename, &facts) != 0)
        return {};
    if (!VFIsTrustedUser(facts.st_uid))
        return "it belongs to another user";
    return VFIsWritableByOthers(filename, facts) ? VDString("others may write to it") : VFJudgeFolder(filename);
}

}  // namespace

bool VFHasRaisedRights()
{
    return getauxval(AT_SECURE) != 0;
}

std::string_view VFEnvironment(const char* name)
{
    const char* const value = VFHasRaisedRights() ? nullptr : std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

std::string_view VFEnvironmentFolder(const char* name)
{
    const std::string_view folder = VFEnvironment(name);
    return folder.starts_with('/') ? folder : std::string_view();
}

VDString VFUserFolder()
{
    if (const std::string_view home = VFEnvironmentFolder("HOME"); !home.empty())
        return VDString(home);
    const VDUserEntry user(getuid());
    return user.known && *user.entry.pw_dir == '/' ? VDString(user.entry.pw_dir) : VDString();
}

VDString VFFindDistrust(const char* filename)
{
    struct stat facts{};
    if (lstat(filename, &facts) != 0)
        return {};
    if (!S_ISLNK(facts.st_mode))
        return VFJudgeFile(filename);
    if (!VFIsTrustedUser(facts.st_uid))
        return "it is a link of another user's";
    const std::unique_ptr<char, decltype(&std::free)> real(realpath(filename, nullptr), &std::free);
    if (real == nullptr)
        return {};
    const VDString reason = VFJudgeFolder(filename);
    return reason.IsEmpty() ? VFJudgeFile(real.get()) : reason;
}
