#include "VDFileId.h"

#include "daxlib/DaxHandle.h"
#include "frame/VFDaxReport.h"
#include "registry/FormatDescriptors.h"

#include "vdbase/VDFileSystem.h"
#include "vdbase/VDSelArrayTemplate.h"
#include "vdbase/VDStoredRelativePath.h"
#include "vdbase/VFFilename.h"

#include <array>

namespace {

/// Bounds of the channel field.
constexpr int MaxListedChannels = 10000;
constexpr int MaxChannelTextLength = 100000;

/// One of the three numbers that tell apart the sub-tests of a file, with its place in each kind of text.
struct VDSubTestNumber
{
    std::int32_t value;
    char letter;
    const char* title;
    const char* capability;
};

std::array<VDSubTestNumber, 3> SubTestNumbers(const VDFileIdRecord& record)
{
    return {{{record.run, 'r', "Run", "HasRun"},
             {record.burst, 'b', "Burst", "HasBurst"},
             {record.mode, 'm', "Mode", "HasMode"}}};
}

/// The field of an access type; empty for one that has none.
const char* AccessField(int accessType)
{
    switch (accessType) {
    case VTFileAccessTimeSeries:
        return ";ats";
    case VTFileAccessHistogram:
        return ";ahs";
    case VTFileAccessCycles:
        return ";acy";
    case VTFileAccessMultiColumn:
        return ";amc";
    case VTFileAccessMetaData:
        return ";amd";
    case VTFileAccessComplexFrequency:
        return ";acf";
    case VTFileAccessFEModels:
        return ";afe";
    default:
        return "";
    }
}

/// The name that stands for an associated file which isn't there counts as none.
VDString AssociatedFilename(const VDFileIdRecord& record)
{
    return record.associatedFilename == "** NO NAME **" ? VDString() : record.associatedFilename;
}

VDString WithoutFolder(const VDString& filename)
{
    return filename.Mid(filename.ReverseFind('/') + 1);
}

/// The last element of a path, which may have a separator at its end.
VDString LastElement(const VDString& path)
{
    VDString name = path;
    while (name.GetLength() > 1 && name[name.GetLength() - 1] == '/')
        name = name.Left(name.GetLength() - 1);
    return WithoutFolder(name);
}

/// The name of a folder test: that of its folder, without the extension.
VDString FolderTestName(const VDFileIdRecord& record)
{
    const VDString element = LastElement(record.filename);
    if (record.nameForm == VTNameFormFile) {
        // The filename may be that of a file inside, which shows by the folder having an extension.
        VDString folder;
        VDString extension;
        VFSplitFilename(record.filename, &folder, nullptr, nullptr);
        const VDString parent = LastElement(folder);
        VFSplitFilename(parent, nullptr, nullptr, &extension);
        if (!extension.IsEmpty())
            return VDFileSystem::GetBaseFileName(parent);
    }
    return VDFileSystem::GetBaseFileName(element);
}

VDString ShortName(const VDFileIdRecord& record, bool withFolder)
{
    VDString text;
    if (record.nameForm == VTNameFormFile) {
        VDString folder;
        VFSplitFilename(record.filename, &folder, &text, nullptr);
        if (withFolder)
            text = VFBuildFilename(folder, text);
    } else if (record.folderTest) {
        text = FolderTestName(record);
    } else {
        text = withFolder ? record.filename : WithoutFolder(record.filename);
    }
    for (const VDSubTestNumber& number : SubTestNumbers(record)) {
        VDString suffix;
        suffix.Format("_%c%02d", number.letter, number.value);
        if (number.value >= 0)
            text += suffix;
    }
    return text;
}

/// The numbers that the test has, as "Run-2", each behind a separator but for the first.
VDString NumberTitles(const VDFileIdRecord& record, const char* separator)
{
    VDString text;
    for (const VDSubTestNumber& number : SubTestNumbers(record)) {
        if (number.value < 0)
            continue;
        VDString title;
        title.Format("%s%s-%d", text.IsEmpty() ? "" : separator, number.title, number.value);
        text += title;
    }
    return text;
}

VDString DisplayTitle(const VDFileIdRecord& record, int type)
{
    VDString text;
    if (type == VTTestDescBaseTitle)
        text = VDFileSystem::GetBaseFileName(record.filename);
    else if (type == VTTestDescFullTitle)
        text = record.filename;
    else
        text = record.folderTest ? FolderTestName(record) : WithoutFolder(record.filename);
    if (record.mode >= 0 && !record.modeTitle.IsEmpty())
        text += ";" + record.modeTitle;

    const VDString associated = AssociatedFilename(record);
    const VDString numbers = NumberTitles(record, ", ");
    const bool hasExtras = !numbers.IsEmpty() || !associated.IsEmpty();
    const bool hasExtension = record.nameForm != VTNameFormFile;
    if (!hasExtras && !hasExtension)
        return text;
    text += " (";
    if (hasExtension)
        text += hasExtras ? record.extension + ", " : record.extension;
    if (!associated.IsEmpty())
        text += numbers.IsEmpty() ? WithoutFolder(associated) : WithoutFolder(associated) + ", ";
    return text + numbers + ")";
}

VDString ListLabel(const VDFileIdRecord& record)
{
    VDString text = LastElement(record.filename);
    if (record.nameForm == VTNameFormFile)
        text = VDFileSystem::GetBaseFileName(text);
    text += " (" + record.extension;
    if (record.mode >= 0 && !record.modeTitle.IsEmpty())
        text += "," + record.modeTitle;
    const VDString numbers = NumberTitles(record, ",");
    if (!numbers.IsEmpty())
        text += "," + numbers;
    return text + ")";
}

/// The channel numbers of a list, all or the selected ones, as a field; empty if there are none.
VDString ChannelField(const VDChannelList& channels, bool selectedOnly)
{
    VDSelArrayTemplate<long> numbers(MaxListedChannels, MaxChannelTextLength);
    for (const VDFileIdChanInfo& channel : channels)
        if (channel.selected || !selectedOnly)
            numbers.Add(channel.number);
    numbers.Sort();
    numbers.RemoveDuplicates();
    const VDString list = numbers.GetRangeText();
    return list.IsEmpty() ? list : ";c" + list;
}

/// Appends the fields of run, burst and mode. A format that divides its files states a number even where the test has none.
bool AppendSubTestFields(VDFileInfo* info, const VDFileIdRecord& record, VDString& text)
{
    for (const VDSubTestNumber& number : SubTestNumbers(record)) {
        int capability = 0;
        char found = 0;
        if (FINFGetCapability(info, nullptr, record.fileId, record.subId, number.capability, &capability, &found) == 0)
            return false;
        if (number.value < 0 && (found == 0 || capability != 1))
            continue;
        VDString field;
        field.Format(";%c%d", number.letter, number.value);
        text += field;
    }
    return true;
}

/// Appends the field of the access type. A format that nobody serves, for which alone the question fails, has none.
void AppendAccessField(VDFileInfo* info, const VDFileIdRecord& record, VDString& text)
{
    int accessType = VTFileAccessUnknown;
    VDString accessClass;
    if (FINFGetAccessClass(info, nullptr, record.fileId, record.subId, &accessType, &accessClass) != 0)
        text += AccessField(accessType);
}

}  // namespace

int VDFileId::GetTestDescriptor(int type, VDString* text)
{
    VDString result;
    switch (type) {
    case VTTestDescShortName:
    case VTTestDescPathName:
        result = ShortName(record_, type == VTTestDescPathName);
        break;
    case VTTestDescTitle:
    case VTTestDescFullTitle:
    case VTTestDescBaseTitle:
        result = DisplayTitle(record_, type);
        break;
    case VTTestDescListLabel:
        result = ListLabel(record_);
        break;
    case VTTestDescSelected:
    case VTTestDescRelative:
    case VTTestDescAll:
        if (!WriteDescriptor(type, result))
            return 0;
        break;
    default:
        return VFDaxReportError(DaxError::InvalidDescriptorType, "VDFileId::GetTestTitle");
    }
    return VFGive(text, result);
}

bool VDFileId::WriteDescriptor(int type, VDString& text)
{
    if (CheckIdentLoad(true) == 0)
        return false;
    bool found = false;
    if (!VFRegistryFileIdToTestDesc(this, type, &text, &found))
        return false;
    if (found)
        return true;

    const VDFileInfoHandle info(FINFCreate());
    if (!info)
        return false;
    const bool isRelative = type == VTTestDescRelative;
    const VDStoredRelativePath store;
    text = record_.filename;
    if (isRelative && record_.nameForm == VTNameFormFile) {
        text = store.GetRelativeName(record_.filename, 1);
    } else if (isRelative) {
        text = store.GetRelativeNameNoCopyFail(record_.filename, 0);
        // The store is told of every file that makes up the test.
        for (int index = 0; index < record_.channels.GetSize(); ++index) {
            VDString channelFilename;
            if (GetChanFilename(index, &channelFilename) == 0)
                return false;
            store.GetRelativeName(channelFilename, 1);
        }
    }
    if (!AppendSubTestFields(info.Get(), record_, text))
        return false;

    const auto appendFile = [&](const char* field, const VDString& filename) {
        if (!filename.IsEmpty())
            text += field + (isRelative ? store.GetRelativeName(filename, 1) : filename);
    };
    if (record_.nameForm == VTNameFormTestPlusChannels)
        text += ";x" + record_.extension;
    appendFile(";d", record_.extraMetadataFilename);
    appendFile(";n", AssociatedFilename(record_));

    AppendAccessField(info.Get(), record_, text);
    if (record_.fileId != 0 || record_.subId != 0)
        text += ChannelField(record_.channels, type != VTTestDescAll);
    if (record_.preferences)
        record_.preferences->AppendToTestDescriptor(text);
    return true;
}
