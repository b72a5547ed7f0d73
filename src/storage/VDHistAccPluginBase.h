#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDCompBase.h"
#include "vdbase/VDVariant.h"

class LQChannelMapper;
class VDHist;

/// A histogram access plug-in that lives inside the library and is reached through the `HFAccGen` functions. The operations
/// are those of `DaxHistogram`; each gives false, recorded, on failure.
class VDHistAccPluginBase : public VDCompBase
{
public:
    static constexpr std::int32_t FamilyId = static_cast<std::int32_t>(0xa04f0114);

    /// Tells the plug-ins of this family from all other objects, whose ids are those of their own classes.
    std::int32_t GetPluginFamilyId() const { return familyId_; }

    virtual bool SetId(VDFileId* id, char create) = 0;
    virtual bool Open(int mode) = 0;
    virtual bool Close() = 0;
    virtual bool Flush() = 0;
    virtual bool GetValue(long channel, int key, VDVariant* value) = 0;
    virtual bool PutValue(long channel, int key, VDVariant* value) = 0;
    virtual bool GetCapability(int capability, char* answer) = 0;
    virtual bool GetHistogram(long channel, VDHist** histogram) = 0;
    virtual bool PutHistogram(long channel, VDHist* histogram) = 0;
    virtual bool AddLegacyMetaData(LQChannelMapper* mapper);
    /// A plug-in that keeps none leaves it alone: it reports -327992.
    virtual bool LoadMetaData(LQChannelMapper** mapper);
    /// The file that a report about a channel names; empty for none.
    virtual void GetChanFileName(VDString& filename, long channel) const;

protected:
    VDHistAccPluginBase();

    /// Records the catalogue text of the code and the file of the channel.
    /// @param chain  1 puts the report on top of the one that tells the cause and names the file
    /// @return false always
    bool Report(long channel, int code, const char* routine, int chain = 0) const;

private:
    const std::int32_t familyId_;
};
