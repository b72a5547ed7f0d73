#include "ResultsXYTable.h"

#include "ResultsError.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <span>
#include <utility>

// The values of a table, and the status words that go with them.

namespace {

/// Values that are converted at a time.
constexpr std::size_t Block = 4096;

/// Whether the value has the same one as a `T`, which `to` gets.
template <class T, class Value>
bool Fits(Value value, T* to)
{
    if constexpr (std::is_integral_v<Value> && std::is_integral_v<T>) {
        *to = static_cast<T>(value);
        return std::in_range<T>(value);
    } else if constexpr (std::is_integral_v<T>) {
        // Both ends are powers of two, so that floating-point types have them exactly.
        constexpr auto end = static_cast<Value>(std::uint64_t(1) << std::numeric_limits<T>::digits);
        if (!(value >= -end && value < end))
            return false;
        *to = static_cast<T>(value);
        return static_cast<Value>(*to) == value;
    } else {
        *to = static_cast<T>(value);
        if constexpr (std::is_integral_v<Value>) {
            constexpr auto end = static_cast<T>(std::uint64_t(1) << std::numeric_limits<Value>::digits);
            return *to < end && static_cast<Value>(*to) == value;
        } else {
            return static_cast<Value>(*to) == value || std::isnan(value);
        }
    }
}

/// Calls `function` with the way in to a column's values as its own type.
template <class Function>
bool WithAccess(std::int32_t type, LQArrayChannel& access, Function&& function)
{
    switch (type) {
    case Z4TypeShort:
        return function(static_cast<LQArrayChannelEx<std::int16_t>&>(access));
    case Z4TypeLong:
    case LQTypeEnumeration:
        return function(static_cast<LQArrayChannelEx<std::int32_t>&>(access));
    case Z4TypeHuge:
        return function(static_cast<LQArrayChannelEx<std::int64_t>&>(access));
    case Z4TypeFloat:
        return function(static_cast<LQArrayChannelEx<float>&>(access));
    case Z4TypeDouble:
        return function(static_cast<LQArrayChannelEx<double>&>(access));
    default:
        return function(static_cast<LQTextArrayChannel&>(access));
    }
}

/// The values of rows that a column gives and takes.
template <class T>
bool Get(LQArrayChannelEx<T>& access, std::int64_t first, std::int64_t count, T* values)
{
    return access.GetArray(first, count, values);
}

bool Get(LQTextArrayChannel& access, std::int64_t first, std::int64_t count, VDString* values)
{
    return access.GetTexts(first, count, values);
}

template <class Access>
using ValueOf = typename std::remove_reference_t<Access>::Value;

/// Writes numbers into a column of any type of numbers.
/// @return false if the column can't hold each of them exactly, or a report was recorded
template <class T, class Value>
bool Put(LQArrayChannelEx<T>& access, std::int64_t first, std::span<const Value> values)
{
    if constexpr (std::is_same_v<T, Value>) {
        return access.PutArray(first, static_cast<std::int64_t>(values.size()), values.data());
    } else if constexpr (std::is_arithmetic_v<Value>) {
        // Nothing is written if one of them doesn't fit.
        T fitting{};
        for (const Value value : values)
            if (!Fits(value, &fitting))
                return false;
        std::array<T, Block> part;
        for (; !values.empty(); values = values.subspan(std::min(Block, values.size()))) {
            const auto count = std::min(Block, values.size());
            for (std::size_t at = 0; at < count; ++at)
                part[at] = static_cast<T>(values[at]);
            if (!access.PutArray(first, static_cast<std::int64_t>(count), part.data()))
                return false;
            first += static_cast<std::int64_t>(count);
        }
        return true;
    } else {
        return false;
    }
}

template <class Value>
bool Put(LQTextArrayChannel& access, std::int64_t first, std::span<const Value> values)
{
    if constexpr (std::is_same_v<Value, VDString>)
        return access.PutTexts(first, static_cast<std::int64_t>(values.size()), values.data());
    else
        return false;
}

/// A single value as a variant; whole numbers of 32 bits are longs.
void SetValue(VDVariant& variant, std::int16_t value)
{
    variant.SetShort(value);
}
void SetValue(VDVariant& variant, std::int32_t value)
{
    variant.SetLong(value);
}
void SetValue(VDVariant& variant, std::int64_t value)
{
    variant.SetHuge(value);
}
void SetValue(VDVariant& variant, float value)
{
    variant.SetFloat(value);
}
void SetValue(VDVariant& variant, double value)
{
    variant.SetDouble(value);
}
void SetValue(VDVariant& variant, const VDString& value)
{
    variant = VDVariant(value);
}

/// Calls `function` with a single value as a row of one.
template <class Function>
bool WithValue(const VDVariant& value, Function&& function)
{
    const auto use = [&]<class Value>(const Value& single) { return function(std::span<const Value>(&single, 1)); };
    short number16 = 0;
    long number = 0;
    std::int64_t number64 = 0;
    float single = 0;
    double real = 0;
    VDString text;
    if (value.GetString(&text))
        return use(text);
    if (value.GetFloat(&single))
        return use(single);
    if (value.GetLong(&number) || value.GetHuge(&number64))
        return use(static_cast<std::int64_t>(number | number64));
    if (value.GetShort(&number16))
        return use(number16);
    return value.ConvertToDouble(&real) && use(real);
}

/// Calls `function` with the elements of a buffer.
template <class Function>
bool WithBuffer(const VDVariant& values, Function&& function)
{
    switch (values.GetType()) {
    case VTVariantShortBuffer:
        return function(values.GetBuffer<short>());
    case VTVariantLongBuffer:
        return function(values.GetBuffer<std::int32_t>());
    case VTVariantHugeBuffer:
        return function(values.GetBuffer<std::int64_t>());
    case VTVariantFloatBuffer:
        return function(values.GetBuffer<float>());
    case VTVariantDoubleBuffer:
        return function(values.GetBuffer<double>());
    default:
        return function(values.GetBuffer<VDString>());
    }
}

}  // namespace

LQArrayChannel* ResultsXYTable::GetAccess(long channel, long dataSet, long column)
{
    return table_->GetArrayChannel(static_cast<int>(column), file_.GetChannel(channel), static_cast<int>(dataSet));
}

bool ResultsXYTable::ReportUnfit(const char* routine)
{
    // What the storage has recorded says more.
    return VFErrorGetCode(VFGetBaseLibError()) == 0 &&
           file_.Report(ResultsError::DataType, routine, "The column can't hold these values as they are.");
}

template <class Function>
bool ResultsXYTable::WithColumn(long channel, long dataSet, long column, Function&& function)
{
    LQArrayChannel* const access = GetAccess(channel, dataSet, column);
    return access != nullptr && WithAccess(GetColumn(channel, column)->GetDataType(0), *access, function);
}

bool ResultsXYTable::GetDataF(long channel, long dataSet, long column, std::int64_t first, std::int64_t count, float* values)
{
    auto* const access = table_->GetFloatArrayChannel(static_cast<int>(column), file_.GetChannel(channel),
                                                      static_cast<int>(dataSet));
    return access != nullptr && access->GetArray(first - 1, count, values);
}

bool ResultsXYTable::PutDataF(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                              const float* values)
{
    const std::span<const float> floats(values, static_cast<std::size_t>(count));
    return WithColumn(channel, dataSet, column, [&](auto& access) { return Put(access, first - 1, floats); }) ||
           ReportUnfit("ResultsXY::PutDataF");
}

bool ResultsXYTable::GetData(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                             VDVariant& values)
{
    return WithColumn(channel, dataSet, column, [&](auto& access) {
        const auto buffer = values.GetBuffer<ValueOf<decltype(access)>>();
        return static_cast<std::int64_t>(buffer.size()) < count
                   ? file_.Report(ResultsError::VariantBuffer, "ResultsXY::GetData")
                   : Get(access, first - 1, count, buffer.data());
    });
}

bool ResultsXYTable::PutData(long channel, long dataSet, long column, std::int64_t first, const VDVariant& values)
{
    return WithColumn(channel, dataSet, column,
                      [&](auto& access) {
                          return WithBuffer(values, [&](auto buffer) { return Put(access, first - 1, buffer); });
                      }) ||
           ReportUnfit("ResultsXY::PutData");
}

bool ResultsXYTable::GetDataElement(long channel, long dataSet, long column, std::int64_t row, VDVariant& value)
{
    return WithColumn(channel, dataSet, column, [&](auto& access) {
        ValueOf<decltype(access)> single{};
        if (!Get(access, row - 1, 1, &single))
            return false;
        SetValue(value, single);
        return true;
    });
}

bool ResultsXYTable::PutDataElement(long channel, long dataSet, long column, std::int64_t row, const VDVariant& value)
{
    return WithColumn(channel, dataSet, column,
                      [&](auto& access) {
                          return WithValue(value, [&](auto single) { return Put(access, row - 1, single); });
                      }) ||
           ReportUnfit("ResultsXY::PutDataElement");
}

bool ResultsXYTable::GetStatus(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                               std::uint16_t* words)
{
    LQArrayChannel* const access = GetAccess(channel, dataSet, column);
    return access != nullptr && access->GetStatus(first - 1, count, words);
}

bool ResultsXYTable::PutStatus(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                               const std::uint16_t* words)
{
    LQArrayChannel* const access = GetAccess(channel, dataSet, column);
    if (access == nullptr)
        return false;
    return GetColumn(channel, column)->HasStatus() ? access->PutStatus(first - 1, count, words)
                                                   : file_.Report(ResultsError::NoStatusWords, "ResultsXY::PutStatusWordData");
}

bool ResultsXYTable::GetStatusFlags(long channel, long dataSet, long column, std::int64_t first, std::int64_t count,
                                    unsigned mask, bool ifSet, char* flags)
{
    std::array<std::uint16_t, Block> words;
    for (std::int64_t done = 0; done < count; done += std::int64_t{Block}) {
        const std::int64_t some = std::min(std::int64_t{Block}, count - done);
        if (!GetStatus(channel, dataSet, column, first + done, some, words.data()))
            return false;
        for (std::int64_t at = 0; at < some; ++at)
            flags[done + at] = ((words[static_cast<std::size_t>(at)] & mask) != 0) == ifSet ? 1 : 0;
    }
    return true;
}
