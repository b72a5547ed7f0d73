#include "ChannelSelection.h"
#include "Commands.h"
#include "FoundTests.h"
#include "ItemTypes.h"
#include "MetaStore.h"
#include "MetaXml.h"
#include "StagedOutput.h"
#include "TestMetaData.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdstore/LQChannelMapper.h"

namespace {

/// `dax meta FILE`: the metadata of the test and its channels, shown, changed, or as XML.
class VDMetaCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    void RegisterChanges(CLI::App& command);
    std::vector<int> ChooseNumbers(const VDInputTest& input) const;
    VDMetaEdits MakeEdits(VDCommandContext& context, const VDInputTest& input) const;
    std::unique_ptr<LQChannelMapper> ChooseMetaData(const VDInputTest& input) const;
    VDJson Change(VDCommandContext& context, const VDInputTest& input) const;
    VDJson WriteXml(VDCommandContext& context, const VDInputTest& input, const LQChannelMapper& mapper) const;
    void Show(VDCommandContext& context, const VDInputTest& input, const LQChannelMapper& mapper) const;

    VDJson Work(VDCommandContext& context, const VDInputTest& input) const;

    VDTestsArguments arguments_;
    VDChannelSelection selection_;
    std::string set_;
    std::vector<std::string> puts_;
    std::string type_;
    std::vector<std::string> removals_;
    bool xml_ = false;
    std::string out_;
    bool overwrite_ = false;
    std::string xmlFile_;
    std::string merge_ = "replace";
};

/// Null for an undefined item; lists are as text what they are there.
VDJson VFValueJson(const Z4Property& item)
{
    if (!item.IsDefined())
        return {};
    const Z4PropertyType type = item.GetType();
    const std::string text = item.ToString().Str();
    if (type == Z4TypeBoolean)
        return static_cast<const Z4BooleanProperty&>(item).Get();
    if (type == Z4TypeString || type == Z4TypeText || type == Z4TypeDoubleList)
        return text;
    return VFJsonNumber(text);
}

VDJson VFSlotJson(const LQChannelMapper& mapper, int slot)
{
    VDJson sets = VDJson::array();
    VFForEachSet(mapper, slot, [&](const Z4PropertySet& set) {
        VDJson items = VDJson::array();
        for (int index = 0; index < set.GetSize(); ++index) {
            const Z4Property& item = *set.GetProperty(index);
            items.push_back(
                {{"item", item.GetName().Str()}, {"type", VFItemTypeWord(item.GetType())}, {"value", VFValueJson(item)}});
        }
        sets.push_back({{"set", set.GetName().Str()}, {"items", items}});
    });
    return sets;
}

void VFAddSlot(const LQChannelMapper& mapper, int slot, const std::string& owner, VDTextTable& table)
{
    VFForEachSet(mapper, slot, [&](const Z4PropertySet& set) {
        for (int index = 0; index < set.GetSize(); ++index) {
            const Z4Property& item = *set.GetProperty(index);
            table.Add({owner, set.GetName().Str(), item.GetName().Str(), VFItemTypeWord(item.GetType()), item.ToString().Str()});
        }
    });
}

CLI::App* VDMetaCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("meta", "Show or change the metadata of a test and its channels");
    arguments_.Register(*command, "FILE");
    selection_.Register(*command);
    command->add_option("--set-only", set_, "Only the sets of this name")->type_name("NAME");
    CLI::Option* xml = command->add_flag("--xml", xml_, "Print XML, which --from-xml reads");
    command->add_option("--out", out_, "XML file to write; - is the standard output")->type_name("FILE.xml")->needs(xml);
    command->add_flag("--overwrite", overwrite_, "Replace an existing output file");
    RegisterChanges(*command);
    command->footer("The set Attributes repeats header and statistics, InputTestInfo says where the test lies; all else is "
                    "the test's own.\nChanges go into the file if its format keeps metadata, else into a file of the "
                    "extension vmd beside it, all in one step. Without --chan they are the test's, not its channels'.");
    return command;
}

void VDMetaCommand::RegisterChanges(CLI::App& command)
{
    CLI::Option* xml = command.get_option("--xml");
    CLI::Option* put =
        command.add_option("--put", puts_, "Give an item this value; may be repeated")->type_name("Set.Item=value");
    put->allow_extra_args(false)->excludes(xml);
    command
        .add_option("--type", type_,
                    "Type of the items put (default: that of the item, or else as the value reads): " + VFItemTypeWords())
        ->type_name("T")
        ->needs(put);
    command.add_option("--remove", removals_, "Remove an item; may be repeated")
        ->type_name("Set.Item")
        ->allow_extra_args(false)
        ->excludes(xml);
    CLI::Option* from = command.add_option("--from-xml", xmlFile_, "Put the items of an XML file")->type_name("FILE.xml");
    from->excludes(xml);
    command.add_option("--merge", merge_, "What becomes of items that are there: replace (default) or keep")
        ->type_name("MODE")
        ->check(CLI::IsMember({"replace", "keep"}).description(""))
        ->needs(from);
}

/// Those that were asked for; none without --chan.
std::vector<int> VDMetaCommand::ChooseNumbers(const VDInputTest& input) const
{
    std::vector<int> numbers;
    if (!selection_.texts.empty())
        for (const VDChannel& channel : selection_.Choose(input.GetTest()))
            numbers.push_back(channel.number);
    return numbers;
}

VDMetaEdits VDMetaCommand::MakeEdits(VDCommandContext& context, const VDInputTest& input) const
{
    const std::vector<int> numbers = ChooseNumbers(input);
    VDMetaEdits edits;
    if (!xmlFile_.empty()) {
        LQChannelMapper mapper(nullptr);
        VFReadMetaDataXml(xmlFile_, numbers, mapper);
        edits.Take(mapper, merge_ == "keep");
        for (const int number : edits.DropOtherChannels(VFNeedMetaData(input.Access())))
            context.Warn({DaxToolError::ItemLeftOut,
                          "Channel " + std::to_string(number) + " is not in this test; its metadata were passed over",
                          "VDMetaCommand::MakeEdits"});
    }
    std::optional<Z4PropertyType> type;
    if (!type_.empty())
        type = VFItemType(type_);
    for (const std::string& text : removals_)
        edits.Remove(text, numbers);
    for (const std::string& text : puts_)
        edits.Put(text, type, numbers);
    return edits;
}

/// What was asked for of the metadata, as a copy.
std::unique_ptr<LQChannelMapper> VDMetaCommand::ChooseMetaData(const VDInputTest& input) const
{
    const LQChannelMapper* const all = VFGetMetaData(input.Access());
    auto chosen = std::make_unique<LQChannelMapper>(nullptr);
    if (all == nullptr)
        return chosen;
    const auto take = [&](int from, int to) {
        VFForEachSet(*all, from, [&](const Z4PropertySet& set) {
            if (set_.empty() || set.GetName() == set_.c_str())
                chosen->AdoptMetaDataSet(set.GetName(), nullptr, to)->Copy(&set, false);
        });
    };
    const auto takeChannel = [&](int slot, long number) {
        VDString title;
        all->GetChanTitle(title, slot);
        LQChannelEntry* const entry = chosen->Append();
        chosen->SetChannelNumber(number, entry);
        chosen->SetChanTitle(title, entry);
        take(slot, chosen->GetChannelCount() - 1);
    };
    if (selection_.texts.empty()) {
        take(LQChannelMapper::GLOBAL, LQChannelMapper::GLOBAL);
        for (int slot = 0; slot < all->GetChannelCount(); ++slot)
            takeChannel(slot, all->NumberFromIndex(slot, false));
    }
    for (const int number : ChooseNumbers(input))
        if (const int slot = all->IndexFromNumber(number, false); slot >= 0)
            takeChannel(slot, number);
    return chosen;
}

bool VFHasOwnItems(const LQChannelMapper& mapper)
{
    bool found = false;
    for (int slot = LQChannelMapper::GLOBAL; slot < mapper.GetChannelCount() && !found; ++slot)
        VFForEachOwnItem(mapper, slot, [&](const std::string&, const Z4Property&) { found = true; });
    return found;
}

VDJson VFMetaDataJson(const std::string& path, const LQChannelMapper& mapper)
{
    VDJson channels = VDJson::array();
    for (int slot = 0; slot < mapper.GetChannelCount(); ++slot) {
        VDString title;
        mapper.GetChanTitle(title, slot);
        channels.push_back(
            {{"number", mapper.NumberFromIndex(slot, false)}, {"title", title.Str()}, {"sets", VFSlotJson(mapper, slot)}});
    }
    return {{"path", path}, {"test", VFSlotJson(mapper, LQChannelMapper::GLOBAL)}, {"channels", channels}};
}

VDJson VDMetaCommand::Change(VDCommandContext& context, const VDInputTest& input) const
{
    const VDMetaEdits edits = MakeEdits(context, input);
    const VDMetaStored stored = edits.IsEmpty() ? VDMetaStored() : VFStoreMetaData(input, edits);
    if (context.IsJson())
        return {{"path", input.GetPath()}, {"written", stored.file}, {"items", stored.count}};
    context.Out().PutLine(input.GetPath() + ": " + std::to_string(stored.count) +
                          (stored.count == 1 ? " item changed" : " items changed") +
                          (stored.file.empty() ? "" : ", in " + stored.file));
    return {};
}

VDJson VDMetaCommand::WriteXml(VDCommandContext& context, const VDInputTest& input, const LQChannelMapper& mapper) const
{
    const std::string text = VFMetaDataAsXml(context, mapper);
    if (out_.empty() || out_ == VVStandardOutput) {
        if (context.IsJson())
            return {{"path", input.GetPath()}, {"xml", text}};
        context.Out().Write(text);
        return {};
    }
    const std::string name = VDStagedOutput::ResolveName(out_);
    VDStagedOutput output({name}, VFGetTestFiles(input.GetId().Get()), overwrite_);
    VFWriteNewFile(output.StagedName(name), [&](VDTextSink& out) { out.Write(text); });
    output.Publish();
    if (context.IsJson())
        return {{"path", input.GetPath()}, {"files", {name}}};
    context.Out().PutLine(name + ": metadata of " + input.GetPath());
    return {};
}

void VDMetaCommand::Show(VDCommandContext& context, const VDInputTest& input, const LQChannelMapper& mapper) const
{
    VDTextTable table("lllll");
    table.Add({"CHANNEL", "SET", "ITEM", "TYPE", "VALUE"});
    VFAddSlot(mapper, LQChannelMapper::GLOBAL, "test", table);
    for (int slot = 0; slot < mapper.GetChannelCount(); ++slot)
        VFAddSlot(mapper, slot, std::to_string(mapper.NumberFromIndex(slot, false)), table);
    if (table.GetSize() > 1)
        table.Print(context.Out());
    if (!VFHasOwnItems(mapper))
        context.Out().PutLine(input.GetPath() + ": no metadata of its own");
}

VDJson VDMetaCommand::Run(VDCommandContext& context)
{
    if (!out_.empty() && out_ != VVStandardOutput && arguments_.IsList())
        VFFail(DaxToolError::Usage, "One file can't hold the XML of several tests; name one test", "dax");
    return VFForEachTest(context, arguments_, [&](const VDInputTest& input) { return Work(context, input); });
}

VDJson VDMetaCommand::Work(VDCommandContext& context, const VDInputTest& input) const
{
    if (!puts_.empty() || !removals_.empty() || !xmlFile_.empty())
        return Change(context, input);
    const std::unique_ptr<LQChannelMapper> mapper = ChooseMetaData(input);
    if (xml_)
        return WriteXml(context, input, *mapper);
    if (context.IsJson())
        return VFMetaDataJson(input.GetPath(), *mapper);
    Show(context, input, *mapper);
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeMetaCommand()
{
    return std::make_unique<VDMetaCommand>();
}
