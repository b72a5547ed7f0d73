#include "vdstore/LQHistogram.h"

#include "HistogramCodec.h"
#include "ValueSwap.h"
#include "vdarchive/Z4Size.h"
#include "vdbase/VFChecksum.h"
#include "vdbase/VFError.h"
#include "vdbase/VFHist.h"
#include "vdstore/LQHistogramAttributes.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <limits>
#include <utility>

namespace {

constexpr std::size_t SmallestChannelBytes = 25;
constexpr std::uint8_t HasData = 1;

/// The format whose bins have a type; 0 for what is no type of bins.
int FormatOf(std::int32_t type)
{
    switch (type) {
    case Z4TypeDouble:
        return VTHistFormatDouble;
    case Z4TypeHuge:
        return VTHistFormatHuge;
    case Z4TypeLong:
        return VTHistFormatLong;
    case Z4TypeFloat:
        return VTHistFormatFloat;
    default:
        return VTHistFormatUnset;
    }
}

std::int32_t TypeOf(int format)
{
    switch (format) {
    case VTHistFormatHuge:
        return Z4TypeHuge;
    case VTHistFormatLong:
        return Z4TypeLong;
    case VTHistFormatFloat:
        return Z4TypeFloat;
    default:
        return Z4TypeDouble;
    }
}

/// A handle of this file's own.
class OwnHist
{
public:
    OwnHist() : hist_(VFHistCreate()) {}
    ~OwnHist()
    {
        if (hist_ != nullptr)
            VFHistRelease(hist_);
    }
    OwnHist(const OwnHist&) = delete;
    OwnHist& operator=(const OwnHist&) = delete;
    VDHist* Get() const { return hist_; }

private:
    VDHist* hist_;
};

/// Makes a copy of another format if every value has an exact form there; nothing is recorded.
bool Convert(VDHist* copy, const VDHist* histogram, int format)
{
    const VDErrorMute mute;
    return VFHistCopy(copy, histogram) && VFHistSetFormat(copy, format);
}

bool HasStorableLists(const VDHistDescription& description)
{
    constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max();
    return description.x.borders.size() < largest && description.y.borders.size() < largest &&
           description.overflows.size() < largest && description.residuals.size() < largest;
}

}  // namespace

struct LQHistogram::Stored : HistogramFacts
{
};

LQHistogram::LQHistogram() : recordSize_(Z4Size::Record32K) {}

LQHistogram::~LQHistogram() = default;

bool LQHistogram::ReportDamaged() const
{
    return Report(VDStoreError::ContentDamaged, "The stored description of a histogram contradicts itself");
}

bool LQHistogram::AdjustChannelCount(int count)
{
    if (count < 0)
        return Report(VDStoreError::OutOfRange, "A data object can't have fewer than no channels");
    while (GetChannelCount() > count)
        if (!RemoveChannel(GetChannelCount() - 1))
            return false;
    while (GetChannelCount() < count) {
        Channel channel;
        channel.type = defaultType_;
        channel.stream = GetNode()->AddStream(recordSize_);
        if (channel.stream == nullptr)
            return Fail();
        channels_.Append(std::move(channel));
        if (GetMapper()->GetChannelCount() < GetChannelCount())
            GetMapper()->Append();
    }
    return true;
}

bool LQHistogram::RemoveChannel(int channel)
{
    if (!CheckChannel(channel))
        return false;
    if (!GetNode()->RemoveStream(channel))
        return Fail();
    channels_.Remove(channels_.SlotOf(channel), [](const Channel&, std::size_t) {});
    return GetMapper()->RemoveChannel(channel);
}

std::int64_t LQHistogram::GetElementCount(int channel) const
{
    if (!CheckChannel(channel))
        return 0;
    return channels_[channel].binBytes / VFHistGetBinBytes(FormatOf(channels_[channel].type));
}

std::int32_t LQHistogram::GetChannelDataType(int channel) const
{
    return CheckChannel(channel) ? channels_[channel].type : 0;
}

bool LQHistogram::GetZUnits(VDString& units, int channel) const
{
    if (!CheckChannel(channel))
        return false;
    units = channels_[channel].zUnits;
    return true;
}

bool LQHistogram::HasHistogram(int channel) const
{
    return CheckChannel(channel) && channels_[channel].hasHistogram;
}

bool LQHistogram::SetDefaultDataType(std::int32_t type)
{
    if (FormatOf(type) == VTHistFormatUnset)
        return Report(VDStoreError::WrongDataType, "The bins of a histogram can't have this type");
    defaultType_ = type;
    for (Channel& channel : channels_)
        if (!channel.hasHistogram)
            channel.type = type;
    return true;
}

bool LQHistogram::ReadDescription(const Channel& channel, Stored* stored)
{
    if (!channel.hasHistogram) {
        stored->description.format = FormatOf(channel.type);
        return true;
    }
    // It was written wholly, so it can't be longer than the file.
    const std::int64_t size = channel.stream->GetLength() - channel.binBytes;
    if (size < 0 || channel.stream->GetLength() > GetNode()->GetFileEnd())
        return ReportDamaged();
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!channel.stream->Read(channel.binBytes, size, bytes.data()))
        return Fail();
    Z4ByteReader reader(bytes);
    const bool good = VFChecksum(bytes.data(), size) == channel.checksum && VFGetHistogram(reader, stored) &&
                      TypeOf(stored->description.format) == channel.type;
    return good || ReportDamaged();
}

bool LQHistogram::ReadBins(const Channel& channel, VDHist* histogram)
{
    // How many bins there are is what the description says: it must agree with what is stored before it decides anything.
    const VDHistDescription& description = *VFHistGetDescription(histogram);
    const std::int64_t bytes = description.x.binCount * description.y.binCount * VFHistGetBinBytes(description.format);
    if (bytes != channel.binBytes)
        return ReportDamaged();
    if (bytes == 0)
        return true;
    void* bins = nullptr;
    std::int64_t room = 0;
    if (!VFHistPrepareRawBins(histogram, &room, &bins) || !channel.stream->Read(0, bytes, bins))
        return Fail();
    if (GetNode()->NeedsSwap())
        VFSwapValues(bins, bytes, VFHistGetBinBytes(description.format));
    return true;
}

bool LQHistogram::SaveTo(VDHist* histogram, int channel)
{
    if (!CheckChannel(channel))
        return false;
    const Channel& from = channels_[channel];
    Stored stored;
    if (!ReadDescription(from, &stored))
        return false;
    return (VFHistSetDescription(histogram, stored.description) || ReportDamaged()) && ReadBins(from, histogram);
}

bool LQHistogram::LoadFrom(const VDHist* histogram, int channel)
{
    const VDHistDescription* const description = VFHistGetDescription(histogram);
    if (description == nullptr)
        return Fail();
    if (!CheckChannel(channel))
        return false;
    if (!HasStorableLists(*description))
        return Report(VDStoreError::OutOfRange, "A histogram has a list that is too long to be stored");
    Channel& to = channels_[channel];
    if (TypeOf(description->format) != to.type) {
        const OwnHist converted;
        if (Convert(converted.Get(), histogram, FormatOf(to.type)))
            return Write(to, converted.Get());
    }
    return Write(to, histogram);
}

/// Writes bins and description, which count when both are there.
bool LQHistogram::Write(Channel& channel, const VDHist* histogram)
{
    Stored stored;
    stored.description = *VFHistGetDescription(histogram);
    const void* bins = nullptr;
    std::int64_t bytes = 0;
    if (!VFHistGetRawBins(histogram, &bytes, &bins))
        return Fail();
    // The limits come behind the write, which brings the bins into the processor's cache.
    bool good = channel.stream->Write(0, bytes, bins) && VFHistGetZLimits(histogram, &stored.zMin, &stored.zMax);
    Z4ByteWriter writer;
    VFPutHistogram(writer, stored);
    const std::string facts = writer.Take();
    const auto size = static_cast<std::int64_t>(facts.size());
    good = good && channel.stream->Write(bytes, size, facts.data()) && channel.stream->SetLength(bytes + size);
    if (!good) {
        Fail();
        const VDErrorMute mute;
        // What is half written must not take the place of what is whole.
        if (channel.hasHistogram || !channel.stream->SetLength(0))
            Break();
        return false;
    }
    channel.type = TypeOf(stored.description.format);
    channel.hasHistogram = true;
    channel.zUnits = stored.description.zUnits;
    channel.binBytes = bytes;
    channel.checksum = VFChecksum(facts.data(), size);
    return true;
}

bool LQHistogram::RefreshMetadata(bool keep, int channel)
{
    if (!LQObject::RefreshMetadata(keep, channel))
        return false;
    for (int i = 0; i < GetChannelCount(); ++i) {
        if (channel != ALL_CHANNELS && channel != i)
            continue;
        Stored stored;
        Z4PropertySet* const set = GetMapper()->AdoptMetaDataSet(LQChannelMapper::ATTRIBUTES, nullptr, i);
        if (set == nullptr)
            continue;
        if (!ReadDescription(channels_[i], &stored))
            return false;
        VFPutHistogramAttributes(*set, stored.description, stored.zMin, stored.zMax, keep);
    }
    return true;
}

void LQHistogram::WriteContent(Z4ByteWriter& writer) const
{
    writer.Put(defaultType_);
    writer.Put(static_cast<std::uint32_t>(channels_.GetSize()));
    for (const Channel& channel : channels_) {
        writer.Put(channel.type);
        writer.Put(static_cast<std::uint8_t>(channel.hasHistogram ? HasData : 0));
        writer.PutText(channel.zUnits.View());
        writer.Put(channel.binBytes);
        writer.Put(channel.checksum);
    }
}

bool LQHistogram::ReadContent(Z4ByteReader& reader)
{
    defaultType_ = reader.Get<std::int32_t>();
    const std::uint32_t count = reader.GetCount(SmallestChannelBytes);
    if (!reader.IsGood() || FormatOf(defaultType_) == VTHistFormatUnset ||
        count != static_cast<std::uint32_t>(GetNode()->GetStreamCount()))
        return false;
    channels_.Reserve(count);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        Channel channel;
        channel.type = reader.Get<std::int32_t>();
        channel.hasHistogram = (reader.Get<std::uint8_t>() & HasData) != 0;
        channel.zUnits = reader.GetText();
        channel.binBytes = reader.Get<std::int64_t>();
        channel.checksum = reader.Get<std::uint64_t>();
        channel.stream = GetNode()->GetStream(static_cast<int>(i));
        if (FormatOf(channel.type) == VTHistFormatUnset || channel.binBytes < 0 ||
            channel.binBytes > channel.stream->GetLength())
            return false;
        channels_.Append(std::move(channel));
    }
    return reader.IsGood();
}
