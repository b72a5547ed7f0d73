#pragma once

#include "daxlib/DaxApi.h"

#include <bit>
#include <cstdint>
#include <cstring>

/// Takes the bits of one signal out of a frame. All that depends on the definition alone is worked out once, so that a value
/// costs a load, a shift and a mask, which the caller's code inlines. A definition is as a database writes it and may be
/// nonsense: no value of it reads outside the frame's bytes. `VDCanChanDefinition` says how bits are numbered.
class VDCanSignalBits
{
public:
    /// A signal of no bits, whose value is 0.
    VDCanSignalBits() = default;
    /// @param frameBytes    length of the frame; no byte behind it is read
    /// @param countsUpward  byte order
    DAX_API VDCanSignalBits(int frameBytes, int startBit, int numBits, bool countsUpward, bool isSigned);

    /// Any signal. One of 64 bits or more gives its low 64 bits.
    std::int64_t Extract(const unsigned char* frame) const
    {
        return IsWord() ? ExtractWord(frame) : IsShort() ? ExtractShort(frame) : ExtractRare(frame);
    }

    /// Whether 8 neighbouring bytes of the frame hold the whole signal, of fewer than 64 bits.
    bool IsWord() const { return from_ == From::Word; }
    std::int64_t ExtractWord(const unsigned char* frame) const
    {
        return FinishWord(Little<std::uint64_t>(frame + firstByte_));
    }
    /// Whether it is a signal of fewer than 64 bits in a frame of 1 to 7 bytes.
    bool IsShort() const { return from_ <= From::Parts; }
    std::int64_t ExtractShort(const unsigned char* frame) const
    {
        if (from_ == From::Half) [[likely]]
            return FinishWord(Little<std::uint32_t>(frame + firstByte_));
        if (from_ == From::Quarter) [[likely]]
            return FinishWord(Little<std::uint16_t>(frame + firstByte_));
        return FinishWord(LoadFrame(frame, frameBytes_));
    }

    /// The bytes of a frame of 1 to 8 bytes as a word, the first one lowest, and 0 for those that it doesn't have.
    static std::uint64_t LoadFrame(const unsigned char* frame, int frameBytes)
    {
        // Loads that overlap agree where they do.
        const auto last = static_cast<unsigned>(frameBytes) - 1;
        if (last >= 3)
            return Little<std::uint32_t>(frame) | std::uint64_t{Little<std::uint32_t>(frame + last - 3)} << 8 * (last - 3);
        const unsigned middle = (last + 1) / 2;
        return frame[0] | std::uint64_t{frame[middle]} << 8 * middle | std::uint64_t{frame[last]} << 8 * last;
    }

    /// What many values at a time are taken with, where it can be done: 8 bytes from `firstByte` on as a little-endian
    /// word, their order reversed if the `reverse` mask is all ones, shifted right, masked, and `signBit` flipped and
    /// subtracted. Where the frame ends before those 8 bytes, what follows it in memory has no part in the value.
    struct WordPlan
    {
        std::uint64_t mask;
        std::uint64_t signBit;
        std::uint64_t reverse;
        std::uint32_t firstByte;
        std::uint32_t shift;
    };
    /// False for a long frame's signal that touches 9 bytes or reaches out of the frame.
    bool GetWordPlan(WordPlan* plan) const;

private:
    enum class From : unsigned char {
        Word,     ///< eight bytes of the frame hold the whole signal
        Half,     ///< the frame has four to seven bytes, and four of them hold it
        Quarter,  ///< it has two or three, and two of them hold it
        Parts,    ///< any other frame of up to seven bytes
        Long,     ///< as one of these, and the signal has 64 bits or more
        Far,      ///< a long frame, and the signal touches nine bytes or reaches out of the frame; or no frame at all
    };

    template <class Word>
    static Word Little(const unsigned char* bytes)
    {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        if constexpr (std::endian::native == std::endian::big)
            word =
                sizeof word == 8 ? static_cast<Word>(__builtin_bswap64(word)) : static_cast<Word>(__builtin_bswap32(word));
        return word;
    }
    // Free of branches, as signals of both byte orders take turns.
    std::int64_t FinishWord(std::uint64_t word) const
    {
        word ^= (word ^ __builtin_bswap64(word)) & reverseMask_;
        return Finish(word >> shift_);
    }
    // Extends the sign: a flip of the sign bit and its subtraction carry it through all bits above.
    std::int64_t Finish(std::uint64_t bits) const
    {
        return static_cast<std::int64_t>(((bits & mask_) ^ signBit_) - signBit_);
    }
    DAX_API __attribute__((cold)) std::int64_t ExtractRare(const unsigned char* frame) const;
    std::uint64_t LoadFar(const unsigned char* frame) const;
    void PlanSmallFrame(int startBit, int numBits);
    void PlanWindow(int numBits, int windowBytes, From from);
    void PlanLargeFrame(int startBit, int numBits);

    std::uint64_t mask_ = 0;
    std::uint64_t signBit_ = 0;
    std::uint64_t reverseMask_ = 0;  ///< all ones when the bytes are to be reversed
    std::uint32_t firstByte_ = 0;
    int frameBytes_ = 0;
    unsigned char shift_ = 0;
    From from_ = From::Far;
    std::int64_t lowestBit_ = 0;  ///< `Far` only: position of the signal's lowest bit, counted from the frame's low end
};
