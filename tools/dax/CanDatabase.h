#pragma once

#include "daxlib/VDCanDefinition.h"
#include "daxlib/VDCanFrameDecoder.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

/// One frame of a CAN database, with what decoding needs at hand.
struct VDCanFrame
{
    const VDCanFrameDefinition* definition = nullptr;
    std::vector<const VDCanChanDefinition*> signals;
    std::shared_ptr<const VDCanFrameDecoder> decoder;

    std::size_t GetNumBytes() const { return static_cast<std::size_t>(std::max(definition->GetNumBytes(), 0)); }
};

/// The values of the signals of one frame, as `VDCanFrameDecoder::DecodeFrame` gives them.
struct VDCanValues
{
    std::vector<std::int64_t> raw;
    std::vector<double> physical;
    std::vector<char> present;

    /// @param data  must have the frame's length
    void Decode(const VDCanFrame& frame, const unsigned char* data);
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

private:
    VDCanDefinition database_;
    std::vector<VDCanFrame> frames_;
    std::unordered_map<unsigned long, std::size_t> frameById_;
};
