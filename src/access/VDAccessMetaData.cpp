#include "VDAccessMetaData.h"

#include "VDAccessCore.h"
#include "frame/VFDaxReport.h"

#include "daxlib/VFDaxMetaData.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQChannelMapper.h"

namespace {

constexpr const char* MapperName = "MetaDataMapper";
constexpr const char* TimeStamp = "TimeStamp";

}  // namespace

VDAccessMetaData::VDAccessMetaData(VDAccessCore& core) : core_(core), offsets_(core) {}

VDAccessMetaData::~VDAccessMetaData() = default;

bool VDAccessMetaData::Get(LQChannelMapper** mapper, bool withHeader)
{
    *mapper = nullptr;
    if (!core_.CheckFileOpen("GetMetaData"))
        return false;
    LQChannelMapper* answer = copy_.get();
    if (answer == nullptr && !Fetch(&answer, withHeader))
        return false;
    if (core_.GetFamily().offsets.useKey != 0) {
        // Only a private copy speaks of the values as they are given out. What is kept speaks of those in the file.
        if (!offsets_.Read(answer) || (copy_ && !offsets_.Apply(*answer)))
            return false;
    }
    *mapper = answer;
    return true;
}

/// The mapper from where it is kept, and what is added to it.
bool VDAccessMetaData::Fetch(LQChannelMapper** mapper, bool withHeader)
{
    const VDAccessMetaDataRules& rules = core_.GetFamily().metaData;
    LQChannelMapper* kept = nullptr;
    char keeps = 0;
    if (!core_.GetCapability(core_.GetFamily().capabilities.keepsMetaData, &keeps))
        return false;
    if (!(keeps != 0 ? FetchFromPlugin(&kept, withHeader) : FetchFromSidecar(&kept, withHeader)))
        return false;
    if (withHeader && rules.header == VDHeaderAttributes::Everywhere && !core_.AddHeaderAttributes(*kept))
        return false;

    std::unique_ptr<LQChannelMapper> copy;
    if (core_.IsReadOnly() && rules.forReading == VDReadMetaData::Copied) {
        copy.reset(VFDaxCloneMapper(kept));
        kept = copy.get();
        if (kept == nullptr || !Extend(*kept))
            return false;
    }
    if (!VFDaxAddInputTestInfo(kept, core_.GetFileId()) && rules.needTestInfo)
        return false;
    if (core_.IsReadOnly() && rules.forReading == VDReadMetaData::Extended && !Extend(*kept))
        return false;
    copy_ = std::move(copy);
    *mapper = kept;
    return true;
}

/// A copy that was made for it lacks the header, and nobody has got hold of it.
bool VDAccessMetaData::ReadOffsets()
{
    const bool hadCopy = copy_ != nullptr;
    LQChannelMapper* mapper = nullptr;
    const bool read = Get(&mapper, false);
    if (!hadCopy)
        DropCopy();
    return read;
}

bool VDAccessMetaData::FetchFromPlugin(LQChannelMapper** mapper, bool withHeader)
{
    const auto& entryPoints = core_.GetEntryPoints<VDAccessEntryPoints>();
    const auto load = [&] { return entryPoints.LoadMetaData(core_.GetInstance(), mapper) != 0 && *mapper != nullptr; };
    if (!core_.Call("GetMetaData", load))
        return false;
    const bool addHeader = withHeader && core_.GetFamily().metaData.headerWithOwnOffsets && offsets_.AreOwn();
    return !addHeader || core_.AddHeaderAttributes(**mapper);
}

bool VDAccessMetaData::FetchFromSidecar(LQChannelMapper** mapper, bool withHeader)
{
    const auto& entryPoints = core_.GetEntryPoints<VDAccessEntryPoints>();
    const bool addHeader = withHeader && core_.GetFamily().metaData.header == VDHeaderAttributes::InSidecar;
    if (!sidecar_ && !AdoptSidecar()) {
        sidecar_.Reset();
        return false;
    }
    return VMDGetMetaData(sidecar_.Get(), mapper) && (!addHeader || core_.AddHeaderAttributes(**mapper)) &&
           core_.Call("GetMetaData", [&] { return entryPoints.AddLegacyMetaData(core_.GetInstance(), *mapper); });
}

bool VDAccessMetaData::Extend(LQChannelMapper& mapper) const
{
    return VFDaxAddExtraMetadata(core_.GetFileId(), core_.IsIndexed(), &mapper);
}

bool VDAccessMetaData::AdoptSidecar()
{
    sidecar_.Reset(VMDCreate());
    VDArrayWithSort<long> numbers;
    // They count in a new sidecar only.
    for (int index = 0; !core_.IsReadOnly() && index < core_.GetChannelCount(); ++index) {
        long number = 0;
        if (!core_.GetActualChanNumber(index, &number))
            return false;
        numbers.AppendItem(number);
    }
    return sidecar_ && VMDSetChannelNumberList(sidecar_.Get(), numbers) &&
           VMDAdoptTestVmd(sidecar_.Get(), core_.GetFileId(), core_.IsReadOnly()) &&
           (!replacesSidecar_ || VMDClear(sidecar_.Get()));
}

bool VDAccessMetaData::Exist()
{
    if (sidecar_ || core_.KeepsMetaData())
        return true;
    VDString sidecar;
    return !replacesSidecar_ && VMDCreateFilenameFromFileId(core_.GetFileId(), &sidecar) &&
           VDFileSystem::FileExists(sidecar);
}

void VDAccessMetaData::Begin(bool created)
{
    replacesSidecar_ = created && !core_.KeepsMetaData();
}

bool VDAccessMetaData::HandOver()
{
    LQChannelMapper* mapper = nullptr;
    if (!sidecar_)
        return true;
    if (!VMDGetMetaData(sidecar_.Get(), &mapper))
        return false;
    const VDAccessMetaDataRules& rules = core_.GetFamily().metaData;
    VDVariant value;
    value.SetNamedPointer(MapperName, mapper);
    VDArrayWithSort<long> numbers;
    if (!core_.PutValue(DaxChannel::WholeFile, rules.mapperKey, value) || !core_.GetChans(&numbers))
        return false;
    for (int index = 0; rules.timeStampKey != 0 && index < numbers.GetSize(); ++index) {
        const int entry = mapper->IndexFromNumber(numbers[index], false);
        VDString stamp;
        if (entry >= 0 && mapper->GetStringMetaDataItem(TimeStamp, &stamp, entry) &&
            !core_.PutValue(index, rules.timeStampKey, VDVariant(stamp)))
            return false;
    }
    return true;
}

bool VDAccessMetaData::Flush()
{
    // The file stands. What describes the one before it goes, or is written over.
    VDString old;
    if (replacesSidecar_ && !sidecar_ && VMDCreateFilenameFromFileId(core_.GetFileId(), &old) &&
        VDFileSystem::FileExists(old)) {
        const VDErrorMute mute;
        VDFileSystem::DelFile(old);
    }
    if (sidecar_ && !VMDFlush(sidecar_.Get()))
        return false;
    replacesSidecar_ = false;
    return true;
}

bool VDAccessMetaData::Close()
{
    VDVmdFile* const sidecar = sidecar_.Detach();
    return sidecar == nullptr || VMDRelease(sidecar) != 0;
}

void VDAccessMetaData::DropCopy()
{
    copy_.reset();
}

void VDAccessMetaData::Forget()
{
    DropCopy();
    offsets_.Forget();
}
