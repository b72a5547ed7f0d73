// Folders: what lies in them, folder tests, and sub-folders.

#include "VDDirList.h"

#include "frame/VFDaxReport.h"
#include "identity/VDFileId.h"

#include "vdbase/VFFilename.h"

#include <algorithm>
#include <memory>

namespace {

/// Where to go on; the folder to be scanned next is the last.
using VDFolderStack = std::vector<VDString>;

/// A folder's name for the system.
const char* VFFolderName(const VDString& folder)
{
    return folder.IsEmpty() ? "." : folder.c_str();
}

VDString VFExtensionOf(const VDString& name)
{
    VDString extension;
    VFSplitFilename(name, nullptr, nullptr, &extension);
    return extension;
}

bool VFIsFolderExtension(const VDFolderTestRows& rows, const VDString& extension)
{
    return !extension.IsEmpty() && std::any_of(rows.begin(), rows.end(), [&](const VDFolderTestRow& row) {
        return row.folderExtensions.FindNoCase(extension) >= 0;
    });
}

}  // namespace

bool VDDirList::ScanFolders(const VDString& patternPath)
{
    VDString start;
    VFSplitFilename(patternPath, &start, nullptr, nullptr);
    const VDString pattern = patternPath.Mid(start.GetLength());
    if (IsRecursive())
        VisitParents(start);
    // Links wait until all else was visited, so that a folder goes by its own name wherever it has one.
    VDFolderStack folders = {start};
    VDFolderStack links;
    while (!folders.empty() || !links.empty()) {
        VDFolderStack& next = folders.empty() ? links : folders;
        const VDString folder = next.back();
        next.pop_back();
        VDFolderContent content;
        if (!ScanFolder(folder, pattern, &content))
            return false;
        const auto push = [this](const VDStringArray& names, VDFolderStack& stack) {
            for (int index = names.GetSize() - 1; index >= 0; --index)
                if (!IsListedTest(names[index]))
                    stack.push_back(names[index]);
        };
        push(content.subfolders, folders);
        push(content.linkedFolders, links);
    }
    return true;
}

void VDDirList::VisitParents(const VDString& folder)
{
    VDString parent = VFBuildFilename(VFFolderName(folder), "..");
    for (auto place = VDFileSystem::FindPlace(parent); place && visited_.insert(*place).second;
         place = VDFileSystem::FindPlace(parent))
        parent = VFBuildFilename(parent, "..");
}

bool VDDirList::ScanFolder(const VDString& folder, const VDString& pattern, VDFolderContent* content)
{
    if (!CheckAbort())
        return false;
    const bool recurse = IsRecursive();
    if (recurse) {
        const std::optional<VDFilePlace> place = VDFileSystem::FindPlace(VFFolderName(folder));
        if (place && !visited_.insert(*place).second)
            return true;
    }
    VFErrorClear();
    if (!VDFileSystem::WalkFolder(VFBuildFilename(folder, pattern), recurse, content) &&
        VDFileSystem::DirectoryExists(VFFolderName(folder)))
        Skip(VFFolderName(folder));
    VDStringArray files = TakeUncovered(content->files);
    AddFolderTests(content->folders, &files);
    return files.IsEmpty() || TakeFiles(files);
}

VDStringArray VDDirList::TakeUncovered(VDStringArray& files) const
{
    if (covered_.empty())
        return std::move(files);
    VDStringArray uncovered;
    for (const VDString& file : files)
        if (!covered_.contains(file.Str()))
            uncovered.AppendItem(file);
    return uncovered;
}

void VDDirList::AddFolderTests(const VDStringArray& folders, VDStringArray* files)
{
    for (const VDString& folder : folders) {
        const VDString extension = VFExtensionOf(folder);
        if (!VFIsFolderExtension(folderTests_, extension))
            continue;
        VDFolderContent content;
        VFErrorClear();
        if (!VDFileSystem::WalkFolder(VFBuildFilename(folder, "*"), false, &content))
            Skip(folder);
        for (const VDFolderTestRow& row : folderTests_) {
            if (row.folderExtensions.FindNoCase(extension) < 0)
                continue;
            for (const VDString& fileExtension : row.fileExtensions)
                for (const VDString& file : content.files)
                    if (VFExtensionOf(file).CompareNoCase(fileExtension) == 0 && covered_.insert(file.Str()).second)
                        files->AppendItem(file);
        }
    }
}

bool VDDirList::IsListedTest(const VDString& folder) const
{
    return !listedTests_.empty() && VFIsFolderExtension(folderTests_, VFExtensionOf(folder)) &&
           listedTests_.contains(VDFileSystem::GetFullPath(folder).Str());
}

bool VDDirList::TakeFiles(const VDStringArray& names)
{
    const int start = GetOutputSize();
    Batch batch;
    if (!IdentifyList(names, &batch) || !GroupBatch(batch) || !FilterBatch(start))
        return false;
    for (int index = start; index < GetOutputSize(); ++index) {
        VDFileIdHandle test;
        if (!FIAGetAt(output_.Get(), index, test.Out()))
            return false;
        if (!options_.extraMetadataFilename.IsEmpty())
            FIDSetExtraMetadataFilename(test.Get(), options_.extraMetadataFilename);
        const VDFileIdRecord& record = test.Get()->GetRecord();
        if (record.folderTest && record.nameForm == VTNameFormTestPlusChannels)
            listedTests_.insert(VDFileSystem::GetFullPath(record.filename).Str());
    }
    return true;
}
