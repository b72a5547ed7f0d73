// Reads the input as a CAN database, copies it, and decodes each of its signals from a frame of exactly its length.

#include "FuzzFile.h"

#include "daxlib/VDCanDefinition.h"
#include "vdbase/VDPreferenceSystem.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int LongestFrame = 4096;

void DecodeAll(const VDCanFrameDefinition& frame)
{
    if (frame.GetNumBytes() > LongestFrame)
        return;
    const auto bytes = static_cast<std::size_t>(std::max(frame.GetNumBytes(), 0));
    const std::vector<unsigned char> data(bytes, 0xA5);
    for (int index = 0; index < frame.GetChanDefinitionCount(); ++index) {
        const VDCanChanDefinition& chan = *frame.GetChanDefinition(index);
        std::int64_t value = 0;
        VDString text;
        if (chan.GetValueFromFrame(data.data(), &value))
            chan.GetEnumText(value, &text);
        chan.DecodeMethod2(data.data(), &value);
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
