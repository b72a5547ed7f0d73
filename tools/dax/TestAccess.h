#pragma once

#include "Registry.h"

#include "vdbase/VDVariant.h"

#include <memory>

class LQChannelMapper;

/// How a test is opened.
enum class VTTestOpen { Read, Update, Create };

/// What can be asked of a test whatever its kind of data, through the access family that serves the kind. Results are the
/// library's: 0 for a failure, which is recorded.
class VDTestAccess
{
public:
    virtual ~VDTestAccess() = default;

    virtual int SetId(VDFileId* id, bool create) = 0;
    virtual int Open(VTTestOpen mode) = 0;
    virtual int Close() = 0;
    /// The answers are those of the format, which is known from `SetId` on; they throw if it can't be asked.
    virtual bool KeepsMetaData() const = 0;
    virtual bool IsWritable() const = 0;
    /// The metadata, which stay the access object's.
    virtual int GetMetaData(LQChannelMapper** mapper) const = 0;
    /// @name Values that the format knows by names of its own, of the file as a whole
    /// @{
    virtual int GetFormatValue(const char* name, VDVariant* value) const = 0;
    virtual int SetFormatValue(const char* name, VDVariant* value) = 0;
    /// @}
};

/// For a kind of data; null if no family of the library serves it.
std::unique_ptr<VDTestAccess> VFMakeTestAccess(int accessType);
