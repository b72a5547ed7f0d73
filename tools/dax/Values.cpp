#include "Values.h"

#include "ToolError.h"

#include <algorithm>

namespace {

template <class Value>
struct Access;

template <>
struct Access<std::uint64_t>
{
    static constexpr auto Get = TSAccGetDataDigital64;
    static constexpr auto Put = TSAccPutDataDigital64;
};

template <>
struct Access<std::uint32_t>
{
    static constexpr auto Get = TSAccGetDataDigital32;
    static constexpr auto Put = TSAccPutDataDigital32;
};

template <>
struct Access<double>
{
    static constexpr auto Get = TSAccGetDataDoublePrecision;
    static constexpr auto Put = TSAccPutDataDoublePrecision;
};

template <>
struct Access<float>
{
    static constexpr auto Get = TSAccGetData;
    static constexpr auto Put = TSAccPutData;
};

template <class Vector>
using ValueOf = typename std::decay_t<Vector>::value_type;

}  // namespace

VTValueForm VFValueForm(int channelType)
{
    switch (channelType & 0xffff) {
    case DaxDataType::Digital64 & 0xffff:
        return VTValueForm::Digital64;
    case DaxDataType::Digital32 & 0xffff:
        return VTValueForm::Digital32;
    case DaxDataType::Double & 0xffff:
    case DaxDataType::Long & 0xffff:
    case DaxDataType::Huge & 0xffff:
        return VTValueForm::Double;
    default:
        return VTValueForm::Float;
    }
}

int VFChannelType(VTValueForm form)
{
    switch (form) {
    case VTValueForm::Digital64:
        return DaxDataType::Digital64;
    case VTValueForm::Digital32:
        return DaxDataType::Digital32;
    case VTValueForm::Double:
        return DaxDataType::Double;
    default:
        return DaxDataType::Float;
    }
}

VDValues::Buffer VDValues::MakeBuffer(VTValueForm form, std::int64_t size)
{
    const auto count = static_cast<std::size_t>(size);
    switch (form) {
    case VTValueForm::Digital64:
        return std::vector<std::uint64_t>(count);
    case VTValueForm::Digital32:
        return std::vector<std::uint32_t>(count);
    case VTValueForm::Double:
        return std::vector<double>(count);
    default:
        return std::vector<float>(count);
    }
}

VDValues::VDValues(VTValueForm form, std::int64_t capacity) : values_(MakeBuffer(form, capacity)) {}

std::int64_t VDValues::Read(VDTsAcc* acc, int channel, std::int64_t first, std::int64_t count)
{
    std::visit(
        [&](auto& values) {
            count = std::min(count, static_cast<std::int64_t>(values.size()));
            VFCheck(Access<ValueOf<decltype(values)>>::Get(acc, channel, first, count, &size_, values.data()));
        },
        values_);
    return size_;
}

bool VDValues::Write(VDTsAcc* acc, int channel, std::int64_t first, VTValueForm form) const
{
    if (form != GetForm()) {
        VDValues converted(form, size_);
        converted.size_ = size_;
        std::visit(
            [](const auto& from, auto& to) {
                std::transform(from.begin(), from.begin() + static_cast<std::ptrdiff_t>(to.size()), to.begin(),
                               [](auto value) { return static_cast<ValueOf<decltype(to)>>(value); });
            },
            values_, converted.values_);
        return converted.Write(acc, channel, first, form);
    }
    return std::visit(
        [&](const auto& values) {
            return Access<ValueOf<decltype(values)>>::Put(acc, channel, first, size_, values.data()) != 0;
        },
        values_);
}

char* VDValues::PutText(char* at, std::int64_t index) const
{
    return std::visit([&](const auto& values) { return VFPutNumber(at, values[static_cast<std::size_t>(index)]); }, values_);
}

char* VDValues::PutJson(char* at, std::int64_t index) const
{
    return std::visit([&](const auto& values) { return VFPutJsonNumber(at, values[static_cast<std::size_t>(index)]); },
                      values_);
}

long double VDValues::At(std::int64_t index) const
{
    return std::visit([&](const auto& values) { return static_cast<long double>(values[static_cast<std::size_t>(index)]); },
                      values_);
}
