#include "VDSignalBits.h"

#include <algorithm>

namespace {

constexpr int WordBytes = 8;
constexpr int WordBits = 64;

constexpr std::int64_t FloorDiv(std::int64_t value, std::int64_t divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

}  // namespace

VDSignalBits::VDSignalBits(int frameBytes, int startBit, int numBits, bool countsUpward, bool isSigned)
    : reverseMask_(countsUpward ? 0 : ~std::uint64_t{0}), frameBytes_(std::max(frameBytes, 0))
{
    if (numBits > 0) {
        const int bits = std::min(numBits, WordBits);
        mask_ = ~std::uint64_t{0} >> (WordBits - bits);
        signBit_ = isSigned ? std::uint64_t{1} << (bits - 1) : 0;
    }
    if (frameBytes_ <= WordBytes)
        PlanSmallFrame(startBit, numBits);
    else
        PlanLargeFrame(startBit, numBits);
    isFast_ = load_ == Load::Word && numBits < WordBits;
}

std::int64_t VDSignalBits::Extract(const unsigned char* frame) const
{
    switch (load_) {
    case Load::Word:
        return ExtractFast(frame);
    case Load::Short:
        return FinishWord(LoadShort(frame));
    default:
        return Finish(LoadFar(frame));
    }
}

// The frame is a word of 64 bits, whose upper bytes are 0 when the frame is shorter.
void VDSignalBits::PlanSmallFrame(int startBit, int numBits)
{
    load_ = frameBytes_ == WordBytes ? Load::Word : Load::Short;
    std::int64_t shift = startBit;
    if (reverseMask_ != 0)
        shift = (frameBytes_ - 2 * std::int64_t{startBit / 8}) * 8 - numBits + startBit - 7;
    shift &= WordBits - 1;
    // Reversing the whole word puts a shorter frame's bytes at its upper end.
    if (reverseMask_ != 0)
        shift += (WordBytes - frameBytes_) * 8;
    if (shift >= WordBits)
        mask_ = 0, signBit_ = 0, shift = 0;
    shift_ = static_cast<unsigned char>(shift);
}

void VDSignalBits::PlanLargeFrame(int startBit, int numBits)
{
    const std::int64_t start = startBit;
    lowestBit_ = start;
    if (reverseMask_ != 0)
        lowestBit_ = (frameBytes_ - 1 - FloorDiv(start, 8)) * 8 + (start - FloorDiv(start, 8) * 8) - numBits + 1;
    // Bytes counted from the frame's low end: its first byte, or its last one when the order is reversed.
    const std::int64_t lowest = FloorDiv(lowestBit_, 8);
    const std::int64_t highest = FloorDiv(lowestBit_ + std::max(numBits, 1) - 1, 8);
    if (lowest < 0 || highest >= frameBytes_ || highest - lowest >= WordBytes) {
        load_ = Load::Far;
        return;
    }
    const std::int64_t wordStart = std::min<std::int64_t>(lowest, frameBytes_ - WordBytes);
    shift_ = static_cast<unsigned char>(lowestBit_ - wordStart * 8);
    firstByte_ = static_cast<std::uint32_t>(reverseMask_ != 0 ? frameBytes_ - WordBytes - wordStart : wordStart);
}

std::uint64_t VDSignalBits::LoadShort(const unsigned char* frame) const
{
    std::uint64_t word = 0;
    for (int index = frameBytes_ - 1; index >= 0; --index)
        word = (word << 8) | frame[index];
    if constexpr (std::endian::native == std::endian::big)
        word = __builtin_bswap64(word);
    return word;
}

std::uint64_t VDSignalBits::LoadFar(const unsigned char* frame) const
{
    const std::int64_t lowest = FloorDiv(lowestBit_, 8);
    const int offset = static_cast<int>(lowestBit_ - lowest * 8);
    std::uint64_t word = 0;
    for (int index = 0; index <= WordBytes; ++index) {
        const std::int64_t position = lowest + index;
        if (position < 0 || position >= frameBytes_)
            continue;
        const std::uint64_t byte = frame[reverseMask_ != 0 ? frameBytes_ - 1 - position : position];
        const int shift = index * 8 - offset;
        if (shift < WordBits)
            word |= shift < 0 ? byte >> -shift : byte << shift;
    }
    return word;
}
