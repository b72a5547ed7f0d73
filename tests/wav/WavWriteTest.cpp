#include "wav/WavTest.h"

#include "vdstore/LQChannelMapper.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <filesystem>

namespace {

std::vector<std::uint32_t> Bits(const std::vector<float>& values)
{
    std::vector<std::uint32_t> bits(values.size());
    std::memcpy(bits.data(), values.data(), values.size() * sizeof(float));
    return bits;
}

/// Bit patterns of all sorts: also not-a-numbers with a payload, infinities, minus zero and the smallest numbers there are.
std::vector<float> AnyFloats(std::size_t count, std::uint32_t seed)
{
    std::vector<float> values(count);
    for (float& value : values)
        value = std::bit_cast<float>(seed = seed * 1664525U + 1013904223U);
    return values;
}

}  // namespace

TEST_F(WavTest, WritesEachFloatBitForBitInAnyOrder)
{
    constexpr int channels = 5;
    constexpr std::size_t frames = 260000;  // more than the plug-in keeps in memory
    std::vector<std::vector<float>> values;
    for (std::uint32_t channel = 0; channel < channels; ++channel)
        values.push_back(AnyFloats(frames, channel));
    for (const int subId : {Wav, Rf64, W64}) {
        SCOPED_TRACE(subId);
        const std::string name = folder_.Name("out" + std::to_string(subId));
        VDTsAccHandle access = Create(name, subId, channels);
        EXPECT_TRUE(TSAccSetSampleRate(access.Get(), static_cast<int>(DaxChannel::All), 2147483647.0));
        // One channel as a whole, two in blocks that alternate, one from the end backwards, one late and in odd blocks.
        EXPECT_TRUE(Put(access.Get(), 0, 1, values[0]));
        for (std::size_t first = 0; first < frames; first += 16384)
            for (const int channel : {1, 2})
                EXPECT_TRUE(Put(access.Get(), channel, static_cast<std::int64_t>(first) + 1,
                                Part(values[static_cast<std::size_t>(channel)], first, 16384)));
        for (std::size_t first = 250000; first + 10000 > 0 && first <= 250000; first -= 10000)
            EXPECT_TRUE(Put(access.Get(), 3, static_cast<std::int64_t>(first) + 1, Part(values[3], first, 10000)));
        EXPECT_TRUE(TSAccFlush(access.Get()));
        for (std::size_t first = 0; first < frames; first += 99999)
            EXPECT_TRUE(Put(access.Get(), 4, static_cast<std::int64_t>(first) + 1, Part(values[4], first, 99999)));
        EXPECT_EQ(Bits(Floats(access.Get(), 4, 99000, 2000)), Bits(Part(values[4], 98999, 2000)));  // read back while open
        EXPECT_TRUE(TSAccClose(access.Get()));

        SF_INFO info;
        const std::vector<float> all = ReadSnd(name, info);
        EXPECT_EQ(info.format & SF_FORMAT_SUBMASK, SF_FORMAT_FLOAT);
        EXPECT_EQ(info.samplerate, 2147483647);
        ASSERT_EQ(info.channels, channels);
        ASSERT_EQ(info.frames, frames);
        access = OpenFile(name);
        EXPECT_EQ(FormatText(access.Get(), "Damage"), "");
        for (int channel = 0; channel < channels; ++channel) {
            const std::vector<float>& expected = values[static_cast<std::size_t>(channel)];
            EXPECT_TRUE(Bits(Floats(access.Get(), channel, 1, frames)) == Bits(expected)) << channel;
            for (std::size_t at = 0; at < frames; at += 999)
                ASSERT_EQ(std::bit_cast<std::uint32_t>(all[at * channels + static_cast<std::size_t>(channel)]),
                          std::bit_cast<std::uint32_t>(expected[at]));
        }
    }
}

TEST_F(WavTest, NarrowsDoublesAndShowsThemAtOnce)
{
    const std::string name = folder_.Name("a.wav");
    const VDTsAccHandle access = Create(name, Wav, 2);
    const std::vector<double> values{0.1, -3.0, 1e300};
    EXPECT_TRUE(TSAccPutDataDoublePrecision(access.Get(), 1, 1, 3, values.data()));
    EXPECT_EQ(Doubles(access.Get(), 1, 1, 2), (std::vector{static_cast<double>(0.1F), -3.0}));
    EXPECT_EQ(Floats(access.Get(), 1, 3, 1)[0], std::numeric_limits<float>::infinity());
    EXPECT_EQ(Floats(access.Get(), 0, 1, 3), std::vector(3, 0.0F));  // never written
    EXPECT_TRUE(Put(access.Get(), 1, 2, {7.0F}));
    EXPECT_EQ(Doubles(access.Get(), 1, 1, 2), (std::vector{static_cast<double>(0.1F), 7.0}));
}

TEST_F(WavTest, KeepsOnlyWhatTheHeaderHolds)
{
    const std::string name = folder_.Name("a.wav");
    VDTsAccHandle access = Create(name, Wav, 2);
    VDTsAcc* acc = access.Get();
    EXPECT_TRUE(Put(acc, 0, 1, {1.0F, 2.0F}));
    EXPECT_TRUE(TSAccFlush(acc));
    EXPECT_TRUE(TSAccSetSampleRate(acc, 0, 48000.0));  // also after data
    for (const double rate : {0.5, 44100.5, 2147483648.0}) {
        EXPECT_FALSE(TSAccSetSampleRate(acc, 0, rate));
        ExpectError(-331900, "A WAV file holds sample rates of whole numbers from 1 to 2147483647, not ");
    }
    EXPECT_TRUE(TSAccSetBaseTime(acc, 0, 0.0));
    ExpectFailure(TSAccSetBaseTime(acc, 0, 2.5), -331900, "can't hold a base time of 2.5.");

    EXPECT_EQ(TestValue<TSAccGetMaxYTitleLength>(acc), 0);
    EXPECT_TRUE(TSAccSetYUnits(acc, 0, "kN"));
    EXPECT_EQ(TestValue<TSAccGetYUnits>(acc, 0), "");
    ExpectFailure(TSAccSetChanTitle(acc, 0, "Force"), -327691);

    ExpectFailure(TSAccSetNumPoints(acc, 0, 1), -331900, "The channels have 2 points already, more than 1.");
    EXPECT_TRUE(TSAccSetNumPoints(acc, 0, 1000));
    EXPECT_TRUE(TSAccClose(acc));
    access = OpenFile(name);
    EXPECT_EQ(TestValue<TSAccGetSampleRate>(access.Get(), 1), 48000.0);
    EXPECT_EQ(NumPoints(access.Get()), 1000);
    EXPECT_EQ(Floats(access.Get(), 0, 2, 3), (std::vector{2.0F, 0.0F, 0.0F}));
    EXPECT_EQ(Floats(access.Get(), 1, 1000, 1), std::vector(1, 0.0F));
}

TEST_F(WavTest, StopsBeforeFourGiBWhereTheFormatDoes)
{
    constexpr std::int64_t points = 1'200'000'000;  // 4.8 GB, of which the file system stores what is written
    for (const int subId : {Wav, Rf64, W64}) {
        SCOPED_TRACE(subId);
        const std::string name = folder_.Name("big" + std::to_string(subId));
        VDTsAccHandle access = Create(name, subId, 1);
        EXPECT_EQ(TestValue<TSAccGetCapability>(access.Get(), DaxTimeSeries::LargeFiles), subId != Wav);
        EXPECT_TRUE(Put(access.Get(), 0, 1, {1.0F}));
        if (subId == Wav) {
            EXPECT_FALSE(Put(access.Get(), 0, points, {5.0F}));
            ExpectError(-331900, "A WAV file holds at most 4 GiB; RF64 and W64 files hold more.");
            EXPECT_FALSE(TSAccSetNumPoints(access.Get(), 0, points));
            EXPECT_TRUE(TSAccClose(access.Get()));
            access = OpenFile(name);
            EXPECT_EQ(NumPoints(access.Get()), 1);
            continue;
        }
        EXPECT_TRUE(Put(access.Get(), 0, points, {5.0F}));
        EXPECT_TRUE(TSAccClose(access.Get()));
        access = OpenFile(name);
        EXPECT_EQ(NumPoints(access.Get()), points);
        EXPECT_EQ(Floats(access.Get(), 0, points - 1, 2), (std::vector{0.0F, 5.0F}));
    }
}

TEST_F(WavTest, AKilledWriterLeavesWhatItWrote)
{
    constexpr std::int64_t points = 3'000'000;  // some of it has left the memory, the header hasn't been brought up to date
    for (const int subId : {Wav, Rf64, W64}) {
        SCOPED_TRACE(subId);
        const std::string name = folder_.Name("killed" + std::to_string(subId));
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const VDTsAccHandle access = Create(name, subId, 1);
            Put(access.Get(), 0, 1, std::vector(points, 1.5F));
            _exit(0);
        }
        waitpid(child, nullptr, 0);
        const VDTsAccHandle access = OpenFile(name);
        ASSERT_GE(NumPoints(access.Get()), points / 3);
        EXPECT_NE(FormatText(access.Get(), "Damage"), "");
        EXPECT_EQ(Floats(access.Get(), 0, 1, points / 3), std::vector(points / 3, 1.5F));
    }
}

TEST_F(WavTest, ChangesAForeignFileInPlace)
{
    const std::string chunk = WavBytes::Chunk("bext", "keep this before");
    WavBytes bytes{.tag = 3, .align = 8, .bits = 32, .before = chunk + WavBytes::Chunk("PEAK", std::string(24, 'p'))};
    bytes.data = std::string(32, '\0');
    const std::string name = folder_.Write("a.wav", bytes.Make());
    {
        const VDTsAccHandle access = OpenFile(name, VTTsAccOpenUpdate);
        EXPECT_TRUE(Put(access.Get(), 1, 3, {1.0F, 2.0F, 3.0F}));  // one point more than there was
    }
    EXPECT_NE(TestReadFile(name).find(chunk), std::string::npos);
    EXPECT_EQ(TestReadFile(name).find("PEAK"), std::string::npos);  // its values are no longer right
    SF_INFO info;
    EXPECT_EQ(ReadSnd(name, info), (std::vector{0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 1.0F, 0.0F, 2.0F, 0.0F, 3.0F}));

    bytes.behind = WavBytes::Chunk("LIST", "INFO");
    folder_.Write("a.wav", bytes.Make());
    {
        const VDTsAccHandle access = OpenFile(name, VTTsAccOpenUpdate);
        EXPECT_FALSE(Put(access.Get(), 0, 4, {1.0F, 2.0F}));
        ExpectError(-331888, "Further content follows the data, which can't be lengthened.");
        EXPECT_TRUE(Put(access.Get(), 0, 4, {1.0F}));
    }
    EXPECT_TRUE(TestReadFile(name).ends_with(bytes.behind));

    // Whole numbers take what they can hold, and a compressed file is left alone.
    const std::string comment = WavBytes::Chunk("LIST", "INFO" + WavBytes::Chunk("ICMT", std::string("cold\0\0", 6)));
    folder_.Write("a.wav", WavBytes{.before = comment}.Make());
    {
        const VDTsAccHandle access = OpenFile(name, VTTsAccOpenUpdate);
        EXPECT_EQ(FormatText(access.Get(), "comment"), "cold");
        EXPECT_TRUE(Put(access.Get(), 0, 2, {0.25F, -1.0F, 0.5F}));
        ExpectFailure(Put(access.Get(), 0, 1, {0.0F, 0.1F}), -331900, "Point 2 is 0.1000000014901161");
        EXPECT_EQ(FormatText(access.Get(), "Unfit"), "Encoding");
    }
    EXPECT_EQ(ReadSnd(name, info), (std::vector{0.0F, 0.5F, 0.25F, 32767.0F / 32768, -1.0F, 1.0F / 32768, 0.5F, 0.0F}));
    const std::string compressed = WavBytes{.tag = 6, .align = 2, .bits = 8}.Make();
    folder_.Write("a.wav", compressed);
    EXPECT_FALSE(OpenFile(name, VTTsAccOpenUpdate));
    ExpectError(-331888, "Only files of whole numbers and floats in the usual byte order can be changed.");
    EXPECT_EQ(TestReadFile(name), compressed);
}

TEST_F(WavTest, WritesTheEncodingAndTheTextsThatItIsGiven)
{
    struct Case
    {
        const char* encoding;
        int subId;
        double fits;   ///< with its neighbours in a gap of silence
        double unfit;  ///< nan for none
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [encoding, subId, fits, unfit] :
         {Case{"Unsigned 8 bit PCM", Wav, -127.0 / 128, 1.0}, Case{"Signed 16 bit PCM", Rf64, 32767.0 / 32768, 0.1},
          Case{"Signed 24 bit PCM", W64, -1.0, -1.1}, Case{"signed 32 bit pcm", Wav, 2147483647.0 / 2147483648, 1.0},
          Case{"32 bit float", Wav, 1e30F, none}, Case{"64 bit float", Rf64, 0.1, none}}) {
        SCOPED_TRACE(encoding);
        const std::string name = folder_.Name("a.wav");
        VDTsAccHandle access(TSAccCreate());
        VDTsAcc* acc = access.Get();
        ASSERT_TRUE(TSAccSetId(acc, NewId(name, subId, 2).Get(), 1));
        const auto give = [acc](const char* key, const char* text) {
            VDVariant value(text);
            return TSAccSetFormatSpecificValue(acc, -1, key, &value) != 0;
        };
        EXPECT_TRUE(give("Encoding", encoding));
        EXPECT_EQ(give("software", "Logger 3"), subId != W64);
        EXPECT_FALSE(give("Encoding2", encoding));
        ASSERT_TRUE(TSAccOpen(acc, VTTsAccOpenCreate));
        EXPECT_FALSE(give("Artist", "too late"));
        EXPECT_TRUE(TSAccPutDataDoublePrecision(acc, 1, 100'000, 1, &fits));
        EXPECT_EQ(Doubles(acc, 1, 99'999, 2), (std::vector{0.0, fits}));
        EXPECT_EQ(Floats(acc, 0, 1, 1), std::vector(1, 0.0F));
        if (!std::isnan(unfit)) {
            EXPECT_FALSE(TSAccPutDataDoublePrecision(acc, 0, 1, 1, &unfit));
            EXPECT_EQ(FormatText(acc, DaxFormatValue::Unfit), "Encoding");
        }
        EXPECT_TRUE(TSAccClose(acc));
        access = OpenFile(name);
        VDVariant names;
        EXPECT_TRUE(TSAccGetFormatSpecificValue(access.Get(), -1, DaxFormatValue::Names, &names));
        EXPECT_EQ(names.GetNumItems(), subId == W64 ? 1 : 2);
        EXPECT_EQ(VDString(FormatText(access.Get(), "Encoding")).CompareNoCase(encoding), 0);
        EXPECT_EQ(FormatText(access.Get(), "Software"), subId == W64 ? "" : "Logger 3");
        EXPECT_EQ(Doubles(access.Get(), 1, 99'999, 2), (std::vector{0.0, fits}));
        EXPECT_EQ(Doubles(access.Get(), 0, 1, 1), std::vector(1, 0.0));
    }
}

TEST_F(WavTest, TextsAreMetaData)
{
    const std::string name = folder_.Name("a.wav");
    LQChannelMapper* mapper = nullptr;
    const auto artist = [&mapper] {
        VDString text;
        const Z4PropertySet* set = mapper->GetMetaDataSet("ExtraDetails", LQChannelMapper::GLOBAL);
        return set != nullptr && set->GetString("Artist", &text) ? text.Str() : "none";
    };
    for (const int subId : {Wav, Rf64}) {
        VDTsAccHandle access = Create(name, subId, 1);
        ASSERT_TRUE(access && TSAccGetMetaData(access.Get(), &mapper));
        EXPECT_EQ(artist(), "none");
        EXPECT_TRUE(Put(access.Get(), 0, 1, {1.0F, 2.0F}));
        EXPECT_TRUE(TSAccFlush(access.Get()));
        // They come late, and after a longer text that is no longer meant.
        for (const char* text : {"Somebody else", "Anna"}) {
            mapper->AdoptMetaDataSet("ExtraDetails", nullptr, LQChannelMapper::GLOBAL)->PutString("Artist", text);
            EXPECT_TRUE(TSAccFlush(access.Get()));
        }
        EXPECT_TRUE(TSAccClose(access.Get()));
        EXPECT_TRUE(std::filesystem::remove(folder_.Name("a_wav_s.vmd")));  // what is left stands in the file
        access = OpenFile(name);
        ASSERT_TRUE(access && TSAccGetMetaData(access.Get(), &mapper));
        EXPECT_EQ(artist(), "Anna");
        EXPECT_EQ(FormatText(access.Get(), "Artist") + FormatText(access.Get(), "Damage"), "Anna");
        SF_INFO info;
        EXPECT_EQ(ReadSnd(name, info), (std::vector{1.0F, 2.0F}));
    }
}

TEST_F(WavTest, ReportsAFileThatCannotBeWritten)
{
    ExpectFailure(Create(folder_.Path() + "/none/a.wav", Wav, 1), -331883, "Error opening WAV file");

    // A disk that is full: what was written before stays, and the failure isn't lost.
    const std::string name = folder_.Name("a.wav");
    VDTsAccHandle access = Create(name, Wav, 1);
    EXPECT_TRUE(Put(access.Get(), 0, 1, std::vector(1000, 1.0F)));
    EXPECT_TRUE(TSAccFlush(access.Get()));
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{10000, 10000};
    setrlimit(RLIMIT_FSIZE, &limit);
    EXPECT_TRUE(Put(access.Get(), 0, 1001, std::vector(5000, 2.0F)));  // still in memory
    ExpectFailure(TSAccClose(access.Get()), -331900, "Error writing WAV file data");
    access.Reset();
    access = OpenFile(name);
    ASSERT_GE(NumPoints(access.Get()), 1000);
    EXPECT_EQ(Floats(access.Get(), 0, 1, 1000), std::vector(1000, 1.0F));
}
