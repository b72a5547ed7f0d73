#include "DataWriter.h"
#include "Interrupt.h"
#include "TimeSeriesTest.h"
#include "ToolError.h"
#include "Values.h"

#include <algorithm>

namespace {

/// One channel on its way.
struct Stream
{
    VDChannel channel;
    VDValues values;
    int target = 0;  ///< its index in the target
    VTValueForm form;
    bool formKnown = false;

    Stream(const VDChannel& source, std::int64_t block, int index)
        : channel(source), values(VFValueForm(source.type), block), target(index), form(values.GetForm())
    {
    }
};

/// Copies time series.
class TimeSeriesWriter : public VDDataWriter
{
public:
    explicit TimeSeriesWriter(const VDCopyPlan& plan)
        : plan_(plan), source_(static_cast<const VDTimeSeriesTest&>(plan.source))
    {
    }

    VDTestAccess& Access() override { return access_; }
    void CheckFits() const override;
    void WriteHeader(std::int64_t limit) override;
    void WriteData(std::int64_t limit, VDProgressBar& progress) override;

private:
    void WriteFirstBlock(Stream& stream, std::int64_t point) const;
    std::int64_t ChooseBlockSize() const;

    const VDCopyPlan& plan_;
    const VDTimeSeriesTest& source_;
    VDTestAccessOf<VDTsCalls> access_;
};

/// A target whose channels share one header holds channels that agree only: anything else would put values at wrong times.
void TimeSeriesWriter::CheckFits() const
{
    if (!access_.Can(DaxTimeSeries::CommonHeader))
        return;
    const VDChannel& first = plan_.channels.front();
    for (const VDChannel& channel : plan_.channels)
        if (channel.sampleRate != first.sampleRate || channel.baseTime != first.baseTime || channel.points != first.points)
            VFFail(DaxToolError::CommonHeader,
                   "All channels of a " + plan_.format.keyword +
                       " file have the same sample rate, base time and length, but channels " +
                       std::to_string(first.number) + " and " + std::to_string(channel.number) +
                       " differ; copy them apart with --chan",
                   "VFWriteTest");
}

/// Writes all that stands in front of the values. Texts and base time may be more than the format can hold: what it kept is
/// read back later. A sample rate or a length that it refuses ends the copy.
void TimeSeriesWriter::WriteHeader(std::int64_t limit)
{
    VDTsAcc* const acc = access_.Get();
    const bool growing = access_.Can(DaxTimeSeries::Extendable);
    const bool titled = access_.Can(DaxTimeSeries::ChannelTitles);
    TSAccSetXTitle(acc, source_.GetXTitle().c_str());
    TSAccSetXUnits(acc, source_.GetXUnits().c_str());
    for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index) {
        const VDChannel& channel = plan_.channels[static_cast<std::size_t>(index)];
        VFCheck(TSAccSetSampleRate(acc, index, channel.sampleRate));
        if (!growing)
            VFCheck(TSAccSetNumPoints(acc, index, std::min(channel.points, limit)));
        TSAccSetBaseTime(acc, index, channel.baseTime);
        TSAccSetYTitle(acc, index, (titled ? channel.yTitle : channel.title).c_str());
        TSAccSetYUnits(acc, index, channel.units.c_str());
    }
    VFErrorClear();
}

/// Writes the first block in the most exact form that the target takes, which is then the form of the whole channel.
void TimeSeriesWriter::WriteFirstBlock(Stream& stream, std::int64_t point) const
{
    VDTsAcc* const acc = access_.Get();
    if (stream.values.Write(acc, stream.target, point, stream.form)) {
        stream.formKnown = true;
        return;
    }
    const std::vector<VDErrorReport> reports = VFTakeErrors();
    const VTValueForm others[] = {VTValueForm::Digital64, VTValueForm::Double, VTValueForm::Float};
    for (const VTValueForm form : others) {
        const bool toInteger = form == VTValueForm::Digital64;
        if (form == stream.form || (toInteger ? stream.form != VTValueForm::Digital32 : form < stream.form))
            continue;
        if (stream.values.Write(acc, stream.target, point, form)) {
            stream.form = form;
            stream.formKnown = true;
            return;
        }
    }
    // None fits, so the first refusal is what has to be said.
    VFPutErrors(reports);
    throw VDFailure();
}

/// The larger of the two sides' blocks, as far as the channels' buffers together stay small.
std::int64_t TimeSeriesWriter::ChooseBlockSize() const
{
    constexpr auto memory = std::int64_t{16} << 20;
    long targetBlock = 0;
    VFCheck(TSAccGetBufferSize(access_.Get(), &targetBlock));
    const auto wanted = std::max<std::int64_t>(targetBlock, source_.GetBlockSize());
    const auto room = memory / (static_cast<std::int64_t>(plan_.channels.size() * sizeof(double)));
    return std::clamp<std::int64_t>(wanted, 1, std::max<std::int64_t>(room, 1));
}

void TimeSeriesWriter::WriteData(std::int64_t limit, VDProgressBar& progress)
{
    VDTsAcc* const acc = access_.Get();
    const std::int64_t block = ChooseBlockSize();
    std::int64_t last = 0;
    std::vector<Stream> streams;
    for (const VDChannel& channel : plan_.channels) {
        streams.emplace_back(channel, block, static_cast<int>(streams.size()));
        last = std::max(last, std::min(channel.points, limit));
    }
    // Block by block over all channels, which suits files that hold their channels side by side.
    for (std::int64_t point = 1; point <= last; point += block) {
        for (Stream& stream : streams) {
            VDInterruptGuard::Check();
            const std::int64_t count = std::min(block, std::min(stream.channel.points, limit) - point + 1);
            if (count < 1)
                continue;
            if (stream.values.Read(source_.Get(), stream.channel.index, point, count) != count)
                VFFail(DaxToolError::Incomplete, "The file ends before the points that it states", "VFWriteTest");
            if (!stream.formKnown)
                WriteFirstBlock(stream, point);
            else if (!stream.values.Write(acc, stream.target, point, stream.form))
                throw VDFailure();
            progress.Advance(count);
        }
    }
}

}  // namespace

std::unique_ptr<VDDataWriter> VFMakeTimeSeriesWriter(const VDCopyPlan& plan)
{
    return std::make_unique<TimeSeriesWriter>(plan);
}
