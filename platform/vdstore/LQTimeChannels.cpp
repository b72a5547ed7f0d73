#include "vdstore/LQTimeChannels.h"

#include "ValueSwap.h"
#include "vdarchive/Z4Size.h"
#include "vdstore/VDStoreErrorCodes.h"

#include <algorithm>
#include <type_traits>

namespace {

constexpr std::size_t SmallestChannelBytes = 93;
// What is known of the statistics.
constexpr int KnownStats = 1;
constexpr int StatsOfOtherPoints = 2;

int PointSize(std::int32_t type)
{
    switch (type) {
    case Z4TypeFloat:
    case LQTypeDigital32:
        return 4;
    case Z4TypeDouble:
    case LQTypeDigital64:
        return 8;
    default:
        return 0;
    }
}

/// The two types of floating-point numbers stand for each other when data are read.
template <class T>
using OtherFloat = std::conditional_t<std::is_same_v<T, float>, double, float>;
template <class T>
constexpr std::int32_t OtherFloatType = std::is_same_v<T, float> ? Z4TypeDouble : Z4TypeFloat;

/// Points that are converted at a time.
constexpr std::int64_t ConvertedPoints = 4096;

}  // namespace

LQTimeChannels::LQTimeChannels() : recordSize_(Z4Size::Record32K) {}

LQTimeChannels::~LQTimeChannels() = default;

const LQTimeChannels::Channel* LQTimeChannels::GetChannel(int channel) const
{
    return CheckChannel(channel) ? &channels_[channel] : nullptr;
}

LQTimeChannels::Channel* LQTimeChannels::GetChannel(int channel)
{
    return CheckChannel(channel) ? &channels_[channel] : nullptr;
}

int LQTimeChannels::CountChannels(std::int32_t type) const
{
    int count = 0;
    for (const Channel& channel : channels_)
        count += channel.type == type ? 1 : 0;
    return count;
}

bool LQTimeChannels::AdjustChannelCount(int count)
{
    while (count >= 0 && GetChannelCount() > count)
        if (!RemoveChannel(GetChannelCount() - 1))
            return false;
    return AdjustTypedCount(count < 0 ? count : CountChannels(Z4TypeFloat) + count - GetChannelCount(), Z4TypeFloat);
}

bool LQTimeChannels::AdjustTypedCount(int count, std::int32_t type)
{
    if (count < 0)
        return Report(VDStoreError::OutOfRange, "A data object can't have fewer than no channels");
    int present = CountChannels(type);
    for (int i = GetChannelCount() - 1; i >= 0 && present > count; --i)
        if (channels_[i].type == type) {
            if (!RemoveChannel(i))
                return false;
            --present;
        }
    for (; present < count; ++present) {
        Channel channel;
        channel.type = type;
        channel.stream = GetNode()->AddStream(recordSize_);
        if (channel.stream == nullptr)
            return Fail();
        channels_.Append(channel);
        // Whoever puts channels of his own into the mapper gives them to these.
        if (GetMapper()->GetChannelCount() < GetChannelCount())
            GetMapper()->Append();
    }
    return true;
}

bool LQTimeChannels::RemoveChannel(int channel)
{
    if (!CheckChannel(channel))
        return false;
    if (!GetNode()->RemoveStream(channel))
        return Fail();
    channels_.Remove(channels_.SlotOf(channel), [](const Channel&, std::size_t) {});
    return GetMapper()->RemoveChannel(channel);
}

std::int32_t LQTimeChannels::GetChannelDataType(int channel) const
{
    const Channel* const found = GetChannel(channel);
    return found == nullptr ? 0 : found->type;
}

std::int64_t LQTimeChannels::GetElementCount(int channel) const
{
    const Channel* const found = GetChannel(channel);
    return found == nullptr ? 0 : found->stream->GetLength() / PointSize(found->type);
}

bool LQTimeChannels::AdjustElementCount(std::int64_t count, int channel)
{
    Channel* const found = GetChannel(channel);
    if (found == nullptr || !CheckRange(0, count))
        return false;
    found->stats.isKnown = found->stats.isKnown && count == GetElementCount(channel);
    return found->stream->SetLength(count * PointSize(found->type)) || Fail();
}

bool LQTimeChannels::CheckRange(std::int64_t first, std::int64_t count) const
{
    constexpr std::int64_t Largest = Z4Stream::LargestLength / 8;
    if (first >= 0 && count >= 0 && first <= Largest && count <= Largest - first)
        return true;
    return Report(VDStoreError::OutOfRange, "A channel can't have points at this place");
}

template <class T>
bool LQTimeChannels::ReadPoints(std::int32_t type, std::int64_t first, std::int64_t count, std::int64_t* numRead, T* values,
                                int channel)
{
    if (numRead != nullptr)
        *numRead = 0;
    const Channel* const found = GetChannel(channel);
    if (found == nullptr)
        return false;
    if (first < 0 || count < 0)
        return CheckRange(first, count);
    if (found->type != type) {
        if constexpr (std::is_floating_point_v<T>)
            if (found->type == OtherFloatType<T>)
                return ReadConverted(first, count, numRead, values, channel);
        return Report(VDStoreError::WrongDataType, "The data of the channel have another type");
    }
    constexpr auto Size = static_cast<std::int64_t>(sizeof(T));
    const std::int64_t there = std::clamp<std::int64_t>(found->stream->GetLength() / Size - first, 0, count);
    if (there > 0 && !found->stream->Read(first * Size, there * Size, values))
        return Fail();
    if (GetNode()->NeedsSwap())
        VFSwapValues(values, there);
    if (numRead != nullptr)
        *numRead = there;
    return true;
}

/// Floats of a double channel, or doubles of a float channel.
template <class T>
bool LQTimeChannels::ReadConverted(std::int64_t first, std::int64_t count, std::int64_t* numRead, T* values, int channel)
{
    OtherFloat<T> part[ConvertedPoints];
    std::int64_t done = 0;
    for (std::int64_t got = ConvertedPoints; done < count && got == ConvertedPoints; done += got) {
        if (!ReadPoints(OtherFloatType<T>, first + done, std::min(count - done, ConvertedPoints), &got, part, channel))
            return false;
        std::transform(part, part + got, values + done, [](auto value) { return static_cast<T>(value); });
    }
    if (numRead != nullptr)
        *numRead = done;
    return true;
}

template <class T>
bool LQTimeChannels::WritePoints(std::int32_t type, std::int64_t first, std::int64_t count, const T* values, int channel)
{
    Channel* const found = GetChannel(channel);
    if (found == nullptr || !CheckRange(first, count))
        return false;
    if (found->type != type) {
        // Doubles in a float channel would lose digits, and nobody would know.
        if constexpr (std::is_same_v<T, float>)
            if (found->type == Z4TypeDouble)
                return WriteAsDoubles(first, count, values, channel);
        return Report(VDStoreError::WrongDataType, "The data of the channel have another type");
    }
    constexpr auto Size = static_cast<std::int64_t>(sizeof(T));
    found->stats.isKnown = false;
    return found->stream->Write(first * Size, count * Size, values) || Fail();
}

bool LQTimeChannels::WriteAsDoubles(std::int64_t first, std::int64_t count, const float* values, int channel)
{
    double part[ConvertedPoints];
    for (std::int64_t done = 0; done < count; done += ConvertedPoints) {
        const std::int64_t some = std::min(count - done, ConvertedPoints);
        std::copy(values + done, values + done + some, part);
        if (!WritePoints(Z4TypeDouble, first + done, some, part, channel))
            return false;
    }
    return true;
}

template bool LQTimeChannels::ReadPoints(std::int32_t, std::int64_t, std::int64_t, std::int64_t*, float*, int);
template bool LQTimeChannels::ReadPoints(std::int32_t, std::int64_t, std::int64_t, std::int64_t*, double*, int);
template bool LQTimeChannels::ReadPoints(std::int32_t, std::int64_t, std::int64_t, std::int64_t*, std::uint32_t*, int);
template bool LQTimeChannels::ReadPoints(std::int32_t, std::int64_t, std::int64_t, std::int64_t*, std::uint64_t*, int);
template bool LQTimeChannels::WritePoints(std::int32_t, std::int64_t, std::int64_t, const float*, int);
template bool LQTimeChannels::WritePoints(std::int32_t, std::int64_t, std::int64_t, const double*, int);
template bool LQTimeChannels::WritePoints(std::int32_t, std::int64_t, std::int64_t, const std::uint32_t*, int);
template bool LQTimeChannels::WritePoints(std::int32_t, std::int64_t, std::int64_t, const std::uint64_t*, int);

bool LQTimeChannels::GetData(std::int64_t first, std::int64_t count, std::int64_t* numRead, float* values, int channel)
{
    return ReadPoints(Z4TypeFloat, first, count, numRead, values, channel);
}

bool LQTimeChannels::SetData(std::int64_t first, std::int64_t count, const float* values, int channel)
{
    return WritePoints(Z4TypeFloat, first, count, values, channel);
}

void LQTimeChannels::WriteContent(Z4ByteWriter& writer) const
{
    writer.PutText(xTitle_.View());
    writer.PutText(xUnits_.View());
    writer.Put(static_cast<std::uint32_t>(channels_.GetSize()));
    for (const Channel& channel : channels_) {
        writer.Put(channel.type);
        writer.Put(channel.sampleRate);
        writer.Put(channel.baseTime);
        writer.PutText(channel.yTitle.View());
        writer.PutText(channel.yUnits.View());
        writer.Put(static_cast<std::uint8_t>((channel.stats.isKnown ? KnownStats : 0) |
                                             (channel.stats.isOfNumbers ? 0 : StatsOfOtherPoints)));
        for (const double value : channel.stats.values)
            writer.Put(value);
        for (const std::int64_t point : channel.stats.points)
            writer.Put(point);
    }
}

bool LQTimeChannels::ReadContent(Z4ByteReader& reader)
{
    xTitle_ = reader.GetText();
    xUnits_ = reader.GetText();
    const std::uint32_t count = reader.GetCount(SmallestChannelBytes);
    if (!reader.IsGood() || count != static_cast<std::uint32_t>(GetNode()->GetStreamCount()))
        return false;
    channels_.Reserve(count);
    for (std::uint32_t i = 0; i < count && reader.IsGood(); ++i) {
        Channel channel;
        channel.type = reader.Get<std::int32_t>();
        channel.sampleRate = reader.Get<double>();
        channel.baseTime = reader.Get<double>();
        channel.yTitle = reader.GetText();
        channel.yUnits = reader.GetText();
        const int flags = reader.Get<std::uint8_t>();
        channel.stats.isKnown = (flags & KnownStats) != 0;
        channel.stats.isOfNumbers = (flags & StatsOfOtherPoints) == 0;
        for (double& value : channel.stats.values)
            value = reader.Get<double>();
        for (std::int64_t& point : channel.stats.points)
            point = reader.Get<std::int64_t>();
        channel.stream = GetNode()->GetStream(static_cast<int>(i));
        const int size = PointSize(channel.type);
        if (size == 0 || channel.stream->GetLength() % size != 0)
            return false;
        // Statistics of points that aren't there are those of other data.
        for (const std::int64_t point : channel.stats.points)
            channel.stats.isKnown = channel.stats.isKnown && point >= 0 && point <= channel.stream->GetLength() / size;
        channels_.Append(std::move(channel));
    }
    return reader.IsGood();
}
