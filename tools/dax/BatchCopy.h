#pragma once

#include "Command.h"

/// What else `dax copy` was told, for each of the copies.
struct VDCopyOptions
{
    std::string keyword;   ///< of the format; empty for the storage format
    std::string nameForm;  ///< template of the names, formed from metadata; empty for those of the inputs
    std::vector<std::string> channels;
    int test = 0;
    bool strict = false;
    bool noMeta = false;
    bool overwrite = false;
};

/// `dax copy SPEC... --to FOLDER`: copies of many tests in one folder. Each is made by a process of its own, as `dax copy IN
/// OUT` makes it: a plug-in that fails badly on one file takes that copy with it and no other, none of them waits for the
/// library's lock of another, and whatever ends a process leaves no half copy.
class VDBatchCopy
{
public:
    void Register(CLI::App& command);
    bool IsWanted() const { return !folder_.empty(); }
    /// @param specs  files, folders and specs of tests
    VDJson Run(VDCommandContext& context, const std::vector<std::string>& specs, const VDCopyOptions& options) const;

private:
    std::string folder_;
    std::string prefix_;
    std::string suffix_;
    int processes_ = 0;
    bool recurse_ = false;
    bool resume_ = false;

    friend class VDBatchPlan;
};
