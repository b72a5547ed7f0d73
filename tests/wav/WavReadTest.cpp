#include "wav/WavTest.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

TEST_F(WavTest, DescribesAWavFile)
{
    const VDFileIdHandle id = Identify(folder_.Write("a.wav", WavBytes().Make()));
    ASSERT_TRUE(id);
    EXPECT_EQ(TestText<FIDGetFileTypeDesc>(id, char(0)), "Microsoft Wave time series");

    const VDTsAccHandle access = Open(id.Get(), VTTsAccOpenRead);
    EXPECT_EQ(Floats(access.Get(), 0, 1, 3), (std::vector{0.0F, -1.0F, 0.25F}));
    EXPECT_EQ(Doubles(access.Get(), 1, 1, 3), (std::vector{0.5, 32767.0 / 32768.0, 1.0 / 32768.0}));
    EXPECT_EQ(FormatText(access.Get(), "Encoding"), "Signed 16 bit PCM");
    EXPECT_EQ(FormatText(access.Get(), "Damage"), "");

    std::uint32_t digital = 0;
    EXPECT_FALSE(TSAccGetDataDigital32(access.Get(), 0, 1, 1, nullptr, &digital));
    ExpectError(-331893, "Status information not supported for WAV files\nFile :");
}

TEST_F(WavTest, ReadsWhatLibsndfileWrites)
{
    std::vector<double> values;
    for (int at = 0; at < 3000; ++at)
        values.push_back(0.4 * std::sin(0.01 * at));
    // The step is the one of the encoding.
    for (const auto& [format, subId, keyword, step, type] :
         std::initializer_list<std::tuple<int, int, VDString, double, int>>{
             {SF_FORMAT_WAV | SF_FORMAT_PCM_U8, Wav, "WAV", 1.0 / 128, DaxDataType::Float},
             {SF_FORMAT_WAV | SF_FORMAT_PCM_24 | SF_ENDIAN_BIG, Wav, "WAV", 1.0 / (1 << 23), DaxDataType::Float},
             {SF_FORMAT_WAVEX | SF_FORMAT_PCM_32, Wav, "WAV", 1.0 / (1U << 31), DaxDataType::Double},
             {SF_FORMAT_WAV | SF_FORMAT_DOUBLE, Wav, "WAV", 0.0, DaxDataType::Double},
             {SF_FORMAT_WAV | SF_FORMAT_MS_ADPCM, Wav, "WAV", 0.1, DaxDataType::Float},
             {SF_FORMAT_RF64 | SF_FORMAT_PCM_16, Rf64, "RF64", 1.0 / (1 << 15), DaxDataType::Float},
             {SF_FORMAT_W64 | SF_FORMAT_DOUBLE, W64, "W64", 0.0, DaxDataType::Double}}) {
        SCOPED_TRACE(format);
        const std::string name = folder_.Name("file");
        WriteSnd(name, format, 2, values, subId == Wav ? "Left hand bend" : nullptr);
        const VDFileIdHandle id = Identify(name);
        ASSERT_TRUE(id);
        int fileId = 0;
        int numberFound = 0;
        VDString keywordFound;
        FIDGetFileId(id.Get(), &fileId, &numberFound);
        EXPECT_EQ(std::pair(fileId, numberFound), std::pair(WavFileId, subId));
        FINFGetFileFormatKeyword(VDFileInfoHandle(FINFCreate()).Get(), id.Get(), 0, 0, &keywordFound);
        EXPECT_EQ(keywordFound, keyword);
        EXPECT_EQ(TestText<FIDGetTestTitle>(id) == "Left hand bend", subId == Wav);
        EXPECT_EQ(TestInt<FIDGetChanType>(id, 0), type);
        const VDTsAccHandle access = Open(id.Get(), VTTsAccOpenRead);
        ASSERT_GE(NumPoints(access.Get()), 1500);
        const std::vector<double> read = Doubles(access.Get(), 1, 101, 1400);
        for (std::size_t at = 0; at < read.size(); ++at)
            ASSERT_NEAR(read[at], values[2 * (at + 100) + 1], step) << at;
    }
}

TEST_F(WavTest, ReadsAnyRangeOfAnyChannel)
{
    // More frames than the plug-in keeps in memory, so that ranges cross from one part to the next.
    constexpr int channels = 7;
    constexpr int frames = 250000;
    std::vector<double> values(channels * frames);
    for (int frame = 0; frame < frames; ++frame)
        for (int channel = 0; channel < channels; ++channel)
            values[static_cast<std::size_t>(frame * channels + channel)] = channel * 1e6 + frame;
    const std::string name = folder_.Name("a.wav");
    WriteSnd(name, SF_FORMAT_WAV | SF_FORMAT_FLOAT, channels, values);
    const VDFileIdHandle id = Identify(name);
    ASSERT_TRUE(id);
    // Of a selection the id may keep a part of the channels.
    FIDRemoveChan(id.Get(), 3);
    const VDTsAccHandle access = Open(id.Get(), VTTsAccOpenRead);
    std::mt19937 random(1);
    for (int round = 0; round < 60; ++round) {
        const int index = static_cast<int>(random() % (channels - 1));
        const double start = (index < 3 ? index : index + 1) * 1e6;
        const auto first = static_cast<std::int64_t>(random() % frames) + 1;
        const std::int64_t count = std::min<std::int64_t>(round % 10 == 0 ? frames : random() % 5000, frames - first + 1);
        const std::vector<float> floats = Floats(access.Get(), index, first, count);
        const std::vector<double> doubles = Doubles(access.Get(), index, first, count);
        for (std::size_t at = 0; at < floats.size(); ++at) {
            const double expected = start + static_cast<double>(first - 1) + static_cast<double>(at);
            ASSERT_EQ(floats[at], static_cast<float>(expected));
            ASSERT_EQ(doubles[at], expected);
        }
    }
}

TEST_F(WavTest, ReadsWhatThereIsBehindAWrongSize)
{
    const std::string tail = WavBytes::Chunk("LIST", "INFOwhatever");
    const std::string cut = WavBytes().data + "\1\2";  // half a frame
    const struct
    {
        const char* what;
        WavBytes bytes;
        std::int64_t points;
        std::string damage;
    } cases[] = {
        {"all ones", {.riffSize = 0xffffffff, .dataSize = 0xffffffff}, 3, "4294967295 bytes of data, the file holds 12."},
        {"zero", {.riffSize = 36, .dataSize = 0}, 3, "0 bytes of data, the file holds 12."},
        {"cut", {.riffSize = 5000, .dataSize = 4000, .data = cut}, 3, "4000 bytes of data, the file holds 14."},
        {"chunk behind", {.behind = tail}, 3, ""},
        {"no points", {.data = {}}, 0, ""},
        {"no points and a chunk behind", {.behind = tail, .data = {}}, 0, ""},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const VDTsAccHandle access = OpenFile(folder_.Write("a.wav", each.bytes.Make()));
        EXPECT_EQ(NumPoints(access.Get()), each.points);
        EXPECT_EQ(FormatText(access.Get(), "Damage"), each.damage.empty() ? "" : "The header announces " + each.damage);
        EXPECT_EQ(Floats(access.Get(), 0, 1, each.points),
                  Part(std::vector{0.0F, -1.0F, 0.25F}, 0, static_cast<std::size_t>(each.points)));
    }
}

TEST_F(WavTest, ReadsPastFourGiBOfAnEndlessFile)
{
    const WavBytes bytes{.riffSize = 0xffffffff, .tag = 3, .channels = 1, .bits = 32, .dataSize = 0xffffffff, .data = {}};
    const std::string name = folder_.Write("a.wav", bytes.Make());
    const std::uintmax_t begin = std::filesystem::file_size(name);
    std::filesystem::resize_file(name, begin + 4'800'000'000);
    std::fstream file(name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(-4, std::ios::end);
    file.write("\x00\x00\x80\x3f", 4);
    file.close();
    const VDTsAccHandle access = OpenFile(name);
    EXPECT_EQ(NumPoints(access.Get()), 1'200'000'000);
    EXPECT_EQ(Floats(access.Get(), 0, 1'199'999'999, 2), (std::vector{0.0F, 1.0F}));
}

TEST_F(WavTest, SaysWhatIsWrongWithAHeader)
{
    const std::string whole = WavBytes().Make();
    for (const auto& [content, code, text] : std::initializer_list<std::tuple<std::string, int, const char*>>{
             {whole.substr(0, 12), -331895, "The header is cut off."},
             {whole.substr(0, 30), -331895, "The format chunk is cut off."},
             {whole.substr(0, 40), -331896, "No data found in WAV file\nThe file ends before its data.\nFile :"},
             {WavBytes{.channels = 0}.Make(), -331895, "there are 0 channels."},
             {WavBytes{.rate = 0}.Make(), -331895, "the sample rate is 0."},
             {WavBytes{.align = 0}.Make(), -331895, "a frame has 0 bytes."},
             {WavBytes{.tag = 0x7777}.Make(), -331895, "Error reading WAV file header\n"},
             {WavBytes{.bits = 99}.Make(), -331895, "Error reading WAV file header\n"},
             {whole.substr(0, 12) + whole.substr(36), -331895, "The data come before the format."}}) {
        SCOPED_TRACE(text);
        ExpectFailure(Identify(folder_.Write("a.wav", content)), code, text, "WavFF::LoadFileInfo");
    }
}

TEST_F(WavTest, SurvivesEveryCutAndEveryWrongByteOfAHeader)
{
    std::vector<double> values(300, 0.5);
    for (const int format :
         {SF_FORMAT_WAV | SF_FORMAT_PCM_16, SF_FORMAT_RF64 | SF_FORMAT_FLOAT, SF_FORMAT_W64 | SF_FORMAT_FLOAT}) {
        const std::string source = folder_.Name("source");
        WriteSnd(source, format, 3, values);
        const std::string whole = TestReadFile(source);
        const auto tryOut = [&](const std::string& content) {
            const VDTsAccHandle access = OpenFile(folder_.Write("a.wav", content));
            std::vector<float> read(100);
            std::int64_t count = 0;
            const bool done = access && TSAccGetData(access.Get(), 0, 1, 100, &count, read.data());
            EXPECT_TRUE(done || VFErrorGetCode(VFGetBaseLibError()) != 0);
        };
        for (std::size_t size = 0; size < 200; size += 3)
            tryOut(whole.substr(0, size));
        for (std::size_t at = 0; at < 140; ++at) {
            for (const char byte : {'\0', '\x7f', '\xff'}) {
                std::string changed = whole;
                changed[at] = byte;
                tryOut(changed);
            }
        }
    }
}

TEST_F(WavTest, RefusesChannelsThatTheFileDoesNotHave)
{
    const VDFileIdHandle id = Identify(folder_.Write("a.wav", WavBytes().Make()));
    int index = 0;
    FIDAddChannel(id.Get(), 5, &index);
    ExpectFailure(Open(id.Get(), VTTsAccOpenRead), -331884, "The file holds channels 1 to 2, not 5.");
    EXPECT_FALSE(Open(NewId(folder_.Name("gone.wav"), Wav, 1).Get(), VTTsAccOpenRead));
    ExpectError(-331883, "Error opening WAV file\nFile :");
}

TEST_F(WavTest, TwoThreadsReadSideBySide)
{
    std::vector<double> values(20000, 0.25);
    std::vector<std::thread> threads;
    std::vector<int> right(4);
    for (std::size_t number = 0; number < right.size(); ++number) {
        const std::string name = folder_.Name(std::to_string(number) + ".wav");
        // Every second file can't be opened, which libsndfile notes in one place for all.
        if (number % 2 == 0)
            WriteSnd(name, SF_FORMAT_WAV | SF_FORMAT_PCM_16, 2, values);
        else
            folder_.Write(std::to_string(number) + ".wav", WavBytes{.tag = 0x7777}.Make());
        threads.emplace_back([name, number, &right] {
            for (int round = 0; round < 10; ++round) {
                const VDTsAccHandle access = OpenFile(name);
                if (number % 2 == 0)
                    right[number] += access && Floats(access.Get(), 1, 5001, 5000) == std::vector(5000, 0.25F);
                else
                    right[number] += !access && VFErrorGetCode(VFGetBaseLibError()) == -331895;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(right, std::vector(4, 10));
}
