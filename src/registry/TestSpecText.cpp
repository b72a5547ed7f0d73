#include "TestSpecText.h"

#include "vdbase/VFNumber.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

constexpr int VVTrimEnds = 3;
constexpr int VVTrimAll = 8;
constexpr const char* VVNoName = "** NO NAME **";

constexpr std::array VVAccessTypes = {
    std::pair("TS", VTFileAccessTimeSeries), std::pair("HS", VTFileAccessHistogram),
    std::pair("CY", VTFileAccessCycles),     std::pair("MC", VTFileAccessMultiColumn),
    std::pair("MD", VTFileAccessMetaData),   std::pair("CF", VTFileAccessComplexFrequency),
    std::pair("FE", VTFileAccessFEModels),
};

void VFReadPreference(const VDString& value, VDTestSpecOptions& options)
{
    if (const int sign = value.Find('='); sign > 0)
        options.preferences.emplace_back(value.Left(sign), value.Mid(sign + 1));
}

}  // namespace

std::vector<std::string_view> VFSplitSpecPieces(std::string_view spec)
{
    std::vector<std::string_view> pieces;
    while (!spec.empty()) {
        const std::string_view piece = spec.substr(0, spec.find('|'));
        if (!piece.empty())
            pieces.push_back(piece);
        spec.remove_prefix(std::min(piece.size() + 1, spec.size()));
    }
    return pieces;
}

std::vector<VDString> VFSplitSpecParts(std::string_view piece)
{
    std::vector<VDString> parts;
    std::string part;
    const auto end = [&] {
        if (!part.empty())
            parts.emplace_back(std::exchange(part, {}));
    };
    for (std::size_t at = 0; at < piece.size(); ++at) {
        const bool isSign = piece[at] == ';';
        const bool isDoubled = isSign && at + 1 < piece.size() && piece[at + 1] == ';';
        if (isSign && !isDoubled) {
            end();
            continue;
        }
        part += piece[at];
        at += isDoubled ? 1 : 0;
    }
    end();
    return parts;
}

VDTestSpecOption VFReadSpecOption(VDString part, int squeezeMode)
{
    VFSqueeze(&part, squeezeMode);
    VDString letter = part.Left(1);
    letter.MakeLower();
    return {letter[0], part.Mid(1)};
}

VTFileAccessType VFReadSpecAccessType(const VDString& text)
{
    for (const auto& [letters, type] : VVAccessTypes)
        if (text.CompareNoCase(letters) == 0)
            return type;
    return VTFileAccessUnknown;
}

void VFReadSpecOptionInto(const VDString& part, VDTestSpecOptions& options)
{
    VDTestSpecOption option = VFReadSpecOption(part, VVTrimEnds);
    switch (option.letter) {
    case 'c':
        options.channels.AddText(option.value.View());
        break;
    case 't':
        VFSqueeze(&option.value, VVTrimAll);
        options.channelTitles.push_back(option.value);
        break;
    case 'r':
        options.runs.AddText(option.value.View());
        break;
    case 'b':
        options.bursts.AddText(option.value.View());
        break;
    case 'm':
        options.modes.AddText(option.value.View());
        break;
    case 'x':
        options.extension = option.value;
        break;
    case 's':
        options.recurse = true;
        break;
    case 'd':
        options.extraMetadataFilename = option.value;
        break;
    case 'n':
        options.associatedFilename = option.value.IsEmpty() ? VDString(VVNoName) : option.value;
        break;
    case 'a':
        if (const VTFileAccessType type = VFReadSpecAccessType(option.value); type != VTFileAccessUnknown)
            options.accessType = type;
        break;
    case 'p':
        VFReadPreference(option.value, options);
        break;
    default:
        break;
    }
}
