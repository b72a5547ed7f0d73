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

/// Collects losses.
class VDLossList
{
public:
    /// A text is lost when the copy has another one; what the copy has besides is none.
    void AddText(const std::string& what, std::optional<int> channel, const std::string& from, const std::string& to)
    {
        if (!from.empty() && from != to)
            losses.push_back({what, channel, from, to});
    }
    void Add(const std::string& what, std::optional<int> channel, const VDJson& from, const VDJson& to)
    {
        if (from != to)
            losses.push_back({what, channel, from, to});
    }

    std::vector<VDLoss> losses;
};

/// Compares what was written with its source: header values, types and the first values of each channel. Throws if the
/// number of channels or points is wrong, which is no loss but a failed copy.
/// @param limit  points of each channel, rows or spectra that were to be written at most
std::vector<VDLoss> VFFindLosses(const VDRegistry& registry, const VDCopyPlan& plan, const std::string& written,
                                 std::int64_t limit);

/// @name Header and first values of each kind
/// The part of it that knows the data; the copy's channels stand in the order of the plan's.
/// @{
void VFCompareTimeSeries(const VDCopyPlan& plan, const VDDataTest& copy, std::int64_t limit, VDLossList& list);
/// @}
