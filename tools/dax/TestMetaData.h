#pragma once

#include "TestAccess.h"

#include <functional>
#include <string>

class Z4Property;
class Z4PropertySet;

/// The metadata of an open test, which stays the access object's; null where the format keeps none. Throws if it can't be
/// read.
LQChannelMapper* VFGetMetaData(const VDTestAccess& test);
/// The same for work that can't be done without any; throws where the format keeps none.
LQChannelMapper& VFNeedMetaData(const VDTestAccess& test);

/// Calls back for each set of a slot.
/// @param slot  index of a channel or `LQChannelMapper::GLOBAL`
void VFForEachSet(const LQChannelMapper& mapper, int slot, const std::function<void(const Z4PropertySet& set)>& visit);

/// Whether an item is the test's own: neither what the library notes about the input itself, nor an attribute that it
/// derives from header and statistics.
bool VFIsOwnItem(const std::string& set, const char* item);
/// Calls back for each item of a slot that is the test's own, undefined ones among them.
void VFForEachOwnItem(const LQChannelMapper& mapper, int slot,
                      const std::function<void(const std::string& set, const Z4Property& item)>& visit);

/// The set of the test as a whole that holds what a format keeps under names of its own.
constexpr const char* VVExtraDetails = "ExtraDetails";

/// What an item is called where it is told of.
std::string VFItemName(const std::string& set, const Z4Property& item);

/// Puts copies of a slot's own items into a slot of another mapper, but for the test's extra details, which are handed over
/// by their names.
void VFCopyItems(const LQChannelMapper& from, int fromSlot, LQChannelMapper& to, int toSlot);

/// Removes what the library has noted about the input: in a file that is written it would name the file's place of now.
void VFDropInputInfo(LQChannelMapper& mapper);
