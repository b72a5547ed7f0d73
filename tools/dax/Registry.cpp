#include "Registry.h"

#include "TestAccess.h"
#include "ToolError.h"

#include "daxlib/VDGeneralFiles.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFPlugIn.h"

#include <algorithm>
#include <iterator>

namespace {

/// The configured file types as the files declare them: the registry doesn't give out their extensions.
VDGeneralFiles VFReadConfiguredTypes()
{
    const std::pair<const char*, const char*> files[] = {
        {"vdsys", "GeneralFiles"}, {"vdsys", "GeneralFiles_custom"}, {"home", "GeneralFiles_custom"}};
    VDGeneralFiles configured;
    for (const auto& [folder, stem] : files)
        configured.MergeConfigurationFile(VFBuildFilename(VFTranslateName(folder), stem, "sys"));
    return configured;
}

bool VFIsTemporary(int fileId, int subId)
{
    const VDFileIdHandle id(FIDCreate());
    char temporary = 0;
    VFCheck(static_cast<bool>(id));
    VFCheck(FIDSetFileId(id.Get(), fileId, subId));
    VFCheck(FIDIsTemporary(id.Get(), &temporary));
    return temporary != 0;
}

/// Whether the library finds an access plug-in for a type, and one that writes where that is asked for. It is asked to serve
/// a test that isn't there: what it says about that test itself doesn't count.
bool VFFindsAccess(const VDFileType& type, bool writes)
{
    constexpr int disabled = -327698;
    constexpr int notSupported[] = {-328008, -327802, -328988, -331585};
    constexpr const char* nowhere = "/dev/null/test";
    const std::unique_ptr<VDTestAccess> access = VFMakeTestAccess(type.accessType);
    if (access == nullptr)
        return false;
    const VDFileIdHandle id(FIDCreate());
    int index = 0;
    VFCheck(static_cast<bool>(id));
    VFCheck(FIDSetFileId(id.Get(), type.fileId, type.subId));
    VFCheck(FIDSetFilename(id.Get(), VTNameFormFile, nowhere, ""));
    VFCheck(FIDAddChannel(id.Get(), 1, &index));
    VFCheck(FIDSetInfoLoaded(id.Get(), 1));
    VFErrorClear();
    const bool bound = access->SetId(id.Get(), writes) != 0;
    const int code = VFErrorGetCode(VFGetBaseLibError());
    if (bound && writes)
        return access->IsWritable();
    return bound || (code != disabled && std::find(std::begin(notSupported), std::end(notSupported), code) ==
                                             std::end(notSupported));
}

/// Whether something is there that opens tests of the type's kind.
bool VFIsServed(const VDFileType& type, bool writes)
{
    bool served = false;
    try {
        served = VFFindsAccess(type, writes);
    } catch (const VDFailure&) {  // it doesn't even say what it can do
    }
    VFErrorClear();
    return served;
}

}  // namespace

VDRegistry::VDRegistry()
{
    VFErrorClear();
    info_.Reset(FINFCreate());
    VFCheck(static_cast<bool>(info_));
    // The first question loads the plug-ins. What the configuration has to be without doesn't make it fail.
    int index = 0;
    int fileId = 0;
    int subId = 0;
    char more = 0;
    VFCheck(FINFGetNextFileType(info_.Get(), &index, &fileId, &subId, &more));
    for (const VDErrorReport& warning : VFGetConfigurationWarnings())
        loadProblems_.push_back(warning);
    // The first load of the configured types fails where there are none, and whoever causes it fails without a report.
    VDArray<VTFileAccessType> accessTypes;
    FINFGetValidAccessTypes(&accessTypes);
    VFErrorClear();
}

std::vector<VDFileType> VDRegistry::GetFileTypes() const
{
    std::vector<VDFileType> types;
    int index = 0;
    int fileId = 0;
    int subId = 0;
    char more = 0;
    for (VFCheck(FINFGetNextFileType(Get(), &index, &fileId, &subId, &more)); more != 0;
         VFCheck(FINFGetNextFileType(Get(), &index, &fileId, &subId, &more)))
        types.push_back(Describe(fileId, subId));
    // A type's own word is what its format allows; what is so today takes an access plug-in as well.
    for (VDFileType& type : types) {
        type.readable = HasCapability(type.fileId, type.subId, "Readable") && VFIsServed(type, false);
        type.writable = HasCapability(type.fileId, type.subId, "Writable") && VFIsServed(type, true);
    }
    return types;
}

const VDFileType& VDRegistry::Describe(int fileId, int subId) const
{
    const auto known = described_.find({fileId, subId});
    if (known != described_.end())
        return known->second;
    return described_.try_emplace({fileId, subId}, MakeDescription(fileId, subId)).first->second;
}

VDFileType VDRegistry::MakeDescription(int fileId, int subId) const
{
    VDFileType type;
    type.fileId = fileId;
    type.subId = subId;
    VDString text;
    VFCheck(FINFGetFileFormatKeyword(Get(), nullptr, fileId, subId, &text));
    type.keyword = text.Str();
    VFCheck(FINFGetFileDescription(Get(), nullptr, fileId, subId, &text));
    type.description = text.Str();
    VFCheck(FINFGetAccessClass(Get(), nullptr, fileId, subId, &type.accessType, &text));
    FINFGetAccessDescription(Get(), type.accessType, &text);  // an unknown type has a text too
    type.accessName = text.Str();
    type.temporary = VFIsTemporary(fileId, subId);
    type.extensions = GetExtensions(type);
    return type;
}

bool VDRegistry::HasCapability(int fileId, int subId, const char* name) const
{
    int value = 0;
    char found = 0;
    return FINFGetCapability(Get(), nullptr, fileId, subId, name, &value, &found) != 0 && found != 0 && value != 0;
}

std::vector<std::string> VDRegistry::GetExtensions(const VDFileType& type) const
{
    std::vector<std::string> extensions;
    if (type.IsConfigured()) {
        static VDGeneralFiles configured = VFReadConfiguredTypes();
        if (VDGeneralFileType* entry = configured.GetFileTypeFromFileId(type.fileId))
            for (int index = 0; index < entry->GetNumExtensions(); ++index)
                extensions.push_back(entry->GetExtension(index).Str());
        return extensions;
    }
    const VDErrorMute mute;  // a plug-in may have none
    VDString extension;
    if (FINFGetDefaultExtension(Get(), nullptr, type.fileId, type.subId, nullptr, &extension) != 0 && !extension.IsEmpty())
        extensions.push_back(extension.Str());
    return extensions;
}
