#pragma once

#include "daxlib/VDCanFrameDecoder.h"

#include <vector>

/// The inner loops of decoding. They are compiled once for every processor and once for those with vectors of 256 bits, and
/// give the same bits either way.

/// One signal of all frames, whose 8 bytes from the plan's first one on must be readable.
void VFCanRawColumn(const VDCanSignalBits::WordPlan& plan, const VDCanFrames& frames, std::int64_t* raw);
/// Integers alone.
void VFCanPhysicalColumn(const VDCanSignalBits::WordPlan& plan, const VDCanScaling& scaling, const VDCanFrames& frames,
                         double* physical);

/// Signals of one frame of up to 8 bytes, their plans side by side in groups that fill vectors.
struct VDCanWordPlans
{
    static constexpr std::size_t Lanes = 4;

    typedef std::uint64_t Words __attribute__((vector_size(Lanes * 8)));
    typedef double Doubles __attribute__((vector_size(Lanes * 8)));
    struct alignas(Lanes * 8) Group
    {
        Words reverse = {};
        Words shift = {};
        Words mask = {};
        Words signBit = {};
        Doubles factor = {};
        Doubles offset = {};
    };
    std::vector<Group> groups;
    std::size_t count = 0;
    bool areNarrow = true;

    void Append(const VDCanSignalBits::WordPlan& plan, const VDCanScaling& scaling);
};

/// @param word  the frame's bytes, the first one lowest, and 0 for those that it doesn't have
void VFCanRawFrame(const VDCanWordPlans& plans, std::uint64_t word, std::int64_t* raw);
void VFCanPhysicalFrame(const VDCanWordPlans& plans, std::uint64_t word, double* physical);
