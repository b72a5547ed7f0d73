#include "Commands.h"
#include "FoundTests.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdarchive/Z4Manager.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>
#include <unistd.h>

namespace {

/// The size of a test of which a file may stand for itself.
std::uint64_t VFSizeOf(VDFileId* id)
{
    std::uint64_t size = 0;
    VFCheck(FIDGetTestFileSize(id, &size));
    return size;
}

std::string VFTitleOf(VDFileId* id)
{
    VDString title;
    VFCheck(FIDGetTestDescriptor(id, VTTestDescFullTitle, &title));
    return title.Str();
}

/// `dax size FILE...`: bytes on disk.
class VDSizeCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override
    {
        CLI::App* command = program.add_subcommand("size", "Show how many bytes the files of tests take");
        command->add_option("FILE", arguments_.files, "Files, or specs of tests")->required()->type_name("");
        command->footer("The total counts a file once that holds several tests.");
        return command;
    }

    VDJson Run(VDCommandContext& context) override
    {
        VDJson list = VDJson::array();
        VDTextTable table("rl");
        std::map<std::string, std::uint64_t> sizes;
        for (const std::string& file : arguments_.files) {
            try {
                VDFoundTests found = VFFindTests(context.Registry(), file);
                context.errors.insert(context.errors.end(), found.problems.begin(), found.problems.end());
                for (const VDFileIdHandle& test : found.tests) {
                    const std::uint64_t size = VFSizeOf(test.Get());
                    const std::vector<std::string> files = VFGetTestFiles(test.Get());
                    sizes[files.front()] = size;
                    list.push_back({{"path", VFTitleOf(test.Get())}, {"files", files.size()}, {"bytes", size}});
                    table.Add({std::to_string(size), VFTitleOf(test.Get())});
                }
            } catch (const VDFailure&) {
                context.TakeErrors();
            }
        }
        std::uint64_t total = 0;
        for (const auto& [file, size] : sizes)
            total += size;
        if (context.IsJson())
            return {{"tests", list}, {"bytes", total}};
        if (list.size() > 1)
            table.Add({std::to_string(total), "total"});
        table.Print(context.Out());
        return {};
    }

private:
    VDTestsArguments arguments_;
};

/// `dax exists FILE...`: whether there are such tests.
class VDExistsCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override
    {
        CLI::App* command = program.add_subcommand("exists", "Say whether there are such tests");
        command->add_option("FILE", arguments_.files, "Files, or specs of tests")->required()->type_name("");
        command->footer("The exit status is 1 if one of them has no test.");
        return command;
    }

    VDJson Run(VDCommandContext& context) override
    {
        VDJson list = VDJson::array();
        for (const std::string& file : arguments_.files) {
            const bool exists = Exists(context, file);
            context.negative = context.negative || !exists;
            list.push_back({{"spec", file}, {"exists", exists}});
            if (!context.IsJson())
                context.Out().PutLine(file + (exists ? ": yes" : ": no"));
        }
        return {{"specs", list}};
    }

private:
    static bool Exists(VDCommandContext& context, const std::string& file)
    {
        try {
            const VDFoundTests found = VFFindTests(context.Registry(), file);
            return std::any_of(found.tests.begin(), found.tests.end(), [](const VDFileIdHandle& test) {
                char exists = 0;
                VFCheck(FIDDoesTestExist(test.Get(), 0, &exists));
                return exists != 0;
            });
        } catch (const VDFailure&) {
            VFErrorClear();
            return false;
        }
    }

    VDTestsArguments arguments_;
};

/// `dax delete FILE...`: removes the files of tests.
class VDDeleteCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override
    {
        CLI::App* command = program.add_subcommand("delete", "Delete the files of tests");
        command->add_option("FILE", arguments_.files, "Files, or specs of tests")->required()->type_name("");
        command->add_flag("--yes", yes_, "Don't ask; needed where nobody can be asked");
        command->footer("All files are listed before any goes. A test goes as a whole, with the metadata beside it; a file "
                        "with tests that aren't named stays.");
        return command;
    }

    VDJson Run(VDCommandContext& context) override
    {
        const std::vector<VDFileIdHandle> tests = FindTests(context);
        std::set<std::string> files;
        for (const VDFileIdHandle& test : tests)
            for (const std::string& file : GetFiles(test.Get()))
                files.insert(file);
        if (!context.errors.empty())  // a list that isn't what was meant is no list to delete
            return {};
        if (!yes_ && !Ask(context, files))
            return {};
        std::vector<std::unique_ptr<Z4FileHold>> holds;
        for (const std::string& file : files) {
            holds.push_back(Z4Manager().HoldFile(file.c_str()));
            VFCheck(holds.back() != nullptr);
        }
        VDJson deleted = VDJson::array();
        std::set<std::string> gone;
        for (const VDFileIdHandle& test : tests)
            if (gone.insert(VFGetTestFiles(test.Get()).front()).second)  // a file may hold several of them
                Delete(context, test.Get(), deleted);
        return {{"deleted", deleted}};
    }

private:
    std::vector<VDFileIdHandle> FindTests(VDCommandContext& context) const;
    static void CheckWhole(VDCommandContext& context, const std::string& spec, const std::vector<VDFileIdHandle>& tests);
    static std::vector<std::string> GetFiles(VDFileId* test);
    static bool Ask(VDCommandContext& context, const std::set<std::string>& files);
    static void Delete(VDCommandContext& context, VDFileId* test, VDJson& deleted);

    VDTestsArguments arguments_;
    bool yes_ = false;
};

/// Each test once.
std::vector<VDFileIdHandle> VDDeleteCommand::FindTests(VDCommandContext& context) const
{
    std::vector<VDFileIdHandle> tests;
    const VDFileIdArrayHandle known(FIACreate());
    for (const std::string& file : arguments_.files) {
        VDFoundTests found = VFFindTests(context.Registry(), file);
        context.errors.insert(context.errors.end(), found.problems.begin(), found.problems.end());
        CheckWhole(context, file, found.tests);
        for (VDFileIdHandle& test : found.tests) {
            int index = -1;
            VFCheck(FIAFind(known.Get(), test.Get(), &index));
            if (index >= 0)
                continue;
            VFCheck(FIAAppendItem(known.Get(), test.Get()));
            tests.push_back(std::move(test));
        }
    }
    return tests;
}

/// Throws where a file would go with more than was named: other tests of it, other channels.
void VDDeleteCommand::CheckWhole(VDCommandContext& context, const std::string& spec,
                                 const std::vector<VDFileIdHandle>& tests)
{
    std::map<std::string, std::pair<int, int>> named;  // tests and their channels by file
    for (const VDFileIdHandle& test : tests) {
        int form = 0;
        int count = 0;
        VFCheck(FIDGetNameForm(test.Get(), &form));
        VFCheck(FIDGetNumChans(test.Get(), &count));
        std::pair<int, int>& sums = named[form == VTNameFormFile ? VFGetTestFiles(test.Get()).front() : ""];
        ++sums.first;
        sums.second += count;
    }
    const auto fail = [&spec](const std::string& text) {
        VFFail(DaxToolError::NotWhole, text + ", and nothing is deleted: " + spec, "VDDeleteCommand::CheckWhole");
    };
    // Of several files, those of the other channels would stay without their metadata.
    VDString options(spec.substr(std::min(spec.find(';'), spec.size())));
    options.MakeLower();
    std::string fields = options.Str();
    std::erase(fields, ' ');
    const bool selects = fields.find(";c") != std::string::npos || fields.find(";t") != std::string::npos;
    if (selects && !VFIsFile(spec))
        fail("Channels were selected; a test is deleted as a whole");
    for (const auto& [file, sums] : named) {
        if (file.empty())
            continue;
        std::pair<int, int> present;
        for (const VDFileIdHandle& test : VFIdentify(context.Registry(), file, false, true).tests) {
            int count = 0;
            VFCheck(FIDGetNumChans(test.Get(), &count));
            ++present.first;
            present.second += count;
        }
        if (present != sums)
            fail("The file " + file + " holds more than what was named");
    }
}

/// The test's files, with the metadata beside it.
std::vector<std::string> VDDeleteCommand::GetFiles(VDFileId* test)
{
    std::vector<std::string> files = VFGetTestFiles(test);
    std::error_code none;
    if (VDString sidecar; VMDCreateFilenameFromFileId(test, &sidecar) != 0 && std::filesystem::exists(sidecar.Str(), none))
        files.push_back(sidecar.Str());
    return files;
}

bool VDDeleteCommand::Ask(VDCommandContext& context, const std::set<std::string>& files)
{
    if (isatty(STDIN_FILENO) == 0 || context.IsJson())
        VFFail(DaxToolError::Usage,
               "Nobody can be asked whether to delete " + std::to_string(files.size()) +
                   (files.size() == 1 ? " file" : " files") + "; --yes says so",
               "dax");
    for (const std::string& file : files)
        context.Out().PutLine(file);
    context.Out().Write("Delete " + std::to_string(files.size()) + (files.size() == 1 ? " file" : " files") + "? [y/N] ");
    context.Out().Flush();
    std::string answer;
    std::getline(std::cin, answer);
    return answer == "y" || answer == "Y" || answer == "yes";
}

void VDDeleteCommand::Delete(VDCommandContext& context, VDFileId* test, VDJson& deleted)
{
    const std::vector<std::string> files = GetFiles(test);
    if (FIDDeleteTest(test) == 0)
        context.TakeErrors();
    for (const std::string& file : files) {
        std::error_code none;
        if (std::filesystem::exists(std::filesystem::symlink_status(file, none)))
            continue;
        deleted.push_back(file);
        if (!context.IsJson())
            context.Out().PutLine("deleted " + file);
    }
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeSizeCommand()
{
    return std::make_unique<VDSizeCommand>();
}

std::unique_ptr<VDCommand> VFMakeExistsCommand()
{
    return std::make_unique<VDExistsCommand>();
}

std::unique_ptr<VDCommand> VFMakeDeleteCommand()
{
    return std::make_unique<VDDeleteCommand>();
}
