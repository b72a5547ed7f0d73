#pragma once

#include "daxlib/DaxApi.h"
#include "daxlib/VDCanFrameDefinition.h"

#include <cstdint>
#include <memory>

/// Recorded frames of one id that lie in memory at equal distances. All memory from the first frame's first byte to the last
/// frame's last one must be readable.
struct VDCanFrames
{
    const unsigned char* data;  ///< first byte of the first frame
    std::int64_t stride;        ///< bytes from the beginning of a frame to that of the next one
    std::int64_t count;         ///< each has `GetFrameBytes()` bytes; 0 or fewer for none
};

/// Takes the values out of many frames of one definition: those of all signals of a frame, or a column of one signal over
/// many frames. It gives what `VDCanChanDefinition::GetValueFromFrame` and `GetPhysical` give, bit by bit, several times as
/// fast.
///
/// Signals are told by their index in the frame definition. A multiplexed signal is in those frames only whose multiplex
/// switch has its id (the last switch, if the definition has several; in none if there is no switch that can be decoded).
/// Integers of 64 bits or more can't be decoded and are in no frame; doubles of 64 bits can.
///
/// The definition may change or go after the construction. Copies are deep. A decoder doesn't change: any number of threads
/// may use one.
class DAX_API VDCanFrameDecoder
{
public:
    explicit VDCanFrameDecoder(const VDCanFrameDefinition& frame);
    ~VDCanFrameDecoder();
    VDCanFrameDecoder(const VDCanFrameDecoder& other);
    VDCanFrameDecoder& operator=(const VDCanFrameDecoder& other);
    /// The other one may only be assigned to or go then.
    VDCanFrameDecoder(VDCanFrameDecoder&&) noexcept;
    VDCanFrameDecoder& operator=(VDCanFrameDecoder&&) noexcept;

    int GetSignalCount() const;
    /// So many bytes of each frame must be readable.
    int GetFrameBytes() const;
    /// Index of the multiplex switch; -1 if there is none that can be decoded.
    int GetSwitch() const;
    /// False also for an index out of range.
    bool CanDecode(int signal) const;

    /// The values of all signals of one frame. Each array has `GetSignalCount()` elements, one a signal, and may be null if
    /// it isn't wanted.
    /// @param raw       0 for a signal that isn't in the frame
    /// @param physical  in the signal's units; NaN for a signal that isn't in the frame
    /// @param present   1 for a signal that is in the frame, else 0
    /// @return the number of signals in the frame
    int DecodeFrame(const unsigned char* data, std::int64_t* raw, double* physical, char* present) const;

    /// The values of one signal in all frames. `raw`, `physical` and `present` have `frames.count` elements, one a frame,
    /// and mean what they mean for `DecodeFrame`; `present` may be null.
    /// @return the number of frames that hold the signal; -1, recorded, for an index out of range (-327995) and for a signal
    ///         that can't be decoded (-334409), and the arrays are untouched
    std::int64_t DecodeRaw(int signal, const VDCanFrames& frames, std::int64_t* raw, char* present) const;
    std::int64_t DecodePhysical(int signal, const VDCanFrames& frames, double* physical, char* present) const;

private:
    struct State;

    std::unique_ptr<State> state_;
};
