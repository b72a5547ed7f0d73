// Scans the input as the samples of a time-stamped Famos recording. Its first byte chooses the lookup, whether there is a
// database, and where the samples are cut into two data blocks.

#include "FuzzFile.h"
#include "bus/VDFamosFrameStream.h"
#include "bus/VDFamosUtil.h"
#include "support/FamosBuilder.h"

#include "vdbase/VDPreferenceSystem.h"

namespace {

constexpr const char* Database = "BO_ 100 A: 4 X\n SG_ Switch M : 0|8@1+ (1,0) [0|0] \"\" Vector__XXX\n"
                                 " SG_ Value m1 : 15|16@0- (1,0) [0|0] \"\" Vector__XXX\n";

void ReadAgain(VDFamosUtil& famos, const char* filename)
{
    for (std::size_t index = 0; index < famos.GetTimeStampChanCount(); ++index) {
        const VDFamosTimeStampChan chan = famos.GetTimeStampChan(index);
        if (chan.chan == nullptr || !chan.chan->IsMultiplexSwitch())
            continue;
        chan.frameType->switchChan = chan.chan;
        chan.frameType->switches = std::make_unique<VDCanSwitchCounts>();
        chan.frameType->switches->totals.SetSize(4);
    }
    VDIo file(filename);
    if (!file.Open(VTOpenRead))
        return;
    VDFamosFrameStream frames(file, famos.GetHeader().dataBlocks, famos.GetFrameTypes());
    frames.ResetRead();
    for (bool end = false; !end && frames.ReadFrame(false, &end);) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static FuzzFile file(".dat");
    static FuzzFile database(".dbc");
    if (size == 0)
        return 0;
    const unsigned choice = data[0];
    const std::string_view samples = FuzzText(data + 1, size - 1);
    const std::size_t cut = samples.size() * (choice >> 4) / 16;
    const char* const filename =
        file.Write(FamosStampedStart() + FamosSamples(samples.substr(0, cut)) + FamosSamples(samples.substr(cut)));
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/FastFrameIdLookup", (choice & 1) != 0);
    VDPreferenceSystem().OverrideBooleanValue("/FileFormats/Famos/IgnoreShortFrames", (choice & 2) != 0);
    VDFamosUtil famos;
    if (famos.Open(VDString(filename), (choice & 4) != 0 ? database.Write(Database) : ""))
        ReadAgain(famos, filename);
    return 0;
}
