#pragma once

#include "Interrupt.h"
#include "StagingFolder.h"

#include "vdarchive/Z4FileHold.h"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The name of an output that stands for the standard output.
constexpr const char* VVStandardOutput = "-";

/// Output files that appear under their names only when they are whole. They are written into a folder of their own beside
/// the place where they belong, with their own names, and renamed into it at the end; a program that is killed at any time
/// leaves earlier files of these names as they were. What wasn't published goes with the object.
class VDStagedOutput
{
public:
    /// Checks what can be checked before anything is written: throws for an output that exists and may not be replaced, that
    /// is an input or no plain file, or whose folder can't be written.
    /// @param names      the files that will be written, all in one folder; one that isn't is removed from there in the end
    /// @param inputs     files that are read meanwhile, which are never replaced
    /// @param overwrite  other existing files may be
    VDStagedOutput(const std::vector<std::string>& names, const std::vector<std::string>& inputs, bool overwrite);

    /// Where to write the file that is to have this name.
    std::string StagedName(const std::string& name) const;
    /// Puts the names that the files will have in the place of those under which they are written, in what is recorded.
    void NameTargetsInErrors() const;
    /// Removes what is staged so far.
    void Discard() { staging_->Clear(); }
    /// Brings everything that is staged to the disk and under its name; files that the format added come along.
    void Publish();

    /// The name that is written for an output name: what a link leads to, so that the link stays.
    static std::string ResolveName(const std::string& name);

private:
    void CheckTarget(const std::filesystem::path& target) const;
    /// Keeps writers of a storage file off that is going to be replaced; throws if there is one.
    void Hold(const std::filesystem::path& target);
    void PublishFile(const std::filesystem::path& staged) const;

    VDInterruptGuard interrupts_;
    bool overwrite_;
    std::vector<std::string> names_;
    std::filesystem::path folder_;
    std::map<std::filesystem::path, std::unique_ptr<Z4FileHold>> holds_;
    std::optional<VDStagingFolder> staging_;
};
