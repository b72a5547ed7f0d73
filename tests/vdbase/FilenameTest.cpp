#include "support/TestSupport.h"

#include "vdbase/VFFilename.h"

#include <cstdlib>

TEST(Filename, SplitAndBuildGiveEveryNameBack)
{
    struct Row
    {
        const char *name, *folder, *base, *extension;
    };
    for (const Row& row :
         {Row{"/data/road01.dat", "/data/", "road01", "dat"}, Row{"road", "", "road", ""}, Row{"a.b/c", "a.b/", "c", ""},
          Row{"/x/.profile", "/x/", ".profile", ""}, Row{"x/.tar.gz", "x/", ".tar", "gz"}, Row{"a..b", "", "a.", "b"},
          Row{"/x/a.", "/x/", "a.", ""}, Row{"../..", "../", "..", ""}, Row{".", "", ".", ""}, Row{"/", "/", "", ""},
          Row{"", "", "", ""}}) {
        VDString folder("old"), base("old"), extension("old");
        VFSplitFilename(row.name, &folder, &base, &extension);
        EXPECT_TRUE(folder == row.folder && base == row.base && extension == row.extension) << row.name;
        EXPECT_EQ(VFBuildFilename(folder, base, extension).Str(), row.name);
    }
    VDString name("/data/a-base-name-too-long-for-the-object-itself.dat");
    VFSplitFilename(name, nullptr, &name, nullptr);
    EXPECT_EQ(name.Str(), "a-base-name-too-long-for-the-object-itself");

    // Building puts in what is missing.
    EXPECT_EQ(VFBuildFilename("/data", "road", ".dat").Str(), "/data/road.dat");
    EXPECT_EQ(VFBuildFilename("/data/", "/abs", "dat").Str(), "/abs.dat");
    EXPECT_EQ(VFBuildFilename("data", "", "").Str(), "data");
    EXPECT_EQ(VFBuildFilename(nullptr, "road", nullptr).Str(), "road");
    EXPECT_TRUE(VFMakePath("a//") == "a/" && VFMakePath("/") == "/" && VFMakePath("") == "");
}

TEST(Filename, LogicalFoldersFollowTheEnvironment)
{
    setenv("DAX_HOME", "/h/dax//", 1);
    EXPECT_EQ(VFTranslateName("home").Str(), "/h/dax");
    unsetenv("DAX_HOME");
    setenv("XDG_CONFIG_HOME", "/xdg", 1);
    EXPECT_EQ(VFTranslateName("home").Str(), "/xdg/daxlib");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    setenv("HOME", "/users/u", 1);
    EXPECT_EQ(VFTranslateName("home").Str(), "/users/u/.config/daxlib");
    EXPECT_EQ(VFTranslateName("vdsys").Str(), TestSysFolder().substr(0, TestSysFolder().size() - 1));
    setenv("DAX_SYS", "", 1);
    EXPECT_TRUE(VFTranslateName("vdsys").View().ends_with("/share/daxlib")) << VFTranslateName("vdsys").c_str();
    EXPECT_TRUE(VFTranslateName("other").IsEmpty());
}

TEST(Filename, PatternMatch)
{
    EXPECT_TRUE(VFPatternMatch(0, "road*.d?t", "road.01.dat"));
    EXPECT_TRUE(VFPatternMatch(0, "a*bc*c", "abcbcc"));
    EXPECT_FALSE(VFPatternMatch(0, "road??", "road1"));
    EXPECT_FALSE(VFPatternMatch(0, "ROAD", "road"));
    EXPECT_TRUE(VFPatternMatch(1, "R*D", "road"));
    EXPECT_FALSE(VFPatternMatch(0, "", "a"));
    // A match that tries all ways would not end.
    std::string pattern;
    for (int star = 0; star < 50; ++star)
        pattern += "*a";
    EXPECT_FALSE(VFPatternMatch(0, (pattern + "b").c_str(), std::string(5000, 'a').c_str()));
}
