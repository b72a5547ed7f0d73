// What a file is, and whether it is wanted.

#include "VDDirList.h"

#include "frame/VFDaxReport.h"
#include "identity/VDFileId.h"

#include "vdbase/VDBaseErrorCodes.h"

#include <algorithm>
#include <array>

namespace {

/// Whether a file drops out because of this failure without a word.
bool VFIsUnreadable()
{
    constexpr std::array codes = {VDBaseError::FileOpen, VDBaseError::FileRead, DaxError::IdentRead, DaxError::IdentBlank};
    return std::any_of(codes.begin(), codes.end(), [](int code) { return VFErrorCheck(code); });
}

/// Whether the next file is going to fail in the same way.
bool VFConcernsAllFiles()
{
    return VFErrorCheck(DaxError::OutOfMemory) || VFErrorCheck(DaxError::PluginList);
}

}  // namespace

bool VDDirList::IdentifyList(const VDStringArray& names, Batch* batch)
{
    batch->reserve(static_cast<std::size_t>(names.GetSize()));
    for (int index = 0; index < names.GetSize(); ++index)
        if (!names[index].IsEmpty() &&
            (!IdentifyFile(names[index], batch) || !CheckAbortAt(static_cast<std::size_t>(index))))
            return false;
    return true;
}

VDFileIdHandle VDDirList::NewFile(const VDString& name) const
{
    VDFileIdHandle id(FIDCreate());
    if (!id || !FIDSetFilename(id.Get(), VTNameFormFile, name, "") ||
        !FIDSetTestTitle(id.Get(), VDFileSystem::GetBaseFileName(name)))
        return {};
    SetFileOptions(id.Get());
    return id;
}

void VDDirList::SetFileOptions(VDFileId* id) const
{
    VDFileIdPreferences* preferences = nullptr;
    if (preferences_.GetCount() > 0 && !id->GetRecord().preferences && FIDGetPreferences(id, 1, &preferences))
        *preferences = preferences_;
    if (!options_.associatedFilename.IsEmpty() && id->GetRecord().associatedFilename.IsEmpty())
        FIDSetAssociatedFilename(id, options_.associatedFilename);
}

bool VDDirList::IdentifyFile(const VDString& name, Batch* batch)
{
    VFErrorClear();
    if (!FIAClear(found_.Get()))
        return false;
    Verdict verdict = Verdict::AskContent;
    if (useExtensions_)
        verdict = IdentifyByExtension(name);
    if (verdict == Verdict::AskContent) {
        const VDFileIdHandle id = NewFile(name);
        verdict = id && IdentifyByContent(id.Get()) ? Verdict::Known : Verdict::Fails;
    }
    return verdict == Verdict::PassOver || (verdict == Verdict::Known && TakeFound(batch));
}

VDDirList::Verdict VDDirList::IdentifyByExtension(const VDString& name)
{
    // One id asks for all names. Only a file of a folder test may have to be looked into for the answer.
    VDFileIdHandle own;
    VDFileId* id = asking_.Get();
    if (!FIDSetFilename(id, VTNameFormFile, name, ""))
        return Verdict::Fails;
    if (id->GetRecord().folderTest) {
        own = NewFile(name);
        id = own.Get();
    }
    VDFileIdArray* tests = found_.Get();
    char isFound = 0;
    char isIgnored = 0;
    char asStandard = 0;
    if (!FINFIdentifyFileByExtension(info_.Get(), id, &tests, &isFound, &isIgnored, &asStandard))
        return TakeFailure(id) ? Verdict::Known : Verdict::Fails;
    if (isIgnored)
        return Verdict::PassOver;
    return isFound && !asStandard ? Verdict::Known : Verdict::AskContent;
}

bool VDDirList::TakeFound(Batch* batch)
{
    int count = 0;
    FIAGetSize(found_.Get(), &count);
    for (int index = 0; index < count; ++index) {
        VDFileIdHandle test;
        bool passes = false;
        if (!FIAGetAt(found_.Get(), index, test.Out()) || !PassesFilter(test.Get(), &passes))
            return false;
        if (!passes)
            continue;
        // Where a file holds several tests, their ids are the plug-in's.
        SetFileOptions(test.Get());
        batch->push_back(std::move(test));
    }
    return true;
}

bool VDDirList::IdentifyByContent(VDFileId* id)
{
    VDFileIdArray* tests = found_.Get();
    return FINFIdentifyFile(info_.Get(), id, 0, &tests) || TakeFailure(id);
}

bool VDDirList::TakeFailure(VDFileId* id)
{
    if (VFErrorCheck(DaxError::NotRecognised) && !VFIsUnreadable())
        return !acceptUnknown_ || FIAAppendItem(found_.Get(), id);
    if (!VFIsUnreadable() && (errorOnLoad_ || VFConcernsAllFiles()))
        return false;
    Skip(id->GetRecord().filename);
    return true;
}

bool VDDirList::PassesFilter(VDFileId* test, bool* passes) const
{
    *passes = IsWithoutFilter();
    if (*passes)
        return true;
    const VDFileIdRecord& record = test->GetRecord();
    if (fileIds_[0] >= 0) {
        for (int index = 0; index < fileIds_.GetSize(); ++index)
            *passes = *passes || (fileIds_[index] == record.fileId && subIds_[index] == record.subId);
        return true;
    }
    int accessType = VTFileAccessUnknown;
    VDString accessClass;
    if (!FINFGetAccessClass(info_.Get(), nullptr, record.fileId, record.subId, &accessType, &accessClass))
        return VFErrorCheck(DaxError::UnknownFileId);
    *passes = std::any_of(accessTypes_.begin(), accessTypes_.end(),
                          [accessType](VTFileAccessType type) { return type == accessType || type == VTFileAccessAll; });
    return true;
}
