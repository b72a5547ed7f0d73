#pragma once

#include "DataTest.h"

#include <CLI/CLI.hpp>

/// The option --chan: channel numbers and ranges of them, such as 1-3,7; without it all channels.
struct VDChannelSelection
{
    std::vector<std::string> texts;

    void Register(CLI::App& command);
    /// The chosen channels in the order in which they are asked for, each once; throws for a number that the test doesn't
    /// have.
    std::vector<VDChannel> Choose(const VDDataTest& test) const;
};

/// Makes "--chan 1 2 3" the same as "--chan 1,2,3", so that a file name may follow the numbers.
void VFJoinChannelArguments(std::vector<std::string>& arguments);

/// Numbers as a range list: runs of three or more are written first-last.
/// @param separator  between the parts
std::string VFChannelListText(const std::vector<VDChannel>& channels, char separator);
