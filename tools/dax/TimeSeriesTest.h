#pragma once

#include "daxlib/DaxHandle.h"

#include <cstdint>
#include <string>
#include <vector>

/// One channel of an open test.
struct VDChannel
{
    int index = 0;  ///< position in the list sorted by number
    int number = 0;
    std::string title;   ///< the channel's, or else its y title
    std::string yTitle;  ///< what the y axis is labelled with
    std::string units;
    int type = 0;  ///< see `DaxDataType`
    double sampleRate = 1.0;
    double baseTime = 0.0;
    std::int64_t points = 0;
};

/// A data type as a word: "float", "double", "digital32", ...
std::string VFTypeWord(int type);

/// A time-series test that is open for reading.
class VDTimeSeriesTest
{
public:
    /// Opens the test; throws if that fails, also for a test of another kind of data.
    /// @param id  with its channels sorted by number; it must outlive this object
    explicit VDTimeSeriesTest(const VDFileIdHandle& id);

    VDFileId* GetId() const { return id_; }
    VDTsAcc* Get() const { return acc_.Get(); }
    const std::vector<VDChannel>& GetChannels() const { return channels_; }
    const std::string& GetXTitle() const { return xTitle_; }
    const std::string& GetXUnits() const { return xUnits_; }
    /// Points that the format likes to move at a time, in sensible bounds.
    std::int64_t GetBlockSize() const { return blockSize_; }

private:
    VDChannel ReadChannel(int index, int number) const;

    VDFileId* id_;
    VDTsAccHandle acc_;
    std::vector<VDChannel> channels_;
    std::string xTitle_;
    std::string xUnits_;
    std::int64_t blockSize_ = 0;
};
