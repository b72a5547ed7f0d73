#pragma once

#include "vdbase/VDStringArray.h"

#include <compare>
#include <cstdint>
#include <optional>

/// Where a file or folder lies, whatever names lead there.
struct VDFilePlace
{
    std::uint64_t device = 0;
    std::uint64_t number = 0;

    auto operator<=>(const VDFilePlace& other) const = default;
};

/// What a walk through a folder finds: whole names in byte order.
struct VDFolderContent
{
    VDStringArray files;          ///< plain files that match, and links to such
    VDStringArray folders;        ///< folders that match, and links to such
    VDStringArray subfolders;     ///< all folders but those whose name begins with a dot
    VDStringArray linkedFolders;  ///< the same for links to folders
};

/// Questions to the file system. Objects hold nothing and cost nothing.
class VDBASE_API VDFileSystem
{
public:
    /// What `GetDirectory` and `GetFileList` take as attribute mask.
    enum Attributes : int { Files = 167, Folders = 16 };

    /// A plain file (or what a link leads to) of this name exists.
    static bool FileExists(const char* filename);
    static bool DirectoryExists(const char* folder);
    /// Deletes one file; a failure is recorded.
    static bool DelFile(const char* filename);
    /// Size in bytes; false, recorded, if it can't be told.
    static bool GetFileSize(const char* filename, std::int64_t* size);
    /// Renames within one file system, replacing what stands there; a failure is recorded.
    static bool RenameFile(const char* from, const char* to);

    /// Whole names of the entries of a folder that match the pattern in the last element of the path, in byte order. Names
    /// that begin with a dot match only a pattern that does too.
    /// @param attributes  `Files` or `Folders`
    /// @return a list that the caller deletes; null if nothing matches or the folder can't be read
    static VDStringArray* GetDirectory(const char* pathWithPattern, int attributes, int reserved, void* reservedPointer);
    static VDStringArray* GetFileList(const char* pathWithPattern, int attributes);
    /// Whole names of the sub-folders.
    /// @param flag  1 leaves out those whose name begins with a dot
    static VDStringArray* GetSubdirList(const char* folder, int flag);

    /// All that the three above tell of one folder. Entries are looked at by what the folder says of them where it does.
    /// @param withSubfolders  false leaves out sub-folders; a plain name then needs no walk
    /// @return false, recorded, if the folder can't be read; what was read before that is given all the same
    static bool WalkFolder(const char* pathWithPattern, bool withSubfolders, VDFolderContent* content);
    /// Where a file or folder lies, or what a link leads to; none, with nothing recorded, for a name that isn't there.
    static std::optional<VDFilePlace> FindPlace(const char* name);

    /// The last element without its extension.
    static VDString GetBaseFileName(const char* filename);
    /// The process's current folder.
    static VDString GetCurDirectory(const char* drive = "");
    /// The name made absolute with the current folder, with "." and ".." elements and doubled separators resolved in the
    /// text alone: the disk is not asked.
    static VDString GetFullPath(const char* filename);
    /// 0 if both name the same file by their full paths; otherwise the order of the texts.
    static int CompareFilenames(const char* left, const char* right);
};
