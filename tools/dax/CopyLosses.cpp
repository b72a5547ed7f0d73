#include "CopyLosses.h"

#include "Identification.h"
#include "TestMetaData.h"
#include "ToolError.h"
#include "Values.h"

#include "vdstore/LQChannelMapper.h"

#include <algorithm>
#include <cmath>

namespace {

/// Values of each channel that are compared one by one.
constexpr std::int64_t VVComparedPoints = 1024;

class LossList
{
public:
    /// A text is lost when the copy has another one; what the copy has besides is none.
    void AddText(const char* what, std::optional<int> channel, const std::string& from, const std::string& to)
    {
        if (!from.empty() && from != to)
            losses.push_back({what, channel, from, to});
    }
    template <class Value>
    void Add(const char* what, std::optional<int> channel, const Value& from, const Value& to)
    {
        if (from != to)
            losses.push_back({what, channel, from, to});
    }

    std::vector<VDLoss> losses;
};

/// A form that holds as much is no loss: a short in a float channel, for instance, is whole.
bool VFHoldsAsMuch(VTValueForm from, VTValueForm to)
{
    return from == to || (to == VTValueForm::Double && from != VTValueForm::Digital64);
}

bool VFSameValue(long double left, long double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

void VFCompareValues(const VDCopyPlan& plan, const VDChannel& from, const VDTimeSeriesTest& copy, const VDChannel& to,
                     LossList& list)
{
    const std::int64_t count = std::min(to.points, VVComparedPoints);
    VDValues source(VFValueForm(from.type), count);
    VDValues written(VFValueForm(to.type), count);
    if (count < 1)
        return;
    source.Read(plan.source.Get(), from.index, 1, count);
    written.Read(copy.Get(), to.index, 1, count);
    for (std::int64_t index = 0; index < count; ++index)
        if (!VFSameValue(source.At(index), written.At(index))) {
            list.Add("values", from.number, static_cast<double>(source.At(index)), static_cast<double>(written.At(index)));
            return;
        }
}

void VFCompareChannels(const VDCopyPlan& plan, const VDChannel& from, const VDTimeSeriesTest& copy, const VDChannel& to,
                       LossList& list)
{
    list.Add("channelNumber", from.number, from.number, to.number);
    list.AddText("title", from.number, from.title, to.title);
    if (from.yTitle != from.title)
        list.AddText("yTitle", from.number, from.yTitle, to.yTitle);
    list.AddText("units", from.number, from.units, to.units);
    if (!VFHoldsAsMuch(VFValueForm(from.type), VFValueForm(to.type)))
        list.AddText("type", from.number, VFTypeWord(from.type), VFTypeWord(to.type));
    list.Add("sampleRate", from.number, from.sampleRate, to.sampleRate);
    list.Add("baseTime", from.number, from.baseTime, to.baseTime);
    VFCompareValues(plan, from, copy, to, list);
}

/// @param to  null where the copy has no metadata at all; a negative slot where it has none for the channel
void VFCompareItems(const LQChannelMapper& from, int fromSlot, const LQChannelMapper* to, int toSlot,
                    std::optional<int> channel, LossList& list)
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

void VFCompareMetaData(const VDCopyPlan& plan, const VDTimeSeriesTest& copy, LossList& list)
{
    constexpr int none = LQChannelMapper::GLOBAL - 1;
    const LQChannelMapper* from = VFGetMetaData(plan.source.Get());
    if (from == nullptr)
        return;
    const LQChannelMapper* to = VFGetMetaData(copy.Get());
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
std::string VFGetKeptText(const VDTimeSeriesTest& copy, VDFileId* id, const char* name)
{
    const std::string own = VFGetFormatText(copy.Get(), name);
    if (!own.empty())
        return own;
    const LQChannelMapper* const mapper = VFGetMetaData(copy.Get());
    const Z4PropertySet* const details =
        mapper != nullptr ? mapper->GetMetaDataSet(VVExtraDetails, LQChannelMapper::GLOBAL) : nullptr;
    VDString text;
    if (details != nullptr && details->GetString(name, &text))
        return text.Str();
    return VDString(name).CompareNoCase(VVTitle) == 0 ? VFOwnTitle(id) : std::string();
}

void VFCompareValuesToKeep(const VDCopyPlan& plan, const VDTimeSeriesTest& copy, VDFileId* id, LossList& list)
{
    for (const VDValueToKeep& value : VFGetValuesToKeep(plan.source, plan.metaData))
        list.AddText(value.what.c_str(), {}, value.Text(), VFGetKeptText(copy, id, value.name.c_str()));
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
    const VDTimeSeriesTest copy(id);
    if (copy.GetChannels().size() != plan.channels.size())
        VFFail(DaxToolError::Incomplete,
               "The file written has " + std::to_string(copy.GetChannels().size()) + " channels in place of " +
                   std::to_string(plan.channels.size()),
               "VFFindLosses");
    LossList list;
    list.AddText("xTitle", {}, plan.source.GetXTitle(), copy.GetXTitle());
    list.AddText("xUnits", {}, plan.source.GetXUnits(), copy.GetXUnits());
    for (std::size_t index = 0; index < plan.channels.size(); ++index) {
        const VDChannel& from = plan.channels[index];
        const VDChannel& to = copy.GetChannels()[index];
        if (to.points != std::min(from.points, limit))
            VFFail(DaxToolError::Incomplete,
                   "Channel " + std::to_string(from.number) + " has " + std::to_string(to.points) +
                       " points in the file written in place of " + std::to_string(std::min(from.points, limit)),
                   "VFFindLosses");
        VFCompareChannels(plan, from, copy, to, list);
    }
    if (plan.metaData)
        VFCompareMetaData(plan, copy, list);
    VFCompareValuesToKeep(plan, copy, id.Get(), list);
    return std::move(list.losses);
}
