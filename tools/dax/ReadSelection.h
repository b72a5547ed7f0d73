#pragma once

#include "ChannelSelection.h"

#include <cstdint>
#include <limits>

/// Numbers from one to another, both included, as "10-20", "10-", "-20" or "10" in an argument.
template <class Number>
struct VDNumberRange
{
    Number first = std::numeric_limits<Number>::lowest();
    Number last = std::numeric_limits<Number>::max();

    /// Takes what a text says; a usage error if it is no range.
    /// @param option  that the text was given with
    static VDNumberRange Read(const std::string& option, const std::string& text);
};

/// Which points of each channel are asked for.
struct VDPointRange
{
    std::int64_t first = 1;
    std::int64_t count = -1;  ///< -1: up to the end

    /// The last point asked for that the channel has; below `first` if there is none.
    std::int64_t Last(const VDChannel& channel) const;
};

/// What of a test is to be read.
class VDReadSelection
{
public:
    void Register(CLI::App& command);
    /// A usage error if an option was given that means nothing for the kind of data.
    void CheckFits(int accessType) const;

    VDChannelSelection channels;
    VDPointRange points;               ///< of time series
    std::string rows;                  ///< of tables, as the texts that follow; empty for all
    int dataSet = 0;                   ///< from 1; 0 for all
    std::vector<std::string> columns;  ///< titles, keywords or positions from 1
    std::string spectra;               ///< positions from 1
    std::string lines;                 ///< places on the line axis, or positions where there is none

private:
    struct KindOption
    {
        CLI::Option* option;
        int accessType;
    };
    std::vector<KindOption> kindOptions_;
};
