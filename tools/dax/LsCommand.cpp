#include "Commands.h"
#include "Interrupt.h"
#include "ListedTest.h"
#include "ProgressBar.h"
#include "TestListing.h"
#include "ToolError.h"

#include <algorithm>
#include <map>

#include <unistd.h>

namespace {

/// `dax ls [SPEC...]`: the tests in folders, one a line.
class VDLsCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestListing List(VDCommandContext& context);
    VDTestListOptions GetOptions() const;
    std::vector<VDListedTest> LookInto(VDCommandContext& context, const std::vector<VDFileIdHandle>& tests,
                                       std::vector<VDUnreadFile>& unread);
    void Sort(std::vector<VDListedTest>& tests) const;
    void Print(VDCommandContext& context, const std::vector<VDListedTest>& tests) const;
    void PrintUnread(VDCommandContext& context, const std::vector<VDUnreadFile>& unread) const;

    std::vector<std::string> specs_;
    std::vector<std::string> channels_;
    std::vector<std::string> titles_;
    VDMetaDataQuestions questions_;
    std::string type_;
    std::string sort_ = "name";
    bool reverse_ = false;
    bool long_ = false;
    bool null_ = false;
    bool recurse_ = false;
    bool unknown_ = false;
    bool errors_ = false;
};

const std::map<std::string, int> VVTypes = {
    {"ts", VTFileAccessTimeSeries},  {"hs", VTFileAccessHistogram}, {"cy", VTFileAccessCycles},
    {"mc", VTFileAccessMultiColumn}, {"md", VTFileAccessMetaData},  {"cf", VTFileAccessComplexFrequency},
    {"fe", VTFileAccessFEModels},
};

const std::vector<std::string> VVSortKeys = {"name", "format", "channels", "points", "rate", "duration", "size"};

/// How far the scan has come, on one line of a terminal; ends it when a signal comes.
class VDScanProgress
{
public:
    VDScanProgress() : shown_(isatty(STDERR_FILENO) != 0) {}
    ~VDScanProgress()
    {
        if (printed_)
            VFWriteAll(STDERR_FILENO, "\r\x1b[K");
    }
    VDScanProgress(const VDScanProgress&) = delete;
    VDScanProgress& operator=(const VDScanProgress&) = delete;

    static int GoOn(void* context)
    {
        static_cast<VDScanProgress*>(context)->Print();
        return VDInterruptGuard::IsInterrupted() ? 0 : 1;
    }

private:
    void Print()
    {
        const auto now = std::chrono::steady_clock::now();
        if (!shown_ || now < next_)
            return;
        next_ = now + std::chrono::milliseconds(200);
        printed_ = true;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now - start_).count();
        VFWriteAll(STDERR_FILENO, "\rLooking for tests ... " + std::to_string(seconds) + " s");
    }

    bool shown_;
    bool printed_ = false;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point next_ = start_ + std::chrono::milliseconds(200);
};

CLI::App* VDLsCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("ls", "List tests");
    command->add_option("SPEC", specs_, "Folders, files or test specs (default: the current folder)")->type_name("");
    command->add_flag("-l,--long", long_, "Show the kind of data and the title as well, under a heading");
    command->add_flag("--null", null_, "Print the names alone, as they are, each with a zero byte behind it");
    command->add_flag("--recurse", recurse_, "Look into sub-folders");
    command->add_option("--type", type_, "Only this kind of data: ts, hs, cy, mc, md, cf or fe")
        ->check(CLI::IsMember(VVTypes).description(""))
        ->type_name("KIND");
    command->add_option("--chan", channels_, "Only channels of these numbers, and tests that have some")
        ->allow_extra_args(false)
        ->type_name("N");
    command->add_option("--title", titles_, "Only channels with such a title; * stands for any text")
        ->allow_extra_args(false)
        ->type_name("PATTERN");
    command->add_flag("--unknown", unknown_, "Show files that no plug-in knows, too");
    command->add_flag("--errors", errors_, "Say of each file that can't be read why");
    command->add_option("--where", questions_.where, "Only tests of whose metadata this is true")->type_name("EXPRESSION");
    command->add_option("--show", questions_.keywords, "Show this item of the metadata; may be repeated")
        ->allow_extra_args(false)
        ->type_name("SET.ITEM");
    command->add_option("--sort", sort_, "By name, format, channels, points, rate, duration or size")
        ->check(CLI::IsMember(VVSortKeys).description(""))
        ->type_name("KEY");
    command->add_flag("--reverse", reverse_, "Turn the order round");
    return command;
}

VDJson VDLsCommand::Run(VDCommandContext& context)
{
    context.Registry();
    const VDInterruptGuard guard;
    context.document = VTDocument::Written;
    VDTestListing listing = List(context);
    std::vector<VDListedTest> tests = LookInto(context, listing.tests, listing.unread);
    listing.tests.clear();
    Sort(tests);
    Print(context, tests);
    PrintUnread(context, listing.unread);
    return {};
}

VDTestListOptions VDLsCommand::GetOptions() const
{
    VDTestListOptions options;
    options.recurse = recurse_;
    if (!type_.empty())
        options.accessType = VVTypes.at(type_);
    for (const std::string& numbers : channels_)
        options.filter += ";c" + VFQuoteForSpec(numbers);
    for (const std::string& title : titles_)
        options.filter += ";t" + VFQuoteForSpec(title);
    options.progress = VDScanProgress::GoOn;
    return options;
}

VDTestListing VDLsCommand::List(VDCommandContext& context)
{
    VDTestListing all;
    VDScanProgress progress;
    VDTestListOptions options = GetOptions();
    options.context = &progress;
    for (const std::string& spec : specs_.empty() ? std::vector<std::string>{"."} : specs_) {
        try {
            VDTestListing listing = VFListTests(spec, options);
            if (listing.tests.empty() && listing.unread.empty())
                context.Warn({DaxToolError::NoTest, "No test matches: " + spec, "VDLsCommand"});
            std::move(listing.tests.begin(), listing.tests.end(), std::back_inserter(all.tests));
            std::move(listing.unread.begin(), listing.unread.end(), std::back_inserter(all.unread));
        } catch (const VDFailure&) {
            if (VDInterruptGuard::IsInterrupted())
                throw;
            context.TakeErrors();
        }
    }
    return all;
}

std::vector<VDListedTest> VDLsCommand::LookInto(VDCommandContext& context, const std::vector<VDFileIdHandle>& tests,
                                                std::vector<VDUnreadFile>& unread)
{
    VDProgressBar progress(static_cast<std::int64_t>(tests.size()), false);
    std::vector<VDListedTest> listed;
    for (const VDFileIdHandle& test : tests) {
        if (VDInterruptGuard::IsInterrupted())
            VFFail(DaxToolError::Interrupted, "Interrupted by a signal; the list isn't whole", "VDLsCommand");
        progress.Advance(1);
        VDListedTest found = VFLookInto(context.Registry(), test, questions_);
        if (!found.errors.empty())
            unread.push_back({found.name, found.errors.back().text.Str()});
        if (found.matches && (found.description || unknown_))
            listed.push_back(std::move(found));
    }
    return listed;
}

void VDLsCommand::Sort(std::vector<VDListedTest>& tests) const
{
    const auto sortBy = [&](auto member) {
        std::stable_sort(tests.begin(), tests.end(), [member](const VDListedTest& left, const VDListedTest& right) {
            return member(left) < member(right);
        });
    };
    if (sort_ == "format")
        sortBy([](const VDListedTest& test) { return test.description ? test.description->type.keyword : std::string(); });
    else if (sort_ == "channels")
        sortBy([](const VDListedTest& test) { return test.channels; });
    else if (sort_ == "points")
        sortBy([](const VDListedTest& test) { return test.points; });
    else if (sort_ == "rate")
        sortBy([](const VDListedTest& test) { return test.sampleRate; });
    else if (sort_ == "duration")
        sortBy([](const VDListedTest& test) { return test.duration; });
    else if (sort_ == "size")
        sortBy([](const VDListedTest& test) { return test.size; });
    if (reverse_)
        std::reverse(tests.begin(), tests.end());
}

void VDLsCommand::Print(VDCommandContext& context, const std::vector<VDListedTest>& tests) const
{
    VDTextSink& out = context.Out();
    VDTextTable table(std::string("llrrrrr") + (long_ ? "ll" : "") + std::string(questions_.keywords.size(), 'l'));
    if (long_)
        table.Add(VDListedTest::Heading(long_, questions_.keywords));
    for (const VDListedTest& test : tests) {
        if (null_)
            out.Write(std::string_view(test.name.c_str(), test.name.size() + 1));
        else if (context.IsJson())
            out.Write(VFJsonText(test.ToJson(), -1) + "\n");
        else
            table.Add(test.ToRow(long_));
    }
    if (!null_ && !context.IsJson())
        table.Print(out);
}

void VDLsCommand::PrintUnread(VDCommandContext& context, const std::vector<VDUnreadFile>& unread) const
{
    if (unread.empty())
        return;
    context.Out().Flush();
    if (!errors_)
        context.Warn({DaxToolError::Unread,
                      std::to_string(unread.size()) + " files or folders can't be read; --errors says which, and why",
                      "VDLsCommand"});
    for (const VDUnreadFile& file : unread) {
        if (!errors_)
            break;
        if (context.IsJson())
            context.Out().Write(VFJsonText({{"name", file.path}, {"error", file.reason}}, -1) + "\n");
        else
            context.Warn({DaxToolError::Unread, file.path + ": " + file.reason, "VDLsCommand"});
    }
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeLsCommand()
{
    return std::make_unique<VDLsCommand>();
}
