#include "Commands.h"
#include "InputTest.h"
#include "TestMetaData.h"
#include "TextTable.h"
#include "ToolError.h"

#include "vdstore/LQChannelMapper.h"

namespace {

/// `dax meta FILE`: the metadata of the test and its channels.
class VDMetaCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
};

const char* VFTypeWord(Z4PropertyType type)
{
    switch (type) {
    case Z4TypeBoolean:
        return "boolean";
    case Z4TypeUnsChar:
        return "uint8";
    case Z4TypeUnsShort:
        return "uint16";
    case Z4TypeShort:
        return "int16";
    case Z4TypeUnsLong:
        return "uint32";
    case Z4TypeLong:
        return "int32";
    case Z4TypeUnsHuge:
        return "uint64";
    case Z4TypeHuge:
        return "int64";
    case Z4TypeFloat:
        return "float";
    case Z4TypeDouble:
        return "double";
    case Z4TypeString:
        return "string";
    case Z4TypeText:
        return "text";
    case Z4TypeDoubleList:
        return "double list";
    }
    return "unknown";
}

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
                {{"item", item.GetName().Str()}, {"type", VFTypeWord(item.GetType())}, {"value", VFValueJson(item)}});
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
            table.Add({owner, set.GetName().Str(), item.GetName().Str(), VFTypeWord(item.GetType()), item.ToString().Str()});
        }
    });
}

CLI::App* VDMetaCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("meta", "Show the metadata of a test and its channels");
    arguments_.Register(*command, "FILE");
    command->footer("The set Attributes repeats header and statistics, InputTestInfo says where the test lies; all else is "
                    "the test's own.");
    return command;
}

bool VFHasOwnItems(const LQChannelMapper& mapper)
{
    bool found = false;
    for (int slot = LQChannelMapper::GLOBAL; slot < mapper.GetChannelCount() && !found; ++slot)
        VFForEachOwnItem(mapper, slot, [&](const std::string&, const Z4Property&) { found = true; });
    return found;
}

/// A file without metadata is one whose metadata are empty.
VDJson VFMetaDataJson(const std::string& path, const LQChannelMapper* mapper)
{
    VDJson test = VDJson::array();
    VDJson channels = VDJson::array();
    if (mapper != nullptr)
        test = VFSlotJson(*mapper, LQChannelMapper::GLOBAL);
    for (int slot = 0; mapper != nullptr && slot < mapper->GetChannelCount(); ++slot) {
        VDString title;
        mapper->GetChanTitle(title, slot);
        channels.push_back(
            {{"number", mapper->NumberFromIndex(slot, false)}, {"title", title.Str()}, {"sets", VFSlotJson(*mapper, slot)}});
    }
    return {{"path", path}, {"test", test}, {"channels", channels}};
}

VDJson VDMetaCommand::Run(VDCommandContext& context)
{
    const VDInputTest input(context, arguments_);
    const LQChannelMapper* const mapper = VFGetMetaData(input.GetTest().Get());
    if (context.IsJson())
        return VFMetaDataJson(input.GetPath(), mapper);
    VDTextTable table("lllll");
    table.Add({"CHANNEL", "SET", "ITEM", "TYPE", "VALUE"});
    if (mapper != nullptr) {
        VFAddSlot(*mapper, LQChannelMapper::GLOBAL, "test", table);
        for (int slot = 0; slot < mapper->GetChannelCount(); ++slot)
            VFAddSlot(*mapper, slot, std::to_string(mapper->NumberFromIndex(slot, false)), table);
    }
    if (table.GetSize() > 1)
        table.Print(context.Out());
    if (mapper == nullptr || !VFHasOwnItems(*mapper))
        context.Out().PutLine(input.GetPath() + ": no metadata of its own");
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeMetaCommand()
{
    return std::make_unique<VDMetaCommand>();
}
