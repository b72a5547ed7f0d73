#pragma once

#include <memory>

class LQChannelMapper;

/// Adds the items of `source` to `target`, attributes aside; makes no channel.
bool VFMergeMetaData(LQChannelMapper& target, LQChannelMapper& source, bool overwrite);

/// A copy with the same channels at the same indexes; null on failure.
std::unique_ptr<LQChannelMapper> VFCloneMapper(LQChannelMapper& source);
