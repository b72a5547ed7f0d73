#include "bus/VDCanFrameTypeList.h"
#include "daxlib/VDCanFrameDecoder.h"
#include "support/TestSupport.h"

#include "vdbase/VDPreferenceSystem.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <random>

namespace {

VDCanChanDefinition Chan(int startBit, int numBits, bool countsUpward, bool isSigned, int frameBytes, double factor = 1,
                         double offset = 0, const char* units = "", double maxval = 100)
{
    VDCanChanDefinition chan;
    chan.Init("Sig", 0, 0, 0, startBit, numBits, countsUpward, isSigned, factor, offset, 0, maxval, units, VDStringArray(),
              frameBytes);
    return chan;
}

std::int64_t Value(const VDCanChanDefinition& chan, const std::vector<unsigned char>& frame)
{
    // A copy of exactly the frame's size, so that a sanitizer sees a read outside it.
    const std::vector<unsigned char> data(frame);
    std::int64_t value = 0;
    EXPECT_TRUE(chan.GetValueFromFrame(data.data(), &value));
    return value;
}

// Collects the signal bit by bit: bit n of the frame is bit n % 8 of byte n / 8.
std::int64_t Reference(const std::vector<unsigned char>& frame, int startBit, int numBits, bool countsUpward, bool isSigned)
{
    std::uint64_t value = 0;
    int bit = startBit;
    for (int index = 0; index < numBits; ++index) {
        const auto byte = static_cast<std::size_t>(bit / 8);
        const std::uint64_t one = bit >= 0 && byte < frame.size() ? (frame[byte] >> (bit % 8)) & 1u : 0u;
        if (countsUpward) {
            value |= one << index;
            ++bit;
        } else {
            value = (value << 1) | one;
            bit = bit % 8 == 0 ? bit + 15 : bit - 1;
        }
    }
    if (isSigned && numBits > 0 && ((value >> (numBits - 1)) & 1) != 0)
        value |= ~std::uint64_t{0} << (numBits - 1);
    return static_cast<std::int64_t>(value);
}

}  // namespace

TEST(CanDecodingTest, ExtractsKnownValues)
{
    const std::vector<unsigned char> frame = {0x10, 0xFF, 0x34, 0x00, 0x80, 0x08, 0xAB, 0xCD};
    EXPECT_EQ(Value(Chan(0, 0, true, true, 8), frame), 0);

    std::int64_t value = 5;
    EXPECT_FALSE(Chan(0, 64, true, false, 8).GetValueFromFrame(frame.data(), &value));
    ExpectErrorText(-334409, "Number of bits too large and not supported. Channel: Sig");
    EXPECT_EQ(value, 5);
    EXPECT_TRUE(Chan(0, 64, true, false, 8).DecodeMethod2(frame.data(), &value));
    EXPECT_EQ(static_cast<std::uint64_t>(value), 0xCDAB08800034FF10u);
}

// Every position and length that fits a frame of any length, in both orders.
TEST(CanDecodingTest, AgreesWithBitByBitReading)
{
    std::mt19937 random(1);
    for (const int bytes : {1, 2, 3, 5, 7, 8, 12, 16, 64}) {
        std::vector<unsigned char> frame(static_cast<std::size_t>(bytes));
        for (auto& byte : frame)
            byte = static_cast<unsigned char>(random());
        for (int start = 0; start < bytes * 8; ++start)
            for (int bits = 1; bits < 64; ++bits)
                for (const bool upward : {true, false}) {
                    const int room = upward ? bytes * 8 - start : (bytes - 1 - start / 8) * 8 + start % 8 + 1;
                    const bool isSigned = (start + bits) % 2 != 0;
                    if (bits > room)
                        continue;
                    ASSERT_EQ(Value(Chan(start, bits, upward, isSigned, bytes), frame),
                              Reference(frame, start, bits, upward, isSigned))
                        << bytes << " bytes, start " << start << ", bits " << bits << ", upward " << upward;
                }
    }
}

// A signal that reaches out of its frame: shift modulo 64 up to 8 bytes, missing bits 0 above.
TEST(CanDecodingTest, StaysInsideTheFrame)
{
    const std::vector<unsigned char> frame = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(Value(Chan(60, 16, true, false, 8), frame), 0);
    EXPECT_EQ(Value(Chan(64 + 8, 8, true, false, 8), frame), 2);
    EXPECT_EQ(Value(Chan(56, 8, false, false, 8), frame),
              static_cast<std::int64_t>(0x0102030405060708u >> (57 & 63) & 0xFF));
    const std::vector<unsigned char> longFrame(12, 0xFF);
    EXPECT_EQ(Value(Chan(92, 8, true, false, 12), longFrame), 0x0F);
    EXPECT_EQ(Value(Chan(90, 8, false, false, 12), longFrame), 0xE0);
    EXPECT_EQ(Value(Chan(-4, 8, true, false, 12), longFrame), 0xF0);
    for (const int start : {INT32_MIN, -1, 96, 1000, INT32_MAX})
        for (const int bytes : {-1, 0, 3, 8, 12})
            for (const int bits : {INT32_MIN, 1, 63})
                for (const bool upward : {true, false})
                    Value(Chan(start, bits, upward, true, bytes),
                          std::vector<unsigned char>(static_cast<std::size_t>(std::max(bytes, 1))));
}

// Whatever a definition says, a decoder gives what single calls give, and reads nothing outside the frames.
TEST(CanDecodingTest, ColumnsAndFramesAgreeWithSingleCalls)
{
    std::mt19937 random(2);
    const auto pick = [&random](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    for (int round = 0; round < 600; ++round) {
        const int bytes = round % 3 == 0 ? pick(9, 64) : pick(0, 8);
        VDCanFrameDefinition frame;
        frame.Init(1, "F", bytes, "");
        const int count = pick(1, 11);
        const int switchAt = pick(-3, count - 1);
        for (int index = 0; index < count; ++index) {
            const bool wild = pick(0, 4) == 0;
            auto* const chan = new VDCanChanDefinition;
            chan->Init("Sig", index == switchAt, pick(0, 3) == 0 && index != switchAt, pick(0, 1),
                       wild ? pick(-70, 600) : pick(0, std::max(bytes * 8 - 1, 0)),
                       index == switchAt ? 1 : pick(0, wild ? 70 : 33), static_cast<char>(pick(0, 1)),
                       index != switchAt && pick(0, 1), 0.37 * index, -index, 0, 9, "", VDStringArray(), bytes);
            chan->SetValueType(pick(0, 2));
            frame.AppendChan(chan);
        }
        const VDCanFrameDecoder decoder(frame);
        ASSERT_EQ(decoder.GetSignalCount(), count);
        ASSERT_EQ(decoder.GetFrameBytes(), bytes);
        const int stride = bytes + pick(0, 1) * pick(0, 9);
        const int frames = pick(1, 9) == 1 ? 1100 : pick(1, 40);
        std::vector<unsigned char> data(static_cast<std::size_t>((frames - 1) * stride + bytes));
        std::generate(data.begin(), data.end(), [&random] { return static_cast<unsigned char>(random()); });

        const auto held = [&](int signal, const unsigned char* at) {
            const VDCanChanDefinition& chan = *frame.GetChanDefinition(signal);
            std::int64_t id = -1;
            if (chan.GetNumBits() >= 64 && chan.GetValueType() != VTCanValueDouble)
                return false;
            return !chan.IsMultiplexed() || (switchAt >= 0 && frame.GetChanDefinition(switchAt)->DecodeMethod2(at, &id) &&
                                             id == chan.GetMultiplexId());
        };
        std::vector<std::vector<std::int64_t>> raw(static_cast<std::size_t>(count), std::vector<std::int64_t>(1100));
        std::vector<std::vector<double>> physical(raw.size(), std::vector<double>(1100));
        std::vector<char> present(1100);
        for (int signal = 0; signal < count; ++signal) {
            const auto index = static_cast<std::size_t>(signal);
            const VDCanFrames all = {data.data(), stride, frames};
            const std::int64_t inRaw = decoder.DecodeRaw(signal, all, raw[index].data(), present.data());
            EXPECT_EQ(decoder.DecodePhysical(signal, all, physical[index].data(), nullptr), inRaw);
            EXPECT_EQ(inRaw >= 0, decoder.CanDecode(signal));
            EXPECT_EQ(inRaw < 0 ? -1 : std::count(present.begin(), present.begin() + frames, 1), inRaw);
        }
        for (int at = 0; at < frames; ++at) {
            const unsigned char* const bytesAt = data.data() + at * stride;
            std::int64_t raws[11];
            double physicals[11];
            char presents[11];
            int expected = 0;
            const int inFrame = decoder.DecodeFrame(bytesAt, raws, physicals, presents);
            for (int signal = 0; signal < count; ++signal) {
                SCOPED_TRACE(testing::Message() << "round " << round << ", signal " << signal << ", frame " << at);
                const auto index = static_cast<std::size_t>(signal);
                std::int64_t value = 0;
                ASSERT_EQ(presents[signal] != 0, held(signal, bytesAt));
                expected += presents[signal];
                if (presents[signal] != 0)
                    frame.GetChanDefinition(signal)->DecodeMethod2(bytesAt, &value);
                const double scaled = presents[signal] ? frame.GetChanDefinition(signal)->GetPhysical(value) : std::nan("");
                ASSERT_EQ(raws[signal], value);
                ASSERT_TRUE(physicals[signal] == scaled || (std::isnan(physicals[signal]) && std::isnan(scaled)));
                if (!decoder.CanDecode(signal))
                    continue;
                ASSERT_EQ(raw[index][static_cast<std::size_t>(at)], value);
                const double column = physical[index][static_cast<std::size_t>(at)];
                ASSERT_TRUE(column == scaled || (std::isnan(column) && std::isnan(scaled)));
            }
            ASSERT_EQ(inFrame, expected);
        }
    }
}

TEST(CanDecodingTest, ReadsFloatsAndRefusesWhatIsTooLong)
{
    VDCanFrameDefinition frame;
    frame.Init(1, "F", 12, "");
    auto* const single = new VDCanChanDefinition(Chan(0, 32, true, false, 12, 2, 1));
    auto* const twice = new VDCanChanDefinition(Chan(32, 64, true, true, 12));
    single->SetValueType(VTCanValueDouble);
    EXPECT_EQ(single->GetValueType(), VTCanValueInteger);
    single->SetValueType(VTCanValueFloat);
    twice->SetValueType(VTCanValueDouble);
    frame.AppendChan(single);
    frame.AppendChan(twice);
    frame.AppendChan(new VDCanChanDefinition(Chan(32, 64, true, true, 12)));
    std::vector<unsigned char> data(12);
    const float first = -1.5F;
    const double second = 1e300;
    std::memcpy(data.data(), &first, 4);
    std::memcpy(&data[4], &second, 8);

    const VDCanFrameDecoder decoder(frame);
    double physical[3];
    EXPECT_EQ(decoder.DecodeFrame(data.data(), nullptr, physical, nullptr), 2);
    EXPECT_EQ(physical[0], -2);
    EXPECT_EQ(physical[1], 1e300);
    EXPECT_EQ(single->GetPhysical(Value(*single, data)), -2);
    EXPECT_EQ(decoder.DecodePhysical(2, {data.data(), 12, 1}, physical, nullptr), -1);
    ExpectError(-334409, "not supported. Channel: Sig", "VDCanFrameDecoder::DecodePhysical");
    std::int64_t raw = 0;
    EXPECT_EQ(decoder.DecodeRaw(3, {data.data(), 12, 1}, &raw, nullptr), -1);
    ExpectError(-327995, {}, "VDCanFrameDecoder::DecodeRaw");
    EXPECT_EQ(decoder.DecodeRaw(0, {nullptr, 12, -1}, nullptr, nullptr), 0);
}

TEST(CanDecodingTest, TellsQuantitiesFromStates)
{
    EXPECT_FALSE(Chan(0, 1, true, false, 8, 2).IsAnalogue());
    EXPECT_FALSE(Chan(0, 8, true, false, 8, 0.1, 0, "V", 0).IsAnalogue());
    EXPECT_FALSE(Chan(0, 8, true, false, 8).IsAnalogue());
    EXPECT_FALSE(Chan(0, 8, true, false, 8, 1, 0, "tor").IsAnalogue());
    EXPECT_FALSE(Chan(0, 8, true, false, 8, 1, 0, "NIV").IsAnalogue());
    EXPECT_TRUE(Chan(0, 8, true, false, 8, 1, 0, "V").IsAnalogue());
    EXPECT_TRUE(Chan(0, 8, true, false, 8, 2, 0, "TOR").IsAnalogue());
    EXPECT_TRUE(Chan(0, 8, true, false, 8, std::nan("")).IsAnalogue());

    VDCanChanDefinition chan = Chan(0, 8, true, false, 8);
    EXPECT_FALSE(chan.IsEnum());
    VDArrayWithSort<long> values;
    VDStringArray texts;
    values.AppendItem(-1);
    texts.AppendItem("invalid");
    chan.SetEnumOptions(values, texts);
    EXPECT_TRUE(chan.IsEnum());
    VDString text("preset");
    EXPECT_TRUE(chan.GetEnumText(3, &text));
    EXPECT_STREQ(text, "preset");
    EXPECT_TRUE(chan.GetEnumText(0xFFFFFFFF, &text));
    EXPECT_STREQ(text, "invalid");
}

TEST(FrameTypeListTest, StaysSortedWithVeryManyFrames)
{
    VDCanFrameTypeList list("Famos");
    std::mt19937 random(1);
    std::map<std::uint32_t, std::int64_t> expected;
    for (int index = 0; index < 40000; ++index) {
        const auto id = static_cast<std::uint32_t>(random() % 30000 * 100003u);
        ++expected[id];
        list.AddFrame(id, 8);
        ASSERT_EQ(list.Find(static_cast<int>(id))->frameId, id);
    }
    ASSERT_EQ(list.GetCount(), static_cast<int>(expected.size()));
    int position = 0;
    for (const auto& [id, count] : expected) {
        ASSERT_EQ(list.GetFrameType(position)->frameId, id);
        ASSERT_EQ(list.GetFrameType(position++)->count, count);
    }
    EXPECT_EQ(list.GetFrameType(position), nullptr);
    EXPECT_EQ(list.Find(4), nullptr);
    list.ClearFrames();
    EXPECT_EQ(list.Find(static_cast<int>(expected.begin()->first)), nullptr);
}

TEST(FrameTypeListTest, LooksUpFast)
{
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/FastFrameIdLookup", true);
    VDCanFrameTypeList list("Famos");
    for (const unsigned long id : {5ul, 3ul, 10000ul, 3ul})
        EXPECT_TRUE(list.AddFrame(id, 8));
    EXPECT_EQ(list.GetFrameType(0)->frameId, 5u);
    EXPECT_EQ(list.GetFrameType(1)->count, 2);
    EXPECT_EQ(list.Find(10000), list.GetFrameType(2));
    EXPECT_EQ(list.Find(4), nullptr);
    EXPECT_EQ(list.Find(-1), nullptr);
    EXPECT_FALSE(list.AddFrame(10001, 8));
    ExpectError(-334410, "Invalid frame id: 10001. Maximum frame id: 10000", "VDCanFrameTypeList::AddFrame");

    VDPreferenceSystem().OverrideHugeValue("/FileFormats/Other/FrameIdLimitForFastLookup", 1LL << 40);
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Other/FastFrameIdLookup", true);
    VDCanFrameTypeList other("Other");
    EXPECT_FALSE(other.AddFrame(0x80000001, 8));
    EXPECT_EQ(other.GetCount(), 0);
}
