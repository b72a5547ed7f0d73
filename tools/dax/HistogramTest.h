#pragma once

#include "DataTest.h"
#include "TestAccessOf.h"

#include "vdbase/VFHist.h"

using VDHistHandle = VDDaxHandle<VDHist, VFHistRelease>;

/// One histogram, in memory.
class VDHistogram
{
public:
    explicit VDHistogram(VDHistHandle handle);

    VDHist* Get() const { return handle_.Get(); }
    const VDHistDescription& GetDescription() const { return *description_; }
    std::int64_t CountBins() const { return description_->x.binCount * description_->y.binCount; }
    /// The value of a bin, from 0, as text.
    char* PutText(char* at, std::int64_t x, std::int64_t y, bool json) const;

private:
    VDHistHandle handle_;
    const VDHistDescription* description_;
    std::vector<std::int64_t> whole_;  ///< of the formats of whole numbers
    std::vector<double> real_;
};

/// The borders of a bin.
double VFLowerBorder(const VDHistAxis& axis, std::int64_t bin);
double VFUpperBorder(const VDHistAxis& axis, std::int64_t bin);

/// A histogram test that is open for reading.
class VDHistogramTest : public VDDataTest
{
public:
    explicit VDHistogramTest(VDFileId* id);

    VDTestAccess* Access() const override { return &access_; }
    VDHistAcc* Get() const { return access_.Get(); }
    /// Throws if it can't be read.
    VDHistogram GetHistogram(const VDChannel& channel) const;

    VDJson DescribeChannel(const VDChannel& channel) const override;
    std::int64_t CountValues(const VDChannel& channel, std::int64_t limit) const override;
    const char* ValueWord() const override { return "bins"; }
    VDJson Sample(const VDChannel& channel) const override;
    void PrintChannels(const VDJson& described, VDTextSink& out) const override;

private:
    mutable VDTestAccessOf<VDHistogramCalls> access_;
};
