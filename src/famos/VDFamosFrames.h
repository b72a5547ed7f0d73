#pragma once

#include "bus/VDFamosFrameStream.h"

/// The frames of one id out of a stream of time-stamped frames, by their number. The ids of a stream come in any order, so
/// that a pass through it is kept in memory: all frames at once if they are few enough, else a run of those of the id that
/// is asked for. Reading channel by channel then passes through a long stream once for each id, and through a short one
/// once.
class VDFamosFrames
{
public:
    /// Frames of one id side by side.
    struct Run
    {
        std::int64_t first = 0;  ///< number of the first, from 0
        std::int64_t count = 0;
        std::int64_t stride = 0;  ///< bytes from a frame to the next; at least 8
        std::vector<unsigned char> data;
        std::vector<std::int64_t> timeStamps;
        std::vector<std::int64_t>
            shortOnes;  ///< numbers of frames with fewer bytes than the id's others, which end in zeros
    };

    /// All must outlive the object. The types are those of the whole stream, with their counts.
    VDFamosFrames(VDIo& file, const std::vector<VDFamosDataBlock>& dataBlocks, VDCanFrameTypeList& types);

    /// A run that holds the frame; it is valid until the next call. Null, recorded, if the stream can't be read.
    const Run* Find(const VDCanFrameType& type, std::int64_t frame);

private:
    static std::int64_t StrideOf(const VDCanFrameType& type) { return (type.numBytes + 7) / 8 * 8; }
    bool Pass(const VDCanFrameType* wanted, std::int64_t first);
    void Take(const VDCanFrameType& type, Run& run) const;

    VDFamosFrameStream stream_;
    VDCanFrameTypeList& types_;
    bool keepsAll_ = false;
    std::map<const VDCanFrameType*, Run> runs_;
    /// Where the last pass for one id ended.
    const VDCanFrameType* passed_ = nullptr;
    std::int64_t passedFrames_ = 0;
};
