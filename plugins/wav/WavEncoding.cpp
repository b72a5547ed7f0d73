#include "WavEncoding.h"

#include "vdbase/VDString.h"

#include <sndfile.h>

#include <bit>
#include <cmath>
#include <cstring>

static_assert(std::endian::native == std::endian::little, "samples are written as they lie in memory");

namespace {

constexpr WavEncoding VVEncodings[] = {
    {SF_FORMAT_PCM_U8, 8, false},  {SF_FORMAT_PCM_16, 16, false}, {SF_FORMAT_PCM_24, 24, false},
    {SF_FORMAT_PCM_32, 32, false}, {SF_FORMAT_FLOAT, 32, true},   {SF_FORMAT_DOUBLE, 64, true},
};
constexpr const WavEncoding& VVFloat = VVEncodings[4];
constexpr const WavEncoding& VVDouble = VVEncodings[5];

/// What 1 is in whole numbers.
double Scale(const WavEncoding& encoding)
{
    return std::ldexp(1.0, encoding.bits - 1);
}

template <class Sample, class T>
void PutReals(const T* values, std::int64_t count, unsigned char* bytes)
{
    for (std::int64_t index = 0; index < count; ++index, bytes += sizeof(Sample)) {
        const auto sample = static_cast<Sample>(values[index]);
        std::memcpy(bytes, &sample, sizeof sample);
    }
}

template <class Sample, class T>
void GetReals(const unsigned char* bytes, std::int64_t count, T* values)
{
    for (std::int64_t index = 0; index < count; ++index, bytes += sizeof(Sample)) {
        Sample sample;
        std::memcpy(&sample, bytes, sizeof sample);
        values[index] = static_cast<T>(sample);
    }
}

}  // namespace

const WavEncoding* WavEncoding::Find(const char* name)
{
    for (const WavEncoding& encoding : VVEncodings)
        if (VDString(encoding.GetName()).CompareNoCase(name) == 0)
            return &encoding;
    return nullptr;
}

const WavEncoding* WavEncoding::Find(int sndFormat)
{
    for (const WavEncoding& encoding : VVEncodings)
        if (encoding.sndFormat == (sndFormat & SF_FORMAT_SUBMASK) && (sndFormat & SF_FORMAT_ENDMASK) != SF_ENDIAN_BIG)
            return &encoding;
    return nullptr;
}

const WavEncoding& WavEncoding::ForFloats()
{
    return VVFloat;
}

const WavEncoding& WavEncoding::ForDoubles()
{
    return VVDouble;
}

std::string WavEncoding::GetName(int sndFormat)
{
    SF_FORMAT_INFO info{};
    info.format = sndFormat & SF_FORMAT_SUBMASK;
    const bool known = sf_command(nullptr, SFC_GET_FORMAT_INFO, &info, sizeof info) == 0 && info.name != nullptr;
    return known ? info.name : "";
}

template <class T>
std::int64_t WavEncoding::FindUnfit(const T* values, std::int64_t count) const
{
    if (isFloat)
        return count;
    const double scale = Scale(*this);
    for (std::int64_t index = 0; index < count; ++index) {
        const double sample = static_cast<double>(values[index]) * scale;
        if (!(sample >= -scale && sample < scale) || sample != std::floor(sample))
            return index;
    }
    return count;
}

template <class T>
void WavEncoding::Encode(const T* values, std::int64_t count, unsigned char* bytes) const
{
    if (isFloat)
        return bits == 64 ? PutReals<double>(values, count, bytes) : PutReals<float>(values, count, bytes);
    const double scale = Scale(*this);
    const auto shift = bits == 8 ? 0x80U : 0U;  // bytes count from the smallest value on
    for (std::int64_t index = 0; index < count; ++index) {
        const auto sample = static_cast<std::int32_t>(static_cast<double>(values[index]) * scale);
        const std::uint32_t number = static_cast<std::uint32_t>(sample) + shift;
        for (int bit = 0; bit < bits; bit += 8)
            *bytes++ = static_cast<unsigned char>(number >> bit);
    }
}

template <class T>
void WavEncoding::Decode(const unsigned char* bytes, std::int64_t count, T* values) const
{
    if (isFloat)
        return bits == 64 ? GetReals<double>(bytes, count, values) : GetReals<float>(bytes, count, values);
    const double step = 1.0 / Scale(*this);
    const auto shift = bits == 8 ? 0x80U : 0U;
    for (std::int64_t index = 0; index < count; ++index) {
        std::uint32_t number = 0;
        for (int bit = 0; bit < bits; bit += 8)
            number |= std::uint32_t{*bytes++} << bit;
        const auto sample = static_cast<std::int32_t>((number - shift) << (32 - bits)) >> (32 - bits);
        values[index] = static_cast<T>(sample * step);
    }
}

template std::int64_t WavEncoding::FindUnfit(const float*, std::int64_t) const;
template std::int64_t WavEncoding::FindUnfit(const double*, std::int64_t) const;
template void WavEncoding::Encode(const float*, std::int64_t, unsigned char*) const;
template void WavEncoding::Encode(const double*, std::int64_t, unsigned char*) const;
template void WavEncoding::Decode(const unsigned char*, std::int64_t, float*) const;
template void WavEncoding::Decode(const unsigned char*, std::int64_t, double*) const;
