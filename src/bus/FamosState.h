#pragma once

#include "VDFamosFrameStream.h"
#include "VDFamosUtil.h"

#include "daxlib/VDCanDefinition.h"

#include <optional>

/// All that a `VDFamosUtil` holds.
struct VDFamosUtil::State
{
    State();
    /// Forgets what was read from a file. The database stays.
    void ClearParsed();

    std::optional<VDIo> file;  ///< empty while no file is open
    VDString filename;
    bool asItIs = false;
    bool isTimeStamped = false;
    VDString dbcFile;
    VDCanDefinition database;
    /// The bytes of one frame id, of which the last is the channel in front of `end`.
    struct ByteChans
    {
        VDCanFrameType* frameType;
        std::size_t end;
    };
    std::vector<ByteChans> byteChans;                  ///< without a database
    std::vector<VDFamosTimeStampChan> timeStampChans;  ///< with one
    bool timeInSeconds;                                ///< preference, for readers of the samples
    int enumChannelHandling;                           ///< preference, for readers of the samples
    std::int64_t startTime = 0;                        ///< of a time-stamped recording: UTC, microseconds since 1970
    double frameTimeFactor = 0;
    double frameTimeOffset = 0;
    VDCanFrameTypeList frameTypes{"Famos"};
    VDFamosHeader header;
    std::optional<VDFamosFrameStream> frames;
};
