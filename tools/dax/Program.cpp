#include "Program.h"

#include "ChannelSelection.h"
#include "ToolError.h"

#include "vdbase/VFVersion.h"

#include <algorithm>
#include <csignal>
#include <unistd.h>

namespace {

std::string VFVersionText()
{
    VDVersionInfo version;
    if (!VFVersionGet("DAXLIB", &version))
        return "dax";
    return "dax " + std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' +
           std::to_string(version.build);
}

void VFPrintErrors(const std::vector<VDErrorReport>& errors)
{
    for (const VDErrorReport& error : errors)
        VFPrintReport(error, "error");
}

/// What is recorded, or that nothing is.
std::vector<VDErrorReport> VFTakeFailure()
{
    std::vector<VDErrorReport> reports = VFTakeErrors();
    if (reports.empty())
        reports.push_back({DaxToolError::Internal, "The library failed without an error of its own", "dax"});
    return reports;
}

/// Prints the JSON document, or what of it isn't written yet.
void VFEndDocument(VTDocument state, VDJson document, const std::vector<VDErrorReport>& warnings,
                   const std::vector<VDErrorReport>& errors, VDTextSink& out)
{
    if (state == VTDocument::Written) {
        if (errors.empty())
            return;
        document = {};
    }
    if (!warnings.empty())
        document["warnings"] = VFJsonErrors(warnings);
    if (!errors.empty())
        document["errors"] = VFJsonErrors(errors);
    if (state != VTDocument::Begun) {
        out.Write(VFJsonText(document) + "\n");
        return;
    }
    const std::string rest = document.empty() ? "}" : VFJsonText(document, -1).replace(0, 1, ",");
    out.Write(rest + "\n");
}

int VFRunCommand(VDCommand& command, bool json, VDTextSink& out)
{
    VDCommandContext context(json, out);
    VDJson document;
    try {
        document = command.Run(context);
    } catch (const VDFailure&) {
        const std::vector<VDErrorReport> reports = VFTakeFailure();
        context.errors.insert(context.errors.end(), reports.begin(), reports.end());
    } catch (const std::exception& unforeseen) {
        context.errors.push_back({DaxToolError::Internal, unforeseen.what(), "dax"});
    }
    // A plug-in that didn't load may be why a file wasn't recognised; where all went well, it is still worth a word.
    if (const VDRegistry* registry = context.GetRegistry()) {
        const bool warn = context.errors.empty() && !context.pluginsAsked;
        for (const VDErrorReport& problem : registry->GetLoadProblems())
            warn ? context.Warn(problem) : context.errors.push_back(problem);
    }
    if (json) {
        VFEndDocument(context.document, std::move(document), context.GetWarnings(), context.errors, out);
    } else if (!context.errors.empty()) {
        out.Flush();
        VFPrintErrors(context.errors);
    }
    return context.negative || !context.errors.empty() ? 1 : 0;
}

int VFParseAndRun(const std::vector<std::unique_ptr<VDCommand>>& commands, std::vector<std::string> arguments,
                  VDTextSink& out)
{
    CLI::App program("Finds, identifies, reads and copies measurement data of any format that a plug-in serves.", "dax");
    program.require_subcommand(1);
    program.set_version_flag("--version", VFVersionText, "Print the version and exit");
    bool json = false;
    std::vector<CLI::App*> registered;
    for (const auto& command : commands) {
        registered.push_back(command->Register(program));
        registered.back()->add_flag("--json", json, "Print the result, or the errors, as JSON");
    }

    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const bool askedForJson = std::find(arguments.begin(), end, "--json") != end;
    VFJoinChannelArguments(arguments);
    std::reverse(arguments.begin(), arguments.end());  // as the parser takes them
    try {
        program.parse(arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {  // help or version
            std::ostringstream text;
            program.exit(error, text, text);
            out.Write(text.str());
            return 0;
        }
        const std::string advice = "; see 'dax --help' or 'dax COMMAND --help'";
        const std::vector<VDErrorReport> errors = {{DaxToolError::Usage, error.what() + advice, "dax"}};
        if (askedForJson)
            VFEndDocument(VTDocument::Returned, {}, {}, errors, out);
        else
            VFPrintErrors(errors);
        return 1;
    }
    const auto chosen =
        std::find_if(registered.begin(), registered.end(), [](const CLI::App* app) { return app->parsed(); });
    return VFRunCommand(*commands[static_cast<std::size_t>(chosen - registered.begin())], json, out);
}

}  // namespace

int VFRunProgram(const std::vector<std::unique_ptr<VDCommand>>& commands, std::vector<std::string> arguments)
{
    // A reader that went away and a limit on the size of files are failures of a write, to be told as such.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    VDTextSink out(STDOUT_FILENO, "the standard output");
    try {
        const int status = VFParseAndRun(commands, std::move(arguments), out);
        out.Flush();
        return status;
    } catch (const VDBrokenPipe&) {
        return 0;
    } catch (const VDFailure&) {
        VFPrintErrors(VFTakeFailure());
        return 1;
    } catch (const std::exception& unforeseen) {
        VFPrintErrors({{DaxToolError::Internal, unforeseen.what(), "dax"}});
        return 1;
    }
}
