#include "Commands.h"
#include "FoundTests.h"
#include "TestDescription.h"
#include "ToolError.h"

namespace {

/// `dax identify FILE...`: what each file is.
class VDIdentifyCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    /// Appends a row for each test of the file, or prints them.
    void Identify(VDCommandContext& context, const std::string& file, VDJson& list) const;

    std::vector<std::string> files_;
    bool byExtension_ = false;
};

CLI::App* VDIdentifyCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("identify", "Say what files are");
    command->add_option("FILE", files_, "Files, or specs of tests")->required()->type_name("");
    command->add_flag("--by-extension", byExtension_,
                      "Ask the extension first, as configured; content decides where that gives no answer");
    return command;
}

VDJson VDIdentifyCommand::Run(VDCommandContext& context)
{
    VDJson list = VDJson::array();
    context.Registry();  // without it no file can be identified, and the failure is one
    for (const std::string& file : files_) {
        try {
            Identify(context, file, list);
        } catch (const VDFailure&) {
            const std::vector<VDErrorReport> reports = VFTakeErrors();
            list.push_back({{"path", file}, {"errors", VFJsonErrors(reports)}});
            context.errors.insert(context.errors.end(), reports.begin(), reports.end());
        }
    }
    if (list.size() == 1 && files_.size() == 1 && !context.errors.empty())
        return {};
    return {{"files", list}};
}

void VDIdentifyCommand::Identify(VDCommandContext& context, const std::string& file, VDJson& list) const
{
    VDIdentification identification;
    if (VFIsFile(file) || !VFIsPattern(file)) {
        identification = VFIdentify(context.Registry(), file, byExtension_, false);
    } else {
        VDFoundTests found = VFFindTests(context.Registry(), file);
        identification.tests = std::move(found.tests);
        context.errors.insert(context.errors.end(), found.problems.begin(), found.problems.end());
    }
    std::vector<VDTestDescription> tests;
    for (const VDFileIdHandle& test : identification.tests)
        tests.emplace_back(context.Registry(), identification, test);
    for (std::size_t index = 0; index < tests.size(); ++index) {
        const std::string position = std::to_string(index + 1) + " of " + std::to_string(tests.size());
        if (context.IsJson()) {
            VDJson entry = tests[index].ToJson();
            entry["test"] = index + 1;
            list.push_back(entry);
            continue;
        }
        VDTextTable table("ll");
        tests[index].AddTo(table);
        if (tests.size() > 1)
            table.Add({"Test", position});
        table.Print(context.Out());
        context.Out().Write("\n");
    }
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeIdentifyCommand()
{
    return std::make_unique<VDIdentifyCommand>();
}
