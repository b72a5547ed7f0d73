#pragma once

#include "daxlib/DaxHandle.h"

#include <functional>
#include <string>

class LQChannelMapper;
class Z4Property;

/// The metadata of an open test, which stays the access object's; null where the test has none that can be read.
LQChannelMapper* VFGetMetaData(VDTsAcc* acc);

/// Calls back for each defined item of a slot. What the library notes about the input itself is left out: it isn't the
/// test's own.
/// @param slot  index of a channel or `LQChannelMapper::GLOBAL`
void VFForEachItem(const LQChannelMapper& mapper, int slot,
                   const std::function<void(const std::string& set, const Z4Property& item)>& visit);

/// Puts copies of a slot's items into a slot of another mapper.
void VFCopyItems(const LQChannelMapper& from, int fromSlot, LQChannelMapper& to, int toSlot);
