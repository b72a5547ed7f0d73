#include "vdbase/VDFileSystem.h"

#include "FileAttributes.h"
#include "FileReport.h"

#include "vdbase/VFFilename.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace {

const char* VFText(const char* name)
{
    return name == nullptr ? "" : name;
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
    return VFAttributesOfName(filename) == Files;
}

bool VDFileSystem::DirectoryExists(const char* folder)
{
    return VFAttributesOfName(folder) == Folders;
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

std::optional<VDFilePlace> VDFileSystem::FindPlace(const char* name)
{
    struct stat status
    {
    };
    if (stat(VFText(name), &status) != 0)
        return std::nullopt;
    return VDFilePlace{status.st_dev, status.st_ino};
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
