#pragma once

#include "VDFamosFrames.h"
#include "VDFamosRecording.h"

#include "bus/VDFamosUtil.h"
#include "daxlib/VDCanFrameDecoder.h"

/// A recording of time-stamped bus frames as channels: a value for each frame of an id, in the order of arrival. With a CAN
/// database they are its signals, without one the bytes of the frames; each frame id has a channel with the times of its
/// frames as well. The time channels come last.
///
/// A signal that isn't in a frame, since its multiplex switch or the frame's length says so, has no number there (NaN).
class VDFamosStream
{
public:
    struct Channel
    {
        VDString title;
        VDString units;
        int type;  ///< a `DaxDataType`
        std::int64_t numPoints;
    };

    /// The whole stream is gone through.
    /// @param database  name of a CAN database; empty for none
    /// @return null, recorded
    static std::unique_ptr<VDFamosStream> Open(const VDString& filename, const VDString& database);
    /// The database that is named for a test: by the test's own preference, else by the user's.
    static VDString GetDatabase(VDFileId* id);

    std::size_t GetChannelCount() const { return numSignals_ + timed_.size(); }
    Channel GetChannel(std::size_t channel) const;
    const VDFamosRecording& GetRecording() const { return *recording_; }
    const std::string& GetDamage() const { return damage_; }

    /// @param first  from 0; the range is there
    bool Read(std::size_t channel, std::int64_t first, std::int64_t count, double* values);
    void AddChannelTo(LQChannelMapper& mapper, int index, std::size_t channel) const;

private:
    /// A frame of the database, for its signals.
    struct Definition
    {
        VDCanFrameDecoder decoder;
        std::unordered_map<const VDCanChanDefinition*, int> signals;
    };

    VDFamosStream() = default;
    void TakeChannels();
    void TakeTimeScale();
    VDCanFrameType* TypeOf(std::size_t channel) const;
    bool Decode(const VDFamosTimeStampChan& chan, const VDFamosFrames::Run& run, std::int64_t first, std::int64_t count,
                double* values) const;

    VDFamosUtil famos_;
    std::unique_ptr<VDFamosRecording> recording_;
    std::string damage_;
    std::size_t numSignals_ = 0;
    std::vector<VDCanFrameType*> timed_;  ///< the ids that have channels
    std::unordered_map<const VDCanFrameDefinition*, Definition> definitions_;
    std::optional<VDFamosFrames> frames_;
    double timeFactor_ = 1;
    double timeOffset_ = 0;
    VDString timeUnits_;
};
