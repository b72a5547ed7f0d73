#include "daxlib/VDCanSignalBits.h"

#include <algorithm>

namespace {

constexpr int WordBytes = 8;
constexpr int QuarterBytes = 2;
constexpr int HalfBytes = 4;
constexpr int WordBits = 64;

constexpr std::int64_t FloorDiv(std::int64_t value, std::int64_t divisor)
{
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

}  // namespace

VDCanSignalBits::VDCanSignalBits(int frameBytes, int startBit, int numBits, bool countsUpward, bool isSigned)
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
    if (from_ != From::Far && numBits >= WordBits)
        from_ = From::Long;
}

std::int64_t VDCanSignalBits::ExtractRare(const unsigned char* frame) const
{
    if (from_ == From::Far)
        return Finish(LoadFar(frame));
    return frameBytes_ < WordBytes ? FinishWord(LoadFrame(frame, frameBytes_)) : ExtractWord(frame);
}

bool VDCanSignalBits::GetWordPlan(WordPlan* plan) const
{
    *plan = {mask_, signBit_, reverseMask_, firstByte_, shift_};
    if (frameBytes_ < WordBytes) {
        plan->firstByte = 0;
        plan->shift = reverseMask_ == 0 ? shift_ + firstByte_ * 8 : shift_ - firstByte_ * 8;
    }
    // Of a reversed word the shift drops what follows a short frame.
    if (frameBytes_ < WordBytes && reverseMask_ == 0)
        plan->mask &= ~(~std::uint64_t{0} << frameBytes_ * 8) >> plan->shift;
    return from_ != From::Far;
}

// The frame is a word of 64 bits, whose upper bytes are 0 when the frame is shorter.
void VDCanSignalBits::PlanSmallFrame(int startBit, int numBits)
{
    if (frameBytes_ == 0)
        return;
    from_ = frameBytes_ == WordBytes ? From::Word : From::Parts;
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
    if (frameBytes_ >= HalfBytes && frameBytes_ < WordBytes)
        PlanWindow(numBits, HalfBytes, From::Half);
    else if (frameBytes_ >= QuarterBytes && frameBytes_ < HalfBytes)
        PlanWindow(numBits, QuarterBytes, From::Quarter);
}

// Takes so many neighbouring bytes of the frame if they hold the signal.
void VDCanSignalBits::PlanWindow(int numBits, int windowBytes, From from)
{
    const int low = shift_ / 8;
    const int high = (shift_ + std::clamp(numBits, 1, WordBits) - 1) / 8;
    const int first = reverseMask_ == 0 ? low : WordBytes - 1 - high;
    const int last = reverseMask_ == 0 ? high : WordBytes - 1 - low;
    if (first < 0 || last >= frameBytes_ || last - first >= windowBytes)
        return;
    from_ = from;
    firstByte_ = static_cast<std::uint32_t>(std::min(first, frameBytes_ - windowBytes));
    const int moved = static_cast<int>(firstByte_) * 8;
    shift_ = static_cast<unsigned char>(reverseMask_ == 0 ? shift_ - moved : shift_ + moved);
}

void VDCanSignalBits::PlanLargeFrame(int startBit, int numBits)
{
    const std::int64_t start = startBit;
    lowestBit_ = start;
    if (reverseMask_ != 0)
        lowestBit_ = (frameBytes_ - 1 - FloorDiv(start, 8)) * 8 + (start - FloorDiv(start, 8) * 8) - numBits + 1;
    // Bytes counted from the frame's low end: its first byte, or its last one when the order is reversed.
    const std::int64_t lowest = FloorDiv(lowestBit_, 8);
    const std::int64_t highest = FloorDiv(lowestBit_ + std::max(numBits, 1) - 1, 8);
    if (lowest < 0 || highest >= frameBytes_ || highest - lowest >= WordBytes)
        return;
    from_ = From::Word;
    const std::int64_t wordStart = std::min<std::int64_t>(lowest, frameBytes_ - WordBytes);
    shift_ = static_cast<unsigned char>(lowestBit_ - wordStart * 8);
    firstByte_ = static_cast<std::uint32_t>(reverseMask_ != 0 ? frameBytes_ - WordBytes - wordStart : wordStart);
}

std::uint64_t VDCanSignalBits::LoadFar(const unsigned char* frame) const
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
