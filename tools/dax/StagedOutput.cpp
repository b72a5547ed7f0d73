#include "StagedOutput.h"

#include "ToolError.h"

#include "vdarchive/Z4Manager.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// Brings a file's or a folder's content to the disk.
void VFSyncPath(const fs::path& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        VFFailSystem(DaxToolError::OutputWrite, "Can't open " + path.string(), "VDStagedOutput::Publish");
    const int result = fsync(descriptor);
    const int reason = errno;
    close(descriptor);
    errno = reason;
    if (result != 0 && errno != EINVAL)  // EINVAL: the file system has nothing to sync
        VFFailSystem(DaxToolError::OutputWrite, "Can't bring to the disk: " + path.string(), "VDStagedOutput::Publish");
}

/// A file that has another name too is found out as well.
void VFRefuseInputs(const std::vector<std::string>& names, const std::vector<std::string>& inputs)
{
    for (const std::string& input : inputs)
        for (const std::string& name : names) {
            std::error_code notThere;
            if (name == input || fs::equivalent(input, name, notThere))
                VFFail(DaxToolError::OutputIsInput, "The output is the input: " + input, "VDStagedOutput");
        }
}

}  // namespace

std::string VDStagedOutput::ResolveName(const std::string& name)
{
    std::error_code failed;
    const fs::path absolute = fs::absolute(name, failed).lexically_normal();
    if (fs::is_symlink(absolute, failed)) {
        const fs::path target = fs::canonical(absolute, failed);
        if (!failed)
            return target.string();
    }
    return absolute.string();
}

VDStagedOutput::VDStagedOutput(const std::vector<std::string>& names, const std::vector<std::string>& inputs, bool overwrite)
    : overwrite_(overwrite), names_(names), folder_(fs::path(names.front()).parent_path())
{
    VFRefuseInputs(names, inputs);
    for (const std::string& name : names) {
        CheckTarget(name);
        Hold(name);
    }
    std::vector<std::string> staged;
    for (const std::string& name : names)
        staged.push_back(fs::path(name).filename().string());
    staging_.emplace(folder_, staged);
}

void VDStagedOutput::CheckTarget(const fs::path& target) const
{
    std::error_code failed;
    const fs::file_status status = fs::symlink_status(target, failed);
    if (status.type() == fs::file_type::not_found)
        return;
    if (failed)
        VFFail(DaxToolError::OutputWrite, "Can't write " + target.string() + ": " + failed.message(), "VDStagedOutput");
    if (status.type() != fs::file_type::regular)
        VFFail(DaxToolError::OutputExists, "The output is there already and no plain file: " + target.string(),
               "VDStagedOutput");
    if (!overwrite_)
        VFFail(DaxToolError::OutputExists, "The output exists; --overwrite replaces it: " + target.string(),
               "VDStagedOutput");
    if (access(target.c_str(), W_OK) != 0)
        VFFailSystem(DaxToolError::OutputWrite, "The output may not be replaced: " + target.string(), "VDStagedOutput");
}

void VDStagedOutput::Hold(const fs::path& target)
{
    std::unique_ptr<Z4FileHold>& hold = holds_[target];
    // One may have come up since this was asked before.
    if (hold == nullptr || !hold->HasFile())
        hold = Z4Manager().HoldFile(target.c_str());
    VFCheck(hold != nullptr);
}

std::string VDStagedOutput::StagedName(const std::string& name) const
{
    return (staging_->GetPath() / fs::path(name).filename()).string();
}

void VDStagedOutput::NameTargetsInErrors() const
{
    const std::string staged = staging_->GetPath().string();
    std::vector<VDErrorReport> reports = VFTakeErrors();
    for (VDErrorReport& report : reports) {
        std::string text = report.text.Str();
        for (std::size_t at = text.find(staged); at != std::string::npos; at = text.find(staged, at))
            text.replace(at, staged.size(), folder_.string());
        report.text = text.c_str();
    }
    VFPutErrors(reports);
}

void VDStagedOutput::Publish()
{
    const std::vector<fs::path> files = staging_->GetFiles();
    for (const fs::path& file : files) {
        CheckTarget(folder_ / file.filename());
        Hold(folder_ / file.filename());
        VFSyncPath(file);
    }
    VDInterruptGuard::Check();
    for (const fs::path& file : files)
        PublishFile(file);
    // What is left of an earlier output belongs to that.
    for (const fs::path name : names_)
        if (std::none_of(files.begin(), files.end(),
                         [&](const fs::path& file) { return file.filename() == name.filename(); }))
            unlink(name.c_str());
    VFSyncPath(folder_);
}

void VDStagedOutput::PublishFile(const fs::path& staged) const
{
    const fs::path target = folder_ / staged.filename();
    struct stat earlier = {};
    if (overwrite_ && stat(target.c_str(), &earlier) == 0)
        (void)!chmod(staged.c_str(), earlier.st_mode & 07777);
    // Without leave to replace, a file that has come up meanwhile must stay; not every file system can promise that.
    int result = renameat2(AT_FDCWD, staged.c_str(), AT_FDCWD, target.c_str(), overwrite_ ? 0 : RENAME_NOREPLACE);
    if (result != 0 && (errno == EINVAL || errno == ENOSYS)) {
        CheckTarget(target);
        result = rename(staged.c_str(), target.c_str());
    }
    if (result != 0)
        VFFailSystem(DaxToolError::OutputWrite, "Can't write " + target.string(), "VDStagedOutput::Publish");
}
