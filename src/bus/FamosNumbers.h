#pragma once

#include <cstdint>

/// One number format of the values in a Famos file, and the loops that read it.
///
/// 1 to 6 are whole numbers of 1, 2 and 4 bytes, unsigned and signed in turns, 7 and 8 floats of 4 and 8 bytes, 11 a word of
/// digital channels, 13 a whole number of 6 bytes without a sign.
struct VDFamosNumbers
{
    /// A run of values in memory.
    struct Run
    {
        const unsigned char* bytes;  ///< of the first value
        std::int64_t stride;         ///< bytes from one value to the next
        std::int64_t count;
    };
    struct Scale
    {
        bool isUsed = false;
        double factor = 1;
        double offset = 0;
    };
    template <class Value>
    using Reader = void(const Run& run, const Scale& scale, Value* values);

    int number;
    int bytes;
    bool isWhole;                  ///< a whole number
    bool fitsFloat;                ///< every value is a float exactly
    Reader<float>* readFloats[2];  ///< the lowest byte first, the highest first
    Reader<double>* readDoubles[2];
    Reader<std::uint32_t>* readWords[2];  ///< unscaled; the low 32 bits of whole numbers, null for others

    template <class Value>
    Reader<Value>* GetReader(bool highestFirst) const;

    /// Null for a number format that isn't known.
    static const VDFamosNumbers* Find(int number);
};

template <>
inline VDFamosNumbers::Reader<float>* VDFamosNumbers::GetReader(bool highestFirst) const
{
    return readFloats[highestFirst ? 1 : 0];
}

template <>
inline VDFamosNumbers::Reader<double>* VDFamosNumbers::GetReader(bool highestFirst) const
{
    return readDoubles[highestFirst ? 1 : 0];
}

template <>
inline VDFamosNumbers::Reader<std::uint32_t>* VDFamosNumbers::GetReader(bool highestFirst) const
{
    return readWords[highestFirst ? 1 : 0];
}
