#include "DataWriter.h"
#include "HistogramTest.h"
#include "Interrupt.h"

namespace {

/// Copies histograms, each as a whole.
class HistogramWriter : public VDDataWriter
{
public:
    explicit HistogramWriter(const VDCopyPlan& plan) : plan_(plan), source_(static_cast<const VDHistogramTest&>(plan.source))
    {
    }

    VDTestAccess& Access() override { return access_; }

    void WriteHeader(std::int64_t) override
    {
        if (!access_.Can(DaxHistogram::ChannelTitles))
            return;
        for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index)
            VFCheck(HFAccSetChanTitle(access_.Get(), index, plan_.channels[static_cast<std::size_t>(index)].title.c_str()));
    }

    void WriteData(std::int64_t, VDProgressBar& progress) override
    {
        for (int index = 0; index < static_cast<int>(plan_.channels.size()); ++index) {
            VDInterruptGuard::Check();
            const VDHistogram histogram = source_.GetHistogram(plan_.channels[static_cast<std::size_t>(index)]);
            VFCheck(HFAccPutHistogram(access_.Get(), index, histogram.Get()));
            progress.Advance(histogram.CountBins());
        }
    }

private:
    const VDCopyPlan& plan_;
    const VDHistogramTest& source_;
    VDTestAccessOf<VDHistogramCalls> access_;
};

}  // namespace

std::unique_ptr<VDDataWriter> VFMakeHistogramWriter(const VDCopyPlan& plan)
{
    return std::make_unique<HistogramWriter>(plan);
}
