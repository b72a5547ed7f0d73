#include "ChannelFile.h"

#include "bus/VDFamosUtil.h"
#include "identity/SpecialFormats.h"
#include "identity/VDFileId.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VDIo.h"
#include "vdbase/VFError.h"
#include "vdbase/VFFilename.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

constexpr std::array VVGroupedFormats = {11, 601, 604, 605, 1600, 2200, 2400};
constexpr int VVCountInHeader = 1600;
constexpr std::int64_t VVCountOffset = 22;

VDString VFWithoutSeparator(const VDString& folder)
{
    std::string_view name = folder.View();
    while (name.size() > 1 && name.ends_with('/'))
        name.remove_suffix(1);
    return VDString(name);
}

/// Whether a file that may hold a channel of a test holds several, and so is a test by itself.
bool VFHoldsSeveral(int fileId, const VDString& filename)
{
    const VDErrorMute mute;
    if (fileId == VVCountInHeader) {
        VDIo io(filename);
        std::uint16_t count = 0;
        return io.Open(VTOpenRead) && io.Read(VVCountOffset, sizeof count, &count, nullptr) && count > 1;
    }
    if (fileId == SpecialFormat::ExtensionFromDisk) {
        VDFamosUtil famos;
        unsigned long count = 0;
        return famos.Open(filename, "") && famos.GetChannelCount(&count) && count > 1;
    }
    return false;
}

}  // namespace

VDChannelFileReader::VDChannelFileReader(const VDChanSep& chanSep, const VDFolderTestRows& folderTests)
    : chanSep_(chanSep), folderTests_(folderTests)
{
}

VDChannelFile VDChannelFileReader::Read(VDFileId* file)
{
    const VDFileIdRecord& record = file->GetRecord();
    if (record.nameForm != VTNameFormFile ||
        std::find(VVGroupedFormats.begin(), VVGroupedFormats.end(), record.fileId) == VVGroupedFormats.end())
        return {};
    VDChannelFile channel = record.folderTest ? ReadFolder(record.filename) : ReadName(record.filename);
    channel.belongs = channel.belongs && VFNameOfChannelFile(channel) == record.filename &&
                      !VFHoldsSeveral(record.fileId, record.filename);
    return channel;
}

VDChannelFile VDChannelFileReader::ReadName(const VDString& filename) const
{
    VDChannelFile channel;
    channel.belongs =
        chanSep_.IsTestPlusChannels(filename, &channel.testName, &channel.testExtension, &channel.channel) != 0;
    channel.originalExtension = channel.testExtension;
    channel.numDigits = std::max(chanSep_.GetChanDigits(), 1);
    return channel;
}

VDChannelFile VDChannelFileReader::ReadFolder(const VDString& filename)
{
    VDChannelFile channel;
    VFSplitFilename(filename, &channel.testName, &channel.title, &channel.originalExtension);
    channel.testName = VFWithoutSeparator(channel.testName);
    VFSplitFilename(channel.testName, nullptr, nullptr, &channel.testExtension);
    const bool isFolderTest = std::any_of(folderTests_.begin(), folderTests_.end(), [&](const VDFolderTestRow& row) {
        return row.folderExtensions.FindNoCase(channel.testExtension) >= 0;
    });
    channel.byFolder = true;
    channel.belongs = isFolderTest && FolderExists(channel.testName);
    return channel;
}

bool VDChannelFileReader::FolderExists(const VDString& folder)
{
    if (lastFolder_ == folder)
        return true;
    if (!VDFileSystem::DirectoryExists(folder))
        return false;
    lastFolder_ = folder;
    return true;
}

VDString VFNameOfChannelFile(const VDChannelFile& channel)
{
    if (channel.byFolder)
        return VFBuildFilename(channel.testName, channel.title, channel.originalExtension);
    VDString name;
    name.Format("%s%0*d.%s", channel.testName.c_str(), channel.numDigits, channel.channel, channel.testExtension.c_str());
    return name;
}
