#include "FormatPlugin.h"

namespace {

constexpr const char* VVRoutine = "VDFileInfo::LoadPlugIns";

template <auto Member>
constexpr VDEntryPoint VFFormatEntry(const char* suffix)
{
    return VFEntryPoint<VDFormatEntryPoints, Member>(suffix);
}

constexpr VDEntryPoint VVNeeded[] = {
    VFFormatEntry<&VDFormatEntryPoints::identifyFile>("IdentifyFile"),
    VFFormatEntry<&VDFormatEntryPoints::loadFileInfo>("LoadFileInfo"),
    VFFormatEntry<&VDFormatEntryPoints::getLastError>("GetLastError"),
    VFFormatEntry<&VDFormatEntryPoints::getNextSupportedType>("GetNextSupportedType"),
    VFFormatEntry<&VDFormatEntryPoints::getNextCapability>("GetNextCapability"),
    VFFormatEntry<&VDFormatEntryPoints::getValue>("GetValue"),
};

constexpr VDEntryPoint VVOptional[] = {
    VFFormatEntry<&VDFormatEntryPoints::fileIdToTestDesc>("FileIdToTestDesc"),
    VFFormatEntry<&VDFormatEntryPoints::testDescToFileIdArray>("TestDescToFileIdArray"),
    VFFormatEntry<&VDFormatEntryPoints::getProxyAccessFileId>("GetProxyAccessFileId"),
};

constexpr VDFormatQuestion VVNameForm = {"NameForm", VTVariantLong, DaxError::NoNameForm, VVRoutine};
constexpr VDFormatQuestion VVFormatKeyword = {"FormatKeyword", VTVariantString, DaxError::NoFormatKeyword, VVRoutine};

bool VFReadCapabilities(const VDFileInfoPluginInfo& plugin, VDFileInfoFileIdInfo& type)
{
    for (int index = 0;;) {
        VDString name;
        int value = 0;
        char more = 0;
        if (!VFGuardFormatCall(plugin, "GetNextCap", VVRoutine, [&] {
                plugin.entryPoints.getNextCapability(type.fileId, type.subId, &index, &name, &value, &more);
            }))
            return false;
        if (more == 0)
            return true;
        type.capabilityNames.AppendItem(name);
        type.capabilityValues.AppendItem(value);
    }
}

bool VFReadNameFormAndKeyword(const VDFileInfoPluginInfo& plugin, VDFileInfoFileIdInfo& type)
{
    const VDVariant arguments = VFFormatArguments(type.fileId, type.subId);
    long nameForm = 0;
    if (!VFAskFormat(plugin, VVNameForm, arguments).GetLong(&nameForm))
        return false;
    type.nameForm = static_cast<int>(nameForm);
    return VFAskFormat(plugin, VVFormatKeyword, arguments).GetString(&type.keyword);
}

}  // namespace

bool VFLoadFormatPlugin(VDFileInfoPluginInfo& plugin, int pluginIndex, const VDString& library, const VDString& prefix,
                        VDFileTypeTable& fileTypes)
{
    if (!VFLoadEntryPoints(library, prefix, plugin.description, VVNeeded, VVOptional, &plugin.entryPoints, VVRoutine))
        return false;
    for (int index = 0;;) {
        VDFileInfoFileIdInfo type;
        int accessType = 0;
        char more = 0;
        if (!VFGuardFormatCall(plugin, "GetNextSuppType", VVRoutine, [&] {
                plugin.entryPoints.getNextSupportedType(&index, &type.fileId, &type.subId, &accessType, &type.accessClass,
                                                        &type.description, &more);
            }))
            return false;
        if (more == 0)
            return true;
        type.accessType = static_cast<VTFileAccessType>(accessType);
        type.pluginIndex = pluginIndex;
        if (!VFReadCapabilities(plugin, type) || !VFReadNameFormAndKeyword(plugin, type))
            return false;
        fileTypes.push_back(std::move(type));
    }
}

bool VFReportFormatException(const VDFileInfoPluginInfo& plugin, const char* function, const char* routine)
{
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::FormatPluginUnknown), function, plugin.description.c_str());
    return VFDaxReport(DaxError::FormatPluginUnknown, routine, {.text = text}) != 0;
}

bool VFReportFormatFailure(const VDFileInfoPluginInfo& plugin, const char* routine)
{
    const VDString fullRoutine = VDString("VDFileInfo::") + routine;
    VDString text;
    if (VFGuardFormatCall(plugin, "GetLastError", fullRoutine, [&] { plugin.entryPoints.getLastError(&text); }) &&
        text != "VARDO")
        VFDaxReport(DaxError::FormatPluginFailure, fullRoutine, {.text = text});
    return false;
}

VDVariant VFAskFormat(const VDFileInfoPluginInfo& plugin, const VDFormatQuestion& question, const VDVariant& arguments)
{
    VDVariant answer;
    if (!VFGuardFormatCall(plugin, "GetValue", question.routine,
                           [&] { plugin.entryPoints.getValue(question.key, &arguments, &answer); }))
        return {};
    if (answer.GetNumItems() == 1 && answer[0].GetType() == question.type)
        return answer[0];
    VFDaxReport(question.errorCode, question.routine, {.appended = plugin.description});
    return {};
}

VDVariant VFFormatArguments(int fileId, int subId)
{
    return VDVariant::FromList({VDVariant(long{fileId}), VDVariant(long{subId})});
}
