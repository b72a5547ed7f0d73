#include "vdstore/LQSpectra.h"

#include "ValueSwap.h"
#include "vdarchive/Z4Size.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>

namespace {

constexpr std::int64_t LargestValue = 16;
constexpr std::int64_t LargestMatrix = Z4Stream::LargestLength / LargestValue;
constexpr std::int64_t AxisValueSize = 8;
constexpr std::int64_t LargestAxis = Z4Stream::LargestLength / AxisValueSize;
constexpr std::size_t SmallestChannelBytes = 1 + 4 * LQSpectraTexts;
constexpr int AxisStreams = 2;

bool IsValueType(int type)
{
    return type >= LQSpectrumFloat && type <= LQSpectrumComplexDouble;
}

bool IsComplexType(int type)
{
    return type == LQSpectrumComplexFloat || type == LQSpectrumComplexDouble;
}

bool IsDoubleType(int type)
{
    return type == LQSpectrumDouble || type == LQSpectrumComplexDouble;
}

/// Floating-point numbers of a value.
std::int64_t PartsOf(int type)
{
    return IsComplexType(type) ? 2 : 1;
}

std::int64_t SizeOf(int type)
{
    return PartsOf(type) * (IsDoubleType(type) ? 8 : 4);
}

/// Calls `function(Part())`, `Part` being float or double as the values of the type have it.
template <class Function>
bool WithPart(int type, Function&& function)
{
    return IsDoubleType(type) ? function(double()) : function(float());
}

/// Values that are converted at a time.
constexpr std::int64_t ConvertedValues = 2048;

template <class From, class To>
void Convert(const From* from, int fromType, To* to, int toType, std::int64_t count)
{
    if (PartsOf(fromType) == PartsOf(toType)) {
        std::transform(from, from + count * PartsOf(fromType), to, [](From part) { return static_cast<To>(part); });
        return;
    }
    for (std::int64_t i = 0; i < count; ++i) {
        to[2 * i] = static_cast<To>(from[i]);
        to[2 * i + 1] = 0;
    }
}

}  // namespace

LQSpectra::LQSpectra() : recordSize_(Z4Size::Record32K) {}

LQSpectra::~LQSpectra() = default;

bool LQSpectra::Begin(int recordSize)
{
    recordSize_ = recordSize;
    while (GetNode()->GetStreamCount() < AxisStreams)
        if (GetNode()->AddStream(Z4Size::Record32K) == nullptr)
            return Fail();
    return true;
}

const LQSpectra::Channel* LQSpectra::GetChannel(int channel) const
{
    return CheckChannel(channel) ? &channels_[channel] : nullptr;
}

bool LQSpectra::AdjustChannelCount(int count)
{
    if (count < 0)
        return Report(VDStoreError::OutOfRange, "A data object can't have fewer than no channels");
    while (GetChannelCount() > count)
        if (!RemoveChannel(GetChannelCount() - 1))
            return false;
    while (GetChannelCount() < count) {
        Channel channel;
        channel.stream = GetNode()->AddStream(recordSize_);
        if (channel.stream == nullptr)
            return Fail();
        channels_.Append(std::move(channel));
        GetMapper()->Append();
    }
    return true;
}

bool LQSpectra::RemoveChannel(int channel)
{
    if (!CheckChannel(channel))
        return false;
    if (!GetNode()->RemoveStream(channel + AxisStreams))
        return Fail();
    channels_.Remove(channels_.SlotOf(channel), [](const Channel&, std::size_t) {});
    return GetMapper()->RemoveChannel(channel);
}

std::int32_t LQSpectra::GetChannelDataType(int channel) const
{
    const Channel* const found = GetChannel(channel);
    if (found == nullptr)
        return 0;
    return IsDoubleType(found->type) ? Z4TypeDouble : Z4TypeFloat;
}

bool LQSpectra::CheckSize(std::int64_t spectra, std::int64_t lines) const
{
    if (spectra >= 0 && lines >= 0 && spectra <= LargestAxis && lines <= LargestAxis &&
        (lines == 0 || spectra <= LargestMatrix / lines))
        return true;
    return Report(VDStoreError::OutOfRange, "A channel can't have so many spectra and lines");
}

bool LQSpectra::CheckRange(std::int64_t first, std::int64_t count, std::int64_t total) const
{
    return (first >= 0 && count >= 0 && first <= total && count <= total - first) ||
           Report(VDStoreError::OutOfRange, "There are no spectra or lines at this place");
}

bool LQSpectra::SetNumSpectra(std::int64_t spectra)
{
    if (!CheckSize(spectra, lines_))
        return false;
    const auto cut = [](Z4Stream& stream, std::int64_t length) {
        return stream.GetLength() <= length || stream.SetLength(length);
    };
    for (const Channel& channel : channels_)
        if (!cut(*channel.stream, GetPlace(channel, spectra, 0)))
            return Fail();
    if (!cut(*GetNode()->GetStream(LQSpectraSpectra), spectra * AxisValueSize))
        return Fail();
    spectra_ = spectra;
    return true;
}

bool LQSpectra::SetNumLines(std::int64_t lines)
{
    if (lines == lines_)
        return true;
    if (!CheckSize(spectra_, lines))
        return false;
    for (int channel = 0; channel < GetChannelCount(); ++channel)
        if (HasValues(channel))
            return Report(VDStoreError::OutOfRange, "Spectra that have values keep their number of lines");
    Z4Stream* const axis = GetNode()->GetStream(LQSpectraLines);
    if (axis->GetLength() > lines * AxisValueSize && !axis->SetLength(lines * AxisValueSize))
        return Fail();
    lines_ = lines;
    return true;
}

bool LQSpectra::IsComplex() const
{
    bool isComplex = false;
    for (const Channel& channel : channels_)
        isComplex = isComplex || IsComplexType(channel.type);
    return isComplex;
}

int LQSpectra::GetValueType(int channel) const
{
    const Channel* const found = GetChannel(channel);
    return found == nullptr ? 0 : found->type;
}

bool LQSpectra::SetValueType(int channel, int type)
{
    if (!CheckChannel(channel))
        return false;
    Channel& found = channels_[channel];
    if (!IsValueType(type) || (type != found.type && found.stream->GetLength() > 0))
        return ReportValueType();
    found.type = type;
    return true;
}

bool LQSpectra::HasValues(int channel) const
{
    const Channel* const found = GetChannel(channel);
    return found != nullptr && found->stream->GetLength() > 0;
}

bool LQSpectra::GetText(LQSpectraText text, int channel, VDString* value) const
{
    const Channel* const found = GetChannel(channel);
    if (found != nullptr)
        *value = found->texts[text];
    return found != nullptr;
}

bool LQSpectra::SetText(LQSpectraText text, int channel, const char* value)
{
    const bool isThere = CheckChannel(channel);
    if (isThere)
        channels_[channel].texts[text] = value;
    return isThere;
}

bool LQSpectra::ReportValueType() const
{
    return Report(VDStoreError::WrongDataType, "The values of the channel have another type");
}

std::int64_t LQSpectra::GetPlace(const Channel& channel, std::int64_t spectrum, std::int64_t first) const
{
    return (spectrum * lines_ + first) * SizeOf(channel.type);
}

/// Behind the stream's end all is 0.
template <class Part>
bool LQSpectra::Read(Z4Stream& stream, std::int64_t place, std::int64_t count, Part* parts)
{
    constexpr auto Size = static_cast<std::int64_t>(sizeof(Part));
    const std::int64_t there = std::clamp<std::int64_t>((stream.GetLength() - place) / Size, 0, count);
    if (there > 0 && !stream.Read(place, there * Size, parts))
        return Fail();
    if (GetNode()->NeedsSwap())
        VFSwapValues(parts, there);
    std::fill(parts + there, parts + count, Part(0));
    return true;
}

bool LQSpectra::GetData(std::int64_t spectrum, std::int64_t first, std::int64_t count, int type, void* values, int channel)
{
    const Channel* const found = GetChannel(channel);
    if (found == nullptr || !CheckRange(first, count, lines_) || !CheckRange(spectrum, 1, spectra_))
        return false;
    if (!IsValueType(type) || PartsOf(type) < PartsOf(found->type))
        return ReportValueType();
    const std::int64_t place = GetPlace(*found, spectrum, first);
    return WithPart(type, [&]<class To>(To) {
        auto* to = static_cast<To*>(values);
        if (type == found->type)
            return Read(*found->stream, place, count * PartsOf(type), to);
        return WithPart(found->type, [&]<class From>(From) {
            From parts[2 * ConvertedValues];
            for (std::int64_t done = 0; done < count; done += ConvertedValues) {
                const std::int64_t some = std::min(count - done, ConvertedValues);
                if (!Read(*found->stream, place + done * SizeOf(found->type), some * PartsOf(found->type), parts))
                    return false;
                Convert(parts, found->type, to + done * PartsOf(type), type, some);
            }
            return true;
        });
    });
}

bool LQSpectra::SetData(std::int64_t spectrum, std::int64_t first, std::int64_t count, int type, const void* values,
                        int channel)
{
    if (!CheckChannel(channel) || !CheckRange(first, count, lines_) || !CheckRange(spectrum, 1, LargestAxis) ||
        !CheckSize(spectrum + 1, lines_))
        return false;
    Channel* const found = &channels_[channel];
    if (IsDoubleType(type) && !IsDoubleType(found->type) && found->stream->GetLength() == 0)
        ++found->type;
    if (!IsValueType(type) || PartsOf(type) > PartsOf(found->type) || (IsDoubleType(type) && !IsDoubleType(found->type)))
        return ReportValueType();
    const std::int64_t place = GetPlace(*found, spectrum, first);
    const std::int64_t size = SizeOf(found->type);
    Z4Stream& stream = *found->stream;
    const bool written = type == found->type ? stream.Write(place, count * size, values)
                                             : WithPart(type, [&]<class From>(From) {
        const auto* from = static_cast<const From*>(values);
        return WithPart(found->type, [&]<class To>(To) {
            To parts[2 * ConvertedValues];
            for (std::int64_t done = 0; done < count; done += ConvertedValues) {
                const std::int64_t some = std::min(count - done, ConvertedValues);
                Convert(from + done * PartsOf(type), type, parts, found->type, some);
                if (!stream.Write(place + done * size, some * size, parts))
                    return false;
            }
            return true;
        });
    });
    if (!written)
        return Fail();
    spectra_ = std::max(spectra_, spectrum + 1);
    return true;
}

bool LQSpectra::GetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, double* values)
{
    return CheckRange(first, count, GetCount(axis)) &&
           Read(*GetNode()->GetStream(axis), first * AxisValueSize, count, values);
}

bool LQSpectra::SetAxis(LQSpectraAxis axis, std::int64_t first, std::int64_t count, const double* values)
{
    return CheckRange(first, count, GetCount(axis)) &&
           (GetNode()->GetStream(axis)->Write(first * AxisValueSize, count * AxisValueSize, values) || Fail());
}

void LQSpectra::WriteContent(Z4ByteWriter& writer) const
{
    writer.Put(type_);
    writer.Put(subType_);
    writer.Put(spectra_);
    writer.Put(lines_);
    writer.Put(static_cast<std::uint32_t>(channels_.GetSize()));
    for (const Channel& channel : channels_) {
        writer.Put(static_cast<std::uint8_t>(channel.type));
        for (const VDString& text : channel.texts)
            writer.PutText(text.View());
    }
}

bool LQSpectra::ReadContent(Z4ByteReader& reader)
{
    type_ = reader.Get<std::int32_t>();
    subType_ = reader.Get<std::int32_t>();
    spectra_ = reader.Get<std::int64_t>();
    lines_ = reader.Get<std::int64_t>();
    const std::uint32_t count = reader.GetCount(SmallestChannelBytes);
    const int streams = GetNode()->GetStreamCount();
    if (!reader.IsGood() || streams < AxisStreams || count != static_cast<std::uint32_t>(streams - AxisStreams) ||
        !CheckSize(spectra_, lines_))
        return false;
    for (const LQSpectraAxis axis : {LQSpectraLines, LQSpectraSpectra}) {
        const std::int64_t length = GetNode()->GetStream(axis)->GetLength();
        if (length % AxisValueSize != 0 || length > GetCount(axis) * AxisValueSize)
            return false;
    }
    channels_.Reserve(count);
    for (int i = AxisStreams; i < streams; ++i)
        if (!ReadChannel(reader, GetNode()->GetStream(i)))
            return false;
    return reader.IsGood();
}

bool LQSpectra::ReadChannel(Z4ByteReader& reader, Z4Stream* stream)
{
    Channel channel;
    channel.type = reader.Get<std::uint8_t>();
    for (VDString& text : channel.texts)
        text = reader.GetText();
    channel.stream = stream;
    if (!IsValueType(channel.type) || stream->GetLength() % SizeOf(channel.type) != 0 ||
        stream->GetLength() > GetPlace(channel, spectra_, 0))
        return false;
    channels_.Append(std::move(channel));
    return reader.IsGood();
}
