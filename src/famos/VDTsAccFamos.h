#pragma once

#include "VDFamosFiles.h"
#include "VDTsAccFamosBase.h"

/// Access to the time series of Famos recordings: a file with channels, or several with one each. A channel is read from its
/// own file; few files are open at a time.
class VDTsAccFamos final : public VDTsAccFamosBase
{
public:
    VDTsAccFamos();
    ~VDTsAccFamos() override;

    bool GetData(long channel, std::int64_t first, std::int64_t count, float* values) override;
    bool GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values) override;
    bool GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values) override;

private:
    struct Source
    {
        std::size_t file;
        std::size_t channel;  ///< in the file
        VDFamosLayout layout;
    };

    bool OpenFiles(Contents* contents) override;
    bool CloseFiles() override;
    void AddMetaData(LQChannelMapper& mapper) const override;

    bool AddChannel(int index, Contents* contents);
    template <class Value>
    bool Read(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine);

    VDFamosFiles files_{VTFamosContent::Series};
    std::vector<Source> sources_;
    std::size_t damagedChannels_ = 0;
};
