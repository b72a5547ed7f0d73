#include "VDAccessCore.h"

#include "frame/VFDaxReport.h"

// What all families ask their plug-ins alike, and the checks and reports around it.

namespace {

constexpr long DefaultBufferSize = 16384;

}  // namespace

bool VDAccessCore::GetCapability(int capability, char* answer)
{
    *answer = 0;
    return CheckBound("GetCapability") &&
           Call("GetCapability", [&] { return plugin_->entryPoints->GetCapability(instance_, capability, answer); });
}

bool VDAccessCore::HasCapability(int capability)
{
    char answer = 0;
    return GetCapability(capability, &answer) && answer != 0;
}

template <class Size>
bool VDAccessCore::GetBufferSize(Size* size)
{
    *size = DefaultBufferSize;
    VDVariant value;
    if (!CheckBound("GetBufferSize") || !GetValue(DaxChannel::WholeFile, family_.bufferSizeKey, &value))
        return false;
    long preferred = 0;
    if (value.GetLong(&preferred) && preferred >= 1 && std::in_range<Size>(preferred))
        *size = static_cast<Size>(preferred);
    return true;
}

bool VDAccessCore::SetProgressObject(VDProgressObject* progress)
{
    progress_ = progress;
    const auto set = family_.calls.setProgressObject;
    return set == nullptr || (CheckBound("SetProgressObject") && Call("SetProgressObject", [&] {
                                  return set(*plugin_->entryPoints, instance_, progress);
                              }));
}

bool VDAccessCore::GetValue(const VDAccessSelector& selector, int key, VDVariant* value, VDVariant input)
{
    return Call("GetPluginValue", [&] {
        return family_.calls.getValue(*plugin_->entryPoints, instance_, selector, key, &input, value);
    });
}

bool VDAccessCore::PutValue(const VDAccessSelector& selector, int key, VDVariant value)
{
    char ignored = 0;
    if (family_.capabilities.beforePut != VDAccessCapabilities::NotAsked &&
        !GetCapability(family_.capabilities.beforePut, &ignored))
        return false;
    return Call("SetPluginValue",
                [&] { return family_.calls.putValue(*plugin_->entryPoints, instance_, selector, key, &value); });
}

template <class T>
bool VDAccessCore::GetTyped(const VDAccessSelector& selector, int key, T* value, bool (VDVariant::*get)(T*) const)
{
    VDVariant answer;
    if (!GetValue(selector, key, &answer))
        return false;
    return (answer.*get)(value) || ReportWrongType(selector, key);
}

bool VDAccessCore::GetLong(const VDAccessSelector& selector, int key, long* value)
{
    return GetTyped(selector, key, value, &VDVariant::GetLong);
}

bool VDAccessCore::GetHuge(const VDAccessSelector& selector, int key, std::int64_t* value)
{
    return GetTyped(selector, key, value, &VDVariant::GetHuge);
}

bool VDAccessCore::GetDouble(const VDAccessSelector& selector, int key, double* value)
{
    return GetTyped(selector, key, value, &VDVariant::GetDouble);
}

bool VDAccessCore::GetString(const VDAccessSelector& selector, int key, VDString* value)
{
    return GetTyped(selector, key, value, &VDVariant::GetString);
}

bool VDAccessCore::GetChans(VDArrayWithSort<long>* numbers) const
{
    return FIDGetChans(fileId_.Get(), numbers) != 0;
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

template <class Number>
bool VDAccessCore::GetActualChanNumber(int index, Number* number)
{
    long actual = 0;
    if (IsBound() && GetLong(index, family_.actualChanNumberKey, &actual) && std::in_range<Number>(actual)) {
        *number = static_cast<Number>(actual);
        return true;
    }
    int own = 0;
    if (!FIDGetChanNumber(fileId_.Get(), index, &own))
        return false;
    *number = own;
    return true;
}

bool VDAccessCore::GetChanTitle(int index, VDString* title)
{
    return GetChanText(family_.chanTitle, index, title, "GetChanTitle");
}

bool VDAccessCore::SetChanTitle(int index, const char* title)
{
    return SetChanText(family_.chanTitle, index, title, "SetChanTitle");
}

bool VDAccessCore::GetChanText(const VDAccessText& text, int index, VDString* value, const char* routine)
{
    if (!CheckChannel(index, false, routine))
        return false;
    if (!HasCapability(text.capability))
        return text.ofId != nullptr ? text.ofId(fileId_.Get(), index, value) != 0 : Report(index, text.notSupported, routine);
    if (!GetString(index, text.key, value))
        return false;
    value->Replace('\r', ' ');
    value->Replace('\n', ' ');
    return true;
}

bool VDAccessCore::SetChanText(const VDAccessText& text, int index, const char* value, const char* routine)
{
    if (!CheckChannel(index, false, routine))
        return false;
    if (!HasCapability(text.capability))
        return Report(index, text.notSupported, routine);
    return PutValue(index, text.key, VDVariant(value));
}

bool VDAccessCore::GetFormatSpecificValue(const VDAccessSelector& selector, const char* name, VDVariant* value)
{
    constexpr const char* routine = "GetFormatSpecificValue";
    if (value == nullptr)
        return Report(static_cast<int>(selector.channel), DaxError::InvalidArguments, routine);
    VDVariant input;
    if (family_.formatSpecific.takeInput)
        input = *value;
    else
        value->Clear();
    if (family_.formatSpecific.needOpenFile ? !CheckFileOpen(routine) : !CheckBound(routine))
        return false;
    VDVariant list = VDVariant::FromList({VDVariant(name)});
    if (!GetValue(selector, family_.formatSpecific.key, &list, input))
        return false;
    // A name that the plug-in doesn't know is no failure.
    value->Clear();
    if (list.GetNumItems() == 2)
        *value = list[1];
    return true;
}

bool VDAccessCore::SetFormatSpecificValue(const VDAccessSelector& selector, const char* name, VDVariant* value)
{
    constexpr const char* routine = "SetFormatSpecificValue";
    if (value == nullptr)
        return Report(static_cast<int>(selector.channel), DaxError::InvalidArguments, routine);
    return CheckBound(routine) &&
           PutValue(selector, family_.formatSpecific.key, VDVariant::FromList({VDVariant(name), *value}));
}

bool VDAccessCore::CheckBound(const char* routine)
{
    return IsBound() || VFDaxReportError(DaxError::SetIdFirst, Routine(routine)) != 0;
}

bool VDAccessCore::CheckFileOpen(const char* routine)
{
    return open_ || Report(DaxChannel::WholeFile, DaxError::NotOpen, routine);
}

bool VDAccessCore::CheckChannel(int channel, bool allowAll, const char* routine)
{
    if (channelCount_ == 0)
        return Report(DaxChannel::WholeFile, DaxError::NoChannelList, routine);
    if (channel >= 0 && channel < channelCount_)
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

bool VDAccessCore::Report(int channel, int code, const char* routine, const VDString& appended) const
{
    VDDaxReportDetail detail = {.appended = appended};
    if (fileId_) {
        const VDErrorMute mute;
        if (FIDGetChanFilename(fileId_.Get(), channel, &detail.name))
            detail.label = DaxText::File;
    }
    return VFDaxReport(code, Routine(routine), detail) != 0;
}

/// Names what the plug-in has no answer of the right type for.
bool VDAccessCore::ReportWrongType(const VDAccessSelector& selector, int key) const
{
    VDString place;
    int number = 0;
    const int channel = static_cast<int>(selector.channel);
    if (selector.channel == DaxChannel::WholeFile)
        place.Format(" : key %d of the file", key);
    else if (FIDGetChanNumber(fileId_.Get(), channel, &number))
        place.Format(" : key %d of channel %d", key, number);
    return Report(channel, DaxError::HeaderValue, "GetPluginValue", place);
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
        family_.calls.getLastError(*plugin_->entryPoints, instance_, text);
    } catch (...) {
        text.Empty();
    }
    if (text != "VARDO")
        VFErrorSet(family_.codes.pluginFailure, text, Routine(routine), 0);
    else if (VFErrorGetCode(VFGetBaseLibError()) == 0)
        VFDaxReportError(family_.codes.unknownFailure, Routine(routine));
    return false;
}

// What the exported functions use.
template bool VDAccessCore::GetBufferSize(int*);
template bool VDAccessCore::GetBufferSize(long*);
template bool VDAccessCore::GetActualChanNumber(int, int*);
template bool VDAccessCore::GetActualChanNumber(int, long*);
