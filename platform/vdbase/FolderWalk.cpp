// What lies in a folder, found out by one walk through it.

#include "FileAttributes.h"
#include "FileReport.h"

#include "vdbase/VFFilename.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

/// The last element of a name that may be a pattern, and the folder before it.
struct VDFolderPattern
{
    explicit VDFolderPattern(const char* name)
    {
        const std::string_view whole = name == nullptr ? "" : name;
        const std::size_t start = whole.rfind('/') + 1;
        folder = VDString(whole.substr(0, start));
        pattern = whole.substr(start);
    }

    bool IsPlain() const { return pattern.find_first_of("*?") == std::string_view::npos; }
    bool Takes(const char* name) const
    {
        if (IsPlain())
            return pattern == name;
        return (name[0] != '.' || pattern.front() == '.') && VFPatternMatch(0, pattern.data(), name);
    }

    VDString folder;
    std::string_view pattern;  ///< to the end of the name
};

/// What an entry of a folder is.
struct VDEntryKind
{
    int attributes = 0;
    bool isLink = false;
};

/// Asks the disk only where the entry itself doesn't tell.
VDEntryKind VFKindOf(int folder, const dirent& entry)
{
    if (entry.d_type == DT_REG)
        return {VDFileSystem::Files};
    if (entry.d_type == DT_DIR)
        return {VDFileSystem::Folders};
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return {};
    struct stat status
    {
    };
    bool isLink = entry.d_type == DT_LNK;
    if (!isLink && fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0)
        isLink = S_ISLNK(status.st_mode);
    if (fstatat(folder, entry.d_name, &status, 0) != 0)
        return {};
    return {VFAttributesOfMode(status.st_mode), isLink};
}

bool VFIsSelf(std::string_view name)
{
    return name == "." || name == "..";
}

/// A plain name needs no walk through the folder.
int VFAttributesOfPlain(const VDFolderPattern& path, const char* wholeName)
{
    return path.pattern.empty() || VFIsSelf(path.pattern) ? 0 : VFAttributesOfName(wholeName);
}

struct VDOpenFolder
{
    explicit VDOpenFolder(const VDString& name)
        : stream(opendir(name.IsEmpty() ? "." : name.c_str()), &closedir), folder(stream ? dirfd(stream.get()) : -1)
    {
    }

    std::unique_ptr<DIR, int (*)(DIR*)> stream;
    int folder;
};

/// Calls back for each entry other than the folder itself and its parent. False, with `errno`, if the folder can't be read
/// to its end.
template <class Visit>
bool VFVisitEntries(const VDOpenFolder& open, Visit&& visit)
{
    if (open.stream == nullptr)
        return false;
    for (;;) {
        errno = 0;
        const dirent* const entry = readdir(open.stream.get());
        if (entry == nullptr)
            return errno == 0;
        if (!VFIsSelf(entry->d_name))
            visit(*entry);
    }
}

/// The names of entries, which are sorted before they get the folder in front: that is what they have in common.
class VDEntryNames
{
public:
    void Add(const char* name) { names_.emplace_back(name); }
    bool IsEmpty() const { return names_.empty(); }

    void GiveTo(const VDString& folder, VDStringArray& wholeNames)
    {
        std::sort(names_.begin(), names_.end());
        wholeNames.Clear();
        wholeNames.Reserve(static_cast<int>(names_.size()));
        for (const std::string& name : names_)
            wholeNames.AppendItem(VFBuildFilename(folder, name.c_str()));
    }

private:
    std::vector<std::string> names_;
};

/// Entries that `wanted` takes by their names and that have one of the attributes; null for none.
template <class Wanted>
VDStringArray* VFListFolder(const VDString& folder, int attributes, Wanted&& wanted)
{
    const VDOpenFolder open(folder);
    VDEntryNames names;
    VFVisitEntries(open, [&](const dirent& entry) {
        if (wanted(entry.d_name) && (VFKindOf(open.folder, entry).attributes & attributes) != 0)
            names.Add(entry.d_name);
    });
    if (names.IsEmpty())
        return nullptr;
    auto list = std::make_unique<VDStringArray>();
    names.GiveTo(folder, *list);
    return list.release();
}

}  // namespace

VDStringArray* VDFileSystem::GetDirectory(const char* pathWithPattern, int attributes, int /*reserved*/,
                                          void* /*reservedPointer*/)
{
    return GetFileList(pathWithPattern, attributes);
}

VDStringArray* VDFileSystem::GetFileList(const char* pathWithPattern, int attributes)
{
    const VDFolderPattern path(pathWithPattern);
    if (!path.IsPlain())
        return VFListFolder(path.folder, attributes, [&path](const char* name) { return path.Takes(name); });

    if ((VFAttributesOfPlain(path, pathWithPattern) & attributes) == 0)
        return nullptr;
    auto names = std::make_unique<VDStringArray>();
    names->AppendItem(pathWithPattern);
    return names.release();
}

VDStringArray* VDFileSystem::GetSubdirList(const char* folder, int flag)
{
    return VFListFolder(folder, Folders, [flag](const char* name) { return flag != 1 || name[0] != '.'; });
}

bool VDFileSystem::WalkFolder(const char* pathWithPattern, bool withSubfolders, VDFolderContent* content)
{
    const VDFolderPattern path(pathWithPattern);
    *content = {};
    if (path.IsPlain() && !withSubfolders) {
        const int attributes = VFAttributesOfPlain(path, pathWithPattern);
        if (attributes != 0)
            (attributes == Files ? content->files : content->folders).AppendItem(pathWithPattern);
        return true;
    }
    const VDOpenFolder open(path.folder);
    VDEntryNames files;
    VDEntryNames folders;
    VDEntryNames subfolders;
    VDEntryNames linkedFolders;
    const bool walked = VFVisitEntries(open, [&](const dirent& entry) {
        const bool isTaken = path.Takes(entry.d_name);
        const bool isShown = withSubfolders && entry.d_name[0] != '.';
        const bool maybeFolder = entry.d_type == DT_DIR || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
        if (!isTaken && !(isShown && maybeFolder))
            return;
        const VDEntryKind kind = VFKindOf(open.folder, entry);
        if (isTaken && kind.attributes == Files)
            files.Add(entry.d_name);
        if (isTaken && kind.attributes == Folders)
            folders.Add(entry.d_name);
        if (isShown && kind.attributes == Folders)
            (kind.isLink ? linkedFolders : subfolders).Add(entry.d_name);
    });
    const int reason = errno;
    files.GiveTo(path.folder, content->files);
    folders.GiveTo(path.folder, content->folders);
    subfolders.GiveTo(path.folder, content->subfolders);
    linkedFolders.GiveTo(path.folder, content->linkedFolders);
    return walked || VFReportFile(VDBaseError::FileRead, path.folder, reason, "VDFileSystem::WalkFolder");
}
