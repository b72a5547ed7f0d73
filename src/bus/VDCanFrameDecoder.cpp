#include "daxlib/VDCanFrameDecoder.h"

#include "CanKernels.h"
#include "frame/VFDaxReport.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

namespace {

constexpr int VVFirstUnsupportedNumBits = 64;
constexpr int VVWordBytes = 8;
// Frames whose switch is looked at in one go.
constexpr std::int64_t VVPieceFrames = 512;
constexpr double VVAbsent = std::numeric_limits<double>::quiet_NaN();

VDCanFrames Part(const VDCanFrames& frames, std::int64_t first, std::int64_t count)
{
    return {frames.data + first * frames.stride, frames.stride, count};
}

// How many of the frames, from the first one on, have this many bytes before the end of the last one.
std::int64_t CountWithRoom(const VDCanFrames& frames, int frameBytes, int wanted)
{
    if (frameBytes >= wanted)
        return frames.count;
    if (frames.stride <= 0)
        return 0;
    const std::int64_t bytes = (frames.count - 1) * frames.stride + frameBytes;
    return bytes < wanted ? 0 : (bytes - wanted) / frames.stride + 1;
}

}  // namespace

// Not exported with the class that it is part of.
struct __attribute__((visibility("hidden"))) VDCanFrameDecoder::State
{
    struct Signal
    {
        VDString title;
        VDCanSignalBits bits;
        VDCanSignalBits::WordPlan plan;
        VDCanScaling scaling;
        int frameBytes;
        int multiplexId;
        bool isMultiplexed;
        bool isDecodable;
        bool hasPlan;

        bool IsInteger() const { return scaling.valueType == VTCanValueInteger; }
    };

    std::vector<Signal> signals;
    int frameBytes = 0;
    int switchIndex = -1;
    /// Indexes of those whose values don't follow from their plans alone.
    std::vector<int> special;
    /// All signals, if all are of frames of the same 1 to 8 bytes.
    VDCanWordPlans plans;
    bool isOneWord = false;

    void AddSignal(const VDCanChanDefinition& chan, const VDCanSignalBits& bits, const VDCanScaling& scaling);
    void PlanFrame();
    bool IsInFrame(const Signal& signal, const unsigned char* data) const;
    const Signal* FindSignal(int index, const char* routine) const;
    void RawColumn(const Signal& signal, const VDCanFrames& frames, std::int64_t* raw) const;
    void PhysicalColumn(const Signal& signal, const VDCanFrames& frames, double* physical) const;
    template <class Value, class Decode>
    std::int64_t Column(const Signal& signal, const VDCanFrames& frames, Value* values, char* present, Value absent,
                        Decode decode) const;
};

void VDCanFrameDecoder::State::AddSignal(const VDCanChanDefinition& chan, const VDCanSignalBits& bits,
                                         const VDCanScaling& scaling)
{
    Signal signal{chan.GetTitle(),           bits,  {},   scaling, std::max(chan.GetFrameBytes(), 0), chan.GetMultiplexId(),
                  chan.IsMultiplexed() != 0, false, false};
    signal.isDecodable = chan.GetNumBits() < VVFirstUnsupportedNumBits || scaling.valueType == VTCanValueDouble;
    signal.hasPlan = bits.GetWordPlan(&signal.plan);
    const int index = static_cast<int>(signals.size());
    if (chan.IsMultiplexSwitch() && signal.isDecodable)
        switchIndex = index;
    if (signal.isMultiplexed || !signal.isDecodable || !signal.IsInteger())
        special.push_back(index);
    frameBytes = std::max(frameBytes, signal.frameBytes);
    signals.push_back(std::move(signal));
}

void VDCanFrameDecoder::State::PlanFrame()
{
    if (signals.empty() || signals[0].frameBytes == 0 || signals[0].frameBytes > VVWordBytes)
        return;
    isOneWord = std::all_of(signals.begin(), signals.end(),
                            [this](const Signal& signal) { return signal.frameBytes == signals[0].frameBytes; });
    for (const Signal& signal : signals)
        plans.Append(signal.plan, signal.scaling);
}

bool VDCanFrameDecoder::State::IsInFrame(const Signal& signal, const unsigned char* data) const
{
    if (!signal.isDecodable || !signal.isMultiplexed)
        return signal.isDecodable;
    return switchIndex >= 0 && signals[static_cast<std::size_t>(switchIndex)].bits.Extract(data) == signal.multiplexId;
}

const VDCanFrameDecoder::State::Signal* VDCanFrameDecoder::State::FindSignal(int index, const char* routine) const
{
    if (index < 0 || static_cast<std::size_t>(index) >= signals.size()) {
        VFDaxReportError(DaxError::ChannelIndexRange, routine);
        return nullptr;
    }
    const Signal& signal = signals[static_cast<std::size_t>(index)];
    if (signal.isDecodable)
        return &signal;
    VFDaxReport(DaxError::SignalTooLong, routine, {.appended = signal.title});
    return nullptr;
}

// These two take no notice of multiplexing.
void VDCanFrameDecoder::State::RawColumn(const Signal& signal, const VDCanFrames& frames, std::int64_t* raw) const
{
    const std::int64_t fast = signal.hasPlan ? CountWithRoom(frames, signal.frameBytes, VVWordBytes) : 0;
    VFCanRawColumn(signal.plan, Part(frames, 0, fast), raw);
    for (std::int64_t index = fast; index < frames.count; ++index)
        raw[index] = signal.bits.Extract(frames.data + index * frames.stride);
}

void VDCanFrameDecoder::State::PhysicalColumn(const Signal& signal, const VDCanFrames& frames, double* physical) const
{
    const bool hasKernel = signal.hasPlan && signal.IsInteger();
    const std::int64_t fast = hasKernel ? CountWithRoom(frames, signal.frameBytes, VVWordBytes) : 0;
    VFCanPhysicalColumn(signal.plan, signal.scaling, Part(frames, 0, fast), physical);
    for (std::int64_t index = fast; index < frames.count; ++index)
        physical[index] = signal.scaling.GetPhysical(signal.bits.Extract(frames.data + index * frames.stride));
}

template <class Value, class Decode>
std::int64_t VDCanFrameDecoder::State::Column(const Signal& signal, const VDCanFrames& frames, Value* values, char* present,
                                              Value absent, Decode decode) const
{
    const std::int64_t count = std::max<std::int64_t>(frames.count, 0);
    if (!signal.isMultiplexed || switchIndex < 0) {
        const bool isHeld = !signal.isMultiplexed;
        if (isHeld)
            decode(Part(frames, 0, count), values);
        else
            std::fill_n(values, count, absent);
        if (present != nullptr)
            std::fill_n(present, count, static_cast<char>(isHeld));
        return isHeld ? count : 0;
    }
    // In pieces, so that a frame is still near when it is looked at again.
    std::array<std::int64_t, VVPieceFrames> ids;
    std::int64_t held = 0;
    for (std::int64_t first = 0; first < count; first += VVPieceFrames) {
        const VDCanFrames piece = Part(frames, first, std::min(VVPieceFrames, count - first));
        RawColumn(signals[static_cast<std::size_t>(switchIndex)], piece, ids.data());
        decode(piece, values + first);
        for (std::int64_t index = 0; index < piece.count; ++index) {
            const bool isHeld = ids[static_cast<std::size_t>(index)] == signal.multiplexId;
            values[first + index] = isHeld ? values[first + index] : absent;
            held += isHeld;
            if (present != nullptr)
                present[first + index] = isHeld;
        }
    }
    return held;
}

VDCanFrameDecoder::VDCanFrameDecoder(const VDCanFrameDefinition& frame) : state_(std::make_unique<State>())
{
    state_->frameBytes = std::max(frame.GetNumBytes(), 0);
    for (int index = 0; index < frame.GetChanDefinitionCount(); ++index) {
        const VDCanChanDefinition& chan = *frame.GetChanDefinition(index);
        state_->AddSignal(chan, chan.bits_, chan.scaling_);
    }
    state_->PlanFrame();
}

VDCanFrameDecoder::~VDCanFrameDecoder() = default;

VDCanFrameDecoder::VDCanFrameDecoder(const VDCanFrameDecoder& other) : state_(std::make_unique<State>(*other.state_)) {}

VDCanFrameDecoder& VDCanFrameDecoder::operator=(const VDCanFrameDecoder& other)
{
    state_ = std::make_unique<State>(*other.state_);
    return *this;
}

VDCanFrameDecoder::VDCanFrameDecoder(VDCanFrameDecoder&&) noexcept = default;

VDCanFrameDecoder& VDCanFrameDecoder::operator=(VDCanFrameDecoder&&) noexcept = default;

int VDCanFrameDecoder::GetSignalCount() const
{
    return static_cast<int>(state_->signals.size());
}

int VDCanFrameDecoder::GetFrameBytes() const
{
    return state_->frameBytes;
}

int VDCanFrameDecoder::GetSwitch() const
{
    return state_->switchIndex;
}

bool VDCanFrameDecoder::CanDecode(int signal) const
{
    return signal >= 0 && signal < GetSignalCount() && state_->signals[static_cast<std::size_t>(signal)].isDecodable;
}

int VDCanFrameDecoder::DecodeFrame(const unsigned char* data, std::int64_t* raw, double* physical, char* present) const
{
    const State& state = *state_;
    const std::size_t count = state.signals.size();
    if (state.isOneWord) {
        const std::uint64_t word = VDCanSignalBits::LoadFrame(data, state.signals[0].frameBytes);
        if (raw != nullptr)
            VFCanRawFrame(state.plans, word, raw);
        if (physical != nullptr)
            VFCanPhysicalFrame(state.plans, word, physical);
    } else {
        for (std::size_t index = 0; index < count; ++index) {
            const State::Signal& signal = state.signals[index];
            const std::int64_t value = signal.bits.Extract(data);
            if (raw != nullptr)
                raw[index] = value;
            if (physical != nullptr)
                physical[index] = signal.scaling.GetPhysical(value);
        }
    }
    if (present != nullptr)
        std::fill_n(present, count, '\1');
    int held = static_cast<int>(count);
    for (const int which : state.special) {
        const auto index = static_cast<std::size_t>(which);
        const State::Signal& signal = state.signals[index];
        const bool isHeld = state.IsInFrame(signal, data);
        held -= !isHeld;
        if (present != nullptr)
            present[index] = isHeld;
        if (raw != nullptr && !isHeld)
            raw[index] = 0;
        if (physical != nullptr)
            physical[index] = isHeld ? signal.scaling.GetPhysical(signal.bits.Extract(data)) : VVAbsent;
    }
    return held;
}

std::int64_t VDCanFrameDecoder::DecodeRaw(int signal, const VDCanFrames& frames, std::int64_t* raw, char* present) const
{
    const State::Signal* const found = state_->FindSignal(signal, "VDCanFrameDecoder::DecodeRaw");
    if (found == nullptr)
        return -1;
    return state_->Column(*found, frames, raw, present, std::int64_t{0},
                          [&](const VDCanFrames& part, std::int64_t* values) { state_->RawColumn(*found, part, values); });
}

std::int64_t VDCanFrameDecoder::DecodePhysical(int signal, const VDCanFrames& frames, double* physical, char* present) const
{
    const State::Signal* const found = state_->FindSignal(signal, "VDCanFrameDecoder::DecodePhysical");
    if (found == nullptr)
        return -1;
    return state_->Column(*found, frames, physical, present, VVAbsent,
                          [&](const VDCanFrames& part, double* values) { state_->PhysicalColumn(*found, part, values); });
}
