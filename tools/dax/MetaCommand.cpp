#include "MetaCommand.h"

#include "TestMetaData.h"
#include "TextTable.h"
#include "TimeSeriesTest.h"
#include "ToolError.h"

#include "vdstore/LQChannelMapper.h"

namespace {

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

/// Null for an undefined item. Numbers are numbers, but for nan and the like; lists are as text what they are there.
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
    const VDJson number = VDJson::parse(text, nullptr, false);
    return number.is_number() ? number : VDJson(text);
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

}  // namespace

CLI::App* VDMetaCommand::Register(CLI::App& program)
{
    CLI::App* command = program.add_subcommand("meta", "Show the metadata of a test and its channels");
    arguments_.Register(*command, "FILE");
    command->footer("The set Attributes repeats header and statistics, InputTestInfo says where the test lies; all else is "
                    "the test's own.");
    return command;
}

VDJson VDMetaCommand::Run(VDCommandContext& context)
{
    const VDFileIdHandle id = VFChooseTest(context.Registry(), arguments_);
    const VDTimeSeriesTest test(id);
    LQChannelMapper* mapper = nullptr;
    VFCheck(TSAccGetMetaData(test.Get(), &mapper));

    if (context.IsJson()) {
        VDJson channels = VDJson::array();
        for (int slot = 0; slot < mapper->GetChannelCount(); ++slot) {
            VDString title;
            mapper->GetChanTitle(title, slot);
            channels.push_back({{"number", mapper->NumberFromIndex(slot, false)},
                                {"title", title.Str()},
                                {"sets", VFSlotJson(*mapper, slot)}});
        }
        return {{"path", VFGetTestFiles(id.Get()).front()},
                {"test", VFSlotJson(*mapper, LQChannelMapper::GLOBAL)},
                {"channels", channels}};
    }
    VDTextTable table("lllll");
    table.Add({"CHANNEL", "SET", "ITEM", "TYPE", "VALUE"});
    VFAddSlot(*mapper, LQChannelMapper::GLOBAL, "test", table);
    for (int slot = 0; slot < mapper->GetChannelCount(); ++slot)
        VFAddSlot(*mapper, slot, std::to_string(mapper->NumberFromIndex(slot, false)), table);
    table.Print(context.Out());
    return {};
}
