#pragma once

#include "Command.h"

/// `dax types`: the file types that the registry knows.
class VDTypesCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;
};
