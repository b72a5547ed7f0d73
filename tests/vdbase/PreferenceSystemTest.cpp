#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VDPreferenceSystem.h"

#include <filesystem>
#include <thread>

TEST(PreferenceSystem, ValuesByTypeAndFolder)
{
    TestWriteFile(
        TestHomeFolder(), "preferences.toml",
        "[FileFormats.General]\nMinChanDigits = 3\nMaximiseTestName = false\n"
        "[FileFormats.Extensions]\nIgnoreExtensions = [\"txt\", \"log\"]\n\"Enable_a.b/c\" = true\nMixed = [1, \"a\"]\n"
        "[FileFormats.Qac]\nFolderExtensions = 'sig,qac'\nHuge = 5_000_000_000\nRatio = 0.25\n");
    TestWriteFile(TestSysFolder(), "preferences.toml", "[FileFormats.General]\nMinChanDigits = 4\nMaxChanDigits = 8\n");
    const VDPreferenceSystem preferences;
    EXPECT_EQ(preferences.GetHugeValue("/FileFormats/General/MinChanDigits", 2), 3) << "home counts first";
    EXPECT_EQ(preferences.GetEnumValue("/FileFormats/General/MaxChanDigits", 6), 8);
    EXPECT_FALSE(preferences.GetBooleanValue("/FileFormats/general/maximisetestname", true)) << "case doesn't count";
    EXPECT_EQ(preferences.GetStringValue("/FileFormats/Extensions/IgnoreExtensions", "").Str(), "txt,log");
    EXPECT_TRUE(preferences.GetBooleanValue("/FileFormats/Extensions/Enable_a.b/c", false));
    EXPECT_EQ(preferences.GetDoubleValue("/FileFormats/Qac/Ratio", 1), 0.25);
    EXPECT_EQ(preferences.GetDoubleValue("/FileFormats/General/MinChanDigits", 1), 3.0);

    // Another type, a number that doesn't fit, a table, nothing at all: the default.
    for (const char* key : {"/FileFormats/General/MinChanDigits", "/FileFormats/Extensions/Mixed", "/FileFormats/General"})
        EXPECT_EQ(preferences.GetStringValue(key, "d").Str(), "d") << key;
    EXPECT_TRUE(preferences.GetBooleanValue("/FileFormats/Qac/FolderExtensions", true));
    EXPECT_EQ(preferences.GetEnumValue("/FileFormats/Qac/Huge", 7), 7);
    EXPECT_EQ(preferences.GetHugeValue("/FileFormats/Qac/Ratio", 9), 9);
    EXPECT_EQ(preferences.GetStringValue("/FileFormats/None", nullptr).Str(), "");
    ExpectNoError();
}

TEST(PreferenceSystem, OverridesAndReload)
{
    VDPreferenceSystem preferences;
    const std::uint64_t start = VDPreferenceSystem::GetGeneration();
    preferences.OverrideEnumValue("/A/B", 5);  // before the files are read
    TestWriteFile(TestHomeFolder(), "preferences.toml", "[A]\nB = 1\n");
    EXPECT_EQ(preferences.GetEnumValue("/A/B", 0), 5);
    EXPECT_GT(VDPreferenceSystem::GetGeneration(), start);
    preferences.OverrideStringValue("/A/B", "text");
    EXPECT_EQ(preferences.GetStringValue("/A/B", "").Str(), "text");
    preferences.Reload();
    EXPECT_GT(VDPreferenceSystem::GetGeneration(), start + 2);
    EXPECT_EQ(preferences.GetEnumValue("/A/B", 0), 1);
}

TEST(PreferenceSystem, FaultyFilesAreToldAndCountAsEmpty)
{
    TestWriteFile(TestHomeFolder(), "preferences.toml", "[A]\nB = 1\nC = = 2\n");
    TestWriteFile(TestSysFolder(), "preferences.toml", "[A]\nB = 2\n");
    VDPreferenceSystem preferences;
    EXPECT_EQ(preferences.GetEnumValue("/A/B", 0), 2);
    ExpectError(VDBaseError::Preferences, "The preference file can't be used: line 3: ");
    ExpectError(VDBaseError::Preferences, "\nFile : " + TestHomeFolder() + "preferences.toml");
    VFErrorClear();
    EXPECT_EQ(preferences.GetEnumValue("/A/B", 0), 2);
    ExpectNoError();

    std::filesystem::remove(TestHomeFolder() + "preferences.toml");
    std::filesystem::create_directory(TestHomeFolder() + "preferences.toml");
    preferences.Reload();
    EXPECT_EQ(preferences.GetEnumValue("/A/B", 0), 2);
    EXPECT_TRUE(VFErrorCheck(VDBaseError::Preferences) && VFErrorCheck(VDBaseError::FileOpen));
}

TEST(PreferenceSystem, ThreadsAskWhileOthersOverride)
{
    std::thread writer([] {
        for (int number = 0; number < 1000; ++number) {
            VDPreferenceSystem().OverrideHugeValue("/A/B", number);
            if (number % 100 == 0)
                VDPreferenceSystem().Reload();
        }
    });
    std::int64_t last = 0;
    for (int turn = 0; turn < 1000; ++turn)
        last = VDPreferenceSystem().GetHugeValue("/A/B", -1);
    writer.join();
    EXPECT_LT(last, 1000);
    EXPECT_EQ(VDPreferenceSystem().GetHugeValue("/A/B", -1), 999);
}
