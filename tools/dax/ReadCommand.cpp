#include "Commands.h"
#include "StagedOutput.h"
#include "TestExport.h"
#include "ToolError.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// `dax read FILE`: times and values as CSV or JSON.
class VDReadCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson WriteFiles(VDCommandContext& context, const VDInputTest& input, const std::vector<VDCsvPart>& parts) const;

    VDTestArguments arguments_;
    VDReadSelection selection_;
    std::string out_;
    bool overwrite_ = false;
};

/// The file of one of several parts: "run.csv" becomes "run_ch1-3_7.csv".
std::string VFPartName(const std::string& name, const VDCsvPart& part)
{
    const fs::path path = name;
    return (path.parent_path() / (path.stem().string() + part.suffix + path.extension().string())).string();
}

CLI::App* VDReadCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("read", "Print the data as CSV");
    arguments_.Register(*command, "FILE");
    selection_.Register(*command);
    command
        ->add_option("--out", out_,
                     "CSV file to write; what can't share one goes to a file each, named after it; - is the standard "
                     "output")
        ->type_name("FILE.csv");
    command->add_flag("--overwrite", overwrite_, "Replace existing output files");
    command->footer("With --json the values are printed as one document, a list for each channel, or with --out the list of "
                    "the files written.");
    return command;
}

VDJson VDReadCommand::Run(VDCommandContext& context)
{
    const VDInputTest input(context, arguments_);
    const std::unique_ptr<VDTestExport> data = VFMakeTestExport(input, selection_);
    const bool toFiles = !out_.empty() && out_ != VVStandardOutput;
    if (context.IsJson() && !toFiles) {
        context.document = VTDocument::Begun;
        data->WriteJson(context.Out());
        return {};
    }
    const std::vector<VDCsvPart> parts = data->MakeParts();
    if (toFiles)
        return WriteFiles(context, input, parts);
    if (parts.size() > 1)
        VFFail(DaxToolError::DifferentTimes, data->WhyParts(parts), "VDReadCommand::Run");
    parts.front().write(context.Out());
    return {};
}

VDJson VDReadCommand::WriteFiles(VDCommandContext& context, const VDInputTest& input,
                                 const std::vector<VDCsvPart>& parts) const
{
    const std::string name = VDStagedOutput::ResolveName(out_);
    std::vector<std::string> names;
    for (const VDCsvPart& part : parts)
        names.push_back(parts.size() == 1 ? name : VFPartName(name, part));
    VDStagedOutput output(names, VFGetTestFiles(input.GetId().Get()), overwrite_);
    VDJson files = VDJson::array();
    for (std::size_t index = 0; index < parts.size(); ++index) {
        std::int64_t rows = 0;
        VFWriteNewFile(output.StagedName(names[index]), [&](VDTextSink& out) { rows = parts[index].write(out); });
        VDJson& file = files.emplace_back(VDJson{{"path", names[index]}});
        file.update(parts[index].facts);
        file["rows"] = rows;
    }
    output.Publish();
    if (context.IsJson())
        return {{"files", files}};
    for (std::size_t index = 0; index < parts.size(); ++index)
        context.Out().PutLine(names[index] + ": " + std::to_string(files[index]["rows"].get<std::int64_t>()) + " rows of " +
                              parts[index].name);
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeReadCommand()
{
    return std::make_unique<VDReadCommand>();
}
