#pragma once

#include "Json.h"
#include "Registry.h"
#include "TextSink.h"

#include <CLI/CLI.hpp>

/// How much of its JSON document a subcommand has written itself.
enum class VTDocument {
    Returned,  ///< nothing: what `Run` gives back is the document
    Begun,     ///< an object that isn't closed: what `Run` gives back, warnings and errors follow as its last keys
    Written,   ///< everything; errors, if there are any, follow as a document of their own
};

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

    /// Tells of something that is wrong and doesn't end the subcommand: at once on the standard error, and under "warnings"
    /// in the document. The exit status stays 0.
    void Warn(const VDErrorReport& report);
    const std::vector<VDErrorReport>& GetWarnings() const { return warnings_; }
    /// Takes what is recorded on this thread for failures that don't end the subcommand.
    void TakeErrors();

    /// Failures that didn't end the subcommand: they are printed behind its result, and the exit status is 1.
    std::vector<VDErrorReport> errors;
    /// The plug-ins are what was asked for, so that one that didn't load is a failure, not only worth a warning.
    bool pluginsAsked = false;
    /// The result itself says that something is wrong: the exit status is 1 without an error.
    bool negative = false;
    VTDocument document = VTDocument::Returned;

private:
    bool json_;
    VDTextSink& out_;
    std::optional<VDRegistry> registry_;
    std::vector<VDErrorReport> warnings_;
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

/// Prints a report on the standard error as one line.
/// @param kind  "error" or "warning"
void VFPrintReport(const VDErrorReport& report, const char* kind);
