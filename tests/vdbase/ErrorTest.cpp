#include "support/TestSupport.h"

#include "vdbase/VFByteOrder.h"
#include "vdbase/VFText.h"

#include <thread>

TEST(Error, ChainedReportsStackAndOthersStartAnew)
{
    EXPECT_EQ(VFErrorSet(-1, "cause\nFile : a.dat", "Reader", 0), 0);
    VFErrorSet(-2, "outcome\nmore", "Host", 1);
    EXPECT_TRUE(VFErrorCheck(-1));
    const VDErrorRecord* record = VFGetBaseLibError();
    ExpectError(-2, "outcome\nmore", "Host");
    EXPECT_EQ(VFErrorGetBriefString(record), "outcome");
    EXPECT_EQ(VFErrorGetReports(record)[0].text, "cause\nFile : a.dat");
    VFErrorSet(-3, VFErrorGetReports(record)[0].text, nullptr, 0);
    EXPECT_FALSE(VFErrorCheck(-1));
    EXPECT_EQ(VFErrorGetText(record), "cause\nFile : a.dat");
    VFErrorClear();
    ExpectNoError();
    EXPECT_TRUE(!VFErrorCheck(-3) && VFErrorGetBriefString(record) == "" && VFErrorGetCode(nullptr) == 0);

    // A long chain keeps its cause and its outcome.
    for (int code = 1; code <= 1000; ++code)
        VFErrorSet(code, "", "", 1);
    EXPECT_TRUE(VFErrorCheck(1));
    EXPECT_EQ(VFErrorGetCode(record), 1000);
    EXPECT_EQ(VFErrorGetReports(record).GetSize(), 64);
}

TEST(Error, MutesNest)
{
    VFErrorSet(-1, "kept", "", 0);
    {
        const VDErrorMute outer;
        {
            const VDErrorMute inner;
        }
        VFErrorSet(-2, "", "", 0);
        VFErrorClear();
    }
    ExpectErrorText(-1, "kept");
    // An on too many must not unbalance the next off.
    VFErrorEnableNew(1);
    VFErrorEnableNew(0);
    VFErrorSet(-4, "", "", 0);
    EXPECT_FALSE(VFErrorCheck(-4));
    VFErrorEnableNew(1);
    VFErrorSet(-5, "", "", 0);
    EXPECT_TRUE(VFErrorCheck(-5));
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
    const VDTextRow table[] = {{900, "nine"}, {-5, "minus"}, {-327682, "low\n"}, {7, "out of order"}, {0, nullptr}};
    VDTextCatalogue* catalogue = VFTextCreateEmbedded("test", table, 0);
    VDString text;
    for (const VDTextRow& row : table) {
        EXPECT_EQ(VFTextGet(catalogue, row.id, &text), row.text != nullptr);
        EXPECT_EQ(text, row.text);
    }
    for (const int missing : {2, -6, 2000000000})
        EXPECT_TRUE(!VFTextGet(catalogue, missing, &text) && text == "") << missing;
    VFTextRelease(catalogue);
    EXPECT_TRUE(VFTextCreateEmbedded("none", nullptr, 0) == nullptr && !VFTextGet(nullptr, 1, &text));
    VFTextRelease(nullptr);
}

TEST(ByteOrder, SwapsBetweenKnownSystemsOfDifferentOrder)
{
    EXPECT_TRUE(VFNeedSwap(1, 101, 0) && VFNeedSwap(200, 100, 0));
    EXPECT_FALSE(VFNeedSwap(1, 100, 0) || VFNeedSwap(0, 101, 0) || VFNeedSwap(1, 201, 0));
    std::uint32_t values[] = {0x01020304, 7};
    VFSwapLong(values, 1);
    EXPECT_EQ(values[0], 0x04030201U);
    EXPECT_EQ(values[1], 7U);
}
