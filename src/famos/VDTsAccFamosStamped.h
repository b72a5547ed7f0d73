#pragma once

#include "VDFamosStream.h"
#include "VDTsAccFamosBase.h"

/// Access to a Famos recording of time-stamped bus frames.
class VDTsAccFamosStamped final : public VDTsAccFamosBase
{
public:
    VDTsAccFamosStamped();
    ~VDTsAccFamosStamped() override;

    bool GetData(long channel, std::int64_t first, std::int64_t count, float* values) override;
    bool GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values) override;
    bool GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values) override;

private:
    bool OpenFiles(Contents* contents) override;
    bool CloseFiles() override;
    void AddMetaData(LQChannelMapper& mapper) const override;
    bool Read(long channel, std::int64_t first, std::int64_t count, double* values, const char* routine);

    std::unique_ptr<VDFamosStream> stream_;
    std::vector<std::size_t> streamChannels_;  ///< of each channel of the id
};
