#include "VDFamosStream.h"

#include "frame/VFDaxReport.h"

#include "daxlib/FID.h"
#include "daxlib/VDFileIdPreferences.h"
#include "vdbase/VDPreferenceSystem.h"
#include "vdbase/VDUnicodeString.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr const char* VVDatabase = "DbcFile";
constexpr const char* VVDatabasePreference = "/FileFormats/Famos/DbcFile";
constexpr const char* VVTimeInSeconds = "/FileFormats/Famos/TimeInSeconds";

// More come from a damaged stream alone, of which each frame may have an id of its own.
constexpr std::size_t VVMostChannels = 100'000;

constexpr std::pair<const char*, double> VVTimeUnits[] = {{"ns", 1e-9}, {"us", 1e-6},  {"\xC2\xB5s", 1e-6},
                                                          {"ms", 1e-3}, {"min", 60.0}, {"h", 3600.0}};

}  // namespace

VDString VDFamosStream::GetDatabase(VDFileId* id)
{
    const VDErrorMute mute;
    VDFileIdPreferences* preferences = nullptr;
    VDString database;
    if (id != nullptr && FIDGetPreferences(id, 0, &preferences) && preferences != nullptr &&
        preferences->GetString(VVDatabase, &database) != 0)
        return database;
    return VDPreferenceSystem().GetStringValue(VVDatabasePreference, "");
}

std::unique_ptr<VDFamosStream> VDFamosStream::Open(const VDString& filename, const VDString& database)
{
    std::unique_ptr<VDFamosStream> stream(new VDFamosStream);
    stream->recording_ = VDFamosRecording::Open(filename, VTFamosContent::Series);
    if (stream->recording_ == nullptr || !stream->famos_.Open(filename, database, true))
        return nullptr;
    stream->famos_.Close();
    if (!stream->famos_.IsTimeStamped()) {
        VFDaxReportError(DaxError::FamosFileId, "VDFamosStream::Open");
        return nullptr;
    }
    stream->damage_ = stream->recording_->GetDamage();
    stream->TakeChannels();
    stream->TakeTimeScale();
    stream->frames_.emplace(*stream->recording_->Use(), stream->famos_.GetHeader().dataBlocks,
                            stream->famos_.GetFrameTypes());
    return stream;
}

void VDFamosStream::TakeChannels()
{
    const std::size_t found = famos_.GetTimeStampChanCount();
    numSignals_ = std::min(found, VVMostChannels);
    if (numSignals_ < found)
        damage_ += (damage_.empty() ? "" : " ") + std::string("Of ") + std::to_string(found) + " channels only the first " +
                   std::to_string(numSignals_) + " are given.";
    for (std::size_t channel = 0; channel < numSignals_; ++channel) {
        const VDFamosTimeStampChan chan = famos_.GetTimeStampChan(channel);
        timed_.push_back(chan.frameType);
        if (chan.frame == nullptr)
            continue;
        if (definitions_.find(chan.frame) == definitions_.end()) {
            Definition definition{VDCanFrameDecoder(*chan.frame), {}};
            for (int index = 0; index < chan.frame->GetChanDefinitionCount(); ++index)
                definition.signals.try_emplace(chan.frame->GetChanDefinition(index), index);
            definitions_.emplace(chan.frame, std::move(definition));
        }
        const Definition& definition = definitions_.at(chan.frame);
        if (!definition.decoder.CanDecode(definition.signals.at(chan.chan)))
            damage_ += (damage_.empty() ? "" : " ") + std::string("The signal \"") + chan.GetTitle().Str() +
                       "\" has more bits than can be decoded.";
    }
    std::sort(timed_.begin(), timed_.end(),
              [](const auto* left, const auto* right) { return left->frameId < right->frameId; });
    timed_.erase(std::unique(timed_.begin(), timed_.end()), timed_.end());
}

// A stream without a scale of its own counts ticks.
void VDFamosStream::TakeTimeScale()
{
    const VDFamosRange* const range = famos_.GetHeader().groups[0].components[0].range.get();
    if (range == nullptr || !std::isfinite(range->factor) || range->factor == 0 || !std::isfinite(range->offset))
        return;
    timeFactor_ = range->factor;
    timeOffset_ = range->offset;
    timeUnits_ = VFTextAsUtf8(range->unit);
    if (!VDPreferenceSystem().GetBooleanValue(VVTimeInSeconds, false))
        return;
    for (const auto& [unit, seconds] : VVTimeUnits)
        if (timeUnits_ == unit) {
            timeFactor_ *= seconds;
            timeOffset_ *= seconds;
            timeUnits_ = "s";
            return;
        }
}

VDCanFrameType* VDFamosStream::TypeOf(std::size_t channel) const
{
    return channel < numSignals_ ? famos_.GetTimeStampChan(channel).frameType : timed_[channel - numSignals_];
}

VDFamosStream::Channel VDFamosStream::GetChannel(std::size_t channel) const
{
    const VDCanFrameType& type = *TypeOf(channel);
    if (channel >= numSignals_)
        return {VDString("FrameId " + std::to_string(type.frameId) + " Time"), timeUnits_, DaxDataType::Double, type.count};
    const VDFamosTimeStampChan chan = famos_.GetTimeStampChan(channel);
    if (chan.frame == nullptr)
        return {chan.GetTitle(), {}, DaxDataType::Float, type.count};
    const Definition& definition = definitions_.at(chan.frame);
    const bool canDecode = definition.decoder.CanDecode(definition.signals.at(chan.chan));
    return {VFTextAsUtf8(chan.GetTitle()), VFTextAsUtf8(chan.GetUnits()), DaxDataType::Double, canDecode ? type.count : 0};
}

bool VDFamosStream::Read(std::size_t channel, std::int64_t first, std::int64_t count, double* values)
{
    const VDCanFrameType& type = *TypeOf(channel);
    while (count > 0) {
        const VDFamosFrames::Run* const run = frames_->Find(type, first);
        if (run == nullptr)
            return false;
        const std::int64_t from = first - run->first;
        const std::int64_t part = std::min(count, run->count - from);
        if (channel >= numSignals_)
            std::transform(run->timeStamps.begin() + from, run->timeStamps.begin() + from + part, values,
                           [this](std::int64_t ticks) { return static_cast<double>(ticks) * timeFactor_ + timeOffset_; });
        else if (!Decode(famos_.GetTimeStampChan(channel), *run, from, part, values))
            return false;
        first += part;
        count -= part;
        values += part;
    }
    return true;
}

bool VDFamosStream::Decode(const VDFamosTimeStampChan& chan, const VDFamosFrames::Run& run, std::int64_t first,
                           std::int64_t count, double* values) const
{
    const unsigned char* const data = run.data.data() + first * run.stride;
    if (chan.frame == nullptr) {
        for (std::int64_t index = 0; index < count; ++index)
            values[index] = data[index * run.stride + chan.byteIndex];
    } else {
        const Definition& definition = definitions_.at(chan.frame);
        if (definition.decoder.DecodePhysical(definition.signals.at(chan.chan), {data, run.stride, count}, values, nullptr) <
            0)
            return false;
    }
    const auto begin = std::lower_bound(run.shortOnes.begin(), run.shortOnes.end(), run.first + first);
    for (auto frame = begin; frame != run.shortOnes.end() && *frame < run.first + first + count; ++frame)
        values[*frame - run.first - first] = std::numeric_limits<double>::quiet_NaN();
    return true;
}

void VDFamosStream::AddChannelTo(LQChannelMapper& mapper, int index, std::size_t channel) const
{
    Z4PropertySet& set = *mapper.AdoptMetaDataSet("ExtraDetails", nullptr, index);
    set.AddHuge("FrameId", static_cast<std::int64_t>(TypeOf(channel)->frameId));
    const VDFamosTimeStampChan chan = channel < numSignals_ ? famos_.GetTimeStampChan(channel) : VDFamosTimeStampChan();
    if (chan.frame == nullptr)
        return;
    VDArrayWithSort<long> values;
    VDStringArray texts;
    chan.chan->GetEnumOptions(&values, &texts);
    std::string states;
    for (int option = 0; option < values.GetSize(); ++option)
        states += (option == 0 ? "" : "; ") + std::to_string(values[option]) + "=" + texts[option].Str();
    for (const auto& [name, text] :
         std::initializer_list<std::pair<const char*, VDString>>{{"FrameName", chan.frame->GetFrameName()},
                                                                 {"Transmitter", chan.frame->GetTransmitterName()},
                                                                 {"Description", chan.chan->GetDescription()},
                                                                 {"States", VDString(states)}})
        if (!text.IsEmpty())
            set.AddString(name, VFTextAsUtf8(text));
}
