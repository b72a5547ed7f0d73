#pragma once

#include "NumberRanges.h"

#include "daxlib/DaxTypes.h"
#include "vdbase/VDString.h"

#include <string_view>
#include <utility>
#include <vector>

/// The reading of test specs: "pattern;option;option|pattern;option". VFDirList.h says what the options are.

/// The pieces between "|". Those without any text aren't there; so a text may have none.
std::vector<std::string_view> VFSplitSpecPieces(std::string_view spec);

/// The parts of a piece between ";". ";;" is a semicolon inside a part, and parts without any text aren't there.
std::vector<VDString> VFSplitSpecParts(std::string_view piece);

/// One option: its letter, in lower case, and what follows it.
struct VDTestSpecOption
{
    char letter = 0;  ///< 0 for a text without any
    VDString value;
};

/// Takes the letter from an option without the white space around it.
/// @param squeezeMode  that of `VFSqueeze` for the text as a whole
VDTestSpecOption VFReadSpecOption(VDString part, int squeezeMode);

/// The access type of two letters, in any case; `VTFileAccessUnknown` for any other text.
VTFileAccessType VFReadSpecAccessType(const VDString& text);

/// What the options of one piece say. A list of numbers that is empty, because nothing in it reads as one, asks for nothing.
struct VDTestSpecOptions
{
    VDNumberRanges channels;
    std::vector<VDString> channelTitles;
    VDNumberRanges runs;
    VDNumberRanges bursts;
    VDNumberRanges modes;
    VDString extension;
    bool recurse = false;
    VDString extraMetadataFilename;
    VDString associatedFilename;
    VTFileAccessType accessType = VTFileAccessUnknown;
    std::vector<std::pair<VDString, VDString>> preferences;  ///< key and value

    bool SelectChannels() const { return !channels.IsEmpty() || !channelTitles.empty(); }
    bool SelectSubTests() const { return !runs.IsEmpty() || !bursts.IsEmpty() || !modes.IsEmpty(); }
};

/// Reads one option on top of those before it. Letters that mean nothing are passed over.
void VFReadSpecOptionInto(const VDString& part, VDTestSpecOptions& options);
