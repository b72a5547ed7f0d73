#include "SidecarName.h"
#include "SpecialFormats.h"
#include "VDFileId.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace {

/// The name of a folder test's channel: its title, unless its file has another name.
VDString ChannelName(const VDFileIdChanInfo& channel)
{
    VDString name = channel.filename.IsEmpty() ? channel.title : channel.filename;
    if (name.IsEmpty())
        name.Format("Channel_%d", channel.number);
    return name;
}

/// Whether a name, as the last element of a path, stays in its folder. Titles come from files.
bool StaysInFolder(const VDString& name)
{
    if (name == "." || name == "..")
        return false;
    return std::none_of(name.View().begin(), name.View().end(), [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return code < 0x20 || code == 0x7f || byte == '/';
    });
}

bool AreTypesAlike(const VDFileIdRecord& left, const VDFileIdRecord& right)
{
    if (left.fileId != right.fileId)
        return false;
    return left.subId == right.subId ||
           (left.fileId == DaxStorageFileId && VFAreStorageSubIdsAlike(left.subId, right.subId));
}

bool AreSameTest(const VDFileIdRecord& left, const VDFileIdRecord& right)
{
    if (left.nameForm != right.nameForm)
        return false;
    const auto hasType = [](const VDFileIdRecord& record) { return record.identified || record.identByExtension; };
    if (hasType(left) && hasType(right) &&
        (!AreTypesAlike(left, right) || left.run != right.run || left.burst != right.burst || left.mode != right.mode))
        return false;
    if (left.fullPathName != right.fullPathName || left.dataSource != right.dataSource)
        return false;
    const bool isStored = left.dataSource == VTDataSourceStore1 || left.dataSource == VTDataSourceStore2;
    return !isStored || (left.dataPath == right.dataPath && left.objectReference == right.objectReference);
}

}  // namespace

int VDFileId::GetChanFilename(int index, VDString* filename)
{
    if (record_.filename.IsEmpty())
        return VFDaxReportError(DaxError::FilenameNotSet, "VDFileId::GetChanFilename");
    if (record_.nameForm == VTNameFormFile)
        return VFGive(filename, record_.filename);
    if (record_.channels.IsEmpty())
        return VFDaxReportError(DaxError::NoChannelsConfigured, "VDFileId::GetChanFilename");
    int number = 0;
    if (GetChanNumber(index, &number) == 0)
        return 0;
    const auto report = [number] {
        VDString detail;
        detail.Format(" The file name of channel %d leads out of its folder", number);
        return VFDaxReport(DaxError::InvalidArguments, "VDFileId::GetChanFilename", {.appended = detail});
    };
    if (!record_.folderTest) {
        VDString name;
        name.Format("%s%0*d.%s", record_.filename.c_str(), record_.chanDigits, number, record_.extension.c_str());
        return StaysInFolder(record_.extension) ? VFGive(filename, VFBuildFilename("", name)) : report();
    }
    const VDFileIdChanInfo& channel = record_.channels[index];
    const VDString name = ChannelName(channel);
    if (!StaysInFolder(name))
        return report();
    if (record_.originalExtension.IsEmpty() && !FindOriginalExtension(channel))
        return 0;
    if (!StaysInFolder(record_.originalExtension))
        return report();
    return VFGive(filename, VFBuildFilename(record_.filename, name, record_.originalExtension));
}

bool VDFileId::FindOriginalExtension(const VDFileIdChanInfo& channel)
{
    if (record_.fileId == SpecialFormat::SigChannels)
        record_.originalExtension = "sig";
    if (record_.fileId == SpecialFormat::ExtensionFromDisk) {
        const VDString& name = channel.filename.IsEmpty() ? channel.title : channel.filename;
        const VDString pattern = VFBuildFilename(VFMakePath(record_.filename), name, "*");
        const std::unique_ptr<VDStringArray> files(name.IsEmpty() ? nullptr
                                                                  : VDFileSystem::GetFileList(pattern, VDFileSystem::Files));
        if (files && !files->IsEmpty())
            VFSplitFilename((*files)[0], nullptr, nullptr, &record_.originalExtension);
    }
    if (!record_.originalExtension.IsEmpty())
        return true;
    const VDFileInfoHandle info(FINFCreate());
    return info &&
           FINFGetDefaultExtension(info.Get(), nullptr, record_.fileId, record_.subId, "", &record_.originalExtension) != 0;
}

int VDFileId::CompareTestNames(VDFileId* other, char* same)
{
    return VFGive(same, AreSameTest(record_, other->record_));
}

int VDFileId::GetTestFileSize(std::uint64_t* size)
{
    if (VFGive(size, std::uint64_t{0}) == 0)
        return 0;
    const auto add = [&](const VDString& filename) {
        std::int64_t bytes = 0;
        if (!VDFileSystem::GetFileSize(filename, &bytes))
            return VFDaxReport(DaxError::TestFileSize, "VDFileId::GetTestFileSize", {.appended = filename, .chain = 1});
        *size += static_cast<std::uint64_t>(bytes);
        return 1;
    };
    if (record_.nameForm == VTNameFormFile)
        return add(record_.filename);
    for (int index = 0; index < record_.channels.GetSize(); ++index)
        if (VDString filename; GetChanFilename(index, &filename) == 0 || add(filename) == 0)
            return 0;
    return 1;
}

int VDFileId::DoesTestExist(char selectedOnly, char* exists)
{
    if (record_.dataSource != VTDataSourceDisk || record_.nameForm == VTNameFormFile)
        return VFGive(exists, record_.dataSource != VTDataSourceDisk || VDFileSystem::FileExists(record_.filename));
    if (VFGive(exists, false) == 0)
        return 0;
    bool allNamed = true;
    for (int index = 0; index < record_.channels.GetSize(); ++index) {
        VDString filename;
        if (selectedOnly != 0 && !record_.channels[index].selected)
            continue;
        if (GetChanFilename(index, &filename) == 0)
            allNamed = false;
        else if (VDFileSystem::FileExists(filename))
            return VFGive(exists, true);
    }
    return allNamed;
}

int VDFileId::DeleteTest()
{
    constexpr const char* Routine = "VDFileId::DeleteTest";
    if (record_.dataSource != VTDataSourceDisk)
        return VFDaxReportError(DaxError::NonDiskDelete, Routine);
    if (VDString sidecar; VFSidecarFilename(this, &sidecar) && VDFileSystem::FileExists(sidecar)) {
        const VDErrorMute mute;
        VDFileSystem::DelFile(sidecar);
    }
    if (record_.nameForm == VTNameFormFile)
        return VDFileSystem::DelFile(record_.filename) || VFDaxReport(DaxError::DeleteTest, Routine, {.chain = 1}) != 0;

    // Every file is tried, and the first failure is the one to be told.
    const VDString name = record_.filename + " (" + record_.extension + ")";
    std::optional<VDErrorMute> muteAfterFailure;
    for (int index = 0; index < record_.channels.GetSize(); ++index) {
        VDString filename;
        if ((GetChanFilename(index, &filename) != 0 && VDFileSystem::DelFile(filename)) || muteAfterFailure)
            continue;
        VFDaxReport(DaxError::DeleteTest, Routine, {.appended = name, .chain = 1});
        muteAfterFailure.emplace();
    }
    return !muteAfterFailure;
}
