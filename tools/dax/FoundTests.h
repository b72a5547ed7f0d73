#pragma once

#include "Identification.h"
#include "InputTest.h"

#include <functional>

// What a FILE argument stands for: the file of this name, whatever signs the name has, or a test spec.

/// The tests that an argument stands for.
struct VDFoundTests
{
    std::vector<VDFileIdHandle> tests;
    bool fromFile = false;                ///< they are those of the file that has the argument as its name
    std::vector<std::string> unread;      ///< files that can't be read or loaded
    std::vector<VDErrorReport> problems;  ///< what is wrong with those
};

/// Whether the argument, which is no file's name, may stand for several tests.
bool VFIsPattern(const std::string& argument);
/// Whether there is a file of this name; folders are none.
bool VFIsFile(const std::string& argument);

/// Finds the tests of an argument; throws if there are none, with what can't be read of them if that is why.
/// @param recurse  looks into the sub-folders of a spec
VDFoundTests VFFindTests(const VDRegistry& registry, const std::string& argument, bool recurse = false);

/// The arguments of a subcommand that works on any number of tests.
struct VDTestsArguments : VDTestArguments
{
    std::vector<std::string> files;

    void Register(CLI::App& command, const char* name, const char* strictHelp = "Refuse a damaged file");
    /// Whether what is asked for is a list, even if it comes to one test.
    bool IsList() const;
};

/// Does the work for each test that the arguments stand for. One that fails doesn't stop the others. Tests of a list are
/// parted by headings, and the documents stand in an array under "tests"; of a single test it is what the work gives back.
VDJson VFForEachTest(VDCommandContext& context, const VDTestsArguments& arguments,
                     const std::function<VDJson(const VDInputTest& input)>& work);
/// The same for files, which needn't be tests: those of the name, or those of the tests of a spec and what can't be read.
VDJson VFForEachFile(VDCommandContext& context, const VDTestsArguments& arguments,
                     const std::function<VDJson(const std::string& file)>& work);
