#include "VDDirList.h"

#include "frame/VFDaxReport.h"
#include "identity/VFGive.h"

#include "vdbase/VFFilename.h"

#include <initializer_list>

namespace {

constexpr int VVNoFileId = -1;

template <class Value>
VDArray<Value> VFSingle(Value value)
{
    VDArray<Value> list;
    list.AppendItem(value);
    return list;
}

/// Gives out an array of the object with a reference for the caller.
int VFGiveArray(VDFileIdArray** out, VDFileIdArray* array)
{
    return out != nullptr && FIAAddRef(array) != 0 ? VFGive(out, array) : 0;
}

}  // namespace

VDDirList::VDDirList() : VDCompBase(HandleId), accessTypes_(VFSingle(VTFileAccessAll)), fileIds_(VFSingle(VVNoFileId))
{
    if (!info_ || !output_ || !loadErrors_ || !asking_ || !found_)
        VFDaxReportError(DaxError::CreateObject, "VDDirList::VDDirList");
}

VDDirList::~VDDirList()
{
    // The ids of temporary tests may go with the arrays, and their files with them.
    bool released = info_ && FINFRelease(info_.Detach()) != 0 && asking_ && FIDRelease(asking_.Detach()) != 0;
    for (VDFileIdArrayHandle* array : {&output_, &loadErrors_, &found_})
        released = *array && FIARelease(array->Detach()) != 0 && released;
    if (!released)
        VFDaxReport(DaxError::CleanUpObject, "VDDirList::~VDDirList", {.chain = 1});
}

int VDDirList::SetPath(const VDString& path)
{
    path_ = path;
    return 1;
}

int VDDirList::SetFilesMatching(const VDString& text)
{
    pattern_ = text;
    VDString extension;
    VFSplitFilename(text, nullptr, nullptr, &extension);
    if (extension.CompareNoCase("tmp") == 0 || text[0] == '@')
        useExtensions_ = false;
    return 1;
}

int VDDirList::SetRecurseSubDirs(char recurse)
{
    recurse_ = recurse != 0;
    return 1;
}

int VDDirList::SetFilterByAccessType(VTFileAccessType type)
{
    accessTypes_ = VFSingle(type);
    fileIds_ = VFSingle(VVNoFileId);
    subIds_.Clear();
    if (type != VTFileAccessAll && type != VTFileAccessUnknown)
        acceptUnknown_ = false;
    return 1;
}

int VDDirList::SetFilterByAccessTypes(const VDArray<VTFileAccessType>& types)
{
    if (types.IsEmpty())
        return VFDaxReportError(DaxError::AccessTypeFilter, "VDDirList::SetFilterByAccessTypes");
    accessTypes_ = types;
    fileIds_ = VFSingle(VVNoFileId);
    subIds_.Clear();
    acceptUnknown_ = false;
    return 1;
}

int VDDirList::SetFilterByFileId(int fileId, int subId)
{
    return SetFilterByFileIds(VFSingle(fileId), VFSingle(subId));
}

int VDDirList::SetFilterByFileIds(const VDArray<int>& fileIds, const VDArray<int>& subIds)
{
    if (fileIds.IsEmpty() || fileIds.GetSize() != subIds.GetSize())
        return VFDaxReportError(DaxError::FileIdFilter, "VDDirList::SetFilterByFileIds");
    fileIds_ = fileIds;
    subIds_ = subIds;
    accessTypes_ = VFSingle(VTFileAccessAll);
    acceptUnknown_ = false;
    return 1;
}

int VDDirList::ClearFilter()
{
    accessTypes_ = VFSingle(VTFileAccessAll);
    fileIds_ = VFSingle(VVNoFileId);
    subIds_.Clear();
    options_.accessType = VTFileAccessUnknown;
    preferences_.Clear();
    acceptUnknown_ = true;
    return 1;
}

int VDDirList::GetFileIdArray(VDFileIdArray** tests) const
{
    return VFGiveArray(tests, output_.Get());
}

int VDDirList::SetProgressCallback(VDDirListProgress* progress, void* context)
{
    progress_ = progress;
    context_ = context;
    return 1;
}

int VDDirList::SetChanSep(const VDChanSep* chanSep)
{
    if (chanSep == nullptr)
        return 0;
    chanSep_ = *chanSep;
    return 1;
}

int VDDirList::SetErrorOnLoadDetails(char errorOnLoad, char recordDetails)
{
    errorOnLoad_ = errorOnLoad != 0;
    recordDetails_ = recordDetails != 0;
    return 1;
}

int VDDirList::GetLoadErrorDetails(VDFileIdArray** tests, VDStringArray* texts) const
{
    return VFGive(texts, loadErrorTexts_) != 0 ? VFGiveArray(tests, loadErrors_.Get()) : 0;
}

int VDDirList::GetSkipped(VDStringArray* names, VDStringArray* texts) const
{
    return names != nullptr && texts != nullptr ? VFGiveTwo(names, skippedNames_, texts, skippedTexts_) : 0;
}

int VDDirList::GetOutputSize() const
{
    int size = 0;
    FIAGetSize(output_.Get(), &size);
    return size;
}
