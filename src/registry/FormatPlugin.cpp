#include "FormatPlugin.h"

#include "frame/VDValueGuard.h"

#include "vdbase/VFPlugIn.h"

#include <iterator>

namespace {

constexpr const char* VVRoutine = "VDFileInfo::LoadPlugIns";
constexpr int VVMaxListLength = 10000;

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

/// Walks a list that a plug-in gives out one by one. A list whose index stands still, or that is longer than any list could
/// be, has no end: what was told until then counts.
/// @param ask   takes the index, gives out whether there is an item; false, recorded, on failure
/// @param take  takes the item; false on failure
template <class Ask, class Take>
bool VFWalkList(const VDFileInfoPluginInfo& plugin, const char* function, Ask&& ask, Take&& take)
{
    for (int index = 0, before = -1, count = 0;; ++count) {
        before = index;
        char more = 0;
        if (!ask(&index, &more))
            return false;
        if (more == 0)
            return true;
        if (!take())
            return false;
        if (index <= before || count == VVMaxListLength) {
            VDString text;
            text.Format("The list that %s gives has no end\nPlugin Description : %s", function, plugin.description.c_str());
            VFAddConfigurationWarning({DaxError::FormatPluginUnknown, text, VVRoutine});
            return true;
        }
    }
}

bool VFReadCapabilities(const VDFileInfoPluginInfo& plugin, VDFileInfoFileIdInfo& type)
{
    VDString name;
    int value = 0;
    const auto ask = [&](int* index, char* more) {
        return VFGuardFormatCall(plugin, "GetNextCap", VVRoutine, [&] {
            plugin.entryPoints.getNextCapability(type.fileId, type.subId, index, &name, &value, more);
        });
    };
    return VFWalkList(plugin, "GetNextCapability", ask, [&] {
        type.capabilityNames.AppendItem(name);
        type.capabilityValues.AppendItem(value);
        return true;
    });
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

/// The plug-in that serves a type already; null if there is none.
const VDFileInfoPluginInfo* VFFindOther(const VDPluginTable<VDFileInfoPluginInfo>& plugins, int pluginIndex,
                                        const VDFileTypeTable& fileTypes, const VDFileInfoFileIdInfo& type)
{
    for (const VDFileInfoFileIdInfo& other : fileTypes)
        if (other.fileId == type.fileId && other.subId == type.subId && other.pluginIndex >= 0 &&
            other.pluginIndex != pluginIndex && plugins[static_cast<std::size_t>(other.pluginIndex)]->loaded)
            return plugins[static_cast<std::size_t>(other.pluginIndex)].get();
    return nullptr;
}

bool VFReportConflict(const VDFileInfoPluginInfo& plugin, const VDFileInfoPluginInfo& other, const VDFileInfoFileIdInfo& type)
{
    VDString text;
    text.Format("%s\nPlug-in \"%s\" declares the type with file ID %d and sub ID %d, which plug-in \"%s\" (%s) serves",
                plugin.description.c_str(), plugin.name.c_str(), type.fileId, type.subId, other.name.c_str(),
                other.description.c_str());
    return VFDaxReport(DaxError::FormatPluginNotLoaded, VVRoutine, {.appended = text}) != 0;
}

/// Asks a plug-in for its file types.
/// @param fileTypes  those of the plug-ins before
/// @param own        gets the types
bool VFReadTypes(const VDPluginTable<VDFileInfoPluginInfo>& plugins, int pluginIndex, const VDFileTypeTable& fileTypes,
                 VDFileTypeTable& own)
{
    const VDFileInfoPluginInfo& plugin = *plugins[static_cast<std::size_t>(pluginIndex)];
    VDFileInfoFileIdInfo type;
    const auto ask = [&](int* index, char* more) {
        type = {};
        int accessType = 0;
        const bool asked = VFGuardFormatCall(plugin, "GetNextSuppType", VVRoutine, [&] {
            plugin.entryPoints.getNextSupportedType(index, &type.fileId, &type.subId, &accessType, &type.accessClass,
                                                    &type.description, more);
        });
        type.accessType = static_cast<VTFileAccessType>(accessType);
        type.pluginIndex = pluginIndex;
        return asked;
    };
    return VFWalkList(plugin, "GetNextSupportedType", ask, [&] {
        if (const VDFileInfoPluginInfo* other = VFFindOther(plugins, pluginIndex, fileTypes, type))
            return VFReportConflict(plugin, *other, type);
        if (!VFReadCapabilities(plugin, type) || !VFReadNameFormAndKeyword(plugin, type))
            return false;
        own.push_back(std::move(type));
        return true;
    });
}

}  // namespace

bool VFLoadFormatPlugin(const VDPluginTable<VDFileInfoPluginInfo>& plugins, int pluginIndex, const VDString& library,
                        const VDString& prefix, VDFileTypeTable& fileTypes)
{
    VDFileInfoPluginInfo& plugin = *plugins[static_cast<std::size_t>(pluginIndex)];
    if (!VFLoadEntryPoints(library, prefix, plugin.description, VVNeeded, VVOptional, &plugin.entryPoints, VVRoutine))
        return false;
    VDFileTypeTable own;
    bool read = false;
    try {
        const VDValueGuard passOn(plugin.passesOutOfMemory, true);
        read = VFReadTypes(plugins, pluginIndex, fileTypes, own);
    } catch (const std::bad_alloc&) {
        // Memory may be there again. A plug-in that never has enough is at fault itself and must not stop the others.
        own.clear();
        read = VFReadTypes(plugins, pluginIndex, fileTypes, own);
    }
    // Rows of an earlier attempt that was broken off behind this plug-in.
    std::erase_if(fileTypes, [pluginIndex](const VDFileInfoFileIdInfo& type) { return type.pluginIndex == pluginIndex; });
    fileTypes.insert(fileTypes.end(), std::make_move_iterator(own.begin()), std::make_move_iterator(own.end()));
    return read;
}

bool VFReportFormatException(const VDFileInfoPluginInfo& plugin, const char* function, const char* routine)
{
    VDString text;
    text.FormatRuntime(VFDaxText(DaxError::FormatPluginUnknown), function, plugin.description.c_str());
    return VFDaxReport(DaxError::FormatPluginUnknown, routine, {.text = text}) != 0;
}

bool VFReportFormatFailure(const VDFileInfoPluginInfo& plugin, const char* function)
{
    const VDString routine = VDString("VDFileInfo::") + function;
    VDString text;
    if (!VFGuardFormatCall(plugin, "GetLastError", routine, [&] { plugin.entryPoints.getLastError(&text); }))
        return false;
    if (text != "VARDO")
        return VFDaxReport(DaxError::FormatPluginFailure, routine, {.text = text}) != 0;
    // The plug-in says that it told, and has not.
    return VFErrorGetCode(VFGetBaseLibError()) == 0 && VFReportFormatException(plugin, function, routine);
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
