#include "Program.h"

#include "ChannelSelection.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdbase/VFVersion.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
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

/// Prints reports on the standard error, one a line.
/// @param kind  "error" or "warning"
void VFPrintReports(const std::vector<VDErrorReport>& reports, const char* kind)
{
    for (const VDErrorReport& report : reports) {
        std::string text = VFPrintable(report.text.View());
        text.erase(text.find_last_not_of(' ') + 1);
        std::fprintf(stderr, "dax: %s %d: %s (%s)\n", kind, report.code, text.c_str(), report.routine.c_str());
    }
}

/// Prints what went wrong, in the way that was asked for.
/// @param document  what there is beside the errors in JSON mode
int VFPrintFailure(const std::vector<VDErrorReport>& errors, bool json, VDJson document, VDTextSink& out)
{
    if (!json) {
        out.Flush();
        VFPrintReports(errors, "error");
        return 1;
    }
    document["errors"] = VFJsonErrors(errors);
    out.Write(VFJsonText(document) + "\n");
    return 1;
}

/// What is recorded, or that nothing is.
std::vector<VDErrorReport> VFTakeFailure()
{
    std::vector<VDErrorReport> reports = VFTakeErrors();
    if (reports.empty())
        reports.push_back({DaxToolError::Internal, "The library failed without an error of its own", "dax"});
    return reports;
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
        const std::vector<VDErrorReport>& problems = registry->GetLoadProblems();
        if (context.errors.empty() && !context.pluginsAsked)
            VFPrintReports(problems, "warning");
        else
            context.errors.insert(context.errors.end(), problems.begin(), problems.end());
    }
    if (context.documentWritten)
        return context.errors.empty() ? 0 : 1;
    if (!context.errors.empty())
        return VFPrintFailure(context.errors, json, std::move(document), out);
    if (json)
        out.Write(VFJsonText(document) + "\n");
    return context.negative ? 1 : 0;
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
        return VFPrintFailure({{DaxToolError::Usage, error.what() + advice, "dax"}}, askedForJson, {}, out);
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
        VFPrintReports(VFTakeFailure(), "error");
        return 1;
    } catch (const std::exception& unforeseen) {
        VFPrintReports({{DaxToolError::Internal, unforeseen.what(), "dax"}}, "error");
        return 1;
    }
}
