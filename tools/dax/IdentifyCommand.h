#pragma once

#include "Command.h"

/// `dax identify FILE...`: what each file is.
class VDIdentifyCommand : public VDCommand
{
public:
    CLI::App* Register(CLI::App& program) override;
    VDJson Run(VDCommandContext& context) override;

private:
    /// Appends a row for each test of the file, or prints them.
    void Identify(VDCommandContext& context, const std::string& file, VDJson& list) const;

    std::vector<std::string> files_;
    bool byExtension_ = false;
};
