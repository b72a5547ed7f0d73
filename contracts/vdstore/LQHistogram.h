#pragma once

#include "vdstore/LQObject.h"

class VDHist;

/// How the streams of new channels are laid out.
struct LQTuner
{
    int recordSize = 32 * 1024;  ///< one of `Z4Size`
};

/// Histograms, one a channel, each with all that its handle holds (`vdbase/VFHist.h`). The bins go straight between the
/// handle's memory and the file.
class VDSTORE_API LQHistogram : public LQObject
{
public:
    ~LQHistogram() override;

    int GetChannelCount() const override { return channels_.GetSize(); }
    bool AdjustChannelCount(int count) override;
    bool RemoveChannel(int channel) override;
    /// Bins of a channel.
    std::int64_t GetElementCount(int channel) const override;
    std::int32_t GetChannelDataType(int channel) const override;
    /// Describes each histogram as `VFPutHistogramAttributes` does.
    bool RefreshMetadata(bool keep, int channel) override;

    bool GetZUnits(VDString& units, int channel) const;
    /// Whether a histogram was put into the channel.
    bool HasHistogram(int channel) const;

    /// The type of the values of the bins, one of `Z4TypeDouble`, `Z4TypeHuge`, `Z4TypeLong` and `Z4TypeFloat`: of new
    /// channels and of those that hold no histogram yet.
    bool SetDefaultDataType(std::int32_t type);

    /// Gives the channel's histogram to a handle. Of a channel without one it is empty, with the format of its type.
    /// @return false, recorded, if the file fails or what it holds contradicts itself
    bool SaveTo(VDHist* histogram, int channel);
    /// Takes a handle's histogram in the place of the channel's. Its values are kept in the channel's type if every one has
    /// an exact form there; otherwise the channel takes the type of the histogram.
    bool LoadFrom(const VDHist* histogram, int channel);

private:
    friend class LQDataManager;

    struct Channel
    {
        std::int32_t type = Z4TypeDouble;
        bool hasHistogram = false;
        VDString zUnits;
        std::int64_t binBytes = 0;   ///< at the start of the stream; the description follows
        std::uint64_t checksum = 0;  ///< of the description
        Z4Stream* stream = nullptr;  ///< the node's of the same index
    };
    struct Stored;

    LQHistogram();

    void WriteContent(Z4ByteWriter& writer) const override;
    bool ReadContent(Z4ByteReader& reader) override;
    bool ReadDescription(const Channel& channel, Stored* stored);
    bool ReadBins(const Channel& channel, VDHist* histogram);
    bool Write(Channel& channel, const VDHist* histogram);
    bool ReportDamaged() const;

    Z4SlotList<Channel> channels_;
    std::int32_t defaultType_ = Z4TypeDouble;
    int recordSize_;
};
