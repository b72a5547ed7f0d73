#include "daxlib/VFDaxMetaData.h"
#include "support/TestSupport.h"
#include "vdbase/VDPreferenceSystem.h"

TEST(SampleRateTolerance, IsARatioOfATenthOfAPercentByDefault)
{
    EXPECT_EQ(VFDaxGetSampleRateTolerance(), 1.001F);
    VDPreferenceSystem().OverrideDoubleValue("/FileFormats/general/SampleRateComparisonPercent", 5.0);
    EXPECT_EQ(VFDaxGetSampleRateTolerance(), 1.001F) << "it is read once";
}

TEST(SampleRateTolerance, FollowsThePreference)
{
    TestWriteFile(TestHomeFolder(), "preferences.toml", "[FileFormats.general]\nSampleRateComparisonPercent = 2.5\n");
    EXPECT_EQ(VFDaxGetSampleRateTolerance(), 1.025F);
}
