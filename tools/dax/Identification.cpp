#include "Identification.h"

#include "ToolError.h"

#include <limits>

std::vector<VDFileIdHandle> VFTakeTests(const VDFileIdArrayHandle& array)
{
    int count = 0;
    VFCheck(FIAGetSize(array.Get(), &count));
    std::vector<VDFileIdHandle> tests(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index)
        VFCheck(FIAGetAt(array.Get(), index, tests[static_cast<std::size_t>(index)].Out()));
    return tests;
}

namespace {

/// Empty where content has to decide.
std::vector<VDFileIdHandle> VFIdentifyByExtension(const VDRegistry& registry, const VDFileIdHandle& id,
                                                  const std::string& filename)
{
    VDFileIdArrayHandle array;
    char found = 0;
    char ignored = 0;
    char asStandard = 0;
    VFCheck(FINFIdentifyFileByExtension(registry.Get(), id.Get(), array.Out(), &found, &ignored, &asStandard));
    if (ignored != 0)
        VFFail(DaxToolError::ExtensionIgnored, "The preferences pass over files of this extension: " + filename,
               "VFIdentify");
    if (found == 0 || asStandard != 0)
        return {};
    return VFTakeTests(array);
}

}  // namespace

VDIdentification VFIdentify(const VDRegistry& registry, const std::string& filename, bool byExtension, bool loadInfo)
{
    VDFileIdHandle id(FIDCreate());
    VFCheck(static_cast<bool>(id));
    VFCheck(FIDSetFilename(id.Get(), VTNameFormFile, filename.c_str(), ""));

    VDIdentification result;
    if (byExtension) {
        result.tests = VFIdentifyByExtension(registry, id, filename);
        result.byExtension = !result.tests.empty();
    }
    if (result.tests.empty()) {
        VFErrorClear();  // plug-ins that were asked before the right one leave their reports
        VDFileIdArrayHandle array;
        VFCheck(FINFIdentifyFile(registry.Get(), id.Get(), loadInfo ? 1 : 0, array.Out()));
        result.tests = VFTakeTests(array);
    }
    if (result.tests.empty())
        VFFail(DaxToolError::UnknownTest, "The file holds no test: " + filename, "VFIdentify");
    return result;
}

std::vector<std::string> VFGetTestFiles(VDFileId* id)
{
    int form = VTNameFormFile;
    int count = 0;
    VFCheck(FIDGetNameForm(id, &form));
    VFCheck(FIDGetNumChans(id, &count));
    std::vector<std::string> files;
    for (int index = 0; index < (form == VTNameFormFile ? 1 : count); ++index) {
        VDString filename;
        VFCheck(FIDGetChanFilename(id, index, &filename));
        files.push_back(filename.Str());
    }
    return files;
}

VDFileType VFGetFileType(const VDRegistry& registry, const VDFileIdHandle& test)
{
    int fileId = 0;
    int subId = 0;
    VFCheck(FIDGetFileId(test.Get(), &fileId, &subId));
    return registry.Describe(fileId, subId);
}

const char* VFIdentifiedBy(const VDIdentification& identification, const VDFileType& type)
{
    return identification.byExtension || type.IsConfigured() ? "extension" : "content";
}

void VDTestArguments::Register(CLI::App& command, const char* name, const char* strictHelp)
{
    command.add_option(name, file, "A file, or a test spec that means one test, such as 'road;xdat;c1-3'")
        ->required()
        ->type_name("");
    RegisterOptions(command, strictHelp);
}

void VDTestArguments::RegisterOptions(CLI::App& command, const char* strictHelp)
{
    command.add_option("--test", test, "Which test of a file that holds several, from 1 in the order of 'dax identify'")
        ->check(CLI::Range(1, std::numeric_limits<int>::max()).description(""))
        ->type_name("N");
    command.add_flag("--strict", strict, strictHelp);
}
