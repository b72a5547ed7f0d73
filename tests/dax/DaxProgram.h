#pragma once

#include "support/TestSupport.h"

#include <nlohmann/json.hpp>

#include <sys/types.h>

#include <set>
#include <string>
#include <vector>

/// What a run of the program left.
struct DaxResult
{
    int status = -1;  ///< exit status; -1 if a signal ended it
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out, nullptr, false); }
    /// The codes under "errors" of the document.
    std::vector<int> Codes() const;
    /// The names of what a copy that succeeded loses.
    std::set<std::string> Lost() const;
};

/// The program `dax`, run as a user runs it: with the plug-ins that are built, and `TestHomeFolder()` as the user's folder.
class DaxProgram
{
public:
    DaxResult Run(std::vector<std::string> arguments, const std::vector<std::string>& more = {}) const;
    /// The document of a run that succeeds.
    nlohmann::json Json(const std::vector<std::string>& arguments) const;
    /// Runs it with "--json" and expects this error and no other.
    void ExpectFailure(const std::vector<std::string>& arguments, int code) const;
    /// Starts the program and returns; `Wait` gives its result.
    /// @param out  where its output goes instead, if given
    pid_t Start(const std::vector<std::string>& arguments, int out = -1) const;
    DaxResult Wait(pid_t process) const;

private:
    TestFolder folder_;
};

/// A WAV file with 16-bit samples.
std::string MakeWav16(int rate, int channels, const std::vector<std::int16_t>& samples);
/// A WAV file with 32-bit float samples.
std::string MakeWavFloat(int rate, int channels, const std::vector<float>& samples);

/// The lines of a text, without their ends.
std::vector<std::string> Lines(const std::string& text);
