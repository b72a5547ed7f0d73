#pragma once

#include "support/TestFileId.h"
#include "support/TestTimeSeries.h"

#include "daxlib/TimeSeriesPlugin.h"

#include <sndfile.h>

#include <bit>
#include <cstring>
#include <string>
#include <vector>

constexpr int WavFileId = 31000;
constexpr int Wav = 1;
constexpr int Rf64 = 2;
constexpr int W64 = 3;

/// A WAV file written byte by byte, with every number at hand to be made wrong.
struct WavBytes
{
    std::uint32_t riffSize = 0;  ///< 0 for what is right
    std::uint16_t tag = 1;
    std::uint16_t channels = 2;
    std::uint32_t rate = 8000;
    std::uint16_t align = 4;
    std::uint16_t bits = 16;
    std::uint32_t dataSize = 1;  ///< 1 for what is right
    std::string before = {};     ///< whole chunks between format and data
    std::string behind = {};
    std::string data = std::string("\x00\x00\x00\x40\x00\x80\xff\x7f\x00\x20\x01\x00", 12);  // three frames

    static std::string Number(std::uint32_t value, std::size_t bytes)
    {
        return std::string(reinterpret_cast<const char*>(&value), bytes);
    }
    static std::string Chunk(const std::string& id, const std::string& body)
    {
        return id + Number(static_cast<std::uint32_t>(body.size()), 4) + body;
    }
    std::string Make() const
    {
        const std::string format = Number(tag, 2) + Number(channels, 2) + Number(rate, 4) + Number(rate * align, 4) +
                                   Number(align, 2) + Number(bits, 2);
        const auto right = static_cast<std::uint32_t>(data.size());
        const std::string rest =
            "WAVE" + Chunk("fmt ", format) + before + "data" + Number(dataSize == 1 ? right : dataSize, 4) + data + behind;
        return "RIFF" + Number(riffSize == 0 ? static_cast<std::uint32_t>(rest.size()) : riffSize, 4) + rest;
    }
};

/// A part of a list, cut to what there is.
inline std::vector<float> Part(const std::vector<float>& values, std::size_t first, std::size_t count)
{
    const std::size_t end = std::min(first + count, values.size());
    return {values.begin() + static_cast<std::ptrdiff_t>(first), values.begin() + static_cast<std::ptrdiff_t>(end)};
}

/// The plug-in is configured as an installation does it.
class WavTest : public testing::Test
{
protected:
    WavTest() { TestWriteFile(TestHomeFolder(), "plugins.d/wav.toml", TestReadFile(WAV_MANIFEST)); }

    /// Identifies a file with its channels; null if that fails.
    static VDFileIdHandle Identify(const std::string& filename)
    {
        const VDFileInfoHandle info(FINFCreate());
        VDFileIdArrayHandle tests;
        VDFileIdHandle test;
        if (FINFIdentifyFile(info.Get(), TestId(filename).Get(), 1, tests.Out()))
            FIAGetAt(tests.Get(), 0, test.Out());
        return test;
    }

    /// The id of a file that is to be written.
    static VDFileIdHandle NewId(const std::string& filename, int subId, int channels)
    {
        const std::vector<int> types(static_cast<std::size_t>(channels), DaxDataType::Float);
        return NewTestId(filename, WavFileId, subId, types);
    }

    static VDTsAccHandle Open(VDFileId* id, int mode)
    {
        VDTsAccHandle access(TSAccCreate());
        if (!TSAccSetId(access.Get(), id, mode >= VTTsAccOpenCreate) || !TSAccOpen(access.Get(), mode))
            access.Reset();
        return access;
    }
    static VDTsAccHandle Create(const std::string& filename, int subId, int channels)
    {
        return Open(NewId(filename, subId, channels).Get(), VTTsAccOpenCreate);
    }
    static VDTsAccHandle OpenFile(const std::string& filename, int mode = VTTsAccOpenRead)
    {
        const VDFileIdHandle id = Identify(filename);
        return id ? Open(id.Get(), mode) : VDTsAccHandle();
    }

    static std::int64_t NumPoints(VDTsAcc* access)
    {
        std::int64_t points = -1;
        TSAccGetNumPoints(access, 0, &points);
        return points;
    }
    static std::vector<float> Floats(VDTsAcc* access, int channel, std::int64_t first, std::int64_t count)
    {
        std::vector<float> values(static_cast<std::size_t>(count), -99.0F);
        EXPECT_TRUE(TSAccGetData(access, channel, first, count, nullptr, values.data()))
            << VFErrorGetText(VFGetBaseLibError()).c_str();
        return values;
    }
    static std::vector<double> Doubles(VDTsAcc* access, int channel, std::int64_t first, std::int64_t count)
    {
        std::vector<double> values(static_cast<std::size_t>(count), -99.0);
        EXPECT_TRUE(TSAccGetDataDoublePrecision(access, channel, first, count, nullptr, values.data()))
            << VFErrorGetText(VFGetBaseLibError()).c_str();
        return values;
    }
    static testing::AssertionResult Put(VDTsAcc* access, int channel, std::int64_t first, const std::vector<float>& values)
    {
        if (TSAccPutData(access, channel, first, static_cast<std::int64_t>(values.size()), values.data()))
            return testing::AssertionSuccess();
        testing::AssertionResult failure = testing::AssertionFailure();
        for (const VDErrorReport& report : VFErrorGetReports(VFGetBaseLibError()))
            failure << report.text.c_str() << '\n';
        return failure;
    }
    static std::string FormatText(VDTsAcc* access, const char* name)
    {
        VDVariant value;
        VDString text;
        EXPECT_TRUE(TSAccGetFormatSpecificValue(access, -1, name, &value));
        value.GetString(&text);
        return text.Str();
    }

    /// Writes interleaved doubles through libsndfile.
    static void WriteSnd(const std::string& filename, int format, int channels, const std::vector<double>& values,
                         const char* title = nullptr)
    {
        SF_INFO info{};
        info.format = format;
        info.channels = channels;
        info.samplerate = 44100;
        SNDFILE* file = sf_open(filename.c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr) << sf_strerror(nullptr);
        if (title != nullptr)
            sf_set_string(file, SF_STR_TITLE, title);
        const auto frames = static_cast<sf_count_t>(values.size()) / channels;
        EXPECT_EQ(sf_writef_double(file, values.data(), frames), frames);
        EXPECT_EQ(sf_close(file), 0);
    }
    /// What libsndfile makes of a file; interleaved.
    static std::vector<float> ReadSnd(const std::string& filename, SF_INFO& info)
    {
        info = {};
        SNDFILE* file = sf_open(filename.c_str(), SFM_READ, &info);
        EXPECT_NE(file, nullptr) << sf_strerror(nullptr);
        std::vector<float> values(static_cast<std::size_t>(info.frames * info.channels));
        EXPECT_EQ(sf_readf_float(file, values.data(), info.frames), info.frames);
        sf_close(file);
        return values;
    }

    TestFolder folder_;
};
