#include "FamosNumbers.h"

#include "WideVectors.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <iterator>
#include <type_traits>

namespace {

using Numbers = VDFamosNumbers;

template <std::size_t Bytes>
using Word = std::conditional_t<
    Bytes == 1, std::uint8_t,
    std::conditional_t<Bytes == 2, std::uint16_t, std::conditional_t<Bytes == 4, std::uint32_t, std::uint64_t>>>;

template <class Unsigned>
DAX_INLINE Unsigned Swap(Unsigned word)
{
    if constexpr (sizeof word == 2)
        return __builtin_bswap16(word);
    else if constexpr (sizeof word == 4)
        return __builtin_bswap32(word);
    else if constexpr (sizeof word == 8)
        return __builtin_bswap64(word);
    else
        return word;
}

template <class Number, std::size_t Bytes, bool HighestFirst>
DAX_INLINE Number Load(const unsigned char* bytes)
{
    if constexpr (Bytes == sizeof(Number)) {
        Word<Bytes> word;
        std::memcpy(&word, bytes, Bytes);
        if constexpr (HighestFirst == (std::endian::native == std::endian::little))
            word = Swap(word);
        return std::bit_cast<Number>(word);
    } else {
        std::uint64_t word = 0;
        for (std::size_t index = 0; index < Bytes; ++index)
            word |= std::uint64_t{bytes[HighestFirst ? Bytes - 1 - index : index]} << 8 * index;
        return static_cast<Number>(word);
    }
}

template <class Number, std::size_t Bytes, bool HighestFirst, bool Scaled, class Stride, class Value>
DAX_INLINE void Loop(const unsigned char* bytes, Stride stride, std::int64_t count, double factor, double offset,
                     Value* values)
{
    for (std::int64_t index = 0; index < count; ++index) {
        const Number number = Load<Number, Bytes, HighestFirst>(bytes + index * stride);
        if constexpr (Scaled)
            values[index] = static_cast<Value>(static_cast<double>(number) * factor + offset);
        else
            values[index] = static_cast<Value>(number);
    }
}

// Values side by side are the usual case: their distance is a constant of the loop.
template <class Number, std::size_t Bytes, bool HighestFirst, bool Scaled, class Value>
DAX_INLINE void Values(const Numbers::Run& run, const Numbers::Scale& scale, Value* values)
{
    constexpr std::integral_constant<std::int64_t, Bytes> side;
    if (run.stride == side)
        Loop<Number, Bytes, HighestFirst, Scaled>(run.bytes, side, run.count, scale.factor, scale.offset, values);
    else
        Loop<Number, Bytes, HighestFirst, Scaled>(run.bytes, run.stride, run.count, scale.factor, scale.offset, values);
}

template <class Number, std::size_t Bytes, bool HighestFirst, class Value>
void Read(const Numbers::Run& run, const Numbers::Scale& scale, Value* values)
{
    VFRunVectorised([&]() __attribute__((always_inline)) {
        if (scale.isUsed && std::is_floating_point_v<Value>)
            Values<Number, Bytes, HighestFirst, std::is_floating_point_v<Value>>(run, scale, values);
        else
            Values<Number, Bytes, HighestFirst, false>(run, scale, values);
    });
}

template <class Number, std::size_t Bytes = sizeof(Number)>
constexpr Numbers Make(int number)
{
    Numbers made = {number,
                    static_cast<int>(Bytes),
                    std::is_integral_v<Number>,
                    Bytes <= 2 || std::is_same_v<Number, float>,
                    {Read<Number, Bytes, false, float>, Read<Number, Bytes, true, float>},
                    {Read<Number, Bytes, false, double>, Read<Number, Bytes, true, double>},
                    {nullptr, nullptr}};
    if constexpr (std::is_integral_v<Number>) {
        made.readWords[0] = Read<Number, Bytes, false, std::uint32_t>;
        made.readWords[1] = Read<Number, Bytes, true, std::uint32_t>;
    }
    return made;
}

constexpr Numbers VVFormats[] = {
    Make<std::uint8_t>(1), Make<std::int8_t>(2), Make<std::uint16_t>(3), Make<std::int16_t>(4),   Make<std::uint32_t>(5),
    Make<std::int32_t>(6), Make<float>(7),       Make<double>(8),        Make<std::uint16_t>(11), Make<std::int64_t, 6>(13),
};

}  // namespace

const VDFamosNumbers* VDFamosNumbers::Find(int number)
{
    const auto* const found = std::find_if(std::begin(VVFormats), std::end(VVFormats),
                                           [number](const VDFamosNumbers& format) { return format.number == number; });
    return found == std::end(VVFormats) ? nullptr : found;
}
