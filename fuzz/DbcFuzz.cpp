// Reads the input as a CAN database, copies it, and decodes each of its signals from frames of exactly its length, one by
// one and in columns, which must agree.

#include "FuzzFile.h"

#include "daxlib/VDCanDefinition.h"
#include "daxlib/VDCanFrameDecoder.h"
#include "vdbase/VDPreferenceSystem.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int LongestFrame = 4096;
constexpr int Frames = 5;

void DecodeAll(const VDCanFrameDefinition& frame)
{
    if (frame.GetNumBytes() > LongestFrame)
        return;
    const auto bytes = static_cast<std::size_t>(std::max(frame.GetNumBytes(), 0));
    std::vector<unsigned char> data(bytes * Frames);
    for (std::size_t index = 0; index < data.size(); ++index)
        data[index] = static_cast<unsigned char>(index * 0x35 + 0xA5);
    const unsigned char* const last = data.data() + bytes * (Frames - 1);
    const VDCanFrameDecoder decoder(frame);
    std::vector<double> physical(static_cast<std::size_t>(decoder.GetSignalCount()));
    decoder.DecodeFrame(last, nullptr, physical.data(), nullptr);
    for (int index = 0; index < frame.GetChanDefinitionCount(); ++index) {
        const VDCanChanDefinition& chan = *frame.GetChanDefinition(index);
        std::int64_t value = 0;
        std::int64_t column[Frames];
        char present[Frames];
        VDString text;
        if (chan.GetValueFromFrame(last, &value))
            chan.GetEnumText(value, &text);
        chan.DecodeMethod2(last, &value);
        const VDCanFrames frames = {data.data(), static_cast<std::int64_t>(bytes), Frames};
        if (decoder.DecodeRaw(index, frames, column, present) >= 0 && present[Frames - 1] != 0 &&
            column[Frames - 1] != value)
            std::abort();
        chan.IsAnalogue();
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".dbc");
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/DBC/DBCIsUtf8", size % 2 != 0);
    VDCanDefinition database;
    database.ReadDatabase(file.Write(FuzzText(data, size)));
    const VDCanDefinition copy(database);
    for (int index = 0; index < copy.GetFrameDefinitionCount(); ++index)
        DecodeAll(*copy.GetFrameDefinition(index));
    return 0;
}
