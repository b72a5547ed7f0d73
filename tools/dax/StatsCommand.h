#pragma once

#include "ChannelSelection.h"
#include "Command.h"
#include "Identification.h"

/// `dax stats FILE`: the statistics of each channel.
class VDStatsCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
    VDChannelSelection selection_;
    bool calculate_ = false;
    bool quiet_ = false;
};
