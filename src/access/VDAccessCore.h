#pragma once

#include "AccessFamily.h"
#include "VDAccessMetaData.h"

#include "daxlib/DaxHandle.h"
#include "frame/VDDaxLib.h"

#include "vdbase/VDArray.h"
#include "vdbase/VFError.h"

#include <mutex>

class VDAccessPlugins;

/// What an access object of every family consists of: its own copy of the file id, the plug-in that the file's type names,
/// and one instance of it. A family's class contains a core, as its last member, adds the calls for its own data through
/// `Call`, and does its part at the steps that its description names. What all families share, the exported functions reach
/// here (`AccessWrapper.h`).
///
/// Routine names in reports are the operation's name behind the family's class name.
class VDAccessCore
{
public:
    /// @param owner  the access object, which plug-ins get to know under key 0
    VDAccessCore(const VDAccessFamily& family, VDAccessPlugins& plugins, void* owner);
    /// Closes an open file, with its flush, and gives the instance back; nothing of that is recorded.
    ~VDAccessCore();
    VDAccessCore(const VDAccessCore&) = delete;
    VDAccessCore& operator=(const VDAccessCore&) = delete;

    /// @name Life
    /// @{
    /// Binds the object to a test, which ends an earlier binding; an open file is closed.
    bool SetId(VDFileId* id, char create);
    /// @param id  gets a copy, the caller's
    bool GetId(VDFileId** id) const;
    /// @param mode  1 read, 2 read and write an existing file, 3 and 4 create; one less in a family that counts from 0
    bool Open(int mode);
    bool Close();
    bool Flush();
    bool GetCapability(int capability, char* answer);
    /// In points or values; `Size` is int or long.
    template <class Size>
    bool GetBufferSize(Size* size);
    bool SetProgressObject(VDProgressObject* progress);
    /// @}

    /// @name Channels; `Number` is int or long
    /// @{
    template <class Number>
    bool GetNumChans(Number* count) const
    {
        *count = channelCount_;
        return true;
    }
    bool GetChans(VDArrayWithSort<long>* numbers) const;
    bool GetChanIndex(int number, int* index);
    bool IsValidChan(int number, char* valid);
    template <class Number>
    bool GetActualChanNumber(int index, Number* number);
    bool GetChanTitle(int index, VDString* title);
    bool SetChanTitle(int index, const char* title);
    bool GetChanText(const VDAccessText& text, int index, VDString* value, const char* routine);
    bool SetChanText(const VDAccessText& text, int index, const char* value, const char* routine);
    /// @}

    /// @name Format-specific values and metadata
    /// @{
    bool GetFormatSpecificValue(const VDAccessSelector& selector, const char* name, VDVariant* value);
    bool SetFormatSpecificValue(const VDAccessSelector& selector, const char* name, VDVariant* value);
    bool GetMetaData(LQChannelMapper** mapper) { return metaData_.Get(mapper, true); }
    bool SetUseOffset(char useOffset) { return GetOffsets().SetUse(useOffset != 0); }
    /// The family's own attributes of the test and its channels.
    bool AddHeaderAttributes(LQChannelMapper& mapper)
    {
        return family_.steps.addHeaderAttributes == nullptr || family_.steps.addHeaderAttributes(owner_, mapper);
    }
    VDAccessMetaData& MetaData() { return metaData_; }
    VDAccessOffsets& GetOffsets() { return metaData_.GetOffsets(); }
    const VDAccessOffsets& GetOffsets() const { return metaData_.GetOffsets(); }
    /// @}

    /// @name State
    /// @{
    const VDAccessFamily& GetFamily() const { return family_; }
    VDFileId* GetFileId() const { return fileId_.Get(); }
    int GetChannelCount() const { return channelCount_; }
    bool IsOpen() const { return open_; }
    bool IsReadOnly() const { return readOnly_; }
    bool IsCreated() const { return create_; }
    /// The test lies in a store, not on disk.
    bool IsIndexed() const { return indexed_; }
    bool IsBound() const { return plugin_ != nullptr && instance_ != nullptr; }
    void* GetInstance() const { return instance_; }
    /// The host's, for long operations; null for none.
    VDProgressObject* GetProgressObject() const { return progress_; }
    /// The plug-in's entry points as the family's own type; the object must be bound.
    template <class EntryPoints>
    const EntryPoints& GetEntryPoints() const
    {
        return static_cast<const EntryPoints&>(*plugin_->entryPoints);
    }
    /// @}

    /// @name Calls into the plug-in
    /// @{
    /// Makes one call into the plug-in: the error record is cleared, the library lock is held unless the instance needs
    /// none, and a result of 0 or any exception ends in the plug-in failure report.
    template <class Function>
    bool Call(const char* routine, Function&& function);
    /// Keeps other threads' calls out from between several of one operation, unless the instance needs no serialisation.
    std::unique_lock<VDThreadSync> LockInstance() const
    {
        return noSerialisation_ ? std::unique_lock<VDThreadSync>() : std::unique_lock(VDDaxLib::Get().GetLock());
    }
    /// One of the capabilities that all families have; the question must succeed too.
    bool HasCapability(int capability);
    bool KeepsMetaData() { return HasCapability(family_.capabilities.keepsMetaData); }
    /// @param input  what the plug-in may look at, in families whose plug-ins do
    bool GetValue(const VDAccessSelector& selector, int key, VDVariant* value, VDVariant input = {});
    bool PutValue(const VDAccessSelector& selector, int key, VDVariant value);
    /// The typed forms fail with -328012 when the plug-in gives another type.
    bool GetLong(const VDAccessSelector& selector, int key, long* value);
    bool GetHuge(const VDAccessSelector& selector, int key, std::int64_t* value);
    bool GetDouble(const VDAccessSelector& selector, int key, double* value);
    bool GetString(const VDAccessSelector& selector, int key, VDString* value);
    /// @}

    /// @name Checks
    /// @{
    bool CheckBound(const char* routine);
    bool CheckFileOpen(const char* routine);
    /// @param allowAll  the selector of all channels passes too
    bool CheckChannel(int channel, bool allowAll, const char* routine);
    bool CheckWritable(const char* routine);
    /// @}

    /// @name Reports; the result is always false
    /// @{
    /// The catalogue text and, where the channel has a file, a line with its name.
    /// @param appended  follows the text directly
    bool Report(int channel, int code, const char* routine, const VDString& appended = {}) const;
    /// The failure of a plug-in call: the plug-in's own text, or what it has recorded already.
    bool ReportPluginError(const char* routine);
    VDString Routine(const char* routine) const { return VDString(family_.className) + "::" + routine; }
    /// @}

private:
    bool TakeId(VDFileId* id, char create);
    bool Bind();
    void Unbind();
    bool SetChannelCount(int count);
    bool CheckOpen(int mode);
    bool FinishOpen(bool created);
    bool PutChanTitles();
    void AbandonOpen();
    bool CallFlush();
    bool ReportNotSupported() const;
    bool ReportWrongType(const VDAccessSelector& selector, int key) const;
    template <class T>
    bool GetTyped(const VDAccessSelector& selector, int key, T* value, bool (VDVariant::*get)(T*) const);

    const VDAccessFamily& family_;
    VDAccessPlugins& plugins_;
    void* owner_;
    VDFileIdHandle fileId_;
    const VDAccessPluginInfo* plugin_ = nullptr;
    void* instance_ = nullptr;
    int channelCount_ = 0;
    bool noSerialisation_ = false;
    bool open_ = false;
    bool readOnly_ = false;
    bool create_ = false;
    bool indexed_ = false;
    VDProgressObject* progress_ = nullptr;
    VDAccessMetaData metaData_;
};

template <class Function>
bool VDAccessCore::Call(const char* routine, Function&& function)
{
    VFErrorClear();
    const auto lock = LockInstance();
    bool done = false;
    try {
        done = function() != 0;
    } catch (...) {
        done = false;
    }
    return done || ReportPluginError(routine);
}
