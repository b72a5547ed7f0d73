#include "VDTsAccFamos.h"

#include "FamosFormat.h"
#include "frame/DaxErrorCodes.h"

#include "daxlib/FID.h"

#include <algorithm>

namespace {

// A test may have more channel files than a process may have open.
constexpr std::size_t VVMostOpen = 64;
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
    for (const File& file : files_)
        if (const std::string& damage = file.recording->GetDamage(); !damage.empty())
            contents->damage.insert(0, damage + (contents->damage.empty() ? "" : " "));
    if (damagedChannels_ > VVNamedDamages)
        contents->damage += " So it is with " + std::to_string(damagedChannels_ - VVNamedDamages) + " more channels.";
    contents->xTitle = "Time";
    return true;
}

bool VDTsAccFamos::CloseFiles()
{
    sources_.clear();
    open_.clear();
    fileByName_.clear();
    files_.clear();
    damagedChannels_ = 0;
    return true;
}

bool VDTsAccFamos::AddChannel(int index, Contents* contents)
{
    VDString filename;
    Source source;
    if (!FIDGetChanFilename(GetId(), index, &filename) || !FindFile(filename, &source.file))
        return false;
    const VDFamosRecording& recording = *files_[source.file].recording;
    int number = 0;
    if (!FindChannel(index, recording, &source.channel) || !FIDGetChanNumber(GetId(), index, &number))
        return false;
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

bool VDTsAccFamos::FindFile(const VDString& filename, std::size_t* file)
{
    const auto [found, isNew] = fileByName_.try_emplace(filename.Str(), files_.size());
    *file = found->second;
    if (!isNew)
        return true;
    files_.push_back({VDFamosRecording::Open(filename), {}});
    return files_.back().recording != nullptr && UseFile(*file) != nullptr;
}

/// An id may name some channels of its file only, in any order. A file that is one of many usually holds one channel,
/// whatever the test's number for it is.
bool VDTsAccFamos::FindChannel(int index, const VDFamosRecording& recording, std::size_t* channel) const
{
    int nameForm = 0;
    int number = 0;
    if (!FIDGetNameForm(GetId(), &nameForm) || !FIDGetFileChanNumber(GetId(), index, &number))
        return false;
    if (number < 1 && nameForm == VTNameFormTestPlusChannels)
        number = 1;
    if (number < 1 && !FIDGetChanNumber(GetId(), index, &number))
        return false;
    if (number < 1 || static_cast<std::size_t>(number) > recording.GetChannelCount())
        return Report(index, DaxError::FamosChannelRange, "VDTsAccFamos::Open");
    *channel = static_cast<std::size_t>(number) - 1;
    return true;
}

VDIo* VDTsAccFamos::UseFile(std::size_t file)
{
    VDFamosRecording& recording = *files_[file].recording;
    if (std::find(open_.begin(), open_.end(), file) == open_.end()) {
        if (open_.size() >= VVMostOpen) {
            files_[open_.front()].recording->Rest();
            files_[open_.front()].values = {};
            open_.pop_front();
        }
        open_.push_back(file);
    }
    return recording.Use();
}

template <class Value>
bool VDTsAccFamos::Read(long channel, std::int64_t first, std::int64_t count, Value* values, const char* routine)
{
    if (!CheckRange(channel, first, count, routine))
        return false;
    const Source& source = sources_[static_cast<std::size_t>(channel)];
    VDIo* const file = UseFile(source.file);
    return (file != nullptr && files_[source.file].values.Read(*file, source.layout, first - 1, count, values)) ||
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
    for (const File& file : files_)
        file.recording->AddTo(mapper);
    for (std::size_t index = 0; index < sources_.size(); ++index)
        files_[sources_[index].file].recording->AddChannelTo(mapper, static_cast<int>(index), sources_[index].channel,
                                                             sources_[index].layout);
}
