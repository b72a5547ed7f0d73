#pragma once

#include "VDTsAccPluginBase.h"

#include "daxlib/DaxHandle.h"
#include "vdstore/LQDataManager.h"

/// Access to the time series of a storage file. It keeps the file open and passes data straight on to the object inside. The
/// file holds an object of one of two kinds, whose sub id in the file decides: typed channels, or the older kind with floats
/// only. A channel argument is an index of the access object's channel list.
class VDTsAccZ4 final : public VDTsAccPluginBase
{
public:
    static constexpr std::int32_t ClassId = static_cast<std::int32_t>(0xa04f0166);

    VDTsAccZ4();
    ~VDTsAccZ4() override;

    bool SetId(VDFileId* id, char create) override;
    bool Open(int mode) override;
    bool Close() override;
    bool Flush() override;
    bool GetValue(long channel, int key, VDVariant* value) override;
    bool PutValue(long channel, int key, VDVariant* value) override;
    bool GetCapability(int capability, char* answer) override;
    bool GetData(long channel, std::int64_t first, std::int64_t count, float* values) override;
    bool PutData(long channel, std::int64_t first, std::int64_t count, const float* values) override;
    bool GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values) override;
    bool PutDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, const double* values) override;
    bool GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values) override;
    bool PutDataDigital32(long channel, std::int64_t first, std::int64_t count, const std::uint32_t* values) override;
    bool GetDataDigital64(long channel, std::int64_t first, std::int64_t count, std::uint64_t* values) override;
    bool PutDataDigital64(long channel, std::int64_t first, std::int64_t count, const std::uint64_t* values) override;
    bool LoadMetaData(LQChannelMapper** mapper) override;
    void GetChanFileName(VDString& filename, long channel) const override;

private:
    bool OpenFile(int mode);
    bool AdoptObject(int recordSize);
    bool MakeChannels(const VDArrayWithSort<long>& numbers);
    bool FindChannels(const VDArrayWithSort<long>& numbers);
    bool TellTypes();
    bool CloseAll(bool save);
    int GetOptimumRecordSize() const;

    /// The object's own channel of an access channel.
    int GetChannel(long channel) const { return static_cast<int>(channelIndex_[static_cast<int>(channel)]); }
    template <auto Get, auto Map, class Value>
    bool GetTyped(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine);
    template <auto Set, class Value>
    bool PutTyped(long channel, std::int64_t first, std::int64_t count, const Value* values);
    /// Whether all points came.
    bool CheckCount(long channel, std::int64_t count, std::int64_t got, const char* routine) const;
    void GetStatistics(int channel, VDVariant* value) const;
    void GetStatisticsDouble(int channel, VDVariant* value) const;
    bool PutStatistics(int channel, const VDVariant& list);
    bool PutStatisticsDouble(int channel, const VDVariant& list);
    void GetFullScale(int channel, VDVariant* value) const;
    void GetFormatSpecific(int channel, VDVariant* list) const;
    bool PutFormatSpecific(long channel, const VDVariant& list);
    void PutHint(const VDVariant& list);

    VDFileIdHandle fileId_;
    VDString filename_;
    LQDataManager& data_;
    LQTimeChannels* object_ = nullptr;    // the one in use
    LQTimeSeries* timeSeries_ = nullptr;  // the same, or null if it is of the older kind
    Z4File* file_ = nullptr;
    VDArrayWithSort<long> channelIndex_;
    bool flex_ = false;
    // What a host says about the data that will come, so that records get a size that suits them; -1 for unknown.
    std::int64_t numberOfElements_ = -1;
    long elementsSize_ = -1;
    bool smallestSingleRecord_ = true;
};
