#include "frame/VDDaxLib.h"

#include "daxlib/VFDaxMetaData.h"
#include "vdbase/VDPreferenceSystem.h"

#include <mutex>
#include <optional>

float VFDaxGetSampleRateTolerance()
{
    static std::optional<float> tolerance;
    const std::lock_guard lock(VDDaxLib::Get().GetLock());
    if (!tolerance) {
        const auto percent =
            static_cast<float>(VDPreferenceSystem().GetDoubleValue("/FileFormats/general/SampleRateComparisonPercent", 0.1));
        tolerance = static_cast<float>(static_cast<double>(percent) / 100.0 + 1.0);
    }
    return *tolerance;
}
