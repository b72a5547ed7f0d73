#include "BatchCopy.h"

#include "BatchPlan.h"
#include "CopyLosses.h"
#include "CopyProcesses.h"
#include "ToolError.h"

#include "vdarchive/Z4Manager.h"
#include "vdbase/VDStringArray.h"

#include <algorithm>
#include <limits>
#include <set>
#include <thread>

namespace fs = std::filesystem;

namespace {

using State = VDBatchItem::State;

/// Whether a copy can be read and agrees with its checksums.
bool VFIsSound(const VDRegistry& registry, const std::string& output)
{
    try {
        VDTestArguments arguments;
        arguments.file = output;
        const VDFileIdHandle test = VFChooseTest(registry, arguments);
        VDStringArray findings;
        const bool isStorage = VFGetFileType(registry, test).fileId == DaxStorageFileId;
        const bool isSound = !isStorage || Z4Manager().CheckFile(output.c_str(), &findings);
        const std::unique_ptr<VDDataTest> opened = VFOpenDataTest(test);
        VFErrorClear();
        return isSound && opened != nullptr;
    } catch (const VDFailure&) {
        VFErrorClear();
        return false;
    }
}

/// Whether the copy was made after the last change of the input.
bool VFIsNewer(const VDBatchItem& item)
{
    std::error_code failed;
    const fs::file_time_type made = fs::last_write_time(item.output, failed);
    return !failed && std::all_of(item.files.begin(), item.files.end(), [&](const std::string& file) {
        std::error_code none;
        const fs::file_time_type changed = fs::last_write_time(file, none);
        return !none && changed < made;
    });
}

/// Makes the folder of a copy; false, with the error, if that fails.
void VFMakeFolder(VDBatchItem& item)
{
    std::error_code failed;
    const fs::path folder = fs::path(item.output).parent_path();
    fs::create_directories(folder, failed);
    if (!failed)
        return;
    item.state = State::Failed;
    item.errors.push_back(
        {DaxToolError::OutputWrite, "Can't make the folder " + folder.string() + ": " + failed.message(), "VDBatchCopy"});
}

const char* VFStateWord(State state)
{
    return state == State::Copied ? "copied" : state == State::LeftOut ? "left out" : "failed";
}

VDJson VFItemJson(const VDBatchItem& item)
{
    VDJson json = {{"input", item.input}, {"output", item.output}, {"state", VFStateWord(item.state)}};
    if (item.state == State::Copied)
        json["lost"] = item.document.value("lost", VDJson::array());
    if (!item.errors.empty())
        json["errors"] = VFJsonErrors(item.errors);
    return json;
}

/// Tells of a finished copy.
void VFTell(VDCommandContext& context, const VDBatchItem& item)
{
    if (context.IsJson() || item.state != State::Copied)
        return;
    context.Out().PutLine(item.output + ": copied from " + item.input);
    for (const VDJson& lost : item.document.value("lost", VDJson::array())) {
        VDLoss loss{lost.value("what", ""), {}, lost.value("from", VDJson()), lost.value("to", VDJson())};
        if (lost.contains("channel") && lost["channel"].is_number_integer())
            loss.channel = lost["channel"].get<int>();
        context.Out().PutLine("lost: " + loss.ToText());
    }
    context.Out().Flush();
}

}  // namespace

void VDBatchCopy::Register(CLI::App& command)
{
    CLI::Option* to = command
                          .add_option("--to", folder_,
                                      "Copy all tests of the files, folders and specs that are named into this folder, each "
                                      "under its own name")
                          ->type_name("FOLDER");
    CLI::Option* prefix =
        command.add_option("--prefix", prefix_, "With --to: stands in front of each name")->type_name("P")->needs(to);
    command.add_option("--suffix", suffix_, "With --to: stands behind each name")
        ->type_name("S")
        ->needs(to)
        ->excludes(prefix);
    command.add_option("--jobs", processes_, "With --to: so many copies at once (default: as many as there are processors)")
        ->check(CLI::Range(1, 256).description(""))
        ->type_name("N")
        ->needs(to);
    command.add_flag("--recurse", recurse_, "With --to: also from sub-folders, which the copies keep")->needs(to);
    command
        .add_flag("--resume", resume_,
                  "With --to: leave out what has a sound copy that is newer than it, and replace other earlier copies")
        ->needs(to);
}

VDJson VDBatchCopy::Run(VDCommandContext& context, const std::vector<std::string>& specs, const VDCopyOptions& options) const
{
    if (!options.nameForm.empty() && (!prefix_.empty() || !suffix_.empty()))
        VFFail(DaxToolError::Usage, "--name says the whole name; leave --prefix and --suffix", "dax");
    VDBatchPlan plan(context, *this, options);
    for (const std::string& spec : specs)
        plan.Add(spec);
    plan.CheckOutputs();
    std::vector<VDBatchItem> items = plan.TakeItems();
    for (VDBatchItem& item : items) {
        if (item.state != State::Waiting)
            continue;
        if (resume_ && VFIsNewer(item) && VFIsSound(context.Registry(), item.output))
            item.state = State::LeftOut;
        else
            VFMakeFolder(item);
        if (resume_ || options.overwrite)
            item.arguments.emplace_back("--overwrite");
    }

    std::set<std::string> told;
    for (const VDErrorReport& problem : context.Registry().GetLoadProblems())
        told.insert(problem.text.Str());
    VDJson list = VDJson::array();
    std::map<State, int> counts;
    const int processes = processes_ > 0 ? processes_ : static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
    VFRunCopies(items, processes, [&](VDBatchItem& item) {
        ++counts[item.state];
        if (item.document.is_object())
            for (const VDJson& warning : item.document.value("warnings", VDJson::array()))
                if (const std::string text = warning.value("text", ""); told.insert(text).second)
                    context.Warn({warning.value("code", 0), text, warning.value("routine", "")});
        VFTell(context, item);
        for (const VDErrorReport& error : item.errors)
            context.errors.push_back({error.code, item.input + ": " + error.text, error.routine});
        list.push_back(VFItemJson(item));
    });
    if (context.IsJson())
        return {{"folder", folder_},
                {"tests", list},
                {"copied", counts[State::Copied]},
                {"leftOut", counts[State::LeftOut]},
                {"failed", counts[State::Failed]},
                {"passedOver", plan.CountPassedOver()}};
    std::string summary = std::to_string(counts[State::Copied]) + " copied";
    if (resume_)
        summary += ", " + std::to_string(counts[State::LeftOut]) + " left out";
    summary += ", " + std::to_string(counts[State::Failed]) + " failed";
    if (plan.CountPassedOver() > 0)
        summary += "; " + std::to_string(plan.CountPassedOver()) + " that lie in the folder were passed over";
    context.Out().PutLine(summary);
    return {};
}
