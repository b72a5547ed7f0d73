#pragma once

#include "Json.h"
#include "TestAccess.h"
#include "TextTable.h"

#include <cstdint>
#include <string>
#include <vector>

/// One channel of a test, of whatever kind of data.
struct VDChannel
{
    int index = 0;  ///< position in the list sorted by number
    int number = 0;
    std::string title;  ///< of a time series the channel's, or else its y title
    std::string units;
    int type = 0;  ///< see `DaxDataType`

    /// @name Of a time series
    /// @{
    std::string yTitle;  ///< what the y axis is labelled with
    double sampleRate = 1.0;
    double baseTime = 0.0;
    std::int64_t points = 0;
    /// @}
};

/// A data type as a word: "float", "double", "digital32", ...
std::string VFTypeWord(int type);

/// A test that is open for reading.
class VDDataTest
{
public:
    virtual ~VDDataTest() = default;

    VDFileId* GetId() const { return id_; }
    /// Sorted by number.
    const std::vector<VDChannel>& GetChannels() const { return channels_; }
    /// Null for a kind that no family of the library serves: nothing but the channels is known then.
    virtual VDTestAccess* Access() const { return nullptr; }

    /// @name What `dax info` tells of it
    /// @{
    /// Adds keys or rows of the test as a whole.
    virtual void DescribeTest(VDJson&) const {}
    virtual void DescribeTest(VDTextTable&) const {}
    /// A channel, with all that belongs to it.
    virtual VDJson DescribeChannel(const VDChannel& channel) const;
    /// Adds the limits of its values to what is told of a channel. Where they would have to be worked out from many values,
    /// only if asked to do so always.
    virtual void AddLimits(const VDChannel&, bool /*always*/, VDJson& /*described*/) const {}
    /// @param described  of all channels
    virtual void PrintChannels(const VDJson& described, VDTextSink& out) const;
    /// @}

    /// How much a channel holds, at most so many of what a copy's limit counts, and what that is called.
    virtual std::int64_t CountValues(const VDChannel& channel, std::int64_t limit) const;
    virtual const char* ValueWord() const { return "points"; }

    /// The first values of a channel, as what is compared after a copy; time series have their own comparison.
    virtual VDJson Sample(const VDChannel&) const { return {}; }

protected:
    explicit VDDataTest(VDFileId* id) : id_(id) {}

    /// Binds the access object to the test and opens it; throws if that fails.
    void Open(VDTestAccess& access) const;
    /// The channels as the id has them.
    static std::vector<VDChannel> ListChannels(VDFileId* id);

    std::vector<VDChannel> channels_;

private:
    VDFileId* id_;
};

/// Opens a test of any kind of data; throws if that fails.
/// @param id  with its channels sorted by number; it must outlive the result
std::unique_ptr<VDDataTest> VFOpenDataTest(const VDFileIdHandle& id);
