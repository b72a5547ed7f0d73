#pragma once

#include "VDFamosRecording.h"
#include "VDTsAccFamosBase.h"

#include "bus/VDFamosValues.h"

#include <deque>

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
    struct File
    {
        std::unique_ptr<VDFamosRecording> recording;
        VDFamosValues values;
    };
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
    bool FindFile(const VDString& filename, std::size_t* file);
    bool FindChannel(int index, const VDFamosRecording& recording, std::size_t* channel) const;
    VDIo* UseFile(std::size_t file);
    template <class Value>
    bool Read(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine);

    std::vector<File> files_;
    std::unordered_map<std::string, std::size_t> fileByName_;
    std::deque<std::size_t> open_;  ///< in the order in which they were opened
    std::vector<Source> sources_;
    std::size_t damagedChannels_ = 0;
};
