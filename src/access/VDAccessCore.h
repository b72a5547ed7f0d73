#pragma once

#include "AccessFamily.h"

#include "daxlib/DaxHandle.h"
#include "frame/VDDaxLib.h"

#include "vdbase/VDArray.h"
#include "vdbase/VFError.h"

#include <cstdint>
#include <mutex>

class VDAccessPlugins;

/// What an access object of every family consists of: its own copy of the file id, the plug-in that the file's type names,
/// and one instance of it. A family's class contains a core, forwards to it what all families share, and adds the calls for
/// its own data through `Call`.
///
/// Routine names in reports are the operation's name behind the family's class name.
class VDAccessCore
{
public:
    /// @param owner  the access object, which plug-ins get to know under key 0
    VDAccessCore(const VDAccessFamily& family, VDAccessPlugins& plugins, void* owner);
    /// Gives the instance back, also from an open file; nothing of that is recorded.
    ~VDAccessCore();
    VDAccessCore(const VDAccessCore&) = delete;
    VDAccessCore& operator=(const VDAccessCore&) = delete;

    /// @name Life
    /// @{
    /// Binds the object to a test, which ends an earlier binding. No file may be open.
    bool SetId(VDFileId* id, char create);
    /// The checks before an `Open`.
    /// @param mode  1 read, 2 read and write an existing file, 3 and 4 create
    bool CheckOpen(int mode);
    /// Opens the plug-in's file.
    bool CallOpen(int mode);
    /// Hands a file that was created the channel titles, and deletes the metadata sidecar of its predecessor.
    bool FinishCreate();
    /// Takes back an `Open` whose later steps failed; the error that stands recorded stays.
    void AbandonOpen();
    /// Checks for a binding, with the report of `routine`.
    bool CheckBound(const char* routine);
    /// Closes the plug-in's file.
    bool CallClose();
    /// @}

    /// @name State
    /// @{
    VDFileId* GetFileId() const { return fileId_.Get(); }
    bool IsOpen() const { return open_; }
    bool IsReadOnly() const { return readOnly_; }
    /// The test lies in a store, not on disk.
    bool IsIndexed() const { return indexed_; }
    bool IsBound() const { return plugin_ != nullptr && instance_ != nullptr; }
    void* GetInstance() const { return instance_; }
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
    bool GetCapability(int capability, char* answer);
    /// One of the capabilities that all families have; the question must succeed too.
    bool HasCapability(int capability);
    /// @param channel  an index, or `DaxChannel::WholeFile`
    bool GetValue(long channel, int key, VDVariant* value);
    bool PutValue(long channel, int key, VDVariant value);
    /// The typed forms fail with -328012 when the plug-in gives another type.
    bool GetLong(long channel, int key, long* value);
    bool GetHuge(long channel, int key, std::int64_t* value);
    bool GetDouble(long channel, int key, double* value);
    bool GetString(long channel, int key, VDString* value);
    /// @}

    /// @name What all families do alike
    /// @{
    bool GetChanIndex(int number, int* index);
    bool IsValidChan(int number, char* valid);
    bool GetActualChanNumber(int index, long* number);
    bool GetChanTitle(int index, VDString* title);
    bool SetChanTitle(int index, const char* title);
    bool GetFormatSpecificValue(long channel, const char* name, VDVariant* value);
    bool SetFormatSpecificValue(long channel, const char* name, const VDVariant* value);
    /// @}

    /// @name Checks
    /// @{
    bool CheckFileOpen(const char* routine);
    /// @param count     number of channels that the object has
    /// @param allowAll  the selector of all channels passes too
    bool CheckChannel(int channel, int count, bool allowAll, const char* routine);
    bool CheckWritable(const char* routine);
    /// @}

    /// @name Reports; the result is always false
    /// @{
    /// The catalogue text and, where the channel has a file, a line with its name.
    bool Report(int channel, int code, const char* routine) const;
    /// The failure of a plug-in call: the plug-in's own text, or what it has recorded already.
    bool ReportPluginError(const char* routine);
    VDString Routine(const char* routine) const { return VDString(family_.className) + "::" + routine; }
    /// @}

private:
    bool TakeId(VDFileId* id, char create);
    bool Bind();
    void Unbind();
    bool ReportNotSupported() const;
    template <class T>
    bool GetTyped(long channel, int key, T* value, bool (VDVariant::*get)(T*) const);

    const VDAccessFamily& family_;
    VDAccessPlugins& plugins_;
    void* owner_;
    VDFileIdHandle fileId_;
    const VDAccessPluginInfo* plugin_ = nullptr;
    void* instance_ = nullptr;
    bool noSerialisation_ = false;
    bool open_ = false;
    bool readOnly_ = false;
    bool create_ = false;
    bool indexed_ = false;
};

template <class Function>
bool VDAccessCore::Call(const char* routine, Function&& function)
{
    VFErrorClear();
    std::unique_lock lock(VDDaxLib::Get().GetLock(), std::defer_lock);
    if (!noSerialisation_)
        lock.lock();
    bool done = false;
    try {
        done = function() != 0;
    } catch (...) {
        done = false;
    }
    return done || ReportPluginError(routine);
}
