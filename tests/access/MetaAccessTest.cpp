#include "plugins/StandIn.h"
#include "support/TestTimeSeries.h"

#include "daxlib/MetaAcc.h"
#include "daxlib/VDMetaDataReader.h"
#include "vdarchive/Z4PropertySet.h"
#include "vdbase/VDFileSystem.h"
#include "vdstore/LQChannelMapper.h"

using namespace StandIn;

// The metadata family: what it does differently from the others, and that the core carries it.

namespace {

constexpr int Read = 1;
constexpr int Update = 2;

class MetaAccessTest : public StandInTest
{
protected:
    MetaAccessTest() { Configure(Manifest("MetaDataFiles", MetaClassId, "StandMeta")); }

    static void Configure(const std::string& plugins) { TestWriteFile(TestHomeFolder(), "plugins.toml", Manifests() + plugins); }
    VDFileIdHandle Test(const std::string& script) const
    {
        return IdentifyTest(Write("fileid=29108 log=1 " + script));
    }
    VDMetaAccHandle Open(const std::string& script, int mode) const
    {
        VDMetaAccHandle acc(MetaAccCreate());
        EXPECT_TRUE(MetaAccSetId(acc.Get(), Test(script).Get(), 0)) << VFErrorGetText(VFGetBaseLibError()).Str();
        EXPECT_TRUE(MetaAccOpen(acc.Get(), mode)) << VFErrorGetText(VFGetBaseLibError()).Str();
        return acc;
    }
    static LQChannelMapper* Mapper(VDMetaAcc* acc) { return TestValue<MetaAccGetMetaData>(acc); }
};

}  // namespace

TEST_F(MetaAccessTest, GivesChannelsTitlesAndValues)
{
    VDMetaAccHandle acc(MetaAccCreate());
    VDFileIdHandle copy;
    ExpectFailure(MetaAccGetId(acc.Get(), copy.Out()), -327795, "File ID object not set", "VDMetaAcc::GetId");
    ExpectFailure(MetaAccOpen(acc.Get(), Read), -328009, "", "VDMetaAcc::Open");

    ASSERT_TRUE(MetaAccSetId(acc.Get(), Test("numbers=3,1 caps=9 actual=100 chantitle=two\\nlines").Get(), 0));
    EXPECT_EQ(TestValue<MetaAccGetNumChans>(acc.Get()), 2);
    ExpectFailure(MetaAccFlush(acc.Get()), -327993, "File is not yet open", "VDMetaAcc::Flush");
    ASSERT_TRUE(MetaAccOpen(acc.Get(), Update));
    EXPECT_TRUE(MetaAccGetId(acc.Get(), copy.Out()));
    copy.Reset();
    EXPECT_EQ(TestValue<MetaAccGetChanIndex>(acc.Get(), 3), 1);
    EXPECT_EQ(TestValue<MetaAccGetActualChanNumber>(acc.Get(), 1), 103);
    VDString title;
    EXPECT_EQ(TestValue<MetaAccGetChanTitle>(acc.Get(), 0), "two lines");
    ExpectFailure(MetaAccGetChanTitle(acc.Get(), 2, &title), -327995, "", "VDMetaAcc::GetChanTitle");

    VDVariant value(1.5);
    EXPECT_TRUE(MetaAccSetFormatSpecificValue(acc.Get(), -1, "Gain", &value));
    EXPECT_TRUE(MetaAccGetFormatSpecificValue(acc.Get(), -1, "Nothing", &value));
    EXPECT_TRUE(value.IsNull());
    EXPECT_TRUE(MetaAccGetFormatSpecificValue(acc.Get(), -1, "Gain", &value));
    EXPECT_TRUE(value == VDVariant(1.5));

    // Titles of a format that stores none are the id's; a test may have no channels at all.
    acc = Open("caps=2", Update);
    EXPECT_EQ(TestValue<MetaAccGetChanTitle>(acc.Get(), 0), "Channel 1");
    ExpectFailure(MetaAccSetChanTitle(acc.Get(), 0, "x"), -327691, "", "VDMetaAcc::SetChanTitle");
    acc = Open("numbers=", Read);
    ExpectFailure(MetaAccGetChanTitle(acc.Get(), 0, &title), -327994, "Channel list not defined", "VDMetaAcc::GetChanTitle");
}

TEST_F(MetaAccessTest, MetaDataLieInTheFormatOrInTheSidecar)
{
    {
        const VDMetaAccHandle acc = Open("caps=7", Read);
        // Neither a copy nor the attributes of a header: what the plug-in keeps, with the test's identity.
        LQChannelMapper* const mapper = Mapper(acc.Get());
        EXPECT_EQ(Mapper(acc.Get()), mapper);
        EXPECT_NE(mapper->GetMetaDataSet("InputTestInfo", LQChannelMapper::GLOBAL), nullptr);
        EXPECT_EQ(mapper->GetMetaDataSet(LQChannelMapper::ATTRIBUTES, 0), nullptr);
    }
    {
        const VDMetaAccHandle acc = Open("caps=2 actual=4", Update);
        TakeLog();
        LQChannelMapper* const mapper = Mapper(acc.Get());
        EXPECT_EQ(Mapper(acc.Get()), mapper);
        std::string log = TakeLog();
        EXPECT_NE(log.find("AddLegacyMetaData"), log.rfind("AddLegacyMetaData")) << log;
        EXPECT_EQ(log.find("GetValue18 0"), log.rfind("GetValue18 0")) << log;
        mapper->AdoptMetaDataSet("Test", nullptr, 0)->PutString("Driver", "Jo");
        ASSERT_TRUE(MetaAccClose(acc.Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
        log = TakeLog();
        EXPECT_NE(log.find("PutValue21 -1 type12\nFlush\nClose\n"), std::string::npos) << log;
    }
    VDMetaDataReader reader;
    LQChannelMapper* mapper = nullptr;
    ASSERT_TRUE(reader.SetFileId(Test("caps=2").Get())) << VFErrorGetText(VFGetBaseLibError()).Str();
    ASSERT_TRUE(reader.GetMetaData(&mapper));
    VDString driver;
    // The sidecar's channel has the number that the file gives it.
    EXPECT_TRUE(mapper->GetStringMetaDataItem("Driver", &driver, mapper->IndexFromNumber(5, false)));
    EXPECT_EQ(driver, "Jo");
}

TEST_F(MetaAccessTest, FailuresComeUnderItsOwnCodes)
{
    VDMetaAccHandle acc(MetaAccCreate());
    EXPECT_FALSE(MetaAccSetId(acc.Get(), IdentifyTest(Write("fileid=29108 tsfail=SetId")).Get(), 0));
    ExpectErrorText(-327808, "Stand-in failure");
    EXPECT_FALSE(MetaAccSetId(acc.Get(), IdentifyTest(Write("fileid=29108 tsfail=SetId lasterror=VARDO")).Get(), 0));
    ExpectErrorText(-327807, "Unknown error in histogram plugin");
    EXPECT_FALSE(MetaAccSetId(acc.Get(), IdentifyTest(Write("title=Ride")).Get(), 0));
    ExpectErrorText(-327802, "File format not supported for histogram access\nTest name : Ride");
}

TEST_F(MetaAccessTest, OnePluginThatDoesNotLoadStopsTheFamily)
{
    Configure(Manifest("MetaDataFiles", "other", "MissMeta") + Manifest("MetaDataFiles", MetaClassId, "StandMeta"));
    const VDMetaAccHandle acc(MetaAccCreate());
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_FALSE(MetaAccSetId(acc.Get(), Test("").Get(), 0));
        ExpectError(-328683, "Function name: AddLegacyMetaData", "VDMetaAcc::LoadPlugIns");
    }
}

TEST_F(MetaAccessTest, APluginThatDoesNotLoadByHandIsNotKept)
{
    Configure("");
    const std::string library = TestPluginFolder() + "/libstandin.so";
    EXPECT_FALSE(MetaAccAddPlugin(MetaClassId, "MissMeta", library.c_str(), ""));
    ExpectError(-328683, "Function name: AddLegacyMetaData");
    EXPECT_TRUE(MetaAccAddPlugin(MetaClassId, "StandMeta", library.c_str(), ""));
    EXPECT_TRUE(MetaAccAddPlugin("stand-meta", "none", "none", ""));
    Open("", Read);
}
