#include "Commands.h"
#include "TextTable.h"

namespace {

/// `dax types`: the file types that the registry knows.
class VDTypesCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;
};

CLI::App* VDTypesCommand::Register(CLI::App& program)
{
    return program.add_subcommand("types", "List the file types that are known");
}

VDJson VDTypesCommand::Run(VDCommandContext& context)
{
    context.pluginsAsked = true;
    const std::vector<VDFileType> types = context.Registry().GetFileTypes();
    if (context.IsJson()) {
        VDJson list = VDJson::array();
        for (const VDFileType& type : types)
            list.push_back({{"keyword", type.keyword},
                            {"description", type.description},
                            {"fileId", type.fileId},
                            {"subId", type.subId},
                            {"accessType", type.accessName},
                            {"accessTypeId", type.accessType},
                            {"readable", type.readable},
                            {"writable", type.writable},
                            {"extensions", type.extensions}});
        return {{"types", list}};
    }
    VDTextTable table("llrrllll");
    table.Add({"KEYWORD", "DESCRIPTION", "FILE ID", "SUB ID", "ACCESS TYPE", "READ", "WRITE", "EXTENSIONS"});
    for (const VDFileType& type : types) {
        std::string extensions;
        for (const std::string& extension : type.extensions)
            extensions += (extensions.empty() ? "" : " ") + extension;
        table.Add({type.keyword, type.description, std::to_string(type.fileId), std::to_string(type.subId), type.accessName,
                   type.readable ? "yes" : "no", type.writable ? "yes" : "no", extensions});
    }
    table.Print(context.Out());
    return {};
}

}  // namespace

std::unique_ptr<VDCommand> VFMakeTypesCommand()
{
    return std::make_unique<VDTypesCommand>();
}
