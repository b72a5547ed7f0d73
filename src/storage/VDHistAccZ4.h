#pragma once

#include "VDHistAccPluginBase.h"

#include "daxlib/DaxHandle.h"
#include "vdstore/LQDataManager.h"

/// Access to the histograms of a storage file. It keeps the file open and passes histograms on to the object inside. A
/// channel argument is an index of the access object's channel list.
class VDHistAccZ4 final : public VDHistAccPluginBase
{
public:
    static constexpr std::int32_t ClassId = static_cast<std::int32_t>(0xa04f0185);

    VDHistAccZ4();
    ~VDHistAccZ4() override;

    bool SetId(VDFileId* id, char create) override;
    bool Open(int mode) override;
    bool Close() override;
    bool Flush() override;
    bool GetValue(long channel, int key, VDVariant* value) override;
    bool PutValue(long channel, int key, VDVariant* value) override;
    bool GetCapability(int capability, char* answer) override;
    bool GetHistogram(long channel, VDHist** histogram) override;
    bool PutHistogram(long channel, VDHist* histogram) override;
    bool LoadMetaData(LQChannelMapper** mapper) override;
    void GetChanFileName(VDString& filename, long channel) const override;

private:
    bool OpenFile(int mode);
    bool MakeChannels(const VDArrayWithSort<long>& numbers);
    bool FindChannels(const VDArrayWithSort<long>& numbers);
    bool HasHistograms() const;
    bool CloseAll(bool save);
    /// The object's own channel of an access channel; false, recorded, if there is none.
    bool FindChannel(long channel, int* own, const char* routine) const;

    VDFileIdHandle fileId_;
    VDString filename_;
    LQDataManager& data_;
    LQHistogram* histograms_ = nullptr;
    Z4File* file_ = nullptr;
    bool configured_ = false;  // the object has the data type of a histogram that was put
    VDArrayWithSort<long> channelIndex_;
};
