// Files that belong together become one test.

#include "VDDirList.h"

#include "MaximiseTestName.h"
#include "identity/SpecialFormats.h"
#include "identity/VDFileId.h"

#include "vdbase/VFByteOrder.h"
#include "vdbase/VFError.h"

namespace {

/// What decides where a file goes. Of one that is known by its extension only, its writer is not asked.
bool VFGetTestType(VDFileId* file, VDTestType* type)
{
    char byExtension = 0;
    const VDFileIdRecord& record = file->GetRecord();
    *type = {record.fileId, record.subId, VTOpSysLittleEndian};
    return FIDGetIdentByExtension(file, &byExtension) && (byExtension || FIDGetOpSys(file, &type->opSys));
}

/// Has the channel list of a file read.
bool VFLoadFile(VDFileInfo* info, VDFileId* file)
{
    int count = 0;
    const VDFileIdRecord& record = file->GetRecord();
    if (record.identByExtension && !record.identified)
        return FIDGetNumChans(file, &count) != 0;
    return record.infoLoaded || FINFLoadInfo(info, file) != 0;
}

bool VFAddChannel(VDFileId* test, const VDChannelFile& channel, int* index)
{
    return (channel.byFolder ? FIDAddChannelByTitle(test, &channel.title, index)
                             : FIDAddChannel(test, channel.channel, index)) != 0;
}

/// Adds the channel of a file to its test, with what the file says of it.
bool VFJoin(VDFileId* test, const VDChannelFile& channel, VDFileId* file)
{
    int index = 0;
    if (!VFAddChannel(test, channel, &index))
        return false;
    const VDChannelList& channels = file->GetRecord().channels;
    if (channels.IsEmpty())
        return true;
    const VDFileIdChanInfo& source = channels[0];
    return FIDSetChanUnits(test, index, source.units) && FIDSetChanType(test, index, source.type) &&
           (channel.byFolder || FIDSetChanTitle(test, index, source.title));
}

/// A test that is made of one file has that file's channel as its own.
bool VFBecomeTest(VDFileId* file, const VDChannelFile& channel)
{
    if (!FIDSetFilename(file, VTNameFormTestPlusChannels, channel.testName, channel.testExtension) ||
        !FIDSetOriginalExtension(file, channel.originalExtension) || !FIDSetNumChanDigits(file, channel.numDigits))
        return false;
    int index = 0;
    if (file->GetRecord().channels.GetSize() != 1)
        return VFAddChannel(file, channel, &index);
    // The list that the file came with knows nothing of the test.
    return (channel.byFolder ? FIDSetChanTitle(file, 0, channel.title) : FIDSetChanNumber(file, 0, channel.channel)) != 0;
}

}  // namespace

bool VDDirList::GroupBatch(const Batch& batch)
{
    const int start = GetOutputSize();
    VDTestIndex tests;
    VDChannelFileReader reader(chanSep_, folderTests_);
    for (std::size_t index = 0; index < batch.size(); ++index)
        if (!GroupFile(batch[index].Get(), reader, tests) || !CheckAbortAt(index))
            return false;

    if (chanSep_.GetChanSepMethod() != VTChanSepVariableDigits || !chanSep_.GetMaximiseTestName())
        return true;
    for (int index = start; index < GetOutputSize(); ++index) {
        VDFileIdHandle test;
        if (!FIAGetAt(output_.Get(), index, test.Out()) || !VFMaximiseTestName(test.Get(), chanSep_) ||
            !CheckAbortAt(static_cast<std::size_t>(index)))
            return false;
    }
    return true;
}

bool VDDirList::GroupFile(VDFileId* file, VDChannelFileReader& reader, VDTestIndex& tests)
{
    const VDChannelFile channel = reader.Read(file);
    if (!channel.belongs)
        return FIAAppendItem(output_.Get(), file);
    VDTestType type;
    if (!VFGetTestType(file, &type))
        return false;
    Fate fate = Fate::StartsTest;
    if (tests.HasName(channel))
        fate = JoinTest(file, channel, type, tests);
    if (fate == Fate::StartsTest) {
        if (!VFBecomeTest(file, channel))
            return false;
        tests.Enter(channel, type, file);
    }
    return fate == Fate::Joined || fate == Fate::Dropped || (fate != Fate::Fails && FIAAppendItem(output_.Get(), file));
}

VDDirList::Fate VDDirList::JoinTest(VDFileId* file, const VDChannelFile& channel, const VDTestType& type, VDTestIndex& tests)
{
    VFErrorClear();
    if (type.fileId != SpecialFormat::SigChannels && !VFLoadFile(info_.Get(), file)) {
        if (!IsGone(file))
            return errorOnLoad_ ? Fate::Fails : Fate::StaysAlone;
        Skip(file->GetRecord().filename);
        return Fate::Dropped;
    }
    // What the extension promised isn't what is in it.
    if (file->GetRecord().fileId != type.fileId)
        return Fate::StaysAlone;
    VDFileId* const test = tests.Find(channel, type);
    if (test == nullptr)
        return Fate::StartsTest;
    return VFJoin(test, channel, file) ? Fate::Joined : Fate::Fails;
}
