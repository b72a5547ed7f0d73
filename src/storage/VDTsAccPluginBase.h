#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;

/// A time-series access plug-in that lives inside the library and is reached through the `TSAccGen` functions. The
/// operations are those of `DaxTimeSeries`; each gives false, recorded, on failure.
class VDTsAccPluginBase : public VDCompBase
{
public:
    static constexpr std::int32_t FamilyId = static_cast<std::int32_t>(0xa04f0104);

    /// Tells the plug-ins of this family from all other objects, whose ids are those of their own classes.
    std::int32_t GetPluginFamilyId() const { return familyId_; }

    virtual bool SetId(VDFileId* id, char create) = 0;
    virtual bool Open(int mode) = 0;
    virtual bool Close() = 0;
    virtual bool Flush() = 0;
    virtual bool GetValue(long channel, int key, VDVariant* value) = 0;
    virtual bool PutValue(long channel, int key, VDVariant* value) = 0;
    virtual bool GetCapability(int capability, char* answer) = 0;
    virtual bool GetData(long channel, std::int64_t first, std::int64_t count, float* values) = 0;
    virtual bool PutData(long channel, std::int64_t first, std::int64_t count, const float* values) = 0;
    /// A plug-in that has no such values leaves these alone: they report -327992.
    virtual bool GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values);
    virtual bool PutDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, const double* values);
    virtual bool GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values);
    virtual bool PutDataDigital32(long channel, std::int64_t first, std::int64_t count, const std::uint32_t* values);
    virtual bool GetDataDigital64(long channel, std::int64_t first, std::int64_t count, std::uint64_t* values);
    virtual bool PutDataDigital64(long channel, std::int64_t first, std::int64_t count, const std::uint64_t* values);
    virtual bool AddLegacyMetaData(LQChannelMapper* mapper);
    virtual bool LoadMetaData(LQChannelMapper** mapper);
    /// The file that a report about a channel names; empty for none.
    virtual void GetChanFileName(VDString& filename, long channel) const;

protected:
    VDTsAccPluginBase();

    /// Records the catalogue text of the code and the file of the channel.
    /// @param chain  1 puts the report on top of the one that tells the cause and names the file
    /// @return false always
    bool Report(long channel, int code, const char* routine, int chain = 0) const;

private:
    const std::int32_t familyId_;
};
