#pragma once

#include "daxlib/VDCanDefinition.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

/// One frame of a CAN database, with what decoding needs at hand.
struct VDCanFrame
{
    const VDCanFrameDefinition* definition = nullptr;
    std::vector<const VDCanChanDefinition*> signals;
    const VDCanChanDefinition* switchSignal = nullptr;

    std::size_t GetNumBytes() const { return static_cast<std::size_t>(std::max(definition->GetNumBytes(), 0)); }
};

/// The raw value of a signal that a frame holds.
struct VDCanValue
{
    std::size_t signal = 0;  ///< index in the frame's `signals`
    std::int64_t raw = 0;
};

/// A CAN database that finds its frames fast.
class VDCanDatabase
{
public:
    static constexpr unsigned long ExtendedBit = 0x80000000;

    /// Reads the file; throws if that fails.
    explicit VDCanDatabase(const std::string& filename);

    const std::vector<VDCanFrame>& GetFrames() const { return frames_; }
    /// The frame with this id, with or without the bit that marks an extended one; null if there is none.
    const VDCanFrame* Find(unsigned long id) const;

    /// The signals that data of at least the frame's length hold: a multiplexed one only if the frame's switch has its id,
    /// and none of 64 bits or more, which can't be decoded.
    static void Decode(const VDCanFrame& frame, const unsigned char* data, std::vector<VDCanValue>* values);
    static bool IsDecodable(const VDCanChanDefinition& signal);
    static double GetPhysical(const VDCanChanDefinition& signal, std::int64_t raw);

private:
    VDCanDefinition database_;
    std::vector<VDCanFrame> frames_;
    std::unordered_map<unsigned long, std::size_t> frameById_;
};
