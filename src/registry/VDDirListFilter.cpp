// What the options of a pattern keep of the tests that a batch of files made.

#include "VDDirList.h"

#include "frame/VFDaxReport.h"
#include "identity/VDFileId.h"

#include "vdbase/VFFilename.h"
#include "vdbase/VFNumber.h"

#include <algorithm>

namespace {

constexpr int VVNoCase = 1;
constexpr int VVTrimAll = 8;

bool VFKeepsNumber(const VDNumberRanges& wanted, int number)
{
    return wanted.IsEmpty() || wanted.Contains(number);
}

}  // namespace

bool VDDirList::FilterBatch(int start)
{
    if (nameFilter_.IsEmpty() && options_.extension.IsEmpty() && options_.accessType == VTFileAccessUnknown &&
        !options_.SelectSubTests() && !options_.SelectChannels())
        return true;
    for (int index = GetOutputSize() - 1; index >= start; --index) {
        VDFileIdHandle test;
        if (!FIAGetAt(output_.Get(), index, test.Out()) || (!KeepsTest(test.Get()) && !FIARemoveAt(output_.Get(), index)) ||
            !CheckAbortIfDue())
            return false;
    }
    return true;
}

bool VDDirList::KeepsTest(VDFileId* test)
{
    if (!KeepsName(test))
        return false;
    VFErrorClear();
    int accessType = VTFileAccessUnknown;
    if (options_.accessType != VTFileAccessUnknown &&
        (!FIDGetAccessInfo(test, &accessType, nullptr, nullptr) || accessType != options_.accessType))
        return false;
    if (!options_.SelectSubTests() && !options_.SelectChannels())
        return true;
    const VDFileIdRecord& record = test->GetRecord();
    if (!record.infoLoaded && !FINFLoadInfo(info_.Get(), test)) {
        if (record.identified && record.fileId != 0)
            Skip(record.filename);
        return false;
    }
    return KeepsSubTest(test) && (!options_.SelectChannels() || KeepsChannels(test));
}

bool VDDirList::KeepsName(VDFileId* test) const
{
    const VDFileIdRecord& record = test->GetRecord();
    if (!options_.extension.IsEmpty() && !VFPatternMatch(VVNoCase, options_.extension, record.extension))
        return false;
    if (nameFilter_.IsEmpty())
        return true;
    VDString base;
    VDString extension;
    VFSplitFilename(record.filename, nullptr, &base, &extension);
    const VDString name = record.nameForm == VTNameFormFile ? base : VFBuildFilename("", base, extension);
    return VFPatternMatch(VVNoCase, nameFilter_, name);
}

bool VDDirList::KeepsSubTest(VDFileId* test) const
{
    const VDFileIdRecord& record = test->GetRecord();
    return VFKeepsNumber(options_.runs, record.run) && VFKeepsNumber(options_.bursts, record.burst) &&
           VFKeepsNumber(options_.modes, record.mode);
}

bool VDDirList::KeepsChannels(VDFileId* test) const
{
    bool removed = false;
    for (int index = test->GetRecord().channels.GetSize() - 1; index >= 0; --index) {
        VDString title;
        if (options_.channels.Contains(test->GetRecord().channels[index].number))
            continue;
        if (!FIDGetChanTitle(test, index, &title))
            return false;
        VFSqueeze(&title, VVTrimAll);
        const auto matches = [&](const VDString& wanted) { return VFPatternMatch(VVNoCase, wanted, title); };
        if (std::any_of(options_.channelTitles.begin(), options_.channelTitles.end(), matches))
            continue;
        removed = true;
        if (!FIDRemoveChan(test, index))
            return false;
    }
    return !removed || !test->GetRecord().channels.IsEmpty();
}
