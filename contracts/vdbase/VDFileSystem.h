#pragma once

#include "vdbase/VDStringArray.h"

#include <cstdint>

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
