#pragma once

#include "Command.h"

#include <string>
#include <vector>

class LQChannelMapper;

/// Metadata as an XML document with its declaration; items whose type XML has no word for are left out, with a warning each.
/// What the library derives isn't among them.
std::string VFMetaDataAsXml(VDCommandContext& context, const LQChannelMapper& mapper);

/// Reads the metadata of an XML file into an empty mapper; throws if that fails or there are none in it.
/// @param channels  numbers of the channels to take; none takes all
void VFReadMetaDataXml(const std::string& filename, const std::vector<int>& channels, LQChannelMapper& mapper);
