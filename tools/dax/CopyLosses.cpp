#include "CopyLosses.h"

#include "Identification.h"
#include "TestMetaData.h"
#include "ToolError.h"

#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

/// @param to  null where the copy has no metadata at all; a negative slot where it has none for the channel
void VFCompareItems(const LQChannelMapper& from, int fromSlot, const LQChannelMapper* to, int toSlot,
                    std::optional<int> channel, VDLossList& list)
{
    VFForEachOwnItem(from, fromSlot, [&](const std::string& set, const Z4Property& item) {
        if (!channel && set == VVExtraDetails && item.IsDefined())
            return;  // compared by name
        const Z4PropertySet* kept =
            to != nullptr && toSlot >= LQChannelMapper::GLOBAL ? to->GetMetaDataSet(set.c_str(), toSlot) : nullptr;
        const Z4Property* twin = kept != nullptr ? kept->GetProperty(item.GetName(), false) : nullptr;
        const std::string value = twin != nullptr ? twin->ToString().Str() : std::string();
        list.AddText(VFItemName(set, item).c_str(), channel, item.ToString().Str(), value);
    });
}

void VFCompareMetaData(const VDCopyPlan& plan, const VDDataTest& copy, VDLossList& list)
{
    constexpr int none = LQChannelMapper::GLOBAL - 1;
    const LQChannelMapper* from = VFGetMetaData(*plan.source.Access());
    if (from == nullptr)
        return;
    const LQChannelMapper* to = VFGetMetaData(*copy.Access());
    VFCompareItems(*from, LQChannelMapper::GLOBAL, to, LQChannelMapper::GLOBAL, {}, list);
    for (std::size_t index = 0; index < plan.channels.size(); ++index) {
        const int number = plan.channels[index].number;
        const int fromSlot = from->IndexFromNumber(number, false);
        const int toSlot = to != nullptr ? to->IndexFromNumber(copy.GetChannels()[index].number, false) : none;
        if (fromSlot >= 0)
            VFCompareItems(*from, fromSlot, to, toSlot < 0 ? none : toSlot, number, list);
    }
}

/// What the copy has under a name of its own: in its format or, where that has no place for it, in the metadata.
std::string VFGetKeptText(const VDDataTest& copy, VDFileId* id, const char* name)
{
    const std::string own = VFGetFormatText(*copy.Access(), name);
    if (!own.empty())
        return own;
    const LQChannelMapper* const mapper = VFGetMetaData(*copy.Access());
    const Z4PropertySet* const details =
        mapper != nullptr ? mapper->GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL) : nullptr;
    VDString text;
    if (details != nullptr && details->GetString(name, &text))
        return text.Str();
    return VDString(name).CompareNoCase(VVTitle) == 0 ? VFOwnTitle(id) : std::string();
}

void VFCompareValuesToKeep(const VDCopyPlan& plan, const VDDataTest& copy, VDFileId* id, VDLossList& list)
{
    for (const VDValueToKeep& value : VFGetValuesToKeep(plan.source, plan.metaData))
        list.AddText(value.what.c_str(), {}, value.Text(), VFGetKeptText(copy, id, value.name.c_str()));
}

/// Column types by words that hold all that another one holds.
bool VFHoldsColumn(const std::string& from, const std::string& to)
{
    static constexpr std::pair<const char*, const char*> wider[] = {
        {"short", "long"}, {"short", "int64"}, {"short", "float"},  {"short", "double"},
        {"long", "int64"}, {"long", "double"}, {"float", "double"}, {"datetime", "text"}};
    return from == to || std::any_of(std::begin(wider), std::end(wider),
                                     [&](const auto& pair) { return from == pair.first && to == pair.second; });
}

/// What is told of a thing, compared key by key. What the copy has besides is no loss, and neither is a text in the place of
/// none.
void VFCompareFacts(const std::string& what, int channel, const VDJson& from, const VDJson& to, VDLossList& list)
{
    if (from.is_structured() && from.type() == to.type()) {
        for (const auto& [key, value] : from.items()) {
            const std::string name =
                from.is_array() ? what + " " + std::to_string(std::stoll(key) + 1) : (what.empty() ? key : what + " " + key);
            const bool kept = from.is_array() ? std::stoull(key) < to.size() : to.contains(key);
            VFCompareFacts(name, channel, value,
                           !kept             ? VDJson("")
                           : from.is_array() ? to[std::stoull(key)]
                                             : to[key],
                           list);
        }
        return;
    }
    const bool isType = what.ends_with("type");
    if (from.is_string() && to.is_string() &&
        (from.get_ref<const std::string&>().empty() || (isType && VFHoldsColumn(from, to))))
        return;
    list.Add(what, channel, from, to);
}

/// The first value that differs stands for all.
void VFCompareSamples(int channel, const VDJson& from, const VDJson& to, VDLossList& list)
{
    VDLossList values;
    VFCompareFacts("values", channel, from, to, values);
    if (!values.losses.empty())
        list.losses.push_back(values.losses.front());
}

void VFCompareFactsOfAll(const VDCopyPlan& plan, const VDDataTest& copy, VDLossList& list)
{
    VDJson from;
    VDJson to;
    plan.source.DescribeTest(from);
    copy.DescribeTest(to);
    for (const auto& [key, value] : from.items())
        if (value != to[key])
            list.Add(key, {}, value, to[key]);
    for (std::size_t index = 0; index < plan.channels.size(); ++index) {
        const VDChannel& channel = plan.channels[index];
        const VDChannel& twin = copy.GetChannels()[index];
        VDJson facts = plan.source.DescribeChannel(channel);
        facts.erase("index");  // that of the test it stands in
        VFCompareFacts("", channel.number, facts, copy.DescribeChannel(twin), list);
        VFCompareSamples(channel.number, plan.source.Sample(channel), copy.Sample(twin), list);
    }
}

void VFCompareData(const VDCopyPlan& plan, const VDDataTest& copy, std::int64_t limit, VDLossList& list)
{
    if (plan.format.accessType == VTFileAccessTimeSeries)
        VFCompareTimeSeries(plan, copy, limit, list);
    else if (limit == std::numeric_limits<std::int64_t>::max())
        VFCompareFactsOfAll(plan, copy, list);
}

}  // namespace

VDJson VDLoss::ToJson() const
{
    return {{"what", what}, {"channel", channel ? VDJson(*channel) : VDJson()}, {"from", from}, {"to", to}};
}

std::string VDLoss::ToText() const
{
    const std::string owner = channel ? " of channel " + std::to_string(*channel) : std::string();
    const bool gone = to.is_string() && to.get_ref<const std::string&>().empty();
    return what + owner + ": " + VFJsonText(from, -1) + (gone ? " is not kept" : " becomes " + VFJsonText(to, -1));
}

std::vector<VDLoss> VFFindLosses(const VDRegistry& registry, const VDCopyPlan& plan, const std::string& written,
                                 std::int64_t limit)
{
    VDTestArguments arguments;
    arguments.file = written;
    const VDFileIdHandle id = VFChooseTest(registry, arguments);
    const std::unique_ptr<VDDataTest> copy = VFOpenDataTest(id);
    if (copy->GetChannels().size() != plan.channels.size())
        VFFail(DaxToolError::Incomplete,
               "The file written has " + std::to_string(copy->GetChannels().size()) + " channels in place of " +
                   std::to_string(plan.channels.size()),
               "VFFindLosses");
    VDLossList list;
    VFCompareData(plan, *copy, limit, list);
    if (plan.metaData)
        VFCompareMetaData(plan, *copy, list);
    VFCompareValuesToKeep(plan, *copy, id.Get(), list);
    return std::move(list.losses);
}
