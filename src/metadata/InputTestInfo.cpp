#include "InputTestInfo.h"

#include "MetaDataNames.h"

#include "daxlib/FID.h"
#include "vdbase/VDFileSystem.h"
#include "vdbase/VFError.h"
#include "vdbase/VFFilename.h"
#include "vdstore/LQChannelMapper.h"

#include <unordered_map>
#include <utility>

namespace {

/// The slot's set with nothing in it, so that repeated reads do not pile up; null on failure.
Z4PropertySet* RenewSet(LQChannelMapper& mapper, int index)
{
    mapper.DeleteMetaDataSet(DaxSetName::InputTestInfo, index);
    return mapper.AdoptMetaDataSet(DaxSetName::InputTestInfo, nullptr, index);
}

/// The folder of a file name; without one, the current folder.
VDString FolderOf(const VDString& filename, VDString* base, VDString* extension)
{
    VDString folder;
    VFSplitFilename(filename, &folder, base, extension);
    return folder.IsEmpty() ? VDFileSystem::GetCurDirectory("") : folder;
}

void AddDiskItems(Z4PropertySet& set, VDFileId* id, const VDString& filename, const VDString& extension, int channels)
{
    set.AddString("Path", FolderOf(filename, nullptr, nullptr));
    set.AddString("Extension", extension);
    // These two say more where they can; that they can't is no error of the read.
    const VDErrorMute mute;
    VDString description;
    if (FIDGetFileTypeDesc(id, true, &description))
        set.AddString("OriginalFileType", description);
    int nameForm = 0;
    if (FIDGetNameForm(id, &nameForm))
        set.AddLong("OriginalNameForm", nameForm);
    set.AddLong("OriginalNumChans", channels);
}

bool AddStoreItems(Z4PropertySet& set, VDFileId* id)
{
    VDString text;
    if (!FIDGetDataPath(id, &text))
        return false;
    set.AddString("DataPath", text);
    if (!FIDGetObjectReference(id, &text))
        return false;
    set.AddString("ObjectReference", text);
    return true;
}

void AddRunNumber(Z4PropertySet& set, VDFileId* id)
{
    const VDErrorMute mute;
    int run = -1;
    if (FIDGetRunNumber(id, &run) && run > 0)
        set.AddLong("RunNumber", run);
}

/// Index in the file id by channel number.
using VDChannelIndexes = std::unordered_map<long, int>;

bool ListChannels(VDFileId* id, VDChannelIndexes& indexes)
{
    VDArrayWithSort<long> numbers;
    if (!FIDGetChans(id, &numbers))
        return false;
    for (int i = 0; i < numbers.GetSize(); ++i)
        indexes.try_emplace(numbers[i], i);
    return true;
}

bool AddChannelItems(LQChannelMapper& mapper, int index, VDFileId* id, const VDChannelIndexes& indexes)
{
    const long number = mapper.NumberFromIndex(index, false);
    if (number < 0 || !std::in_range<int>(number))
        return false;
    const auto found = indexes.find(number);
    int fileIndex = found == indexes.end() ? -1 : found->second;
    VDString filename;
    // The file id itself reports a number that it lacks.
    if ((fileIndex < 0 && !FIDGetChanIndex(id, static_cast<int>(number), &fileIndex)) ||
        !FIDGetChanFilename(id, fileIndex, &filename))
        return false;
    Z4PropertySet* const set = RenewSet(mapper, index);
    if (set == nullptr)
        return false;
    VDString base;
    VDString extension;
    const VDString folder = FolderOf(filename, &base, &extension);
    set->AddString("FilenameWithPath", VFBuildFilename(folder, base, extension));
    set->AddString("FilenameNoPath", VFBuildFilename("", base, extension));
    return true;
}

}  // namespace

bool VFAddInputTestInfo(LQChannelMapper& mapper, VDFileId* id)
{
    Z4PropertySet* const set = RenewSet(mapper, LQChannelMapper::GLOBAL);
    VDString filename;
    VDString extension;
    VDString descriptor;
    int source = VTDataSourceDisk;
    if (set == nullptr || !FIDGetFilename(id, &filename, &extension) ||
        !FIDGetTestDescriptor(id, VTTestDescShortName, &descriptor) || !FIDGetDataSource(id, &source))
        return false;

    set->AddString("TestName", descriptor);
    if (source == VTDataSourceDisk)
        AddDiskItems(*set, id, filename, extension, mapper.GetChannelCount());
    else if (!AddStoreItems(*set, id))
        return false;
    AddRunNumber(*set, id);

    if (source != VTDataSourceDisk)
        return true;
    VDChannelIndexes indexes;
    if (!ListChannels(id, indexes))
        return false;
    for (int i = 0; i < mapper.GetChannelCount(); ++i)
        if (!AddChannelItems(mapper, i, id, indexes))
            return false;
    return true;
}
