#pragma once

#include "Json.h"
#include "Registry.h"
#include "TextSink.h"

#include <CLI/CLI.hpp>

/// What a subcommand runs with.
class VDCommandContext
{
public:
    VDCommandContext(bool json, VDTextSink& out) : json_(json), out_(out) {}

    /// Results are asked for as one JSON document, which `Run` gives back, instead of as text on `Out`.
    bool IsJson() const { return json_; }
    /// The standard output.
    VDTextSink& Out() { return out_; }
    /// The registry, which comes up at the first call; throws if that fails.
    const VDRegistry& Registry()
    {
        if (!registry_)
            registry_.emplace();
        return *registry_;
    }
    const VDRegistry* GetRegistry() const { return registry_ ? &*registry_ : nullptr; }

    /// Failures that didn't end the subcommand: they are printed behind its result, and the exit status is 1.
    std::vector<VDErrorReport> errors;
    /// The plug-ins are what was asked for, so that one that didn't load is a failure, not only worth a warning.
    bool pluginsAsked = false;
    /// The result itself says that something is wrong: the exit status is 1 without an error.
    bool negative = false;
    /// The subcommand has written its JSON document itself, errors included.
    bool documentWritten = false;

private:
    bool json_;
    VDTextSink& out_;
    std::optional<VDRegistry> registry_;
};

/// One subcommand of the program.
class VDCommand
{
public:
    virtual ~VDCommand() = default;

    /// Adds the subcommand with its arguments and options; --json is added by the caller.
    virtual CLI::App* Register(CLI::App& program) = 0;
    /// Does the work; throws `VDFailure` when it can't be done.
    /// @return the document to print in JSON mode
    virtual VDJson Run(VDCommandContext& context) = 0;
};
