#include "ObjectFaults.h"
#include "support/TestHistogram.h"
#include "support/TestSupport.h"
#include "vdstore/VDStoreErrorCodes.h"

namespace {

/// The last of two channels gets another histogram, of another size, with every version.
TestHist MakeVersion(int version)
{
    return MakeHist(version % 2 == 0 ? VTHistFormatDouble : VTHistFormatHuge, version * 700 % 1000);
}

constexpr ObjectScenario Scenario = {
    .adopt = [](LQDataManager& manager, Z4Storage* storage) -> LQObject* {
        return manager.AdoptHistogram(storage, "Histogram", nullptr, nullptr);
    },
    .write =
        [](LQObject& object, int version) {
            auto& histograms = static_cast<LQHistogram&>(object);
            return histograms.AdjustChannelCount(2) && histograms.SetChanTitle(std::to_string(version).c_str(), 0) &&
                   histograms.LoadFrom(MakeVersion(version + 1).get(), 1);
        },
    .holds =
        [](LQObject& object, int version) {
            auto& histograms = static_cast<LQHistogram&>(object);
            if (version == 0)
                return histograms.GetChannelCount() == 0;
            const TestHist found(VFHistCreate());
            VDString title;
            return histograms.GetChannelCount() == 2 && histograms.GetChanTitle(title, 0) &&
                   title == std::to_string(version - 1).c_str() && histograms.SaveTo(found.get(), 1) &&
                   IsSame(found.get(), MakeVersion(version).get());
        },
};

}  // namespace

TEST(Histogram, SurvivesFaults)
{
    ExpectSurvivesFaults(Scenario);
}
