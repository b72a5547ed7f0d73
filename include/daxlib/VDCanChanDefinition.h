#pragma once

#include "daxlib/DaxApi.h"
#include "daxlib/VDCanScaling.h"
#include "daxlib/VDCanSignalBits.h"
#include "vdbase/VDStringArray.h"

#include <cstdint>
#include <memory>

/// One signal of a CAN frame, called a channel: where its bits lie in the frame, how they scale to a physical value
/// (raw * factor + offset), and what its values mean. Copies are deep. Different threads may use
/// one object at a time as long as none changes it.
///
/// **Where the bits lie.** Bits are numbered through the frame, bit 0 being the least significant bit of byte 0 and bit 8
/// that of byte 1. A signal with `GetBigEndian` true (digit 1 in the database) begins with its least significant bit at the
/// start bit and counts upwards. With `GetBigEndian` false (digit 0) the start bit is its most significant bit, the next
/// lower ones follow in the same byte, and go on with bit 7 of the next byte.
///
/// **Frames of more than 8 bytes** (CAN FD): the same numbering holds for a frame of any length, a signal may lie anywhere
/// in it and may touch nine bytes, and bits that the frame doesn't have read as 0. In frames of up to 8 bytes a signal that
/// reaches out of the frame is taken from a 64-bit word with the shift modulo 64.
class DAX_API VDCanChanDefinition
{
public:
    VDCanChanDefinition();
    virtual ~VDCanChanDefinition();
    VDCanChanDefinition(const VDCanChanDefinition& other);
    VDCanChanDefinition& operator=(const VDCanChanDefinition& other);

    /// Sets everything but the description and the enumeration.
    /// @param bigEndian   true for the digit 1 in the database, see above
    /// @param frameBytes  length of the frame in bytes: `GetValueFromFrame` reads so many
    void Init(const VDString& title, char isSwitch, char isMultiplexed, int multiplexId, int startBit, int numBits,
              char bigEndian, char isSigned, double factor, double offset, double minval, double maxval,
              const VDString& units, const VDStringArray& receivers, const int& frameBytes);

    const VDString& GetTitle() const;
    /// Whether the raw value of this channel says which multiplexed channels the frame holds.
    char IsMultiplexSwitch() const;
    char IsMultiplexed() const;
    /// Value of the frame's switch with which the frame holds this channel; 0 if it isn't multiplexed.
    int GetMultiplexId() const;
    int GetStartBit() const;
    int GetNumBits() const;
    char GetBigEndian() const;
    char GetIsSigned() const;
    double GetFactor() const { return scaling_.factor; }
    double GetOffset() const { return scaling_.offset; }
    double GetMinval() const;
    double GetMaxval() const;
    const VDString& GetUnits() const;
    /// Names of the nodes that receive the signal.
    const VDStringArray& GetReceivers() const;

    /// What the raw value's bits are: a `VTCanValueType`, at first an integer. A type whose length isn't that of the signal
    /// is not taken.
    void SetValueType(int type);
    int GetValueType() const { return scaling_.valueType; }

    /// Length in bytes of the frame: `GetValueFromFrame` needs so many.
    int GetFrameBytes() const;

    void SetDescription(const VDString& description);
    const VDString& GetDescription() const;

    /// Replaces the names of values: text n belongs to value n.
    void SetEnumOptions(VDArrayWithSort<long>& values, VDStringArray& texts);
    void GetEnumOptions(VDArrayWithSort<long>* values, VDStringArray* texts) const;

    /// The raw value of the channel in a frame. A signal of 0 bits or fewer has the value 0. `VDCanFrameDecoder` is the way
    /// to take many values out of many frames.
    /// @param data   the frame; as many bytes as the frame has by its definition must be readable
    /// @param value  two's complement for a signed channel; the bits as they stand if they are a float
    /// @return false for a channel of 64 bits or more (-334409), and `value` is untouched
    bool GetValueFromFrame(const unsigned char* data, std::int64_t* value) const
    {
        if (bits_.IsWord()) [[likely]] {
            *value = bits_.ExtractWord(data);
            return true;
        }
        if (bits_.IsShort()) [[likely]] {
            *value = bits_.ExtractShort(data);
            return true;
        }
        return GetRareValue(data, value);
    }
    /// The same without the check: a channel of 64 bits or more gives the low 64 bits. Always true.
    bool DecodeMethod2(const unsigned char* data, std::int64_t* value) const;
    /// The physical value of a raw one, in the channel's units.
    double GetPhysical(std::int64_t raw) const { return scaling_.GetPhysical(raw); }

    /// Whether the values are a quantity rather than a state: judged by bits, range, scaling and units.
    bool IsAnalogue() const;
    /// Whether values have names.
    bool IsEnum() const;
    /// The name of a raw value, of which the low 32 bits count. A value without a name leaves `text` as it is.
    /// @return true always
    bool GetEnumText(std::int64_t value, VDString* text) const;

private:
    friend class VDCanFrameDecoder;
    struct State;

    __attribute__((cold)) bool GetRareValue(const unsigned char* data, std::int64_t* value) const;

    // What decoding needs stands in the object itself, so that a value costs no hop.
    VDCanSignalBits bits_;
    VDCanScaling scaling_;
    std::unique_ptr<State> state_;
};
