#include "VDFileId.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"

#include <utility>

int VDFileId::CheckIdentLoad(bool loadInfo)
{
    if (checkRunning_)
        return 1;
    const VDValueGuard running(checkRunning_, true);

    if (record_.identByExtension && !record_.identified && !Identify(loadInfo))
        return 0;
    if (loadInfo && record_.identified && !record_.infoLoaded && record_.loadInfoWhenNeeded && !LoadInfo())
        return 0;

    // What was put off waits on while the list does: a question for the version alone must not use it up.
    if (record_.identified && !record_.infoLoaded && record_.channels.IsEmpty())
        return 1;
    DoPending();
    return 1;
}

void VDFileId::DoPending()
{
    const VDPendingRequests due = std::exchange(record_.pending, {});
    if (due.sort) {
        DropMetadataValues();
        record_.channels.Sort(due.sortAscending);
    }
    if (due.select)
        record_.channels.SelectAll(due.selectValue);
}

void VDFileId::SettlePending()
{
    const bool isBeingFilled = inIdent_ || checkRunning_ || loading_;
    const bool isLoadToCome = record_.loadInfoWhenNeeded && !record_.infoLoaded;
    if (!isBeingFilled && !isLoadToCome)
        DoPending();
}

bool VDFileId::Identify(bool loadInfo)
{
    // Plug-ins write to this id while they try.
    const VDSnapshot before = Save();
    const auto fail = [&] {
        Restore(before);
        return false;
    };
    const VDFileInfoHandle info(FINFCreate());
    VDFileIdArrayHandle tests;
    VDFileId* const self = this;
    if (!info || FINFIdentifyFile(info.Get(), self, loadInfo, tests.Out()) == 0)
        return fail();
    int count = 0;
    if (FIAGetSize(tests.Get(), &count) == 0)
        return fail();
    if (count != 1) {
        Restore(before);
        const VDString name = record_.filename + " (" + record_.extension + ")";
        return VFDaxReport(DaxError::IdentByExtension, "VDFileId::CheckIdentLoad", {.appended = name}) != 0;
    }
    VDFileIdHandle test;
    if (FIAGetAt(tests.Get(), 0, test.Out()) == 0)
        return fail();
    Assign(*test.Get());
    // What the host hung on the id in the meantime is the host's.
    record_.pending = before.record_.pending;
    if (!record_.metadata)
        record_.metadata = before.record_.metadata;
    DropMetadataValues();
    if (!record_.preferences)
        record_.preferences = before.record_.preferences;
    return true;
}

bool VDFileId::LoadInfo()
{
    const VDSnapshot before = Save();
    const VDFileInfoHandle info(FINFCreate());
    if (info && FINFLoadInfo(info.Get(), this) != 0)
        return true;
    Restore(before);
    return false;
}

bool VDFileId::IsChannelListToCome() const
{
    return (record_.identByExtension || (record_.identified && !record_.infoLoaded)) && record_.channels.IsEmpty();
}
