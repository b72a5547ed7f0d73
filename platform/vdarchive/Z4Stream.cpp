#include "vdarchive/Z4Stream.h"

#include "StreamWriter.h"

#include <algorithm>
#include <cstring>

Z4Stream::Z4Stream(std::shared_ptr<BlockFile> file, int recordSize, std::uint32_t blockRecords)
    : file_(std::move(file)),
      index_(std::make_unique<RecordIndex>(*file_, recordSize, blockRecords)),
      recordSize_(recordSize)
{
}

Z4Stream::~Z4Stream() = default;

StreamWriter& Z4Stream::Writer()
{
    if (writer_ == nullptr)
        writer_ = std::make_unique<StreamWriter>(*file_, *index_, recordSize_, length_);
    return *writer_;
}

bool Z4Stream::Read(std::int64_t position, std::int64_t count, void* buffer)
{
    if (position < 0 || count < 0 || position > length_ || count > length_ - position)
        return file_->ReportWrongUse("there are no data behind the end of a stream");
    auto* target = static_cast<unsigned char*>(buffer);
    while (count > 0) {
        RecordIndex::Run run;
        if (!index_->Find(position / recordSize_, &run))
            return false;
        const std::int64_t inRecord = position % recordSize_;
        const std::int64_t part = std::min(count, run.count * recordSize_ - inRecord);
        if (!run.isPresent)
            std::memset(target, 0, static_cast<std::size_t>(part));
        else if (!file_->Read(run.offset + inRecord, part, target))
            return false;
        position += part;
        target += part;
        count -= part;
    }
    return true;
}

bool Z4Stream::Write(std::int64_t position, std::int64_t count, const void* buffer)
{
    if (!file_->IsOpen() || !file_->IsWritable())
        return file_->ReportWrongUse(file_->IsOpen() ? "it is open for reading" : "it is closed");
    if (position < 0 || count < 0 || position > LargestLength || count > LargestLength - position)
        return file_->ReportWrongUse("a stream can't be that long");
    return count == 0 || Writer().Write(position, count, static_cast<const unsigned char*>(buffer));
}

bool Z4Stream::SetLength(std::int64_t length)
{
    if (length == length_)
        return true;
    if (!file_->IsOpen() || !file_->IsWritable())
        return file_->ReportWrongUse(file_->IsOpen() ? "it is open for reading" : "it is closed");
    if (length < 0 || length > LargestLength)
        return file_->ReportWrongUse("a stream can't be that long");
    return Writer().SetLength(length);
}
