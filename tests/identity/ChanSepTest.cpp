#include "daxlib/VDChanSep.h"
#include "support/TestSupport.h"
#include "vdbase/VDPreferenceSystem.h"

namespace {

struct ChanSepCase
{
    const char* base;
    const char* stem;  // null: not the form of a channel's name
    int chan;
};

/// Names in a folder, split by the rules.
void ExpectSplits(const VDChanSep& rules, const std::vector<ChanSepCase>& cases)
{
    for (const ChanSepCase& row : cases) {
        SCOPED_TRACE(row.base);
        VDString stem = "kept";
        VDString extension = "kept";
        int chan = -5;
        const VDString filename = VDString("/data/") + row.base + ".dat";
        const bool expected = row.stem != nullptr;
        EXPECT_EQ(expected, rules.IsTestPlusChannels(filename, &stem, &extension, &chan) != 0);
        EXPECT_STREQ(expected ? (std::string("/data/") + row.stem).c_str() : "kept", stem);
        EXPECT_STREQ(expected ? "dat" : "kept", extension);
        EXPECT_EQ(expected ? row.chan : -5, chan);
        if (expected) {
            EXPECT_STREQ(filename, rules.ConstructFilename("", stem, chan, extension));
        }
    }
}

}  // namespace

TEST(ChanSep, SplitsVariableDigitsAndPutsThemTogetherAgain)
{
    VDChanSep rules;
    ExpectSplits(rules, {{"road12", "road", 12},
                         {"road7", nullptr, 0},
                         {"road0007", "road00", 7},
                         {"road1234567", "road1", 234567},
                         {"1234", "1", 234},
                         {"12", nullptr, 0},
                         {"", nullptr, 0}});
    rules.SetIgnoredChanDigits(1);
    ExpectSplits(rules, {{"road1234", "road1", 234}, {"road12", nullptr, 0}});
    rules.SetIgnoredChanDigits(9);
    ExpectSplits(rules, {{"road1234", nullptr, 0}});

    VDChanSep wide;
    wide.SetMinMaxChanDigits(0, 10);
    VDString stem;
    int chan = 0;
    EXPECT_NE(0, wide.IsTestPlusChannels("a4294967297.dat", &stem, nullptr, &chan));
    EXPECT_EQ(1, chan) << "the low 32 bits";
    ExpectSplits(wide, {{"road", nullptr, 0}, {"a7", "a", 7}});
}

TEST(ChanSep, SplitsFixedDigits)
{
    VDChanSep rules;
    rules.SetChanSepMethod(VTChanSepFixedDigits);
    rules.SetMinMaxChanDigits(5, 6);
    EXPECT_EQ(3, rules.GetChanDigits());
    EXPECT_STREQ("%03d", rules.GetFormatString());
    ExpectSplits(rules, {{"road123", "road", 123},
                         {"road1234", "road1", 234},
                         {"road-12", nullptr, 0},
                         {"road +1", nullptr, 0},
                         {"12", nullptr, 0}});
    rules.SetFixedChanDigits(10);
    ExpectSplits(rules, {{"road2147483647", "road", 2147483647}, {"road2147483648", nullptr, 0}});
}

TEST(ChanSep, SettersIgnoreWhatIsOutOfRange)
{
    VDChanSep rules;
    rules.SetChanSepMethod(static_cast<VTChanSepMethod>(3));
    rules.SetMinMaxChanDigits(5, 4);
    rules.SetMinMaxChanDigits(0, 11);
    rules.SetFixedChanDigits(11);
    rules.SetIgnoredChanDigits(10);
    EXPECT_EQ(VTChanSepVariableDigits, rules.GetChanSepMethod());
    EXPECT_EQ(2, rules.GetMinChanDigits());
    EXPECT_EQ(6, rules.GetMaxChanDigits());
    EXPECT_EQ(3, rules.GetFixedChanDigits());
    EXPECT_EQ(0, rules.GetIgnoredChanDigits());
}

TEST(ChanSep, ReadsPreferencesOnceUntilForced)
{
    VDPreferenceSystem preferences;
    preferences.OverrideHugeValue("/FileFormats/General/MinChanDigits", 5);
    preferences.OverrideHugeValue("/FileFormats/General/MaxChanDigits", 4);
    preferences.OverrideHugeValue("/FileFormats/General/FixedChanDigits", 99);
    preferences.OverrideEnumValue("/FileFormats/General/ChanSepMethod", 7);
    VDChanSep rules;
    EXPECT_EQ(2, rules.GetMinChanDigits());
    EXPECT_EQ(6, rules.GetMaxChanDigits());
    EXPECT_EQ(0, rules.GetFixedChanDigits()) << "nothing was cached before";
    EXPECT_EQ(VTChanSepVariableDigits, rules.GetChanSepMethod());

    preferences.OverrideHugeValue("/FileFormats/General/MaxChanDigits", 8);
    preferences.OverrideHugeValue("/FileFormats/General/FixedChanDigits", 4);
    EXPECT_EQ(6, VDChanSep().GetMaxChanDigits());
    rules.RefreshFromDefaults(1);
    EXPECT_EQ(5, rules.GetMinChanDigits());
    EXPECT_EQ(8, VDChanSep().GetMaxChanDigits());

    // Only the method is kept by saving.
    rules.SetChanSepMethod(VTChanSepFixedDigits);
    rules.SetFixedChanDigits(9);
    rules.SaveSettingsToPreferences();
    EXPECT_EQ(VTChanSepFixedDigits, VDChanSep().GetChanSepMethod());
    EXPECT_EQ(4, rules.GetFixedChanDigits());
}
