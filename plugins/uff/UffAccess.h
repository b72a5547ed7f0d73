#pragma once

#include "UffFile.h"
#include "UffWriter.h"

#include "daxlib/FID.h"
#include "vdbase/VDVariant.h"

#include <memory>
#include <vector>

class LQChannelMapper;

/// What access to both kinds of data in universal files has in common: a test of a file that is read, or a file that is made.
/// Every failure is recorded.
class UffAccess
{
public:
    bool SetId(VDFileId* id);
    bool Close();
    bool Flush();
    /// Adds the header fields of the datasets to the metadata of the channels.
    bool AddMetaData(LQChannelMapper& mapper);
    bool Fail(int code, const char* routine, const std::string& detail = {}, int chain = 0) const;

protected:
    UffAccess(bool isSpectra, const char* routine) : isSpectra_(isSpectra), routine_(routine) {}
    ~UffAccess() = default;

    bool OpenRead();
    bool StartWriting(std::unique_ptr<UffWriter> writer);
    bool IsReading() const { return file_ != nullptr; }
    bool IsWriting() const { return writer_ != nullptr; }
    bool CheckChannel(long channel) const;
    bool CheckWriting() const;
    int GetNumChannels() const;

    /// Of a channel that is read, or of one that is written.
    const UffHeader& GetHeader(long channel) const;
    UffHeader& GetOwnHeader(long channel) { return writer_->GetHeader(static_cast<std::size_t>(channel)); }
    const UffChannel& GetChannel(long channel) const { return channels_[static_cast<std::size_t>(channel)]; }
    UffDataset& GetDataset(long channel) { return file_->GetDataset(GetChannel(channel)); }
    const UffDataset& GetDataset(long channel) const { return file_->GetDataset(GetChannel(channel)); }
    template <class T>
    bool ReadValues(long channel, std::int64_t first, std::int64_t count, UffValues::Part part, T* values)
    {
        return file_->GetValues().Read(GetDataset(channel), first, count, part, values) ||
               Fail(UffError::Read, routine_, {}, 1);
    }

    bool GetFormatValue(VDVariant& list) const;
    bool PutFormatValue(const VDVariant& list) const;
    bool TakeMetaData(const VDVariant& value);

    VDFileId* id_ = nullptr;
    const UffFormat::Type* type_ = nullptr;
    std::string filename_;
    std::unique_ptr<UffFile> file_;
    const UffTest* test_ = nullptr;
    std::vector<UffChannel> channels_;  ///< those of the id
    std::unique_ptr<UffWriter> writer_;

private:
    bool MapChannels();

    const bool isSpectra_;
    const char* const routine_;
};
