#include "vdbase/VDFileSystem.h"

#include "FileReport.h"

#include "vdbase/VFFilename.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

const char* VFText(const char* name)
{
    return name == nullptr ? "" : name;
}

// The attribute that the mode of a file stands for; 0 for what is neither a plain file nor a folder.
int VFAttributesOf(mode_t mode)
{
    return S_ISREG(mode) ? VDFileSystem::Files : S_ISDIR(mode) ? VDFileSystem::Folders : 0;
}

int VFAttributesOf(const char* name)
{
    struct stat status
    {
    };
    return stat(VFText(name), &status) == 0 ? VFAttributesOf(status.st_mode) : 0;
}

// Asks the disk only where the entry itself doesn't tell.
int VFAttributesOf(int folder, const dirent& entry)
{
    if (entry.d_type == DT_REG)
        return VDFileSystem::Files;
    if (entry.d_type == DT_DIR)
        return VDFileSystem::Folders;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return 0;
    struct stat status
    {
    };
    return fstatat(folder, entry.d_name, &status, 0) == 0 ? VFAttributesOf(status.st_mode) : 0;
}

bool VFIsSelf(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

// Entries of a folder that `wanted` takes by their names and that have one of the attributes.
template <class Wanted>
VDStringArray* VFListFolder(const VDString& folder, int attributes, Wanted&& wanted)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(folder.IsEmpty() ? "." : folder.c_str()), &closedir);
    if (stream == nullptr)
        return nullptr;
    auto names = std::make_unique<VDStringArray>(100);
    while (const dirent* entry = readdir(stream.get()))
        if (!VFIsSelf(entry->d_name) && wanted(entry->d_name) &&
            (VFAttributesOf(dirfd(stream.get()), *entry) & attributes) != 0)
            names->AppendItem(VFBuildFilename(folder, entry->d_name));
    if (names->IsEmpty())
        return nullptr;
    names->Sort();
    return names.release();
}

// The current folder in the caller's buffer. A folder that has been deleted, or that lies outside the process's root, has no
// name: then empty.
std::string_view VFCurrentFolder(char (&buffer)[PATH_MAX])
{
    return getcwd(buffer, sizeof buffer) != nullptr && buffer[0] == '/' ? buffer : std::string_view();
}

// Appends the elements of a name to an absolute, already plain one; "." and ".." are worked off on the way.
void VFAppendElements(std::string& path, std::string_view name)
{
    while (!name.empty()) {
        const std::size_t end = std::min(name.find('/'), name.size());
        const std::string_view element = name.substr(0, end);
        name.remove_prefix(std::min(end + 1, name.size()));
        if (element.empty() || element == ".")
            continue;
        if (element == "..") {
            const std::size_t last = path.rfind('/');
            path.resize(last == std::string::npos ? 0 : last);
            continue;
        }
        path += '/';
        path += element;
    }
}

}  // namespace

bool VDFileSystem::FileExists(const char* filename)
{
    return VFAttributesOf(filename) == Files;
}

bool VDFileSystem::DirectoryExists(const char* folder)
{
    return VFAttributesOf(folder) == Folders;
}

bool VDFileSystem::DelFile(const char* filename)
{
    return unlink(VFText(filename)) == 0 || VFReportFile(VDBaseError::FileDelete, filename, errno, "VDFileSystem::DelFile");
}

bool VDFileSystem::GetFileSize(const char* filename, std::int64_t* size)
{
    struct stat status
    {
    };
    if (stat(VFText(filename), &status) != 0)
        return VFReportFile(VDBaseError::FileRead, filename, errno, "VDFileSystem::GetFileSize");
    if (S_ISDIR(status.st_mode))
        return VFReportFile(VDBaseError::FileRead, filename, EISDIR, "VDFileSystem::GetFileSize");
    *size = status.st_size;
    return true;
}

bool VDFileSystem::RenameFile(const char* from, const char* to)
{
    return rename(VFText(from), VFText(to)) == 0 ||
           VFReportFile(VDBaseError::FileWrite, to, errno, "VDFileSystem::RenameFile");
}

VDStringArray* VDFileSystem::GetDirectory(const char* pathWithPattern, int attributes, int /*reserved*/,
                                          void* /*reservedPointer*/)
{
    return GetFileList(pathWithPattern, attributes);
}

VDStringArray* VDFileSystem::GetFileList(const char* pathWithPattern, int attributes)
{
    const std::string_view whole = VFText(pathWithPattern);
    const std::size_t start = whole.rfind('/') + 1;
    const VDString folder(whole.substr(0, start));
    const char* const pattern = VFText(pathWithPattern) + start;
    if (std::strpbrk(pattern, "*?") != nullptr)
        return VFListFolder(folder, attributes, [pattern](const char* name) {
            return (name[0] != '.' || pattern[0] == '.') && VFPatternMatch(0, pattern, name);
        });

    // A plain name needs no walk through the folder.
    if (*pattern == '\0' || VFIsSelf(pattern) || (VFAttributesOf(pathWithPattern) & attributes) == 0)
        return nullptr;
    auto names = std::make_unique<VDStringArray>();
    names->AppendItem(pathWithPattern);
    return names.release();
}

VDStringArray* VDFileSystem::GetSubdirList(const char* folder, int flag)
{
    return VFListFolder(folder, Folders, [flag](const char* name) { return flag != 1 || name[0] != '.'; });
}

VDString VDFileSystem::GetBaseFileName(const char* filename)
{
    VDString base;
    VFSplitFilename(filename, nullptr, &base, nullptr);
    return base;
}

VDString VDFileSystem::GetCurDirectory(const char* /*drive*/)
{
    char buffer[PATH_MAX];
    return VDString(VFCurrentFolder(buffer));
}

VDString VDFileSystem::GetFullPath(const char* filename)
{
    const std::string_view name = VFText(filename);
    if (name.empty())
        return {};
    std::string path;
    if (name.front() != '/') {
        char buffer[PATH_MAX];
        const std::string_view folder = VFCurrentFolder(buffer);
        if (folder.empty())
            return VDString(name);
        path.reserve(folder.size() + 1 + name.size());
        path = folder == "/" ? std::string_view() : folder;
    } else {
        path.reserve(name.size() + 1);
    }
    VFAppendElements(path, name);
    if (path.empty())
        path += '/';
    return VDString(std::move(path));
}

int VDFileSystem::CompareFilenames(const char* left, const char* right)
{
    if (std::strcmp(VFText(left), VFText(right)) == 0)
        return 0;
    return GetFullPath(left).Compare(GetFullPath(right));
}
