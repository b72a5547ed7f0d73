#include "VDTsAcc.h"

#include "frame/VFDaxReport.h"

#include <algorithm>
#include <limits>
#include <type_traits>

using namespace DaxTimeSeries;

// The four data types are parallel paths: the same steps, each with entry points and routine names of its own. Nothing here
// looks at the values, but for the offset that float and double data may get.

namespace {

constexpr std::int64_t SmallFileLimit = 2'000'000'000;

template <class Value>
struct VDTsDataType;

template <>
struct VDTsDataType<float>
{
    static constexpr auto get = &VDTsAccEntryPoints::GetData;
    static constexpr auto put = &VDTsAccEntryPoints::PutData;
    static constexpr bool hasOffset = true;
    static constexpr const char* getData = "GetData";
    static constexpr const char* getNext = "GetNext";
    static constexpr const char* putData = "PutData";
    static constexpr const char* putNext = "PutNext";
    static constexpr const char* putNextCheck = "PutData";
};

template <>
struct VDTsDataType<double>
{
    static constexpr auto get = &VDTsAccEntryPoints::GetDataDoublePrecision;
    static constexpr auto put = &VDTsAccEntryPoints::PutDataDoublePrecision;
    static constexpr bool hasOffset = true;
    static constexpr const char* getData = "GetDataDoublePrecision";
    static constexpr const char* getNext = "GetNextDoublePrecision";
    static constexpr const char* putData = "PutDataDoublePrecision";
};

template <>
struct VDTsDataType<std::uint32_t>
{
    static constexpr auto get = &VDTsAccEntryPoints::GetDataDigital32;
    static constexpr auto put = &VDTsAccEntryPoints::PutDataDigital32;
    static constexpr bool hasOffset = false;
    static constexpr const char* getData = "GetDataDigital32";
    static constexpr const char* getNext = "GetNextDigital32";
    static constexpr const char* putData = "PutDataDigital32";
    static constexpr const char* putNext = "PutNextDigital32";
    static constexpr const char* putNextCheck = putNext;
};

template <>
struct VDTsDataType<std::uint64_t>
{
    static constexpr auto get = &VDTsAccEntryPoints::GetDataDigital64;
    static constexpr auto put = &VDTsAccEntryPoints::PutDataDigital64;
    static constexpr bool hasOffset = false;
    static constexpr const char* getData = "GetDataDigital64";
    static constexpr const char* getNext = "GetNextDigital64";
    static constexpr const char* putData = "PutDataDigital64";
    static constexpr const char* putNext = "PutNextDigital64";
    static constexpr const char* putNextCheck = putNext;
};

}  // namespace

template <class Value>
bool VDTsAcc::GetData(int index, std::int64_t first, std::int64_t count, std::int64_t* numRead, Value* values)
{
    using Type = VDTsDataType<Value>;
    if (!CheckOpenAndChannel(index, false, Type::getData))
        return false;
    if (first < 1)
        return core_.Report(index, DaxError::InvalidPoint, Type::getData);
    const std::int64_t remaining = channels_[index].numPoints - first + 1;
    if (count > remaining) {
        if (numRead == nullptr)
            return core_.Report(index, DaxError::EndOfFile, Type::getData);
        count = remaining;
    }
    count = std::max<std::int64_t>(count, 0);
    if (numRead != nullptr)
        *numRead = count;
    if (count == 0)
        return true;
    const auto get = Plugin().*Type::get;
    if (!core_.Call(Type::getData, [&] { return get(core_.GetInstance(), index, first, count, values); }))
        return false;
    if constexpr (Type::hasOffset)
        return !AddsOffsets() || AddOffset(index, count, values);
    else
        return true;
}

template <class Value>
bool VDTsAcc::AddOffset(int index, std::int64_t count, Value* values)
{
    if (!core_.GetOffsets().Need())
        return false;
    const float offset = GetOffset(index);
    for (std::int64_t point = 0; point < count; ++point)
        values[point] += static_cast<Value>(offset);
    return true;
}

template <class Value>
bool VDTsAcc::GetNext(int index, std::int64_t count, std::int64_t* numRead, Value* values)
{
    if (!CheckOpenAndChannel(index, false, VDTsDataType<Value>::getNext))
        return false;
    if (numRead == nullptr)
        return core_.Report(index, DaxError::InvalidArguments, VDTsDataType<Value>::getNext);
    VDTimeFileChan& channel = channels_[index];
    const std::int64_t end = channel.lastPoint > 0 ? channel.lastPoint : channel.numPoints;
    const std::int64_t points = std::min(count, end - channel.nextPoint + 1);
    if (points < 1) {
        *numRead = 0;
        return true;
    }
    *numRead = points;
    if (!GetData(index, channel.nextPoint, points, nullptr, values))
        return false;
    channel.nextPoint += points;
    return true;
}

template <class Value>
bool VDTsAcc::PutData(int index, std::int64_t first, std::int64_t count, const Value* values)
{
    using Type = VDTsDataType<Value>;
    if (!CheckOpenAndChannel(index, false, Type::putData) || !core_.CheckWritable(Type::putData))
        return false;
    if (count < 1)
        return true;
    char extendable = 0;
    char large = 0;
    if (!core_.GetCapability(Extendable, &extendable) || !core_.GetCapability(LargeFiles, &large))
        return false;
    if (first < 1)
        return core_.Report(index, DaxError::InvalidPoint, Type::putData);
    constexpr std::int64_t maxPoint = std::numeric_limits<std::int64_t>::max();
    const std::int64_t last = count - 1 > maxPoint - first ? maxPoint : first + count - 1;
    if (!extendable && last > channels_[index].numPoints)
        return core_.Report(index, DaxError::CannotExtend, Type::putData);
    if (!large && last > SmallFileLimit)
        return core_.Report(index, DaxError::TooManyPoints, Type::putData);
    Monitor(index, first, count, values);
    const auto put = Plugin().*Type::put;
    if (!core_.Call(Type::putData, [&] { return put(core_.GetInstance(), index, first, count, values); })) {
        // Points were gathered that the file may not hold.
        channels_[index].nextStatPoint = 0;
        return false;
    }
    channels_[index].MarkChanged();
    return last <= channels_[index].numPoints || Grow(index, last);
}

/// Gathers statistics as long as the points come in order and in the channel's own precision. Anything else, digital values
/// in a channel that isn't digital among it, leaves them to a calculation from the file.
template <class Value>
void VDTsAcc::Monitor(int index, std::int64_t first, std::int64_t count, const Value* values)
{
    VDTimeFileChan& channel = channels_[index];
    if (!channel.monitor)
        return;
    if constexpr (std::is_floating_point_v<Value>) {
        const bool isOwnType = IsDouble(index) == std::is_same_v<Value, double>;
        if (isOwnType && first > channel.nextStatPoint)
            GatherUpTo<Value>(index, first);
        if (isOwnType && first == channel.nextStatPoint) {
            channel.Stats<Value>().accumulator.Process(values, count);
            channel.nextStatPoint += count;
            return;
        }
    }
    channel.monitor = false;
    channel.recalculate = true;
}

template <class Value>
bool VDTsAcc::PutNext(int index, std::int64_t count, const Value* values)
{
    using Type = VDTsDataType<Value>;
    if (!CheckOpenAndChannel(index, false, Type::putNext) || !core_.CheckWritable(Type::putNextCheck))
        return false;
    VDTimeFileChan& channel = channels_[index];
    if (channel.lastPoint > 0 && count > channel.lastPoint - channel.nextPoint + 1)
        return core_.Report(DaxChannel::WholeFile, DaxError::PastSequentialChunk, Type::putNext);
    if (!PutData(index, channel.nextPoint, count, values))
        return false;
    channel.nextPoint += std::max<std::int64_t>(count, 0);
    return true;
}

// What the exported functions use.
template bool VDTsAcc::GetData(int, std::int64_t, std::int64_t, std::int64_t*, float*);
template bool VDTsAcc::GetData(int, std::int64_t, std::int64_t, std::int64_t*, double*);
template bool VDTsAcc::GetData(int, std::int64_t, std::int64_t, std::int64_t*, std::uint32_t*);
template bool VDTsAcc::GetData(int, std::int64_t, std::int64_t, std::int64_t*, std::uint64_t*);
template bool VDTsAcc::GetNext(int, std::int64_t, std::int64_t*, float*);
template bool VDTsAcc::GetNext(int, std::int64_t, std::int64_t*, double*);
template bool VDTsAcc::GetNext(int, std::int64_t, std::int64_t*, std::uint32_t*);
template bool VDTsAcc::GetNext(int, std::int64_t, std::int64_t*, std::uint64_t*);
template bool VDTsAcc::PutData(int, std::int64_t, std::int64_t, const float*);
template bool VDTsAcc::PutData(int, std::int64_t, std::int64_t, const double*);
template bool VDTsAcc::PutData(int, std::int64_t, std::int64_t, const std::uint32_t*);
template bool VDTsAcc::PutData(int, std::int64_t, std::int64_t, const std::uint64_t*);
template bool VDTsAcc::PutNext(int, std::int64_t, const float*);
template bool VDTsAcc::PutNext(int, std::int64_t, const std::uint32_t*);
template bool VDTsAcc::PutNext(int, std::int64_t, const std::uint64_t*);
