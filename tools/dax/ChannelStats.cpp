#include "ChannelStats.h"

#include "Interrupt.h"
#include "NumberText.h"
#include "ProgressBar.h"
#include "ToolError.h"
#include "Values.h"

#include "daxlib/VDProgressObject.h"

#include <algorithm>

namespace {

/// What the library reports for statistics that nobody has worked out.
constexpr int VVUndefined = -327987;

/// Leads the library's operations, a number of them in turn, to the program's bar, and a signal to the library.
class CalculationProgress : public VDProgressObject
{
public:
    CalculationProgress(std::int64_t operations, bool quiet) : bar_(operations * 100, quiet) {}

    void Start(const char*, int) override { percent_ = 0; }
    void Update(int percent, char* cancel) override
    {
        bar_.Advance(percent - percent_);
        percent_ = percent;
        Check(cancel);
    }
    void Check(char* cancel) override { *cancel = VDInterruptGuard::IsInterrupted() ? 1 : 0; }
    void End() override {}

private:
    VDProgressBar bar_;
    int percent_ = 0;
};

/// @return false if there are none
template <class Value>
bool VFReadStats(int (*get)(VDTsAcc*, int, Value*, Value*, Value*, Value*, Value*, std::int64_t*, std::int64_t*,
                            std::int64_t*),
                 VDTsAcc* acc, int index, VDChannelStats& stats)
{
    std::array<Value, 5> values{};
    auto& points = stats.points;
    if (get(acc, index, &values[0], &values[1], &values[2], &values[3], &values[4], &points[0], &points[1], &points[2]) ==
        0) {
        if (VFErrorGetCode(VFGetBaseLibError()) != VVUndefined)
            throw VDFailure();
        VFErrorClear();
        return false;
    }
    std::copy(values.begin(), values.end(), stats.values.begin());
    std::transform(values.begin(), values.end(), stats.texts.begin(), VFNumberText<Value>);
    return true;
}

}  // namespace

bool VFHasStats(const VDChannel& channel)
{
    const VTValueForm form = VFValueForm(channel.type);
    return form == VTValueForm::Float || form == VTValueForm::Double;
}

std::optional<VDChannelStats> VFGetStats(const VDTimeSeriesTest& test, const VDChannel& channel)
{
    VDChannelStats stats;
    // The library keeps the statistics of a double channel in double, those of every other one in float.
    const bool known =
        VFHasStats(channel) &&
        (channel.type == DaxDataType::Double ? VFReadStats(TSAccGetAllStatsDoublePrecision, test.Get(), channel.index, stats)
                                             : VFReadStats(TSAccGetAllStats, test.Get(), channel.index, stats));
    return known ? std::optional(stats) : std::nullopt;
}

void VFCalculateStats(const VDTimeSeriesTest& test, const std::vector<VDChannel>& channels, bool quiet)
{
    const VDInterruptGuard interrupts;
    // All channels at once go through the file together where they lie interleaved.
    std::vector<int> indexes;
    if (channels.size() == test.GetChannels().size())
        indexes.push_back(static_cast<int>(DaxChannel::All));
    else
        for (const VDChannel& channel : channels)
            if (VFHasStats(channel))
                indexes.push_back(channel.index);
    CalculationProgress progress(static_cast<std::int64_t>(indexes.size()), quiet);
    VFCheck(TSAccSetProgressObject(test.Get(), &progress));
    const bool done =
        std::all_of(indexes.begin(), indexes.end(), [&](int index) { return TSAccCalcStats(test.Get(), index) != 0; });
    TSAccSetProgressObject(test.Get(), nullptr);
    VFCheck(done);
}
