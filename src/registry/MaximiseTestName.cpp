#include "MaximiseTestName.h"

#include "identity/VDFileId.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFNumber.h"

#include <algorithm>
#include <string_view>

namespace {

/// The numbers of a test's channels as they stand in file names.
class VDChannelTexts
{
public:
    VDChannelTexts(const VDChannelList& channels, const VDChanSep& chanSep)
        : channels_(channels),
          digits_(chanSep.GetChanDigits()),
          minDigits_(static_cast<std::size_t>(chanSep.GetMinChanDigits()))
    {
    }

    VDString TextOf(std::int64_t number) const { return VFFormat64(number, 10, digits_); }

    /// How many digits all numbers share in front and can do without.
    std::size_t CountShared() const
    {
        int smallest = 10000000;
        int largest = -1;
        for (const VDFileIdChanInfo& channel : channels_) {
            smallest = std::min(smallest, channel.number);
            largest = std::max(largest, channel.number);
        }
        const VDString smallestText = TextOf(smallest);
        const VDString largestText = TextOf(largest);
        const std::string_view low = smallestText.View();
        const std::string_view high = largestText.View();
        std::size_t kept = 0;
        for (std::size_t at = 0; at < std::min(low.size(), high.size()) && low[at] == high[at]; ++at) {
            const std::size_t count = at + 1;
            if (std::min(low.size(), high.size()) - count < minDigits_)
                break;
            if (ReadsBack(low.substr(count)) && ReadsBack(high.substr(count)) && AllShare(low.substr(0, count)))
                kept = count;
        }
        return kept;
    }

private:
    /// Whether a number is written the way in which a channel's would be.
    bool ReadsBack(std::string_view text) const
    {
        std::int64_t number = 0;
        return VFAscToNum(VDString(text), &number) && TextOf(number).View() == text;
    }
    bool AllShare(std::string_view front) const
    {
        for (const VDFileIdChanInfo& channel : channels_) {
            const VDString text = TextOf(channel.number);
            if (!text.View().starts_with(front) || !ReadsBack(text.View().substr(front.size())))
                return false;
        }
        return true;
    }

    const VDChannelList& channels_;
    int digits_;
    std::size_t minDigits_;
};

bool VFTitleFolderTest(VDFileId* test)
{
    VDString folder;
    VDString base;
    VDString extension;
    VFSplitFilename(test->GetRecord().filename, &folder, &base, &extension);
    return FIDSetTestTitle(test, folder.IsEmpty() ? base : VFBuildFilename("", base, extension)) != 0;
}

/// @param count  how many digits leave the numbers
bool VFShortenNumbers(VDFileId* test, const VDChannelTexts& texts, int count)
{
    const VDChannelList& channels = test->GetRecord().channels;
    for (int index = 0; index < channels.GetSize(); ++index) {
        int number = 0;
        if (!VFAscToNum(texts.TextOf(channels[index].number).Mid(count), &number) || !FIDSetChanNumber(test, index, number))
            return false;
    }
    return true;
}

}  // namespace

bool VFMaximiseTestName(VDFileId* test, const VDChanSep& chanSep)
{
    const VDFileIdRecord& record = test->GetRecord();
    if (record.nameForm != VTNameFormTestPlusChannels)
        return true;
    if (record.folderTest)
        return VFTitleFolderTest(test);
    if (record.channels.IsEmpty())
        return true;
    const VDChannelTexts texts(record.channels, chanSep);
    const auto count = static_cast<int>(texts.CountShared());
    if (count == 0)
        return true;
    const VDString name = record.filename + texts.TextOf(record.channels[0].number).Left(count);
    const VDString extension = record.extension;
    const VDString originalExtension = record.originalExtension;
    return FIDSetFilename(test, VTNameFormTestPlusChannels, name, extension) &&
           FIDSetOriginalExtension(test, originalExtension) && VFShortenNumbers(test, texts, count) &&
           FIDSetTestTitle(test, VDFileSystem::GetBaseFileName(name));
}
