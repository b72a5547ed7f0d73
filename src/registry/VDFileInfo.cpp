#include "VDFileInfo.h"

#include "FileTypeQuery.h"
#include "FolderTests.h"
#include "FormatPlugin.h"

namespace {

bool VFIsOfAccessType(const VDFileInfoFileIdInfo& type, int accessType)
{
    return accessType == VTFileAccessAll || type.accessType == accessType;
}

}  // namespace

bool VDFileInfo::GetNextFileType(int* index, int* fileId, int* subId, char* more)
{
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        const VDFileTypeTable& types = registry.GetFileTypes();
        *more = 0;
        for (int next = *index; next >= 0 && next < static_cast<int>(types.size()); ++next) {
            const VDFileInfoFileIdInfo& type = types[static_cast<std::size_t>(next)];
            if (!type.enabled)
                continue;
            *fileId = type.fileId;
            *subId = type.subId;
            *index = next + 1;
            *more = 1;
            break;
        }
        return true;
    });
}

bool VDFileInfo::GetAccessClass(VDFileId* id, int fileId, int subId, int* accessType, VDString* accessClass)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        *accessType = type.accessType;
        *accessClass = type.accessClass;
        return true;
    });
}

bool VDFileInfo::GetFileDescription(VDFileId* id, int fileId, int subId, VDString* description)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        *description = type.description;
        return true;
    });
}

bool VDFileInfo::GetNextCapability(VDFileId* id, int fileId, int subId, int* index, VDString* name, int* value, char* more)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        *more = type.capabilityNames.IsIndex(*index);
        if (*more != 0) {
            *name = type.capabilityNames[*index];
            *value = static_cast<int>(type.capabilityValues[*index]);
            ++*index;
        }
        return true;
    });
}

bool VDFileInfo::GetCapability(VDFileId* id, int fileId, int subId, const char* name, int* value, char* found)
{
    *value = 0;
    *found = 0;
    if (!VDFormatRegistry::Get().LoadPlugIns() || (id != nullptr && !FIDGetFileId(id, &fileId, &subId)))
        return false;
    // A type that nobody knows has no capabilities: no failure, though the report about it stays.
    VFAskFileType(fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        const int index = type.capabilityNames.Find(name, 1);
        *found = index >= 0;
        if (*found != 0)
            *value = static_cast<int>(type.capabilityValues[index]);
        return true;
    });
    return true;
}

bool VDFileInfo::GetFileFormatKeyword(VDFileId* id, int fileId, int subId, VDString* keyword)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        *keyword = type.keyword;
        return true;
    });
}

bool VDFileInfo::GetDefaultExtension(VDFileId* id, int fileId, int subId, const char* hint, VDString* extension)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry& registry, const VDFileInfoFileIdInfo& type) {
        const VDFileInfoPluginInfo* plugin = registry.GetLoadedPlugin(type);
        if (plugin == nullptr)
            return false;
        constexpr VDFormatQuestion question = {"DefaultExtension", VTVariantString, DaxError::NoDefaultExtension,
                                               "VDFileInfo::GetDefaultExtension"};
        VDString upperHint = hint;
        upperHint.MakeUpper();
        VDVariant arguments = VFFormatArguments(type.fileId, type.subId);
        arguments.AppendItem(VDVariant(upperHint));
        return VFAskFormat(*plugin, question, arguments).GetString(extension);
    });
}

bool VDFileInfo::GetNameForm(VDFileId* id, int fileId, int subId, int* nameForm)
{
    return VFAskFileType(id, fileId, subId, [&](VDFormatRegistry&, const VDFileInfoFileIdInfo& type) {
        *nameForm = type.nameForm;
        return true;
    });
}

bool VDFileInfo::GetFileFormatKeywords(int accessType, VDStringArray* keywords)
{
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        keywords->Clear();
        for (const VDFileInfoFileIdInfo& type : registry.GetFileTypes())
            if (type.enabled && VFIsOfAccessType(type, accessType))
                keywords->AppendItem(type.keyword);
        return true;
    });
}

bool VDFileInfo::GetFileIdFromKeyword(const char* keyword, int accessType, int* fileId, int* subId)
{
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        for (const VDFileInfoFileIdInfo& type : registry.GetFileTypes())
            if (VFIsOfAccessType(type, accessType) && type.keyword.CompareNoCase(keyword) == 0) {
                *fileId = type.fileId;
                *subId = type.subId;
                return true;
            }
        return VFDaxReport(DaxError::InvalidKeyword, "VDFileInfo::GetFileIdFromKeyword", {.appended = keyword}) != 0;
    });
}

bool VDFileInfo::GetAccessDescription(int accessType, VDString* description)
{
    return VFAskRegistry([&](VDFormatRegistry& registry) {
        const VDFileInfoAccessInfo* info = registry.GetAccessInfo(static_cast<VTFileAccessType>(accessType));
        *description = info != nullptr ? info->name : VFUnknownAccessTypeName(accessType);
        return info != nullptr;
    });
}

bool VDFileInfo::GetIdentifyByExtension()
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    return VDFormatRegistry::Get().GetPreferences().GetIdentifyByExtension();
}

bool VDFileInfo::GetValidAccessTypes(VDArray<VTFileAccessType>* types)
{
    types->Clear();
    for (const VTFileAccessType type : {VTFileAccessTimeSeries, VTFileAccessHistogram, VTFileAccessMultiColumn,
                                        VTFileAccessMetaData, VTFileAccessComplexFrequency, VTFileAccessFEModels})
        types->AppendItem(type);
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    VDFormatRegistry& registry = VDFormatRegistry::Get();
    if (!registry.LoadGeneralFiles())
        return false;
    const VDGeneralFiles& files = registry.GetGeneralFiles();
    for (int index = 0; index < files.GetAccessTypes(); ++index)
        if (files.GetAccessType(index)->GetEnabled())
            types->AppendItem(static_cast<VTFileAccessType>(files.GetAccessType(index)->GetId()));
    return true;
}

bool VDFileInfo::GetFolderTestExtensions(VDArray<VDStringArray>* folderExtensions, VDArray<VDStringArray>* fileExtensions)
{
    if (folderExtensions == nullptr || fileExtensions == nullptr)
        return false;
    folderExtensions->Clear();
    fileExtensions->Clear();
    for (const VDFolderTestRow& row : VFGetFolderTestRows()) {
        folderExtensions->AppendItem(row.folderExtensions);
        fileExtensions->AppendItem(row.fileExtensions);
    }
    return true;
}
