#pragma once

#include "storage/VDTsAccPluginBase.h"

#include "daxlib/DaxHandle.h"
#include "vdstore/LQChannelMapper.h"

#include <memory>
#include <string>
#include <vector>

/// What the two kinds of time-series access to Famos recordings share: they only read, channels are known once the files are
/// open, and the metadata are the file's own.
class VDTsAccFamosBase : public VDTsAccPluginBase
{
public:
    bool SetId(VDFileId* id, char create) override;
    bool Open(int mode) override;
    bool Close() override;
    bool Flush() override { return true; }
    bool GetValue(long channel, int key, VDVariant* value) override;
    bool PutValue(long channel, int key, VDVariant* value) override;
    bool GetCapability(int capability, char* answer) override;
    bool PutData(long channel, std::int64_t first, std::int64_t count, const float* values) override;
    bool PutDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, const double* values) override;
    bool PutDataDigital32(long channel, std::int64_t first, std::int64_t count, const std::uint32_t* values) override;
    bool PutDataDigital64(long channel, std::int64_t first, std::int64_t count, const std::uint64_t* values) override;
    bool GetDataDigital64(long channel, std::int64_t first, std::int64_t count, std::uint64_t* values) override;
    bool LoadMetaData(LQChannelMapper** mapper) override;
    void GetChanFileName(VDString& filename, long channel) const override;

protected:
    struct Channel
    {
        VDString title;
        VDString units;
        int type = 0;
        double sampleRate = 1;
        double baseTime = 0;
        std::int64_t numPoints = 0;
        long number = 0;
    };
    /// What is open.
    struct Contents
    {
        std::vector<Channel> channels;  ///< those of the id, in its order
        VDString xTitle;
        VDString xUnits;
        std::string damage;
        bool isInterleaved = false;
        long bufferSize = 0;  ///< points; 0 for the usual
    };

    explicit VDTsAccFamosBase(int subId) : subId_(subId) {}

    /// Opens the files of the test. A failure is recorded, and `CloseFiles` follows.
    virtual bool OpenFiles(Contents* contents) = 0;
    virtual bool CloseFiles() = 0;
    /// Adds what the files say of the test and of its channels, which the mapper has in the order of the id.
    virtual void AddMetaData(LQChannelMapper& mapper) const = 0;

    VDFileId* GetId() const { return fileId_.Get(); }
    const Contents& GetContents() const { return contents_; }
    /// Whether there is such a channel and it has those points.
    bool CheckRange(long channel, std::int64_t first, std::int64_t count, const char* routine) const;

private:
    bool MakeMapper();
    VDVariant GetFileValue(int key) const;
    VDVariant GetChannelValue(const Channel& channel, int key) const;
    void GetFormatSpecific(VDVariant* list);

    const int subId_;
    VDFileIdHandle fileId_;
    Contents contents_;
    bool isOpen_ = false;
    std::unique_ptr<LQChannelMapper> mapper_;
};
