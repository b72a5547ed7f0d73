#include "ListingTest.h"

#include "daxlib/VDChanSep.h"
#include "vdbase/VDPreferenceSystem.h"

// Which files are one test.

namespace {

class GroupingTest : public ListingTest
{
protected:
    void Channels(std::initializer_list<const char*> names, const std::string& script = {}) const
    {
        for (const char* name : names)
            Channel(name, script);
    }
};

}  // namespace

TEST_F(GroupingTest, NamesThatSharePutFilesTogether)
{
    struct Row
    {
        std::initializer_list<const char*> names;
        const char* tests;
    };
    int number = 0;
    for (const Row& row : {
             Row{{"abc101.d", "abc102.d", "abc103.d"}, "abc1;d[1,2,3]"},
             Row{{"abc10.d", "abc11.d"}, "abc;d[10,11]"},
             Row{{"one1234.d"}, "one12;d[34]"},
             Row{{"abc09.d", "abc10.d"}, "abc;d[9,10]"},
             Row{{"road1001.d", "road1002.d", "road0007.d"}, "road00;d[7] road10;d[1,2]"},
             Row{{"road7.d", "road.d", "12.d", "x01.d", "x01.e"}, "12.d road.d road7.d x;d[1] x;e[1]"},
             // No test could give these names back.
             Row{{"Up01.d", "up02.d", "bare01"}, "bare01 Up;d[1] up;d[2]"},
         }) {
        const std::string folder = "f" + std::to_string(number++);
        for (const char* name : row.names)
            Channel(folder + "/" + name);
        EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Name(folder)));
        EXPECT_TRUE(VFDirListSetFilesMatching(list_.Get(), ""));
        ASSERT_TRUE(VFDirListCreateListWithInfo(list_.Get()));
        std::string tests = Listed();
        for (std::size_t at; (at = tests.find(folder + "/")) != std::string::npos;)
            tests.erase(at, folder.size() + 1);
        EXPECT_EQ(tests, row.tests);
        // Every file is in a test that gives its name back.
        std::size_t found = 0;
        for (int test = 0; test < Count(); ++test)
            for (int channel = 0; channel < TestInt<FIDGetNumChans>(Test(test)); ++channel)
                found += std::filesystem::exists(TestText<FIDGetChanFilename>(Test(test), channel));
        EXPECT_EQ(found, row.names.size()) << tests;
    }
}

TEST_F(GroupingTest, OnlyFilesOfAKindGoTogether)
{
    Channels({"a01.d", "a03.d"}, "units=m/s opsys=101");
    Channels({"a02.d", "a06.d"}, "subid=2");
    Channels({"a04.d", "a05.d"}, "opsys=1");
    Write("", "a07.d");  // of a format that doesn't lie about in this way
    EXPECT_EQ(List("*"), "a;d[1,3] a;d[2,6] a;d[4,5] a07.d");
    EXPECT_EQ(TestText<FIDGetChanUnits>(Test(0), 1), "m/s");
    EXPECT_EQ(TestText<FIDGetTestTitle>(Test(0)), "a01");
    EXPECT_EQ(TestInt<FIDGetNumChanDigits>(Test(0)), 2);

    VDChanSep rules;
    rules.SetChanSepMethod(VTChanSepFixedDigits);
    rules.SetFixedChanDigits(1);
    EXPECT_TRUE(VFDirListSetChanSep(list_.Get(), &rules));
    EXPECT_EQ(List("a0*"), "a0;d[1,3] a0;d[2,6] a0;d[4,5] a07.d");
}

TEST_F(GroupingTest, AChannelThatFailsToLoad)
{
    Channels({"a01.d", "a02.d", "a03.d"});
    Channel("a02.d", "infofail=1 lasterror=Broken");
    EXPECT_TRUE(VFDirListSetPath(list_.Get(), folder_.Path()));
    ExpectFailure(VFDirListCreateList(list_.Get()), -328781);
    EXPECT_TRUE(VFErrorCheck(-328689));
    // Where failures are taken it is told as a file of its own.
    EXPECT_TRUE(VFDirListSetErrorOnLoadDetails(list_.Get(), 0, 0));
    EXPECT_EQ(List("*", true), "a;d[1,3] a02.d?");
}

TEST_F(GroupingTest, ExtensionsAloneTell)
{
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Extensions/IdentifyByExtension_StandGroup", true);
    VDPreferenceSystem().OverrideStringValue("/FileFormats/Extensions/Extensions_StandGroup", "d,sig");
    VDPreferenceSystem().OverrideStringValue("/FileFormats/Extensions/IgnoreExtensions", "ign");
    Channels({"a01.d", "a02.d"}, "units=V");
    Write("", "a03.d");  // the extension promises something else
    Write("", "x.ign");
    folder_.Write("never.d", "not looked at");
    EXPECT_EQ(List("*"), "a;d[1,2] a03.d never.d");
    EXPECT_EQ(TestFlag<FIDGetIdentified>(Test(2)), 0);
    EXPECT_EQ(List("*;s"), "a;d[1,2] a03.d never.d? x.ign");
}

TEST_F(GroupingTest, FoldersAreTests)
{
    Channels({"t.mes/b.sig", "t.mes/A.SIG", "t.mes/c.d", "deep/u.mes/a.sig", "v.fsf/x.raw", "v.fsf/y.dat"}, "units=N");
    folder_.Write("w.mes/n.sig", "unknown");
    EXPECT_EQ(List("*"), "w.mes/n.sig? t.mes;mes[1] t.mes;mes[1] v.fsf;fsf[1] v.fsf;fsf[1]");
    EXPECT_EQ(List("*;s"), "w.mes/n.sig? t.mes;mes[1] t.mes;mes[1] deep/u.mes;mes[1] v.fsf;fsf[1] v.fsf;fsf[1]");
    EXPECT_EQ(TestText<FIDGetChanFilename>(Test(1), 0), folder_.Name("t.mes/A.SIG"));
    EXPECT_EQ(TestText<FIDGetChanTitle>(Test(2), 0), "b");
    EXPECT_EQ(TestText<FIDGetTestTitle>(Test(2)), "t.mes");
    EXPECT_EQ(List("u.mes;s;xMES"), "deep/u.mes;mes[1]");
}
