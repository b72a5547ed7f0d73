#include "FoundTests.h"

#include "TestListing.h"
#include "ToolError.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// The library's words for specs.
constexpr int VVSeveralMatch = -328604;
constexpr int VVNoneMatches = -328605;

[[noreturn]] void VFFailSpec(int code, const std::string& text, const std::string& spec)
{
    VFFail(code, text + "\nTest Specifier: " + spec, "VFFindTests");
}

/// A plug-in's own descriptor, or what a listing finds. Files that nobody knows are no tests.
VDFoundTests VFListSpec(const std::string& spec, bool recurse)
{
    VDFoundTests found;
    if (spec.find("://") != std::string::npos) {
        VDFileIdArrayHandle array(FIACreate());
        VFCheck(static_cast<bool>(array));
        VFCheck(FIACreateFromTestSpec(array.Get(), spec.c_str()));
        found.tests = VFTakeTests(array);
        return found;
    }
    VDTestListOptions options;
    options.recurse = recurse;
    VDTestListing listing = VFListTests(spec, options);
    for (const VDUnreadFile& file : listing.unread) {
        found.unread.push_back(file.path);
        found.problems.push_back({DaxToolError::Unread, file.path + ": " + file.reason, "VFFindTests"});
    }
    for (VDFileIdHandle& test : listing.tests) {
        int fileId = 0;
        int subId = 0;
        VFCheck(FIDGetFileId(test.Get(), &fileId, &subId));
        if (fileId != 0)
            found.tests.push_back(std::move(test));
    }
    VFErrorClear();
    return found;
}

VDJson VFDescribeFailure(VDCommandContext& context, const std::string& path, const std::vector<VDErrorReport>& reports)
{
    context.errors.insert(context.errors.end(), reports.begin(), reports.end());
    return {{"path", path}, {"errors", VFJsonErrors(reports)}};
}

/// The work on one item of a list, with its heading.
VDJson VFRunOne(VDCommandContext& context, const std::string& path, const std::function<VDJson()>& work)
{
    if (!context.IsJson())
        context.Out().PutLine("==> " + path + " <==");
    try {
        VDJson document = work();
        if (!context.IsJson())
            context.Out().Write("\n");
        return document;
    } catch (const VDFailure&) {
        return VFDescribeFailure(context, path, VFTakeErrors());
    }
}

/// Finds what each argument stands for and gives it to the work.
void VFForEachArgument(VDCommandContext& context, const VDTestsArguments& arguments, VDJson& list,
                       const std::function<void(const std::string&, VDFoundTests&)>& work)
{
    for (const std::string& file : arguments.files) {
        try {
            VDFoundTests found;
            if (VFIsFile(file))
                found.fromFile = true;
            else
                found = VFFindTests(context.Registry(), file);
            for (std::size_t index = 0; index < found.problems.size(); ++index)
                list.push_back(VFDescribeFailure(context, found.unread[index], {found.problems[index]}));
            work(file, found);
        } catch (const VDFailure&) {
            list.push_back(VFDescribeFailure(context, file, VFTakeErrors()));
        }
    }
}

}  // namespace

bool VFIsPattern(const std::string& argument)
{
    return argument.starts_with('@') || argument.find_first_of("*?;|") != std::string::npos ||
           argument.find("://") != std::string::npos;
}

bool VFIsFile(const std::string& argument)
{
    std::error_code none;
    const fs::file_status status = fs::status(argument, none);
    return fs::exists(status) && !fs::is_directory(status);
}

VDFoundTests VFFindTests(const VDRegistry& registry, const std::string& argument, bool recurse)
{
    if (VFIsFile(argument)) {
        VDFoundTests found;
        found.tests = VFIdentify(registry, argument, false, true).tests;
        found.fromFile = true;
        return found;
    }
    VDFoundTests found = VFListSpec(argument, recurse);
    if (!found.tests.empty())
        return found;
    if (!found.problems.empty()) {
        VFPutErrors(found.problems);
        throw VDFailure();
    }
    // Why a plain name can't be opened says more than that nothing matches it.
    if (!VFIsPattern(argument))
        VFIdentify(registry, argument, false, true);
    VFFailSpec(VVNoneMatches, "No tests matched the input string.", argument);
}

VDFileIdHandle VFChooseTest(const VDRegistry& registry, const VDTestArguments& arguments)
{
    VDFoundTests found = VFFindTests(registry, arguments.file);
    const auto count = static_cast<int>(found.tests.size());
    if (arguments.test == 0 && count > 1 && !found.fromFile)
        VFFailSpec(VVSeveralMatch, "More than one test matched the input string.", arguments.file);
    if (arguments.test == 0 && count > 1)
        VFFail(DaxToolError::SeveralTests,
               "The file holds " + std::to_string(count) + " tests; choose one with --test: " + arguments.file,
               "VFChooseTest");
    if (arguments.test > count)
        VFFail(DaxToolError::UnknownTest,
               "There is no test " + std::to_string(arguments.test) + " in the file, which holds " + std::to_string(count) +
                   ": " + arguments.file,
               "VFChooseTest");
    VDFileIdHandle test = std::move(found.tests[static_cast<std::size_t>(std::max(arguments.test, 1) - 1)]);
    VFCheck(FIDSortChans(test.Get(), 1));
    return test;
}

void VDTestsArguments::Register(CLI::App& command, const char* name, const char* strictHelp)
{
    command.add_option(name, files, "Files, or specs of tests such as 'run*.wav;c1-3'")->required()->type_name("");
    RegisterOptions(command, strictHelp);
}

bool VDTestsArguments::IsList() const
{
    std::error_code none;
    return files.size() > 1 ||
           (!VFIsFile(files.front()) && (VFIsPattern(files.front()) || fs::is_directory(files.front(), none)));
}

VDJson VFForEachTest(VDCommandContext& context, const VDTestsArguments& arguments,
                     const std::function<VDJson(const VDInputTest& input)>& work)
{
    VDTestArguments one = arguments;
    if (!arguments.IsList()) {
        one.file = arguments.files.front();
        return work(VDInputTest(context, one));
    }
    VDJson list = VDJson::array();
    VFForEachArgument(context, arguments, list, [&](const std::string& file, VDFoundTests& found) {
        if (found.fromFile) {
            one.file = file;
            list.push_back(VFRunOne(context, file, [&] { return work(VDInputTest(context, one)); }));
        }
        for (VDFileIdHandle& test : found.tests) {
            VDString title;
            VFCheck(FIDGetTestDescriptor(test.Get(), VTTestDescFullTitle, &title));
            list.push_back(VFRunOne(context, title.Str(), [&] { return work(VDInputTest(context, one, std::move(test))); }));
        }
    });
    return {{"tests", list}};
}

VDJson VFForEachFile(VDCommandContext& context, const VDTestsArguments& arguments,
                     const std::function<VDJson(const std::string& file)>& work)
{
    if (!arguments.IsList())
        return work(arguments.files.front());
    VDJson list = VDJson::array();
    const auto run = [&](const std::string& file) {
        try {
            list.push_back(work(file));
        } catch (const VDFailure&) {
            list.push_back(VFDescribeFailure(context, file, VFTakeErrors()));
        }
    };
    VFForEachArgument(context, arguments, list, [&](const std::string& file, const VDFoundTests& found) {
        if (found.fromFile)
            run(file);
        for (const VDFileIdHandle& test : found.tests)
            for (const std::string& name : VFGetTestFiles(test.Get()))
                run(name);
    });
    return {{"files", list}};
}
