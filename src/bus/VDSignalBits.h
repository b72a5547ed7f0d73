#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// Takes the bits of one signal out of a frame. All that depends on the definition alone is worked out once, so that a value
/// costs one load, one shift and one mask. A definition is as a database writes it and may be nonsense: no value of it reads
/// outside the frame's bytes.
class VDSignalBits
{
public:
    /// @param frameBytes    length of the frame; `Extract` reads no byte behind it
    /// @param countsUpward  byte order: see `VDCanChanDefinition`
    VDSignalBits(int frameBytes, int startBit, int numBits, bool countsUpward, bool isSigned);

    /// Whether `ExtractFast` may be used: eight bytes of the frame hold the whole signal, of fewer than 64 bits.
    bool IsFast() const { return isFast_; }

    std::int64_t ExtractFast(const unsigned char* frame) const
    {
        std::uint64_t word;
        std::memcpy(&word, frame + firstByte_, sizeof word);
        return FinishWord(word);
    }

    /// Any signal. One of 64 bits or more gives its low 64 bits.
    std::int64_t Extract(const unsigned char* frame) const;

private:
    enum class Load : unsigned char {
        Word,   ///< eight bytes of the frame hold the whole signal
        Short,  ///< the frame has fewer than eight bytes
        Far,    ///< a long frame, and the signal touches nine bytes or reaches out of the frame
    };

    // Free of branches, as signals of both byte orders take turns.
    std::int64_t FinishWord(std::uint64_t word) const
    {
        if constexpr (std::endian::native == std::endian::big)
            word = __builtin_bswap64(word);
        word ^= (word ^ __builtin_bswap64(word)) & reverseMask_;
        return Finish(word >> shift_);
    }
    // Extends the sign: a flip of the sign bit and its subtraction carry it through all bits above.
    std::int64_t Finish(std::uint64_t bits) const
    {
        return static_cast<std::int64_t>(((bits & mask_) ^ signBit_) - signBit_);
    }
    std::uint64_t LoadShort(const unsigned char* frame) const;
    std::uint64_t LoadFar(const unsigned char* frame) const;
    void PlanSmallFrame(int startBit, int numBits);
    void PlanLargeFrame(int startBit, int numBits);

    std::uint64_t mask_ = 0;
    std::uint64_t signBit_ = 0;
    std::uint64_t reverseMask_;  ///< all ones when the bytes are to be reversed
    std::uint32_t firstByte_ = 0;
    unsigned char shift_ = 0;
    bool isFast_ = false;
    Load load_ = Load::Word;
    int frameBytes_;
    std::int64_t lowestBit_ = 0;  ///< `Far` only: position of the signal's lowest bit, counted from the frame's low end
};
