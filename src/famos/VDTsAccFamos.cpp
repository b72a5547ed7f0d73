#include "VDTsAccFamos.h"

#include "FamosFormat.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"

#include <algorithm>

namespace {

// Blocks of interleaved channels stay in the processor's cache, all channels together.
constexpr std::int64_t VVBlockBytes = 512 * 1024;
constexpr std::int64_t VVLeastBlock = 1024;
constexpr std::int64_t VVMostBlock = 16384;
constexpr std::size_t VVNamedDamages = 5;

}  // namespace

VDTsAccFamos::VDTsAccFamos() : VDTsAccFamosBase(FamosFormat::TimeSeries) {}

VDTsAccFamos::~VDTsAccFamos()
{
    CloseFiles();
}

bool VDTsAccFamos::OpenFiles(Contents* contents)
{
    int count = 0;
    if (GetId() == nullptr || !FIDGetNumChans(GetId(), &count))
        return false;
    for (int index = 0; index < count; ++index)
        if (!AddChannel(index, contents))
            return false;
    if (const std::string damage = files_.GetDamage(); !damage.empty())
        contents->damage.insert(0, damage + (contents->damage.empty() ? "" : " "));
    if (damagedChannels_ > VVNamedDamages)
        contents->damage += " So it is with " + std::to_string(damagedChannels_ - VVNamedDamages) + " more channels.";
    contents->xTitle = "Time";
    return true;
}

bool VDTsAccFamos::CloseFiles()
{
    sources_.clear();
    files_.Clear();
    damagedChannels_ = 0;
    return true;
}

bool VDTsAccFamos::AddChannel(int index, Contents* contents)
{
    Source source;
    int number = 0;
    if (!files_.FindChannel(GetId(), index, &source.file, &source.channel) || !FIDGetChanNumber(GetId(), index, &number))
        return false;
    const VDFamosRecording& recording = files_.Get(source.file);
    std::string damage;
    source.layout = recording.GetLayout(source.channel, &damage);
    if (!damage.empty() && ++damagedChannels_ <= VVNamedDamages)
        contents->damage += (contents->damage.empty() ? "" : " ") + damage;

    const std::size_t at = source.channel;
    contents->channels.push_back({recording.GetTitle(at), recording.GetUnits(at), recording.GetDataType(at),
                                  recording.GetSampleRate(at), recording.GetBaseTime(at, source.layout), source.layout.count,
                                  number});
    if (index == 0)
        contents->xUnits = recording.GetXUnits(at);
    if (source.layout.between > 0) {
        const std::int64_t block = VVBlockBytes / source.layout.GetPeriod() * source.layout.inRow;
        contents->isInterleaved = true;
        contents->bufferSize = static_cast<long>(std::clamp(block, VVLeastBlock, VVMostBlock));
    }
    sources_.push_back(std::move(source));
    return true;
}

template <class Value>
bool VDTsAccFamos::Read(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine)
{
    if (!CheckRange(channel, first, count, routine))
        return false;
    const Source& source = sources_[static_cast<std::size_t>(channel)];
    return files_.Read(source.file, source.layout, first - 1, count, values) ||
           Report(channel, DaxError::FamosRead, routine, 1);
}

bool VDTsAccFamos::GetData(long channel, std::int64_t first, std::int64_t count, float* values)
{
    return Read(channel, first, count, values, "VDTsAccFamos::GetData");
}

bool VDTsAccFamos::GetDataDoublePrecision(long channel, std::int64_t first, std::int64_t count, double* values)
{
    return Read(channel, first, count, values, "VDTsAccFamos::GetDataDoublePrecision");
}

/// The words of digital channels, as they stand.
bool VDTsAccFamos::GetDataDigital32(long channel, std::int64_t first, std::int64_t count, std::uint32_t* values)
{
    constexpr const char* routine = "VDTsAccFamos::GetDataDigital32";
    if (!CheckRange(channel, first, 0, routine))
        return false;
    if (GetContents().channels[static_cast<std::size_t>(channel)].type != DaxDataType::Digital32)
        return Report(channel, DaxError::FamosNoStatus, routine);
    return Read(channel, first, count, values, routine);
}

void VDTsAccFamos::AddMetaData(LQChannelMapper& mapper) const
{
    for (std::size_t file = 0; file < files_.GetCount(); ++file)
        files_.Get(file).AddTo(mapper);
    for (std::size_t index = 0; index < sources_.size(); ++index)
        files_.Get(sources_[index].file)
            .AddChannelTo(mapper, static_cast<int>(index), sources_[index].channel, sources_[index].layout);
}
