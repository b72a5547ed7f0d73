#include "VDFileId.h"

#include "VDFileIdNameWatch.h"

#include "frame/VFDaxReport.h"

#include <utility>

VDFileId::VDFileId() : VDCompBase(HandleId)
{
    record_.chanDigits = VDChanSep().GetChanDigits();
}

VDFileId::~VDFileId()
{
    LeaveTemporaryTest();
}

void VDFileId::Assign(const VDFileId& source)
{
    if (&source == this)
        return;
    const NameWatch watch(*this);
    VDFileIdRecord record = source.record_;
    JoinTemporaryTest(source);
    record_ = std::move(record);
}

VDFileId::VDSnapshot VDFileId::Save() const
{
    VDSnapshot snapshot;
    snapshot.record_ = record_;
    snapshot.temporaryTest_ = temporaryTest_;
    snapshot.namesTemporaryTest_ = namesTemporaryTest_;
    return snapshot;
}

void VDFileId::Restore(const VDSnapshot& snapshot)
{
    const NameWatch watch(*this);
    EnterTemporaryTest(snapshot.temporaryTest_);
    namesTemporaryTest_ = snapshot.namesTemporaryTest_;
    record_ = snapshot.record_;
}

int VDFileId::Copy(VDFileId* source, std::uint32_t mask)
{
    if (source == this)
        return 1;
    const std::uint32_t flags = mask != 0 ? mask : VTFileIdCopyDefault;
    const auto has = [flags](VTFileIdCopyFlag flag) { return (flags & flag) != 0; };
    const VDFileIdRecord& from = source->record_;
    const NameWatch watch(*this);

    JoinTemporaryTest(*source);
    record_.identified = from.identified;
    record_.infoLoaded = from.infoLoaded;
    record_.identByExtension = from.identByExtension;
    record_.loadInfoWhenNeeded = from.loadInfoWhenNeeded;
    record_.pending = from.pending;

    if (has(VTFileIdCopyChannels)) {
        DropMetadataValues();
        record_.channels = from.channels;
    } else if (has(VTFileIdCopySelectedChannels)) {
        record_.metadata.reset();
        record_.channels = from.channels;
        record_.channels.RemoveAll(false);
    } else {
        record_.infoLoaded = false;
    }
    if (has(VTFileIdCopyFileId)) {
        record_.fileId = from.fileId;
        record_.subId = from.subId;
        record_.dataSource = from.dataSource;
    }
    if (has(VTFileIdCopyVersion)) {
        record_.version = from.version;
        record_.subVersion = from.subVersion;
    }
    if (has(VTFileIdCopyTitle))
        record_.title = from.title;
    if (has(VTFileIdCopyRun))
        record_.run = from.run;
    if (has(VTFileIdCopyOpSys))
        record_.opSys = from.opSys;
    // The format is known only as a whole.
    if (!has(VTFileIdCopyFileId) || !has(VTFileIdCopyVersion) || !has(VTFileIdCopyOpSys))
        record_.identified = false;
    if (has(VTFileIdCopyNames)) {
        record_.nameForm = from.nameForm;
        record_.filename = from.filename;
        record_.extension = from.extension;
        record_.originalExtension = from.originalExtension;
        record_.fullPathName = from.fullPathName;
        record_.chanDigits = from.chanDigits;
        record_.dataPath = from.dataPath;
        record_.objectReference = from.objectReference;
        record_.extraMetadataFilename = from.extraMetadataFilename;
        record_.associatedFilename = from.associatedFilename;
        record_.folderTest = from.folderTest;
    }
    if (has(VTFileIdCopySelected))
        record_.selected = from.selected;
    if (has(VTFileIdCopyShowChannels))
        record_.showChannels = from.showChannels;
    if (has(VTFileIdCopyBurst))
        record_.burst = from.burst;
    if (has(VTFileIdCopyExtraData))
        record_.extraData = from.extraData;
    if (has(VTFileIdCopyMode)) {
        record_.mode = from.mode;
        record_.modeTitle = from.modeTitle;
    }
    if (has(VTFileIdCopyPreferences))
        record_.preferences = from.preferences;
    return 1;
}

int VDFileId::Clear()
{
    const NameWatch watch(*this);
    LeaveTemporaryTest();
    VDFileIdRecord fresh;
    fresh.opSys = 0;
    fresh.identByExtension = record_.identByExtension;
    fresh.loadInfoWhenNeeded = record_.loadInfoWhenNeeded;
    record_ = std::move(fresh);
    return 1;
}

int VDFileId::GetExtraDataObject(VDCompBase** object) const
{
    VDCompBase* const held = record_.extraData.Get();
    if (VFGive(object, held) == 0)
        return 0;
    return held == nullptr || held->AddRef() != 0;
}

int VDFileId::GetPreferences(char create, VDFileIdPreferences** preferences)
{
    if (create != 0 && !record_.preferences)
        record_.preferences.emplace();
    return VFGive(preferences, record_.preferences ? &*record_.preferences : nullptr);
}

int VDFileId::SetFlag(bool& flag, char value)
{
    flag = value != 0;
    return 1;
}

int VDFileId::ReportWithStem(int code, const char* operation, const VDString& text) const
{
    const VDString routine = VDString("VDFileId::") + operation;
    const int label = record_.filename.IsEmpty() ? 0 : DaxText::FileStem;
    return VFDaxReport(code, routine, {.text = text, .label = label, .name = record_.filename});
}

bool VDFileId::CheckIndex(int index, const char* operation) const
{
    return record_.channels.IsIndex(index) || ReportWithStem(DaxError::IndexOutOfRange, operation) != 0;
}

const VDFileIdChanInfo* VDFileId::LoadChannel(int index, const char* operation)
{
    if (CheckIdentLoad(true) == 0 || !CheckIndex(index, operation))
        return nullptr;
    return &record_.channels[index];
}

VDFileIdChanInfo* VDFileId::EditChannel(int index, const char* operation)
{
    if (!CheckIndex(index, operation))
        return nullptr;
    SettlePending();
    return &record_.channels.Edit(index);
}

std::uint64_t VDFileId::GetListedNameChanges()
{
    return NameWatch::GetChanges();
}
