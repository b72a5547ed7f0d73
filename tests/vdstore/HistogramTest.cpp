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

TEST(Histogram, NothingInAFileDecidesWhatIsReserved)
{
    const TestFolder folder;
    const std::string name = folder.Write("test.z4h", "");
    LQDataManager& manager = *LQGetDataManager();
    Z4Manager& files = *manager.GetFileManager();
    const TestHist hist = MakeHist(VTHistFormatHuge);
    const TestHist found(VFHistCreate());
    const auto use = [&](bool writable, auto call) {
        Z4File* const file = writable ? files.CreateFile(name.c_str(), nullptr) : files.OpenFile(name.c_str(), false);
        LQHistogram* const histograms = manager.AdoptHistogram(file->GetRoot(), "Histogram", nullptr, nullptr);
        const bool good = call(*histograms);
        EXPECT_TRUE(manager.Close(histograms, writable) && files.CloseFile(file, writable));
        return good;
    };
    const auto read = [&] { return use(false, [&](LQHistogram& object) { return object.SaveTo(found.get(), 0); }); };
    EXPECT_TRUE(
        use(true, [&](LQHistogram& object) { return object.AdjustChannelCount(1) && object.LoadFrom(hist.get(), 0); }));
    const std::string whole = TestReadFile(name);
    EXPECT_TRUE(read() && IsSame(found.get(), hist.get()));

    folder.Write("test.z4h", OfOtherByteOrder(whole));
    std::int64_t bytes = 0;
    const void* bins = nullptr;
    EXPECT_TRUE(read() && VFHistGetRawBins(found.get(), &bytes, &bins));
    EXPECT_EQ(static_cast<const unsigned char*>(bins)[0], 7 * 37 % 256);

    // A stream takes no room for what was never written: it may be of any length.
    folder.Write("test.z4h", whole);
    Z4File* const file = files.OpenFile(name.c_str(), true);
    Z4Node* const node = file->GetRoot()->GetNode("Histogram");
    EXPECT_TRUE(node->GetStream(0)->SetLength(std::int64_t(1) << 45) && node->Commit() && files.CloseFile(file, true));
    ExpectFailure(read(), VDStoreError::ContentDamaged);
}

TEST(Histogram, SurvivesFaults)
{
    ExpectSurvivesFaults(Scenario);
}
