#pragma once

#include "ChannelSelection.h"
#include "Command.h"
#include "CopyLosses.h"
#include "Identification.h"

/// `dax copy IN OUT`: a test in another file, also of another format.
class VDCopyCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    VDFileType ChooseFormat(const VDRegistry& registry, const VDFileIdHandle& source) const;
    void CheckStrict(const std::vector<VDLoss>& losses) const;

    VDTestArguments arguments_;
    VDChannelSelection selection_;
    std::string out_;
    std::string keyword_;
    bool overwrite_ = false;
    bool strict_ = false;
    bool quiet_ = false;
};
