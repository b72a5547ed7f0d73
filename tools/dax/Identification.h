#pragma once

#include "Registry.h"

#include <CLI/CLI.hpp>

/// What a file turned out to be.
struct VDIdentification
{
    std::vector<VDFileIdHandle> tests;  ///< one or more
    bool byExtension = false;           ///< the file wasn't opened
};

/// The entries of an array.
std::vector<VDFileIdHandle> VFTakeTests(const VDFileIdArrayHandle& array);

/// Identifies a file; throws if that fails.
/// @param byExtension  asks the extension first; content decides where that gives no answer
/// @param loadInfo     loads the channel lists of a file that was identified by content
VDIdentification VFIdentify(const VDRegistry& registry, const std::string& filename, bool byExtension, bool loadInfo);

/// The files that a test consists of.
std::vector<std::string> VFGetTestFiles(VDFileId* id);
/// The file type of a test.
VDFileType VFGetFileType(const VDRegistry& registry, const VDFileIdHandle& test);
/// How the test was identified, in one word: "content" or "extension".
const char* VFIdentifiedBy(const VDIdentification& identification, const VDFileType& type);

/// The arguments of a subcommand that works on one test.
struct VDTestArguments
{
    std::string file;
    int test = 0;         ///< position among the file's tests from 1; 0 if it isn't given
    bool strict = false;  ///< a damaged file is refused

    /// @param name        of the positional argument
    /// @param strictHelp  what --strict does
    void Register(CLI::App& command, const char* name, const char* strictHelp = "Refuse a damaged file");
    void RegisterOptions(CLI::App& command, const char* strictHelp);
};

/// Finds the tests of the argument, loads their channels and chooses the one, which is sorted by channel number.
VDFileIdHandle VFChooseTest(const VDRegistry& registry, const VDTestArguments& arguments);
