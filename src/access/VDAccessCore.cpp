#include "VDAccessCore.h"

#include "VDAccessPlugins.h"
#include "frame/VFDaxReport.h"
#include "identity/SidecarName.h"

#include "vdbase/VDFileSystem.h"

namespace {

bool VFIsInStore(const VDString& descriptor)
{
    return descriptor.Left(8) == "vdindex:" || descriptor.Left(12) == "vdfilestore:";
}

}  // namespace

VDAccessCore::VDAccessCore(const VDAccessFamily& family, VDAccessPlugins& plugins, void* owner)
    : family_(family), plugins_(plugins), owner_(owner)
{
}

VDAccessCore::~VDAccessCore()
{
    const VDErrorMute mute;
    AbandonOpen();
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    Unbind();
    fileId_.Reset();
}

bool VDAccessCore::SetId(VDFileId* id, char create)
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    // The instance of an earlier binding may look at the earlier id until it is given back.
    const VDFileIdHandle earlier = std::move(fileId_);
    if (TakeId(id, create) && plugins_.LoadPlugIns())
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

    VDString descriptor;
    indexed_ = FIDGetTestDescriptor(id, VTTestDescSelected, &descriptor) != 0 && VFIsInStore(descriptor);

    int count = 0;
    if (!FIDSortChans(fileId_.Get(), 1) || !FIDGetNumChans(fileId_.Get(), &count))
        return false;
    return count >= 1 || family_.codes.emptyChannelList == 0 ||
           Report(DaxChannel::WholeFile, family_.codes.emptyChannelList, "SetId");
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
        return VFDaxReport(DaxError::PluginDisabled, Routine("SetId"), {.appended = plugin->description}) != 0;

    plugin_ = plugin;
    const VDAccessEntryPoints& entryPoints = *plugin_->entryPoints;
    if (!Call("SetId", [&] { return (instance_ = entryPoints.Create(classId)) != nullptr; }))
        return false;
    const auto tell = [&] {
        VDVariant owner(owner_);
        return family_.putValue(entryPoints, instance_, DaxChannel::WholeFile, 0, &owner);
    };
    char noSerialisation = 0;
    const auto ask = [&] {
        return entryPoints.GetCapability(instance_, family_.capabilities.noSerialisation, &noSerialisation);
    };
    if (!Call("SetId", tell) || !Call("SetId", ask))
        return false;
    noSerialisation_ = noSerialisation != 0;
    return Call("SetId", [&] { return entryPoints.SetId(instance_, fileId_.Get(), create_ ? 1 : 0); });
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

bool VDAccessCore::CheckBound(const char* routine)
{
    return IsBound() || VFDaxReportError(DaxError::SetIdFirst, Routine(routine)) != 0;
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

bool VDAccessCore::CallOpen(int mode)
{
    if (!Call("Open", [&] { return plugin_->entryPoints->Open(instance_, mode); }))
        return false;
    open_ = true;
    readOnly_ = mode == 1;
    return true;
}

bool VDAccessCore::FinishCreate()
{
    if (HasCapability(family_.capabilities.channelTitles)) {
        int count = 0;
        if (!FIDGetNumChans(fileId_.Get(), &count))
            return false;
        for (int index = 0; index < count; ++index) {
            VDString title;
            if (!FIDGetChanTitle(fileId_.Get(), index, &title) || !SetChanTitle(index, title))
                return false;
        }
    }
    VDString sidecar;
    if (!HasCapability(family_.capabilities.keepsMetaData) && VFSidecarFilename(fileId_.Get(), &sidecar) &&
        VDFileSystem::FileExists(sidecar)) {
        const VDErrorMute mute;
        VDFileSystem::DelFile(sidecar);
    }
    return true;
}

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
}

bool VDAccessCore::CallClose()
{
    // A plug-in that was told once isn't told again, whatever it made of it.
    open_ = false;
    return Call("Close", [&] { return plugin_->entryPoints->Close(instance_); });
}

bool VDAccessCore::GetCapability(int capability, char* answer)
{
    return CheckBound("GetCapability") &&
           Call("GetCapability", [&] { return plugin_->entryPoints->GetCapability(instance_, capability, answer); });
}

bool VDAccessCore::HasCapability(int capability)
{
    char answer = 0;
    return GetCapability(capability, &answer) && answer != 0;
}

bool VDAccessCore::GetValue(long channel, int key, VDVariant* value)
{
    return Call("GetPluginValue", [&] { return family_.getValue(*plugin_->entryPoints, instance_, channel, key, value); });
}

bool VDAccessCore::PutValue(long channel, int key, VDVariant value)
{
    return Call("SetPluginValue", [&] { return family_.putValue(*plugin_->entryPoints, instance_, channel, key, &value); });
}

template <class T>
bool VDAccessCore::GetTyped(long channel, int key, T* value, bool (VDVariant::*get)(T*) const)
{
    VDVariant answer;
    if (!GetValue(channel, key, &answer))
        return false;
    return (answer.*get)(value) || Report(static_cast<int>(channel), DaxError::HeaderValue, "GetPluginValue");
}

bool VDAccessCore::GetLong(long channel, int key, long* value)
{
    return GetTyped(channel, key, value, &VDVariant::GetLong);
}

bool VDAccessCore::GetHuge(long channel, int key, std::int64_t* value)
{
    return GetTyped(channel, key, value, &VDVariant::GetHuge);
}

bool VDAccessCore::GetDouble(long channel, int key, double* value)
{
    return GetTyped(channel, key, value, &VDVariant::GetDouble);
}

bool VDAccessCore::GetString(long channel, int key, VDString* value)
{
    return GetTyped(channel, key, value, &VDVariant::GetString);
}

bool VDAccessCore::GetChanIndex(int number, int* index)
{
    if (FIDGetChanIndex(fileId_.Get(), number, index))
        return true;
    VDString text;
    text.Format("%s : %d", VFDaxText(DaxError::InvalidChannelNumber).c_str(), number);
    return VFDaxReport(DaxError::InvalidChannelNumber, Routine("GetChanIndex"), {.text = text}) != 0;
}

bool VDAccessCore::IsValidChan(int number, char* valid)
{
    int index = 0;
    *valid = 0;
    if (GetChanIndex(number, &index))
        *valid = 1;
    return true;
}

bool VDAccessCore::GetActualChanNumber(int index, long* number)
{
    if (IsBound() && GetLong(index, family_.keys.actualChanNumber, number))
        return true;
    int own = 0;
    if (!FIDGetChanNumber(fileId_.Get(), index, &own))
        return false;
    *number = own;
    return true;
}

bool VDAccessCore::GetChanTitle(int index, VDString* title)
{
    if (!HasCapability(family_.capabilities.channelTitles))
        return FIDGetChanTitle(fileId_.Get(), index, title) != 0;
    if (!GetString(index, family_.keys.channelTitle, title))
        return false;
    title->Replace('\r', ' ');
    title->Replace('\n', ' ');
    return true;
}

bool VDAccessCore::SetChanTitle(int index, const char* title)
{
    if (!HasCapability(family_.capabilities.channelTitles))
        return Report(index, DaxError::NoChannelTitle, "SetChanTitle");
    return PutValue(index, family_.keys.channelTitle, VDVariant(title));
}

bool VDAccessCore::GetFormatSpecificValue(long channel, const char* name, VDVariant* value)
{
    if (value == nullptr)
        return Report(static_cast<int>(channel), DaxError::InvalidArguments, "GetFormatSpecificValue");
    value->Clear();
    if (!CheckFileOpen("GetFormatSpecificValue"))
        return false;
    VDVariant list = VDVariant::FromList({VDVariant(name)});
    if (!GetValue(channel, family_.keys.formatSpecific, &list))
        return false;
    if (list.GetNumItems() == 2)
        *value = list[1];
    return true;
}

bool VDAccessCore::SetFormatSpecificValue(long channel, const char* name, const VDVariant* value)
{
    if (value == nullptr)
        return Report(static_cast<int>(channel), DaxError::InvalidArguments, "SetFormatSpecificValue");
    // Hints on how a new file will be laid out come before it is opened.
    if (!CheckBound("SetFormatSpecificValue"))
        return false;
    return PutValue(channel, family_.keys.formatSpecific, VDVariant::FromList({VDVariant(name), *value}));
}

bool VDAccessCore::CheckFileOpen(const char* routine)
{
    return open_ || Report(DaxChannel::WholeFile, DaxError::NotOpen, routine);
}

bool VDAccessCore::CheckChannel(int channel, int count, bool allowAll, const char* routine)
{
    if (count == 0)
        return Report(DaxChannel::WholeFile, DaxError::NoChannelList, routine);
    if (channel >= 0 && channel < count)
        return true;
    if (allowAll && static_cast<std::uint32_t>(channel) == DaxChannel::All)
        return true;
    return Report(DaxChannel::WholeFile, DaxError::ChannelIndexRange, routine);
}

bool VDAccessCore::CheckWritable(const char* routine)
{
    char writable = 0;
    if (!GetCapability(family_.capabilities.writable, &writable))
        return Report(DaxChannel::WholeFile, DaxError::InvalidHandle, routine);
    return (writable != 0 && !readOnly_) || Report(DaxChannel::WholeFile, DaxError::NotWritable, routine);
}

bool VDAccessCore::Report(int channel, int code, const char* routine) const
{
    VDDaxReportDetail detail;
    if (fileId_) {
        const VDErrorMute mute;
        if (FIDGetChanFilename(fileId_.Get(), channel, &detail.name))
            detail.label = DaxText::File;
    }
    return VFDaxReport(code, Routine(routine), detail) != 0;
}

bool VDAccessCore::ReportNotSupported() const
{
    VDString title;
    if (!FIDGetTestTitle(fileId_.Get(), &title))
        title = "Unknown";
    VDDaxReportDetail detail;
    if (family_.namesTestOnNotSupported)
        detail.appended = "\nTest name : ";
    detail.appended += title;
    return VFDaxReport(family_.codes.notSupported, Routine("SetId"), detail) != 0;
}

bool VDAccessCore::ReportPluginError(const char* routine)
{
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    VDString text;
    try {
        family_.getLastError(*plugin_->entryPoints, instance_, text);
    } catch (...) {
        text.Empty();
    }
    if (text != "VARDO")
        VFErrorSet(family_.codes.pluginFailure, text, Routine(routine), 0);
    else if (VFErrorGetCode(VFGetBaseLibError()) == 0)
        VFDaxReportError(family_.codes.unknownFailure, Routine(routine));
    return false;
}
