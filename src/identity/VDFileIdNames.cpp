#include "SpecialFormats.h"
#include "VDFileId.h"
#include "VDFileIdNameWatch.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"
#include "registry/FolderTests.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

#include <string_view>

namespace {

/// The extension to add to a name that is to end in it; empty if it does so already.
const char* MissingExtension(std::string_view name, const VDString& extension)
{
    const VDString suffix = extension[0] == '.' ? extension : "." + extension;
    const std::string_view element = name.substr(name.rfind('/') + 1);
    const bool isThere = element.size() > suffix.View().size() && element.ends_with(suffix.View());
    return isThere ? "" : extension.c_str();
}

/// A folder's name as that of an entry, without a separator at its end.
std::string_view WithoutSeparator(std::string_view folder)
{
    while (folder.ends_with('/'))
        folder.remove_suffix(1);
    return folder;
}

/// Whether this is the name of a file in a folder test, or of the folder itself.
bool IsFolderTestPath(const VDString& path)
{
    VDString folder;
    VDString extension;
    VFSplitFilename(path, &folder, nullptr, &extension);
    if (extension.IsEmpty())
        return false;
    VDString folderExtension;
    VFSplitFilename(VDString(WithoutSeparator(folder.View())), nullptr, nullptr, &folderExtension);
    extension.MakeLower();
    folderExtension.MakeLower();
    const bool folderHasExtension = !folderExtension.IsEmpty();
    return VFIsFolderTestName(folderHasExtension ? folderExtension : extension, extension, folderHasExtension);
}

}  // namespace

int VDFileId::SetFilename(int nameForm, const char* filename, const char* extension)
{
    const NameWatch watch(*this);
    record_.filename.Empty();
    record_.extension.Empty();
    record_.originalExtension.Empty();
    record_.fullPathName.Empty();
    if (nameForm != VTNameFormFile && nameForm != VTNameFormTestPlusChannels)
        return ReportWithStem(DaxError::InvalidNameForm, __func__);
    VDString name = filename;
    if (name.IsEmpty())
        return ReportWithStem(DaxError::BlankFilename, __func__);

    record_.nameForm = static_cast<VTNameForm>(nameForm);
    record_.extension = extension;
    if (record_.dataSource == VTDataSourceDisk) {
        const bool isFile = nameForm == VTNameFormFile;
        if (isFile && record_.extension.IsEmpty())
            VFSplitFilename(name, nullptr, nullptr, &record_.extension);
        // An absolute name makes nothing of the current folder, which costs a system call.
        const VDString folder = name[0] == '/' ? VDString() : VDFileSystem::GetCurDirectory();
        name = VFBuildFilename(folder, name, isFile ? MissingExtension(name.View(), record_.extension) : "");
    }
    record_.filename = std::move(name);
    if (record_.dataSource == VTDataSourceDisk)
        SetFolderTest();
    UpdateFullPathName();
    return 1;
}

int VDFileId::GetFilename(VDString* filename, VDString* extension) const
{
    return VFGiveTwo(filename, record_.filename, extension, record_.extension);
}

int VDFileId::SetTestname(const char* name, const char* keyword, const char* extension)
{
    if (record_.fileId == 0)
        return VFDaxReportError(DaxError::SetFileIdFirst, "VDFileId::SetTestname");
    VDString chosen;
    VFSplitFilename(name, nullptr, nullptr, &chosen);
    const bool hasExtension = !chosen.IsEmpty();
    const VDFileInfoHandle info(FINFCreate());
    if (!info)
        return 0;
    if (!hasExtension) {
        chosen = extension;
        if (chosen.IsEmpty() &&
            FINFGetDefaultExtension(info.Get(), nullptr, record_.fileId, record_.subId, keyword, &chosen) == 0)
            return 0;
    }
    int nameForm = VTNameFormFile;
    if ((record_.fileId == SpecialFormat::SigChannels || !hasExtension) &&
        FINFGetNameForm(info.Get(), nullptr, record_.fileId, record_.subId, &nameForm) == 0)
        return 0;
    return SetFilename(nameForm, name, chosen);
}

int VDFileId::SetTestTitle(const char* title)
{
    record_.title = title;
    return 1;
}

int VDFileId::SetRunNumber(int run)
{
    record_.run = run;
    return 1;
}

int VDFileId::SetBurstNumber(int burst)
{
    record_.burst = burst;
    return 1;
}

int VDFileId::SetModeNumber(int mode, const char* title)
{
    record_.mode = mode;
    if (title != nullptr)
        record_.modeTitle = title;
    return 1;
}

int VDFileId::SetExtraMetadataFilename(const char* filename)
{
    record_.extraMetadataFilename = filename;
    return 1;
}

int VDFileId::SetAssociatedFilename(const char* filename)
{
    record_.associatedFilename = filename;
    return 1;
}

int VDFileId::SetOriginalExtension(const char* extension)
{
    record_.originalExtension = extension;
    return 1;
}

int VDFileId::SetNumChanDigits(int digits)
{
    if (digits < 1 || digits > 10)
        return VFDaxReportError(DaxError::InvalidNumChanDigits, "VDFileId::SetNumChanDigits");
    record_.chanDigits = digits;
    return 1;
}

int VDFileId::SetDataSource(int source)
{
    if (source < VTDataSourceDisk || source > VTDataSourceStore3)
        return VFDaxReportError(DaxError::InvalidDataSource, "VDFileId::SetDataSource");
    record_.dataSource = static_cast<VTDataSource>(source);
    return 1;
}

int VDFileId::SetDataPath(const char* path)
{
    record_.dataPath = path;
    return 1;
}

int VDFileId::SetObjectReference(const char* reference)
{
    record_.objectReference = reference;
    return 1;
}

int VDFileId::SetChanSep(const VDChanSep* chanSep)
{
    if (chanSep != nullptr)
        record_.chanSep = *chanSep;
    else
        record_.chanSep.reset();
    return 1;
}

int VDFileId::SetFolderTest()
{
    if (record_.nameForm == VTNameFormFile)
        record_.folderTest = IsFolderTestPath(record_.filename);
    return 1;
}

int VDFileId::SetFolderTestManual(char folderTest)
{
    record_.folderTest = folderTest != 0;
    if (record_.folderTest)
        record_.nameForm = VTNameFormTestPlusChannels;
    return 1;
}

void VDFileId::UpdateFullPathName()
{
    VDString name = record_.filename;
    if (record_.nameForm != VTNameFormFile)
        name += record_.extension;
    record_.fullPathName = record_.dataSource == VTDataSourceDisk ? VDFileSystem::GetFullPath(name) : std::move(name);
}
