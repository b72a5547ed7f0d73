#include "ChannelSelection.h"

#include "ToolError.h"

#include "vdbase/VDSelArrayTemplate.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>

namespace {

struct Range
{
    int first = 0;
    int last = 0;
};

/// Reads a number from 0 on; null if there is none.
const char* VFReadNumber(const char* at, const char* end, int* number)
{
    const auto [behind, error] = std::from_chars(at, end, *number);
    return error == std::errc() && *number >= 0 ? behind : nullptr;
}

/// Reads "1-3,7"; false if it is no such list.
bool VFReadRanges(const std::string& text, std::vector<Range>* ranges)
{
    const char* at = text.data();
    const char* end = at + text.size();
    while (true) {
        Range range;
        at = VFReadNumber(at, end, &range.first);
        if (at == nullptr)
            return false;
        range.last = range.first;
        if (at != end && *at == '-')
            at = VFReadNumber(at + 1, end, &range.last);
        if (at == nullptr || range.last < range.first)
            return false;
        ranges->push_back(range);
        if (at == end)
            return true;
        if (*at++ != ',')
            return false;
    }
}

std::string VFCheckRanges(const std::string& text)
{
    std::vector<Range> ranges;
    return VFReadRanges(text, &ranges) ? "" : "'" + text + "' is no channel number and no range such as 1-3,7";
}

/// The channel of a number, among channels sorted by theirs; throws if there is none.
std::vector<VDChannel>::const_iterator VFFindNumber(const std::vector<VDChannel>& channels, int number)
{
    const auto found = std::lower_bound(channels.begin(), channels.end(), number,
                                        [](const VDChannel& channel, int wanted) { return channel.number < wanted; });
    if (found == channels.end() || found->number != number)
        VFFail(DaxToolError::UnknownChannel,
               "Channel " + std::to_string(number) + " is not in this test, which has " + VFChannelListText(channels, ','),
               "VDChannelSelection::Choose");
    return found;
}

}  // namespace

void VDChannelSelection::Register(CLI::App& command)
{
    command
        .add_option("--chan", texts,
                    "Channel numbers, also ranges such as 7,1-3, in the order asked for; may be repeated (default: all "
                    "channels)")
        ->allow_extra_args(false)
        ->check(CLI::Validator(VFCheckRanges, ""))
        ->type_name("N");
}

std::vector<VDChannel> VDChannelSelection::Choose(const VDDataTest& test) const
{
    const std::vector<VDChannel>& channels = test.GetChannels();
    if (texts.empty())
        return channels;
    std::vector<VDChannel> selection;
    std::set<int> chosen;
    for (const std::string& text : texts) {
        std::vector<Range> ranges;
        VFReadRanges(text, &ranges);
        for (const Range& range : ranges) {
            // A range is walked over the test's channels, so that 1-2000000000 costs no more than 1-2.
            auto channel = VFFindNumber(channels, range.first);
            VFFindNumber(channels, range.last);
            for (; channel != channels.end() && channel->number <= range.last; ++channel)
                if (chosen.insert(channel->index).second)
                    selection.push_back(*channel);
        }
    }
    return selection;
}

void VFJoinChannelArguments(std::vector<std::string>& arguments)
{
    for (std::size_t option = 0; option < arguments.size(); ++option) {
        if (arguments[option] == "--")
            return;
        if (arguments[option] != "--chan")
            continue;
        const std::size_t first = option + 1;
        while (first + 1 < arguments.size() && VFCheckRanges(arguments[first]).empty() &&
               VFCheckRanges(arguments[first + 1]).empty()) {
            arguments[first] += "," + arguments[first + 1];
            arguments.erase(arguments.begin() + static_cast<std::ptrdiff_t>(first) + 1);
        }
    }
}

std::string VFChannelListText(const std::vector<VDChannel>& channels, char separator)
{
    VDSelArrayTemplate<long> numbers(std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
    for (const VDChannel& channel : channels)
        numbers.Add(channel.number);
    std::string text = numbers.GetRangeText().Str();
    std::replace(text.begin(), text.end(), ',', separator);
    return text;
}
