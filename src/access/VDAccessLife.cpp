#include "VDAccessCore.h"

#include "VDAccessPlugins.h"
#include "frame/VFDaxReport.h"

#include <utility>

// The life of an access object: bound to a test, opened, flushed, closed, given up.

namespace {

bool VFIsInStore(const VDString& descriptor)
{
    return descriptor.Left(8) == "vdindex:" || descriptor.Left(12) == "vdfilestore:";
}

}  // namespace

VDAccessCore::VDAccessCore(const VDAccessFamily& family, VDAccessPlugins& plugins, void* owner)
    : family_(family), plugins_(plugins), owner_(owner), metaData_(*this)
{
}

VDAccessCore::~VDAccessCore()
{
    const VDErrorMute mute;
    Close();
    AbandonOpen();
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    Unbind();
    fileId_.Reset();
}

bool VDAccessCore::SetId(VDFileId* id, char create)
{
    if (open_ && !Close())
        return false;
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    // The instance of an earlier binding may look at the earlier id until it is given back.
    const VDFileIdHandle earlier = std::move(fileId_);
    metaData_.Forget();
    if (SetChannelCount(0) && TakeId(id, create) && plugins_.LoadPlugIns())
        return Bind();
    Unbind();
    return false;
}

/// The first half of `SetId`: a private copy of the id, or of the one that it is served through, with channels in order.
bool VDAccessCore::TakeId(VDFileId* id, char create)
{
    create_ = create != 0;
    fileId_.Reset(FIDCreate());
    if (!fileId_)
        return false;

    VDFileIdHandle proxy;
    FINFGetProxyAccessFileId(id, proxy.Out());
    // Created: all but the mask bit of the whole channel list, so that the selected channels come. Read: the whole list.
    constexpr std::uint32_t maskForCreate = ~std::uint32_t{VTFileIdCopyChannels};
    constexpr std::uint32_t maskForRead = ~std::uint32_t{VTFileIdCopySelectedChannels};
    if (!FIDCopy(fileId_.Get(), proxy ? proxy.Get() : id, create_ ? maskForCreate : maskForRead))
        return false;
    proxy.Reset();

    // Only extra metadata ask for it.
    VDString descriptor;
    indexed_ = family_.metaData.forReading != VDReadMetaData::AsKept &&
               FIDGetTestDescriptor(id, VTTestDescSelected, &descriptor) != 0 && VFIsInStore(descriptor);

    int count = 0;
    if (!FIDSortChans(fileId_.Get(), 1) || !FIDGetNumChans(fileId_.Get(), &count))
        return false;
    if (count < 1 && family_.codes.emptyChannelList != 0)
        return Report(DaxChannel::WholeFile, family_.codes.emptyChannelList, "SetId");
    return !family_.knowsCountUnopened || SetChannelCount(count);
}

/// The second half of `SetId`: from the class id text of the file's type to an instance that knows the test.
bool VDAccessCore::Bind()
{
    VFErrorClear();
    if (instance_ != nullptr) {
        // One that couldn't be given back is still asked for the reason, but never told anything else.
        const bool released = Call("SetId", [&] { return plugin_->entryPoints->Release(instance_); });
        instance_ = nullptr;
        if (!released)
            return false;
    }
    plugin_ = nullptr;
    noSerialisation_ = false;

    int accessType = 0;
    VDString classId;
    VDString description;
    if (!FIDGetAccessInfo(fileId_.Get(), &accessType, &classId, &description))
        return false;
    const VDAccessPluginInfo* plugin = plugins_.Find(classId);
    if (plugin == nullptr)
        return ReportNotSupported();
    if (!plugin->loaded)
        return VFReportDisabledPlugin(*plugin, DaxError::PluginDisabled, Routine("SetId"));

    plugin_ = plugin;
    const VDAccessEntryPoints& entryPoints = *plugin_->entryPoints;
    if (!Call("SetId", [&] { return (instance_ = entryPoints.Create(classId)) != nullptr; }))
        return false;
    const auto tell = [&](int key, VDVariant value) {
        return Call("SetId", [&] {
            return family_.calls.putValue(entryPoints, instance_, DaxChannel::WholeFile, key, &value);
        });
    };
    char noSerialisation = 0;
    const auto ask = [&] {
        return entryPoints.GetCapability(instance_, family_.capabilities.noSerialisation, &noSerialisation);
    };
    if (!tell(0, VDVariant(owner_)) || !Call("SetId", ask))
        return false;
    noSerialisation_ = noSerialisation != 0;
    if (!Call("SetId", [&] { return entryPoints.SetId(instance_, fileId_.Get(), create_ ? 1 : 0); }))
        return false;
    const VDAccessOffsetRules& offsets = family_.offsets;
    const bool used = GetOffsets().AreUsed();
    return offsets.useKey == 0 || (!used && !offsets.useAlwaysTold) || tell(offsets.useKey, VDVariant(used));
}

/// A test whose id can't be taken must not be opened through the instance of the test before.
void VDAccessCore::Unbind()
{
    const VDErrorMute mute;
    if (void* const instance = std::exchange(instance_, nullptr)) {
        try {
            plugin_->entryPoints->Release(instance);
        } catch (...) {
            // There is nobody left to tell.
        }
    }
    plugin_ = nullptr;
}

bool VDAccessCore::GetId(VDFileId** id) const
{
    *id = nullptr;
    if (!fileId_)
        return Report(DaxChannel::WholeFile, DaxError::FileIdNotSet, "GetId");
    VDFileIdHandle copy(FIDCreate());
    if (!copy || !FIDCopy(copy.Get(), fileId_.Get(), ~std::uint32_t{VTFileIdCopySelectedChannels}))
        return false;
    *id = copy.Detach();
    return true;
}

bool VDAccessCore::SetChannelCount(int count)
{
    channelCount_ = count;
    return family_.steps.setChannelCount == nullptr || family_.steps.setChannelCount(owner_, count);
}

bool VDAccessCore::Open(int mode)
{
    if (family_.openModesFromZero && (mode < 0 || mode > 3))
        return Report(DaxChannel::WholeFile, DaxError::InvalidOpenMode, "Open");
    const int pluginMode = family_.openModesFromZero ? mode + 1 : mode;
    int count = 0;
    if (!CheckOpen(pluginMode) || !FIDGetNumChans(fileId_.Get(), &count) || !SetChannelCount(count))
        return false;
    metaData_.DropCopy();
    if (!Call("Open", [&] { return plugin_->entryPoints->Open(instance_, pluginMode); }))
        return false;
    open_ = true;
    readOnly_ = pluginMode == 1;
    if (FinishOpen(VFIsCreateMode(pluginMode)))
        return true;
    AbandonOpen();
    return false;
}

bool VDAccessCore::CheckOpen(int mode)
{
    if (!CheckBound("Open"))
        return false;
    if (open_)
        return Report(DaxChannel::WholeFile, DaxError::AlreadyOpen, "Open");
    if (!fileId_)
        return Report(DaxChannel::WholeFile, DaxError::SetIdBeforeOpen, "Open");
    if (VFIsCreateMode(mode) != create_)
        return Report(DaxChannel::WholeFile, DaxError::CreateMismatch, "Open");
    return true;
}

bool VDAccessCore::FinishOpen(bool created)
{
    metaData_.Begin(created);
    if (family_.steps.finishOpen != nullptr && !family_.steps.finishOpen(owner_, created))
        return false;
    return !created || PutChanTitles();
}

bool VDAccessCore::PutChanTitles()
{
    if (!HasCapability(family_.chanTitle.capability))
        return true;
    for (int index = 0; index < channelCount_; ++index) {
        VDString title;
        if (!FIDGetChanTitle(fileId_.Get(), index, &title) || !SetChanTitle(index, title))
            return false;
    }
    return true;
}

/// Takes back an `Open` whose later steps failed, or gives up a file that can't be flushed; the error that stands recorded
/// stays.
void VDAccessCore::AbandonOpen()
{
    if (!open_)
        return;
    open_ = false;
    const VDErrorMute mute;
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    try {
        plugin_->entryPoints->Close(instance_);
    } catch (...) {
        // The failure that led here is the one to tell.
    }
    metaData_.Close();
}

bool VDAccessCore::Close()
{
    if (!CheckBound("Close"))
        return false;
    if (!open_)
        return true;
    if (!readOnly_ && !Flush())
        return false;
    // A plug-in that was told once isn't told again, whatever it made of it.
    open_ = false;
    metaData_.DropCopy();
    if (Call("Close", [&] { return plugin_->entryPoints->Close(instance_); }))
        return metaData_.Close();
    const VDErrorMute mute;
    metaData_.Close();
    return false;
}

bool VDAccessCore::Flush()
{
    if (!CheckFileOpen("Flush") || (family_.flushesBeforeItsStep && !CallFlush()) || !metaData_.HandOver())
        return false;
    if (family_.steps.flush != nullptr && !family_.steps.flush(owner_)) {
        // What was written is not to be lost with it.
        const VDErrorMute mute;
        CallFlush();
        return false;
    }
    return CallFlush() && metaData_.Flush();
}

bool VDAccessCore::CallFlush()
{
    return Call("Flush", [&] { return plugin_->entryPoints->Flush(instance_); });
}
