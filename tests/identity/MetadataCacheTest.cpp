#include "support/TestFileId.h"

#include "daxlib/VDFileIdPreferences.h"
#include "plugins/StandIn.h"
#include "vdarchive/Z4PropertySet.h"
#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace {

constexpr int Global = LQChannelMapper::GLOBAL;

VDStringArray List(std::initializer_list<const char*> texts)
{
    VDStringArray list;
    for (const char* text : texts)
        list.AppendItem(text);
    return list;
}

}  // namespace

/// A stand-in test of three channels that has its metadata in a sidecar.
class MetadataCache : public StandIn::StandInTest
{
protected:
    MetadataCache() : id_(TestId(Write("channels=3 log=1")))
    {
        FIDSetFileId(id_.Get(), StandIn::FileId, StandIn::SubPlain);
        FIDSetLoadInfoWhenNeeded(id_.Get());
        EXPECT_EQ(3, TestInt<FIDGetNumChans>(id_));
        const VDVmdFileHandle sidecar(VMDCreate());
        VDArrayWithSort<long> numbers;
        for (const long number : {1, 2, 3})
            numbers.AppendItem(number);
        VMDSetChannelNumberList(sidecar.Get(), numbers);
        LQChannelMapper* mapper = nullptr;
        EXPECT_TRUE(VMDAdoptTestVmd(sidecar.Get(), id_.Get(), false) && VMDGetMetaData(sidecar.Get(), &mapper));
        Fill(*mapper);
    }

    static void Fill(LQChannelMapper& mapper)
    {
        Z4PropertySet& test = *mapper.AdoptMetaDataSet("Test", nullptr, Global);
        test.PutString("Driver", "Ann");
        test.PutString("Text", " 12 ");
        test.PutBoolean("Flag", true);
        test.AddUnsLong("Big", 0xffffffffU);
        test.AddUnsHuge("Huge", 1);
        test.PutHuge("Least", std::numeric_limits<std::int64_t>::min());
        test.AddFloat("Up", 3.9F);
        test.PutDouble("Down", -3.9);
        test.PutDouble("Far", 1e300);
        test.PutDouble("Nan", std::nan(""));
        test.AdoptDouble("Unknown", nullptr);
        for (int channel = 0; channel < 3; ++channel)
            mapper.AdoptMetaDataSet("ExtraDetails", nullptr, channel)->PutLong("Gain", channel);
        mapper.AdoptMetaDataSet("LegacyExtraDetails", nullptr, 1)->PutLong("Gain", 50);
    }

    int Ask(VDStringArray global, VDStringArray globalTypes, VDStringArray channel = {}, VDStringArray channelTypes = {},
            bool load = false)
    {
        return FIDSetMetadataKeywords(id_.Get(), &global, &globalTypes, &channel, &channelTypes, load);
    }

    /// The value as text with a letter for its type; "-" for an empty one, "none" for a failure.
    std::string Value(int channel, const char* keyword)
    {
        VDVariant value(true);
        if (FIDGetMetadata(id_.Get(), channel, keyword, &value) == 0)
            return "none";
        VDString text;
        value.ConvertToString(&text);
        const int type = value.GetType();
        return type == VTVariantNull     ? "-"
               : type == VTVariantHuge   ? "h" + text.Str()
               : type == VTVariantDouble ? "d" + text.Str()
                                         : "s" + text.Str();
    }

    /// "keywords loaded".
    std::string State(const VDFileIdHandle& id) const
    {
        char keywords = 9;
        char loaded = 9;
        EXPECT_NE(0, FIDHasMetadata(id.Get(), &keywords, &loaded));
        return std::to_string(keywords) + " " + std::to_string(loaded);
    }

    /// How often the test was opened since the last question.
    static std::ptrdiff_t TakeOpens()
    {
        const std::string log = StandIn::TakeLog();
        std::ptrdiff_t count = 0;
        for (std::size_t at = log.find("Open "); at != std::string::npos; at = log.find("Open ", at + 1))
            ++count;
        return count;
    }

    VDFileIdHandle id_;
};

TEST_F(MetadataCache, ValuesComeInTheTypeThatWasAskedFor)
{
    struct Row
    {
        const char* keyword;
        const char* integer;
        const char* real;
        const char* text;
    };
    const std::vector<Row> rows = {{"Test.Text", "h12", "d12", "s 12 "},
                                   {"Test.Driver.x", "h0", "d0", "sAnn"},
                                   {"Flag", "h1", "d0", "sTrue"},
                                   {"Big", "h4294967295", "d4294967295", "s4294967295"},
                                   {"Huge", "h1", "d1", "s1"},
                                   {"Least", "h-9223372036854775808", "d-9223372036854775808", "s-9223372036854775808"},
                                   {"Test.Up", "h3", nullptr, "s3.9"},
                                   {"Down", "h-3", "d-3.9", "s-3.9"},
                                   {"Far", "h9223372036854775807", "d1e+300", "s1e+300"},
                                   {"Nan", "h0", "dnan", "snan"},
                                   {"Unknown", "h0", "d0", "sUndefined"},
                                   {"Test.None", "-", "-", "-"},
                                   {"None.Driver", "-", "-", "-"},
                                   {"", "-", "-", "-"},
                                   {".", "-", "-", "-"}};
    VDStringArray keywords;
    VDStringArray types[4];
    for (const Row& row : rows) {
        keywords.AppendItem(row.keyword);
        for (int i = 0; i < 4; ++i)
            types[i].AppendItem(List({"Integer", "REAL", "string", "text"})[i]);
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_NE(0, Ask(keywords, types[i], {}, {}, true));
        for (const Row& row : rows) {
            const char* const expected = i == 0 ? row.integer : i == 1 ? row.real : i == 2 ? row.text : "-";
            if (expected != nullptr) {
                EXPECT_EQ(expected, Value(Global, row.keyword)) << row.keyword;
            }
        }
    }
}

TEST_F(MetadataCache, OneOpeningServesAllUntilTheChannelsChange)
{
    StandIn::TakeLog();
    EXPECT_NE(0, Ask(List({"Driver"}), List({"string"}), List({"ExtraDetails.Gain", "Gain", "None"}),
                     List({"integer", "string", "real"})));
    EXPECT_EQ("1 0", State(id_));
    EXPECT_EQ("h0", Value(0, "ExtraDetails.Gain"));
    EXPECT_EQ("h50", Value(1, "ExtraDetails.Gain")) << "the older form of the set counts first";
    EXPECT_EQ("s2", Value(2, "Gain"));
    EXPECT_EQ("-", Value(0, "None"));
    EXPECT_EQ("sAnn", Value(Global, "Driver"));
    for (const auto& [channel, keyword] : std::vector<std::pair<int, const char*>>{
             {0, "Driver"}, {Global, "Gain"}, {3, "Gain"}, {-2, "Gain"}, {0, "gain"}, {0, nullptr}})
        EXPECT_EQ("none", Value(channel, keyword));
    EXPECT_EQ(0, FIDGetMetadata(id_.Get(), 0, "Gain", nullptr));
    EXPECT_EQ("1 1", State(id_));
    EXPECT_EQ(1, TakeOpens());

    // The same keywords change nothing; lists that don't fit together leave them.
    EXPECT_NE(0, Ask(List({"Driver"}), List({"string"}), List({"ExtraDetails.Gain", "Gain", "None"}),
                     List({"integer", "string", "real"}), true));
    EXPECT_NE(0, Ask(List({"Driver", "Text"}), List({"string"})));
    EXPECT_EQ("1 1", State(id_));
    VDStringArray global;
    VDStringArray channel;
    EXPECT_NE(0, FIDGetMetadataKeywords(id_.Get(), &global, &channel));
    EXPECT_TRUE(global.AreEqual(List({"Driver"}), 0) && channel.GetSize() == 3);
    EXPECT_EQ(0, FIDGetMetadataKeywords(id_.Get(), nullptr, nullptr));
    EXPECT_EQ(0, TakeOpens());

    int index = 0;
    const VDString title = "new";
    const std::vector<std::pair<const char*, std::function<void()>>> changes = {
        {"adding", [&] { FIDAddChannel(id_.Get(), 99, &index); }},
        {"adding by title", [&] { FIDAddChannelByTitle(id_.Get(), &title, &index); }},
        {"sorting", [&] { FIDSortChans(id_.Get(), 0); }},
        {"removing", [&] { FIDRemoveChan(id_.Get(), 0); }},
        {"thinning out", [&] { FIDRemoveAllSelectedChans(id_.Get(), 0); }},
        {"clearing the values", [&] { FIDClearMetadata(id_.Get(), 1); }},
        {"copying channels", [&] { FIDCopy(id_.Get(), TestId().Get(), VTFileIdCopyChannels); }}};
    for (const auto& [name, change] : changes) {
        EXPECT_NE(0, FIDLoadMetadata(id_.Get())) << name;
        FIDAddChannel(id_.Get(), 1, &index);
        EXPECT_EQ("1 1", State(id_)) << "nothing was added before " << name;
        change();
        EXPECT_EQ("1 0", State(id_)) << name;
    }
}

TEST_F(MetadataCache, CopiesKeepTheirValuesAndEmptiedListsNone)
{
    EXPECT_NE(0, Ask(List({"Driver"}), List({"string"}), {}, {}, true));
    const VDFileIdArrayHandle array(FIACreate());
    FIAAppendItem(array.Get(), id_.Get());
    const VDFileIdArrayHandle copies(FIACreate());
    FIACopy(copies.Get(), array.Get());
    VDFileIdHandle whole;
    FIAGetAt(copies.Get(), 0, whole.Out());
    VDFileIdHandle part = TestId();
    FIDCopy(part.Get(), id_.Get(), 0);
    EXPECT_EQ("1 1", State(whole));
    EXPECT_EQ("0 0", State(part));
    FIDCopy(whole.Get(), part.Get(), VTFileIdCopySelectedChannels);
    EXPECT_EQ("0 0", State(whole)) << "with other channels";

    const std::vector<int (*)(VDFileId*)> endings = {FIDClearAllChans, FIDClear,
                                                     [](VDFileId* id) { return FIDSetInfoLoaded(id, 0); },
                                                     [](VDFileId* id) { return FIDClearMetadata(id, 0); }};
    for (const auto ending : endings) {
        FIAClear(copies.Get());
        FIACopy(copies.Get(), array.Get());
        FIAGetAt(copies.Get(), 0, whole.Out());
        EXPECT_NE(0, ending(whole.Get()));
        EXPECT_EQ("0 0", State(whole));
        EXPECT_EQ("1 1", State(id_));
    }
    VFErrorClear();
    VDStringArray keywords;
    VDVariant value;
    EXPECT_NE(0, FIDClearMetadata(whole.Get(), 1)) << "with nothing there";
    EXPECT_EQ(0, FIDLoadMetadata(whole.Get()));
    EXPECT_EQ(0, FIDGetMetadata(whole.Get(), Global, "Driver", &value));
    EXPECT_EQ(0, FIDGetMetadataKeywords(whole.Get(), &keywords, nullptr));
    ExpectNoError();

    EXPECT_NE(0, Ask({}, List({"string"}), {}, {}, true)) << "lists that don't fit: the earlier keywords are loaded";
    EXPECT_EQ("1 1", State(id_));
    EXPECT_EQ(0, Ask({}, {}, {}, {}, true)) << "without keywords there is nothing to load";
    EXPECT_EQ("0 0", State(id_));
}

TEST_F(MetadataCache, IdentificationAndAFailureLeaveTheKeywords)
{
    VDFileIdHandle late = TestId(folder_.Name("test.sta"));
    FIDSetIdentByExtension(late.Get(), 1);
    FIDSetFileId(late.Get(), StandIn::FileId, StandIn::SubPlain);
    VDFileIdPreferences* preferences = nullptr;
    FIDGetPreferences(late.Get(), 1, &preferences);
    preferences->SetInt("Gain", 2);
    std::swap(id_, late);
    EXPECT_NE(0, Ask(List({"Driver"}), List({"string"})));
    EXPECT_EQ(3, TestInt<FIDGetNumChans>(id_));
    EXPECT_EQ("1 0", State(id_));
    EXPECT_EQ("sAnn", Value(Global, "Driver"));
    FIDGetPreferences(id_.Get(), 0, &preferences);
    int gain = 0;
    EXPECT_TRUE(preferences != nullptr && preferences->GetInt("gain", &gain) && gain == 2);

    Write("channels=3 tsfail=Open");
    EXPECT_EQ(0, FIDLoadMetadata(id_.Get()));
    EXPECT_NE(0, VFErrorGetCode(VFGetBaseLibError())) << "as the access recorded it";
    EXPECT_EQ("1 0", State(id_));
    EXPECT_EQ("none", Value(Global, "Driver"));
}
