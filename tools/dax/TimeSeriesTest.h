#pragma once

#include "DataTest.h"
#include "TestAccessOf.h"

/// A time-series test that is open for reading.
class VDTimeSeriesTest : public VDDataTest
{
public:
    /// Opens the test; throws if that fails, also for a test of another kind of data.
    /// @param id  with its channels sorted by number; it must outlive this object
    explicit VDTimeSeriesTest(const VDFileIdHandle& id);

    VDTestAccess* Access() const override { return &access_; }
    void DescribeTest(VDJson& document) const override;
    void DescribeTest(VDTextTable& table) const override;
    VDJson DescribeChannel(const VDChannel& channel) const override;
    void PrintChannels(const VDJson& described, VDTextSink& out) const override;

    VDTsAcc* Get() const { return access_.Get(); }
    const std::string& GetXTitle() const { return xTitle_; }
    const std::string& GetXUnits() const { return xUnits_; }
    /// Points that the format likes to move at a time, in sensible bounds.
    std::int64_t GetBlockSize() const { return blockSize_; }

private:
    VDChannel ReadChannel(int index, int number) const;

    mutable VDTestAccessOf<VDTsCalls> access_;
    std::string xTitle_;
    std::string xUnits_;
    std::int64_t blockSize_ = 0;
};
