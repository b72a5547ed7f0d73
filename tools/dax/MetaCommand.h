#pragma once

#include "Command.h"
#include "Identification.h"

/// `dax meta FILE`: the metadata of the test and its channels.
class VDMetaCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDTestArguments arguments_;
};
