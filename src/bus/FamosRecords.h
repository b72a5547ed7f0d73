#pragma once

#include "VDCanFrameTypeList.h"
#include "daxlib/VDCanFrameDefinition.h"

#include "vdbase/VDTime.h"

#include <cstdint>
#include <memory>
#include <vector>

/// What a Famos file declares, as its keys give it. Numbers that a file doesn't give are -1 unless stated otherwise.

/// Scaling of the independent axis (key `CD`) and trigger time (key `NT`): a group has them, and so may each component.
struct VDFamosScaling
{
    char hasScaling = 0;
    double dx = 0;
    int calibrated = -1;
    VDString unit;
    double x0 = 0;
    int reduction = 0;
    char multiEvent = 0;
    int sortBuffer = 0;
    int pretriggerUsage = 0;
    char hasTriggerTime = 0;
    VDTime triggerTime;
};

/// Name of a channel (key `CN`).
struct VDFamosChannelName
{
    int groupIndex = -1;
    int bitIndex = -1;
    VDString name;
    VDString comment;
};

/// Where the values of a component lie in its buffer (key `CP`).
struct VDFamosPacket
{
    int bufferReference = -1;
    int bytes = -1;
    int numberFormat = -1;
    int significantBits = -1;
    int mask = -1;
    int offset = -1;
    int directSequence = -1;
    int bytesBetween = -1;
};

/// Value range of a component (key `CR`).
struct VDFamosRange
{
    int transform = -1;
    double factor = 0;
    double offset = 0;
    int calibrated = -1;
    VDString unit;
};

/// One component (key `CC`). A file may declare one with a few bytes, so that what its other keys say stands apart; null for
/// a key that the file doesn't give.
struct VDFamosComponent
{
    int componentIndex = -1;
    int analogDigital = -1;
    std::unique_ptr<VDFamosScaling> scaling;
    std::unique_ptr<VDFamosPacket> packet;
    std::unique_ptr<VDFamosRange> range;
    std::vector<VDFamosChannelName> channelNames;
};

/// One group (key `CG`).
struct VDFamosGroup
{
    int numComponents = -1;
    int fieldType = -1;
    int dimension = -1;
    std::unique_ptr<VDFamosScaling> scaling;
    std::vector<VDFamosComponent> components;
};

/// One buffer of a component buffer key (`Cb`). Its integers are: reference, by which components name it; index of the
/// samples; first byte in the samples; size in bytes; byte of the buffer with which the values begin, as it is a ring; and
/// bytes that are filled.
struct VDFamosBuffer
{
    std::int64_t integers[6] = {-1, -1, -1, -1, -1, -1};
    double times[2] = {0, 0};
    double x0 = 0;       ///< of the first value, on the axis of its component
    double addTime = 0;  ///< seconds from the trigger time to where that axis is 0
};

struct VDFamosBufferDescription
{
    std::size_t numGroups = 0;      ///< groups of the file up to the key, the group that it belongs to included
    std::size_t numComponents = 0;  ///< components of that group up to the key
    int bufferCount = -1;
    int userInfoBytes = -1;
    std::vector<VDFamosBuffer> buffers;
};

/// Samples (key `CS`).
struct VDFamosDataBlock
{
    int index = -1;
    std::size_t numGroups = 0;  ///< groups of the file up to the key
    std::int64_t start = 0;     ///< position in the file behind the index field
    std::int64_t length = 0;    ///< the key's length field, which counts the index field and its comma too
    std::int64_t end = 0;       ///< position in the file behind the last byte of the samples
};

/// A group definition (key `CB`).
struct VDFamosDefinition
{
    int index = -1;
    VDString name;
    VDString comment;
};

/// A text definition (key `CT`).
struct VDFamosTextDefinition : VDFamosDefinition
{
    VDString text;
};

/// All that the keys of a file declare.
struct VDFamosHeader
{
    VDString idKeyName;
    int processor = -1;
    int status = -1;
    int origin = -1;
    VDString program;
    VDString comment;
    std::vector<VDFamosDefinition> groupDefinitions;
    std::vector<VDFamosTextDefinition> textDefinitions;
    std::vector<VDFamosBufferDescription> bufferDescriptions;
    std::vector<VDFamosGroup> groups;
    std::vector<VDFamosDataBlock> dataBlocks;
};

/// A channel that follows from the frames of a time-stamped recording. It owns nothing it points to.
struct VDFamosTimeStampChan
{
    VDCanFrameDefinition* frame = nullptr;  ///< null without a database
    VDCanChanDefinition* chan = nullptr;    ///< null without a database
    VDCanFrameType* frameType = nullptr;
    int byteIndex = 0;  ///< 0 with a database

    /// Title of the signal; without a database for instance "FrameId 100 Byte 8".
    VDString GetTitle() const;
    VDString GetUnits() const;
};
