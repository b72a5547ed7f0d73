#include "support/TestSupport.h"

#include "vdbase/VDCompBase.h"
#include "vdbase/VFByteOrder.h"
#include "vdbase/VFText.h"
#include "vdbase/VFTrace.h"
#include "vdbase/VFVersion.h"

#include <thread>

TEST(Error, ChainedReportsStackAndOthersStartAnew)
{
    EXPECT_EQ(VFErrorSet(-1, "cause\nFile : a.dat", "Reader", 0), 0);
    VFErrorSet(-2, "outcome\nmore", "Host", 1);
    EXPECT_TRUE(VFErrorCheck(-1));
    const VDErrorRecord* record = VFGetBaseLibError();
    EXPECT_EQ(VFErrorGetCode(record), -2);
    EXPECT_EQ(VFErrorGetBriefString(record), "outcome");
    EXPECT_EQ(VFErrorGetRoutine(record), "Host");
    EXPECT_EQ(VFErrorGetReports(record)[0].text, "cause\nFile : a.dat");
    VFErrorSet(-3, VFErrorGetReports(record)[0].text, nullptr, 0);
    EXPECT_FALSE(VFErrorCheck(-1));
    EXPECT_EQ(VFErrorGetText(record), "cause\nFile : a.dat");
    VFErrorClear();
    EXPECT_FALSE(VFErrorCheck(-3));
    EXPECT_EQ(VFErrorGetCode(record), 0);
    EXPECT_EQ(VFErrorGetBriefString(record), "");
    EXPECT_EQ(VFErrorGetCode(nullptr), 0);
}

TEST(Error, MutesNest)
{
    VFErrorSet(-1, "kept", "", 0);
    {
        const VDErrorMute outer;
        {
            const VDErrorMute inner;
            VFErrorSet(-2, "", "", 0);
        }
        VFErrorSet(-3, "", "", 1);
    }
    EXPECT_EQ(VFErrorGetCode(VFGetBaseLibError()), -1);
    // An on too many must not unbalance the next off.
    VFErrorEnableNew(1);
    VFErrorEnableNew(0);
    VFErrorSet(-4, "", "", 0);
    EXPECT_FALSE(VFErrorCheck(-4));
    VFErrorEnableNew(1);
    VFErrorSet(-5, "", "", 0);
    EXPECT_TRUE(VFErrorCheck(-5));
}

TEST(Error, ALongChainKeepsItsCauseAndItsOutcome)
{
    for (int code = 1; code <= 1000; ++code)
        VFErrorSet(code, "", "", 1);
    EXPECT_TRUE(VFErrorCheck(1));
    EXPECT_EQ(VFErrorGetCode(VFGetBaseLibError()), 1000);
    EXPECT_EQ(VFErrorGetReports(VFGetBaseLibError()).GetSize(), 64);
}

namespace {

// Reports when the thread's own record may already be gone.
struct LateReporter
{
    ~LateReporter()
    {
        VFErrorSet(-9, "late", "", 1);
        VFErrorClear();
        late = VFErrorGetCode(VFGetBaseLibError());
    }
    static inline int late = -1;
};

}  // namespace

TEST(Error, EachThreadHasItsOwnRecordUntilItsEnd)
{
    VFErrorSet(-1, "mine", "", 0);
    std::thread([] {
        thread_local LateReporter reporter;
        [[maybe_unused]] const LateReporter* first = &reporter;
        EXPECT_FALSE(VFErrorCheck(-1));
        VFErrorSet(-2, "theirs", "", 0);
    }).join();
    EXPECT_EQ(LateReporter::late, 0);
    ExpectErrorText(-1, "mine");
}

TEST(Text, FindsInAnyOrderOfTheTable)
{
    const VDTextRow table[] = {{1, "one"},         {900, "nine"},       {-5, "minus"},
                               {-327682, "low\n"}, {7, "out of order"}, {0, nullptr}};
    VDTextCatalogue* catalogue = VFTextCreateEmbedded("test", table, 0);
    VDString text;
    for (const VDTextRow& row : table)
        if (row.text != nullptr) {
            EXPECT_TRUE(VFTextGet(catalogue, row.id, &text));
            EXPECT_EQ(text, row.text);
        }
    for (const int missing : {0, 2, -6, 2000000000}) {
        EXPECT_FALSE(VFTextGet(catalogue, missing, &text));
        EXPECT_EQ(text, "");
    }
    VFTextRelease(catalogue);
    EXPECT_EQ(VFTextCreateEmbedded("none", nullptr, 0), nullptr);
    EXPECT_FALSE(VFTextGet(nullptr, 1, &text));
    VFTextRelease(nullptr);
}

TEST(Version, ALaterRegistrationReplaces)
{
    VFVersionLoad("Part", 1, 2, 3, "Dec 12 2012", "17:41:34");
    VFVersionLoad("PART", 1, 2, 4, "Dec 13 2012", "17:41:35");
    VDVersionInfo version;
    EXPECT_TRUE(VFVersionGet("part", &version));
    EXPECT_EQ(version.build, 4);
    EXPECT_EQ(version.date, "Dec 13 2012");
    EXPECT_FALSE(VFVersionGet("other", &version));
}

TEST(Trace, ReachesTheSink)
{
    static VDString traced;
    VFTraceSetSink([](const char* text) { traced += text; });
    VFTracePrintf("%d points\n", 5);
    VFTrace("done");
    VFTraceSetSink(nullptr);
    VFTrace("unheard");
    EXPECT_EQ(traced, "5 points\ndone");
}

TEST(CompBase, CountsReferencesFromOne)
{
    VDCompBase object(42);
    EXPECT_EQ(object.AddRef(), 2);
    EXPECT_EQ(object.Release(), 1);
    EXPECT_EQ(object.Release(), 0);
    EXPECT_EQ(object.GetID(), 42);
}

TEST(ByteOrder, SwapsBetweenKnownSystemsOfDifferentOrder)
{
    EXPECT_TRUE(VFNeedSwap(1, 101, 0));
    EXPECT_TRUE(VFNeedSwap(200, 100, 0));
    EXPECT_FALSE(VFNeedSwap(1, 100, 0));
    EXPECT_FALSE(VFNeedSwap(0, 101, 0));
    EXPECT_FALSE(VFNeedSwap(1, 201, 0));
    std::uint32_t values[] = {0x01020304, 0xFF000000, 7};
    VFSwapLong(values, 2);
    EXPECT_EQ(values[0], 0x04030201U);
    EXPECT_EQ(values[1], 0x000000FFU);
    EXPECT_EQ(values[2], 7U);
}
