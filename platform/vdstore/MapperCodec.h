#pragma once

#include "vdarchive/Z4Bytes.h"
#include "vdstore/LQChannelMapper.h"

/// A mapper as bytes: its global sets, then for each channel number, title and sets.
void VFPutMapper(Z4ByteWriter& writer, const LQChannelMapper& mapper);
/// @return false, and the reader failed, if the bytes are no mapper; what was read so far is in `mapper` then
bool VFGetMapper(Z4ByteReader& reader, LQChannelMapper& mapper);
