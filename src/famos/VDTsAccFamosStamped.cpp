#include "VDTsAccFamosStamped.h"

#include "FamosFormat.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"

#include <algorithm>

VDTsAccFamosStamped::VDTsAccFamosStamped() : VDTsAccFamosBase(FamosFormat::TimeStamped) {}

VDTsAccFamosStamped::~VDTsAccFamosStamped() = default;

bool VDTsAccFamosStamped::OpenFiles(Contents* contents)
{
    VDString filename;
    int count = 0;
    if (GetId() == nullptr || !FIDGetNumChans(GetId(), &count) || !FIDGetChanFilename(GetId(), 0, &filename))
        return false;
    stream_ = VDFamosStream::Open(filename, VDFamosStream::GetDatabase(GetId()));
    for (int index = 0; stream_ != nullptr && index < count; ++index) {
        int number = 0;
        int own = 0;
        if (!FIDGetChanNumber(GetId(), index, &own) || !FIDGetFileChanNumber(GetId(), index, &number))
            return false;
        number = number < 1 ? own : number;
        if (number < 1 || static_cast<std::size_t>(number) > stream_->GetChannelCount())
            return Report(index, DaxError::FamosChannelRange, "VDTsAccFamos::Open");
        streamChannels_.push_back(static_cast<std::size_t>(number) - 1);
        const VDFamosStream::Channel channel = stream_->GetChannel(streamChannels_.back());
        contents->channels.push_back({channel.title, channel.units, channel.type, 1, 0, channel.numPoints, own});
    }
    if (stream_ == nullptr)
        return false;
    contents->xTitle = "Frame";
    contents->damage = stream_->GetDamage();
    contents->isInterleaved = true;
    return true;
}

bool VDTsAccFamosStamped::CloseFiles()
{
    stream_.reset();
    streamChannels_.clear();
    return true;
}

bool VDTsAccFamosStamped::Read(long channel, std::int64_t first, std::int64_t count, double* values, const char* routine)
{
    return CheckRange(channel, first, count, routine) &&
           (stream_->Read(streamChannels_[static_cast<std::size_t>(channel)], first - 1, count, values) ||
            Report(channel, DaxError::FamosRead, routine, 1));
}

bool VDTsAccFamosStamped::GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Read(channel, first, count, values, "VDTsAccFamos::GetDataDoublePrecision");
}

bool VDTsAccFamosStamped::GetData(long channel, std::int64_t first, std::int64_t count, float* values)
{
    constexpr std::int64_t most = 4096;
    double piece[most];
    while (count > 0) {
        const std::int64_t part = std::min(count, most);
        if (!Read(channel, first, part, piece, "VDTsAccFamos::GetData"))
            return false;
        values = std::transform(piece, piece + part, values, [](double value) { return static_cast<float>(value); });
        first += part;
        count -= part;
    }
    return true;
}

bool VDTsAccFamosStamped::GetDataDigital32(long channel, std::int64_t, std::int64_t, std::uint32_t*)
{
    return Report(channel, DaxError::FamosNoStatus, "VDTsAccFamos::GetDataDigital32");
}

void VDTsAccFamosStamped::AddMetaData(LQChannelMapper& mapper) const
{
    stream_->GetRecording().AddTo(mapper);
    for (std::size_t index = 0; index < streamChannels_.size(); ++index)
        stream_->AddChannelTo(mapper, static_cast<int>(index), streamChannels_[index]);
}
