#pragma once

#include "ChannelExport.h"
#include "ChannelSelection.h"
#include "Command.h"
#include "Identification.h"

/// `dax read FILE`: times and values as CSV or JSON.
class VDReadCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDJson WriteFiles(VDCommandContext& context, const VDTimeSeriesTest& test,
                      const std::vector<VDChannelGroup>& groups) const;
    void CheckFirst(const std::vector<VDChannel>& channels) const;

    VDTestArguments arguments_;
    VDChannelSelection selection_;
    VDPointRange range_;
    std::string out_;
    bool overwrite_ = false;
};
