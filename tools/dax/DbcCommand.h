#pragma once

#include "CanDatabase.h"
#include "Command.h"

/// `dax dbc`: what a CAN database defines, and frames decoded with it.
class VDDbcCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson Show(VDCommandContext& context, const VDCanDatabase& database) const;
    VDJson DecodeOne(VDCommandContext& context, const VDCanDatabase& database) const;
    VDJson DecodeLog(VDCommandContext& context, const VDCanDatabase& database) const;

    std::string filename_;
    std::vector<std::string> decode_;
    std::string log_;
};
