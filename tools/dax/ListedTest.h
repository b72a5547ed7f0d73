#pragma once

#include "Registry.h"
#include "TestDescription.h"

#include <optional>

/// One test as a list shows it.
struct VDListedTest
{
    std::string name;                              ///< a spec that means it
    std::optional<VDTestDescription> description;  ///< none for a file that nobody knows
    int channels = 0;
    std::optional<std::int64_t> points;  ///< of the longest channel; this and the next two of time series only
    std::optional<double> sampleRate;    ///< none where channels differ
    std::optional<double> duration;      ///< of the longest channel, in the unit of the x axis
    std::optional<std::uint64_t> size;   ///< bytes on disk
    std::vector<std::pair<std::string, std::string>> items;  ///< keywords and their values
    bool matches = true;                                     ///< what metadata were to say
    std::vector<VDErrorReport> errors;                       ///< why the test couldn't be opened

    VDJson ToJson() const;
    /// @param whole  adds what there is no room for in a short line
    std::vector<std::string> ToRow(bool whole) const;
    static std::vector<std::string> Heading(bool whole, const std::vector<std::string>& keywords);
};

/// What a list is to say of each test from its metadata.
struct VDMetaDataQuestions
{
    std::string where;                  ///< an expression that must be true; empty for none
    std::vector<std::string> keywords;  ///< items whose values are shown
};

/// Looks into a test. One that can't be opened says so itself; throws for an expression that can't be read.
VDListedTest VFLookInto(const VDRegistry& registry, const VDFileIdHandle& id, const VDMetaDataQuestions& questions);
