#pragma once

#include "Json.h"
#include "TestCopy.h"

#include <optional>

/// Something of the source that the copy doesn't hold.
struct VDLoss
{
    std::string what;            ///< in one word: "title", "units", "sampleRate", ...
    std::optional<int> channel;  ///< number; none for the test as a whole
    VDJson from;
    VDJson to;

    VDJson ToJson() const;
    std::string ToText() const;
};

/// Compares what was written with its source: header values, types and the first values of each channel. Throws if the
/// number of channels or points is wrong, which is no loss but a failed copy.
/// @param limit  points of each channel that were to be written at most
std::vector<VDLoss> VFFindLosses(const VDRegistry& registry, const VDCopyPlan& plan, const std::string& written,
                                 std::int64_t limit);
