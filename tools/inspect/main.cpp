#include "FamosInspect.h"

#include "vdbase/VFError.h"

#include <CLI/CLI.hpp>

#include <cstdio>

namespace {

using Json = nlohmann::ordered_json;

void Print(const std::string& text)
{
    std::fwrite(text.data(), 1, text.size(), stdout);
}

int PrintErrors(bool json)
{
    Json errors = Json::array();
    for (const VDErrorReport& report : VFErrorGetReports(VFGetBaseLibError())) {
        errors.push_back({{"code", report.code}, {"text", report.text.Str()}, {"routine", report.routine.Str()}});
        if (!json)
            std::fprintf(stderr, "dax-inspect: error %d: %s (%s)\n", report.code, report.text.c_str(),
                         report.routine.c_str());
    }
    if (json)
        Print(Json{{"errors", errors}}.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    CLI::App program("Shows internals of daxlib to its developers.", "dax-inspect");
    program.require_subcommand(1);
    CLI::App& famos =
        *program.add_subcommand("famos", "Show what a Famos file declares, and the frames of a time-stamped one");
    std::string filename;
    std::string database;
    bool json = false;
    bool values = false;
    famos.add_option("FILE", filename, "The file")->required();
    famos.add_option("--dbc", database, "CAN database for a time-stamped file")->type_name("DBCFILE");
    famos.add_flag("--values", values, "Show the values of each component in short");
    famos.add_flag("--json", json, "Print the result, or the errors, as JSON");
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return program.exit(error) == 0 ? 0 : 1;
    }

    Json document;
    if (!(values ? VFInspectFamosValues(filename, &document) : VFInspectFamos(filename, database, &document)))
        return PrintErrors(json);
    Print(json ? document.dump(2, ' ', false, Json::error_handler_t::replace) + "\n" : VFFamosInspectText(document));
    return 0;
}
