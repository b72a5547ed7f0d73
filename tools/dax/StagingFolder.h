#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// A folder `.dax-XXXXXX` of this process alone, in which outputs are made before they are moved to their place beside it.
/// It goes with the object. One whose owner was killed is removed by whoever makes the next one in the same place.
///
/// The owner holds a lock on the file `.dax-owner` in it, which ends with the process however it dies, and that file lists
/// the names of the outputs. A folder is taken for a dead owner's only if it belongs to the same user and to nobody else, is
/// no link, and nobody holds that lock; and only the files that are listed are removed with it.
class VDStagingFolder
{
public:
    /// Removes the folders of dead owners in the same place and makes a new one; throws if it can't be made.
    /// @param names  of the files that will be made in it, without folders
    VDStagingFolder(const std::filesystem::path& place, const std::vector<std::string>& names);
    ~VDStagingFolder();
    VDStagingFolder(const VDStagingFolder&) = delete;
    VDStagingFolder& operator=(const VDStagingFolder&) = delete;

    const std::filesystem::path& GetPath() const { return path_; }
    /// The files that are in it now.
    std::vector<std::filesystem::path> GetFiles() const;
    /// Removes them.
    void Clear() const;

private:
    bool Claim(const std::vector<std::string>& names);

    std::filesystem::path path_;
    int lock_ = -1;
};
