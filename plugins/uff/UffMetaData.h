#pragma once

#include "UffHeader.h"

class LQChannelMapper;

/// Header fields of a dataset as metadata of its channel, in a set of their own.
namespace UffMetaData {

constexpr const char* SetName = "Dataset58";

/// Adds what the set doesn't have yet.
/// @param number  of the dataset, among all of its type in the file
bool Add(LQChannelMapper& mapper, int index, const UffHeader& header, int number);
/// Takes the fields that say nothing about the data themselves.
void Take(const LQChannelMapper& mapper, int index, UffHeader& header);

}  // namespace UffMetaData
