// The scan as a whole: the pieces of the pattern, the order of the tests, their channel lists, and what breaks it off.

#include "VDDirList.h"

#include "VDFormatRegistry.h"
#include "frame/VFDaxReport.h"
#include "identity/VDFileId.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFFilename.h"

#include <utility>

namespace {

constexpr const char* VVRoutine = "VDDirList::CreateList";
constexpr std::chrono::milliseconds VVCheckInterval(200);
constexpr std::size_t VVCheckCount = 20;

}  // namespace

int VDDirList::CreateList(bool withInfo)
{
    VDArray<VDErrorReport> reports;
    {
        // What single files give rise to is no business of the caller's, as long as the scan goes on.
        const VDErrorCapture capture;
        try {
            if (Create(withInfo))
                return 1;
        } catch (const VDBaseException& exception) {
            VFErrorSet(exception.GetCode(), exception.what(), VVRoutine, 0);
        }
        reports = capture.GetReports();
    }
    VFErrorClear();
    VFErrorSetAll(reports, 0);
    return VFDaxReport(DaxError::CreateFileList, VVRoutine, {.chain = 1});
}

bool VDDirList::Create(bool withInfo)
{
    if (!FIAClear(output_.Get()) || !FIAClear(loadErrors_.Get()))
        return false;
    loadErrorTexts_.Clear();
    skippedNames_.Clear();
    skippedTexts_.Clear();
    covered_.clear();
    listedTests_.clear();
    lastCheck_ = {};
    // The first question for configured types fails where there are none; that is to be no file's fault. They come behind the
    // types of the plug-ins.
    VDFormatRegistry& registry = VDFormatRegistry::Get();
    if (registry.LoadPlugIns())
        registry.LoadGeneralFiles();

    const bool isAtFile = pattern_[0] == '@';
    return (isAtFile ? ProcessAtFile() : ScanPieces()) &&
           FIASort(output_.Get(), VTFileIdArraySortTests | VTFileIdArraySortChannels) && (!withInfo || LoadAll());
}

bool VDDirList::ScanPieces()
{
    const VDString spec = pattern_;
    std::vector<std::string_view> pieces = VFSplitSpecPieces(spec.View());
    if (pieces.empty())
        pieces.emplace_back();
    for (const std::string_view piece : pieces)
        if (!ScanPiece(piece))
            return false;
    return true;
}

bool VDDirList::ScanPiece(std::string_view piece)
{
    ReadOptions(piece);
    if (!path_.IsEmpty() && !VDFileSystem::DirectoryExists(path_))
        return true;
    const VDString pattern = CompletePattern();
    visited_.clear();
    covered_.clear();
    return ScanFolders(VFBuildFilename(path_, pattern));
}

void VDDirList::ReadOptions(std::string_view piece)
{
    pattern_.Empty();
    if (piece.empty())
        return;
    options_ = {};
    const std::vector<VDString> parts = VFSplitSpecParts(piece);
    if (parts.size() > 1)
        useExtensions_ = false;
    for (std::size_t index = 0; index < parts.size(); ++index) {
        if (index == 0)
            pattern_ = parts[index];
        else
            VFReadSpecOptionInto(parts[index], options_);
    }
    for (const auto& [key, value] : options_.preferences)
        preferences_.SetString(key, value);
}

VDString VDDirList::CompletePattern()
{
    nameFilter_.Empty();
    if (pattern_.IsEmpty())
        return "*";
    VDString base;
    VDString extension;
    VFSplitFilename(pattern_, nullptr, &base, &extension);
    // A star in the name of a folder is only a sign of that name.
    if (base.Find('*') >= 0 || extension.Find('*') >= 0)
        return pattern_;
    if (!options_.extension.IsEmpty() && options_.extension != extension)
        nameFilter_ = VFBuildFilename("", base, extension);
    else if (extension.IsEmpty())
        nameFilter_ = base;
    else
        return pattern_;
    return pattern_ + "*";
}

bool VDDirList::LoadAll()
{
    for (int index = 0; index < GetOutputSize();)
        if (!LoadOne(&index) || !CheckAbortIfDue())
            return false;
    return true;
}

bool VDDirList::LoadOne(int* index)
{
    VDFileIdHandle test;
    if (!FIAGetAt(output_.Get(), *index, test.Out()))
        return false;
    VDFileId* const id = test.Get();
    VFErrorClear();
    if (!id->GetRecord().identified || id->GetRecord().fileId == 0 || FINFLoadInfo(info_.Get(), id)) {
        ++*index;
        return true;
    }
    if (IsGone(id)) {
        Skip(id->GetRecord().filename);
        return FIARemoveAt(output_.Get(), *index);
    }
    if (errorOnLoad_)
        return false;
    const VDString text = VFErrorGetBriefString(VFGetBaseLibError());
    // Channels that were listed before the load failed aren't the test's.
    if (!FIDRemoveAllChans(id) || !FIDSetFileId(id, 0, 0) || !FIDSetIdentified(id, 1) || !FIDSetInfoLoaded(id, 1))
        return false;
    if (!acceptUnknown_) {
        Skip(id->GetRecord().filename);
        return FIARemoveAt(output_.Get(), *index);
    }
    ++*index;
    if (recordDetails_)
        loadErrorTexts_.AppendItem(text);
    return !recordDetails_ || FIAAppendItem(loadErrors_.Get(), id);
}

bool VDDirList::CheckAbort()
{
    if (progress_ == nullptr)
        return true;
    lastCheck_ = std::chrono::steady_clock::now();
    return progress_(context_) != 0 || VFDaxReportError(DaxError::ScanAborted, "VDDirList::CheckAbort") != 0;
}

bool VDDirList::CheckAbortIfDue()
{
    return progress_ == nullptr || std::chrono::steady_clock::now() - lastCheck_ <= VVCheckInterval || CheckAbort();
}

bool VDDirList::CheckAbortAt(std::size_t index)
{
    return index % VVCheckCount == 0 ? CheckAbort() : CheckAbortIfDue();
}

void VDDirList::Skip(const VDString& name)
{
    if (recordDetails_) {
        skippedNames_.AppendItem(name);
        skippedTexts_.AppendItem(VFErrorGetBriefString(VFGetBaseLibError()));
    }
    VFErrorClear();
}

bool VDDirList::IsGone(VDFileId* id)
{
    VDString filename;
    const VDErrorMute mute;
    return VFErrorCheck(VDBaseError::FileOpen) && FIDGetChanFilename(id, 0, &filename) && !VDFileSystem::FindPlace(filename);
}

bool VDDirList::IsWithoutFilter() const
{
    return accessTypes_[0] == VTFileAccessAll && fileIds_[0] < 0;
}
